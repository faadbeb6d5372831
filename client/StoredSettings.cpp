#include "StoredSettings.h"

#include <algorithm>

#include "Dom.h"
#include "params/SchemeReader.h"
#include "params/SchemeSection.h"
#include "platform/FalseOnException.h"
#include "Text.h"
#include "xml/DataFileElements.h"
#include "xml/Dom.h"
#include "xml/ZOTPowercfg.h"

namespace ZOTDam::Client {

namespace {

// A data file that is only read.
class DataFileDocument : public CZOTProfile {
public:
    explicit DataFileDocument(const std::filesystem::path& file) : CZOTProfile{file} {}

    bool TryLoad() { return Load() == LoadResult::Loaded; }
    using CZOTProfile::FindRoot;
    using CZOTProfile::FindSection;
};

// Namespace declarations are not settings.
bool IsSetting(const Attribute& attribute) {
    return attribute.name != L"xmlns" && attribute.name.find(L':') == std::wstring::npos;
}

CommonSettings ReadCommonSettings(const DataFileDocument& document) {
    CommonSettings settings;
    const IXMLDOMElementPtr section = document.FindSection(Elements::CommonSettings);
    if (!section)
        return settings;
    for (const Attribute& attribute : ReadAttributes(section))
        if (IsSetting(attribute))
            settings.emplace_back(ToUtf8(attribute.name), ToUtf8(attribute.value));
    return settings;
}

bool Contains(const std::vector<StoredScheme>& schemes, const GUID& scheme) {
    return std::ranges::find(schemes, scheme, &StoredScheme::scheme) != schemes.end();
}

// A scheme without a GUID hides all later schemes, and of two schemes with the same GUID the first one
// counts.
std::vector<StoredScheme> ReadSchemes(const DataFileDocument& document) {
    std::vector<StoredScheme> schemes;
    const IXMLDOMElementPtr section = document.FindSection(Elements::PowerSchemes);
    if (!section)
        return schemes;
    std::wstring text;
    for (const IXMLDOMElementPtr& element : ZOTDam::SelectChildren(section, Elements::PowerScheme)) {
        StoredScheme stored;
        if (!ZOTDam::ReadAttribute(element, Attributes::GUID, text))
            break;
        if (!ZOTDam::ParseGuid(text.c_str(), stored.scheme) || Contains(schemes, stored.scheme))
            continue;
        ReadUserSchemeParameters(stored.scheme, section, stored.params);
        schemes.push_back(stored);
    }
    return schemes;
}

}  // namespace

const Params* StoredSettings::Find(const GUID& scheme) const {
    const auto found = std::ranges::find(schemes, scheme, &StoredScheme::scheme);
    return found == schemes.end() ? nullptr : &found->params;
}

bool TryReadStoredSettings(const std::filesystem::path& file, StoredSettings& settings) {
    return FalseOnException([&] {
        DataFileDocument document{file};
        if (!document.TryLoad())
            return false;
        settings = {ReadSchemes(document), ReadCommonSettings(document)};
        return true;
    });
}

CommonSettings ReadCommonSettings(const std::filesystem::path& file) {
    CommonSettings settings;
    FalseOnException([&] {
        DataFileDocument document{file};
        if (document.TryLoad())
            settings = ReadCommonSettings(document);
        return true;
    });
    return settings;
}

std::string ReadRootName(const std::filesystem::path& file) {
    std::string name;
    FalseOnException([&] {
        DataFileDocument document{absolute(file)};
        if (document.TryLoad())
            name = ToUtf8(NameOf(document.FindRoot()));
        return true;
    });
    return name;
}

void RemoveStoredScheme(const GUID& scheme) {
    FalseOnException([&] {
        const CGuidString guid{scheme};
        CXmlZOTPowercfg settings;
        settings.Open();
        const IXMLDOMElementPtr section = settings.PowerSchemes();
        bool isChanged = false;
        for (IXMLDOMElementPtr element; (element = FindScheme(section, guid)) != nullptr; isChanged = true)
            RemoveChild(section, element);
        return !isChanged || settings.Save();
    });
}

}  // namespace ZOTDam::Client
