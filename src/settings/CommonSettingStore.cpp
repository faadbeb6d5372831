#include "settings/CommonSettingStore.h"

#include "platform/FalseOnException.h"
#include "platform/FixedText.h"
#include "xml/DataFileElements.h"
#include "xml/Documents.h"

namespace ZOTDam {

namespace {

template <class Document>
bool ReadFrom(Document* document, const wchar_t* name, wchar_t* value) noexcept {
    return FalseOnException([&] {
        if (document == nullptr)
            return false;
        const IXMLDOMElementPtr settings = document->CommonSettings();
        std::wstring text;
        if (!settings || !ReadNamedAttribute(settings, name, text) || text.size() >= TextCapacity)
            return false;
        CopyTruncated(text, value);
        return true;
    });
}

}  // namespace

bool CCommonSettingStore::ReadFromUserSettings(const wchar_t* name, wchar_t* value) const noexcept {
    return ReadFrom(OpenUserSettings(), name, value);
}

bool CCommonSettingStore::ReadFromDefaults(const wchar_t* name, wchar_t* value) const noexcept {
    return ReadFrom(DefaultsDocument.Get(), name, value);
}

bool CCommonSettingStore::ReadFromBase(const wchar_t* name, wchar_t* value) const noexcept {
    return ReadFrom(BaseCatalogueDocument.Get(), name, value);
}

bool CCommonSettingStore::Write(const wchar_t* name, const wchar_t* value) const noexcept {
    return FalseOnException([&] {
        CXmlZOTPowercfg* document = OpenUserSettings();
        if (document == nullptr)
            return false;
        WriteNamedAttribute(document->CommonSettings(), name, value);
        return document->Save();
    });
}

bool CCommonSettingStore::Initialise() const noexcept {
    return FalseOnException([] {
        CXmlZOTBase* base = BaseCatalogueDocument.Get();
        CXmlZOTDefault* defaults = DefaultsDocument.Get();
        if (base == nullptr || defaults == nullptr)
            return false;
        const IXMLDOMElementPtr source = base->CommonSettings();
        const IXMLDOMElementPtr root = defaults->Root();
        if (!source || !root)
            return false;
        // Copied first: when the copy fails, the old settings stay. Only the first section is removed.
        // Compatibility: C52.
        const IXMLDOMNodePtr copy = ImportNode(root, source);
        if (const IXMLDOMElementPtr old = SelectChild(root, Elements::CommonSettings))
            RemoveChild(root, old);
        AppendChild(root, copy);
        return defaults->Save();
    });
}

}  // namespace ZOTDam
