#include "xml/StringTableControler.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "platform/AsciiCase.h"
#include "platform/FalseOnException.h"
#include "platform/FileInFolder.h"
#include "platform/FixedText.h"
#include "platform/LocalisedFile.h"
#include "xml/DataFileElements.h"

namespace ZOTDam {

CStringTableControler::CStringTableControler() : CZOTProfile{LocalisedFile(PathOf(StringTableLocation))} {
    if (Load() == LoadResult::Loaded)
        ReadEntries();
}

bool CStringTableControler::Lookup(const wchar_t* key, Text& output) noexcept {
    return FalseOnException([&] {
        const auto entry = entries.find(std::wstring_view{key});
        if (entry == entries.end() || !ReadText(entry->second))
            return false;
        CopyTruncated(*entry->second.text, output);
        return true;
    });
}

// The FNV-1a hash of the key with its ASCII letters in lower case.
std::size_t CStringTableControler::HashOfKey::operator()(std::wstring_view key) const noexcept {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const wchar_t character : key)
        hash = (hash ^ ToLowerAsciiLetter(character)) * 0x100000001B3;
    return hash;
}

bool CStringTableControler::IsSameKey::operator()(std::wstring_view a, std::wstring_view b) const noexcept {
    return std::ranges::equal(a, b, {}, ToLowerAsciiLetter<wchar_t>, ToLowerAsciiLetter<wchar_t>);
}

void CStringTableControler::ReadEntries() {
    for (const IXMLDOMElementPtr& element : SelectChildren(FindRoot(), Elements::TextEntry)) {
        std::wstring name;
        if (ReadAttribute(element, Attributes::TextKey, name))
            entries.try_emplace(std::move(name), Entry{element, {}});
    }
}

// Reads the text on the first lookup, because a table also contains the texts of functions that are not in
// use on this machine.
bool CStringTableControler::ReadText(Entry& entry) {
    if (entry.text)
        return true;
    // An entry without a text hides later entries with the same name. Compatibility: C28.
    const IXMLDOMElementPtr value = SelectChild(entry.element, Elements::TextValue);
    if (!value)
        return false;
    Text text;
    ReadElementText(value, text);
    entry.text = text;
    return true;
}

}  // namespace ZOTDam
