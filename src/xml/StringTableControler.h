#pragma once

#include <string>
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
    bool Lookup(const wchar_t* key, Text& output) const noexcept;

private:
    void ReadEntries();

    // The first entry of each key. In the keys of this map, ASCII letters are in lower case.
    std::unordered_map<std::wstring, IXMLDOMElementPtr> entries;
};

}  // namespace ZOTDam
