#pragma once

#include <string>
#include <unordered_map>

#include "xml/Profile.h"

namespace ZOTDam {

// The texts that the user reads, each identified by a key. The table for the user's language is read once.
class CStringTableControler : public CZOTProfile {
public:
    CStringTableControler();

    // Copies the text of the first entry for the key to `output`. The case of ASCII letters is ignored.
    // Returns false and leaves `output` unchanged when no entry is found or the first one has no text. `key`
    // may be `output` itself.
    bool Lookup(const wchar_t* key, Text& output) const noexcept;

private:
    void ReadEntries();

    // The first element of each name, whose ASCII letters are in lower case here.
    std::unordered_map<std::wstring, IXMLDOMElementPtr> entries;
};

}  // namespace ZOTDam
