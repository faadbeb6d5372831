#pragma once

#include <string>
#include <vector>

#include "xml/Profile.h"

namespace ZOTDam {

// The texts that the user reads, each identified by a key. The table for the user's language is read once.
class CStringTableControler : public CZOTProfile {
public:
    CStringTableControler();

    // Copies the text of the first entry for the key to `output`. The case of ASCII letters is ignored
    // (Compatibility: C29). Returns false and leaves `output` unchanged when no entry is found or the first
    // one has no text. `key` may be `output` itself.
    bool Lookup(const wchar_t* key, Text& output) const noexcept;

private:
    struct Entry {
        std::wstring name;
        IXMLDOMElementPtr element;
    };

    void ReadEntries();

    // The entries in file order. Comparing a name here is much faster than in the document.
    std::vector<Entry> entries;
};

}  // namespace ZOTDam
