#include "xml/StringTableControler.h"

#include <algorithm>
#include <cwchar>
#include <string_view>
#include <utility>

#include "platform/FalseOnException.h"
#include "platform/FileInFolder.h"
#include "platform/LocalisedFile.h"
#include "xml/DataFileElements.h"

namespace ZOTDam {

namespace {

bool IsSameKey(const std::wstring& name, std::wstring_view key) noexcept {
    return name.size() == key.size() && _wcsicmp(name.c_str(), key.data()) == 0;
}

}  // namespace

CStringTableControler::CStringTableControler() : CZOTProfile{LocalisedFile(PathOf(StringTableLocation))} {
    if (FileExists() && Load())
        ReadEntries();
}

bool CStringTableControler::Lookup(const wchar_t* key, Text& output) const noexcept {
    return FalseOnException([&] {
        const auto isSought = [sought = std::wstring_view{key}](const Entry& entry) {
            return IsSameKey(entry.name, sought);
        };
        const auto entry = std::ranges::find_if(entries, isSought);
        if (entry == entries.end())
            return false;
        // An entry without a text hides later entries with the same name. Compatibility: C28.
        const IXMLDOMElementPtr value = SelectChild(entry->element, Elements::TextValue);
        if (!value)
            return false;
        ReadElementText(value, output);
        return true;
    });
}

void CStringTableControler::ReadEntries() {
    for (const IXMLDOMElementPtr& element : SelectChildren(FindRoot(), Elements::TextEntry)) {
        Entry entry{{}, element};
        if (ReadAttribute(element, Attributes::TextKey, entry.name))
            entries.push_back(std::move(entry));
    }
}

}  // namespace ZOTDam
