#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "xml/Profile.h"

namespace ZOTDam {

// The string table (StringTable.xml): the texts that are displayed to the user, each identified by a key. The
// file for the user's language is read once.
class CStringTableControler : public CZOTProfile {
public:
    CStringTableControler();

    // Copies the text of the first entry with this key to `output`. The case of ASCII letters is ignored
    // (Compatibility: C29). Returns false and leaves `output` unchanged when the key has no entry or its
    // first entry has no text. `key` may be `output` itself.
    bool Lookup(const wchar_t* key, Text& output) noexcept;

private:
    struct Entry {
        IXMLDOMElementPtr element;
        std::optional<std::wstring> text;  // set by the first lookup
    };

    struct HashOfKey {
        using is_transparent = void;
        std::size_t operator()(std::wstring_view key) const noexcept;
    };

    struct IsSameKey {
        using is_transparent = void;
        bool operator()(std::wstring_view a, std::wstring_view b) const noexcept;
    };

    void ReadEntries();
    static bool ReadText(Entry& entry);

    // The first entry of each key.
    std::unordered_map<std::wstring, Entry, HashOfKey, IsSameKey> entries;
};

}  // namespace ZOTDam
