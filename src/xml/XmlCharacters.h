// Checks of names, and of the characters that all parsers of XML 1.0 accept. Some DOMs accept any character
// and then save a file that no parser can read.
#pragma once

#include <string_view>

namespace ZOTDam {

// Returns whether a string is an XML name without a colon, in every edition of XML 1.0.
bool IsNcName(std::wstring_view text) noexcept;

// Returns whether an attribute with this name declares a namespace. Some DOMs list such declarations among
// the attributes. They are not settings and cannot be removed.
bool IsNamespaceDeclaration(std::wstring_view attributeName) noexcept;

// Returns whether an XML document may contain the string. Unpaired surrogates are not allowed.
bool IsXmlText(std::wstring_view text) noexcept;

}  // namespace ZOTDam
