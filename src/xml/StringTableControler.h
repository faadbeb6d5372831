#pragma once

#include <string>
#include <vector>

#include "xml/Profile.h"

namespace ZOTDam {

// The texts that the user reads, each found by a key. The table for the user's language is read once.
class CStringTableControler : public CZOTProfile {
public:
    CStringTableControler();

    // Gives the text of the first entry for the key; the case of ASCII letters does not matter. False, and
    // `output` untouched, when there is no entry, or when that entry has no text. The key may stand in
    // `output` itself.
    bool Lookup(const wchar_t* key, Text& output) const noexcept;

private:
    struct Entry {
        std::wstring name;
        IXMLDOMElementPtr element;
    };

    void ReadEntries();

    // The entries in the order of the file: looking at a name costs far less here than in the document.
    std::vector<Entry> entries;
};

}  // namespace ZOTDam
