#pragma once

#include <string_view>

namespace ZOTDam {

// What precedes the root element of an XML file.
enum class Prolog : unsigned char {
    Valid,  // only a byte order mark, an XML declaration, comments, processing instructions and white space
    DocumentType,  // can declare entities that keep a DOM busy for minutes; MSXML 6 rejects it by default
    Invalid,       // not well-formed, or in an encoding that could hide a document type from this check
};

// Examines a file in UTF-8, UTF-16, UTF-32 or another encoding that contains ASCII.
Prolog ExamineProlog(std::string_view file) noexcept;

// Returns false for a file that has a byte order mark, or declares an encoding, other than that of UTF-8.
bool IsUtf8(std::string_view file);

}  // namespace ZOTDam
