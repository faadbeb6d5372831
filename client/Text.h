// Converts strings: the library uses UTF-16, the command line and all output use UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace ZOTDam::Client {

std::string ToUtf8(std::wstring_view text);
std::wstring ToUtf16(std::string_view utf8);

// Compares two strings. The case of ASCII letters is ignored.
bool IsSameIgnoringCase(std::string_view a, std::string_view b);

}  // namespace ZOTDam::Client
