// Checks for the characters that XML 1.0 allows. Some DOMs accept any character and then save a file that no
// parser can read.
#pragma once

#include <string_view>

namespace ZOTDam {

// Returns whether a string is an XML name without a colon.
bool IsNcName(std::wstring_view text) noexcept;

// Returns whether an XML document may contain the string. Unpaired surrogates are not allowed.
bool IsXmlText(std::wstring_view text) noexcept;

}  // namespace ZOTDam
