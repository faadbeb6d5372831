// Texts: UTF-16 as the library gives them, UTF-8 on the command line and in all output.
#pragma once

#include <string>
#include <string_view>

namespace ZOTDam::Client {

std::string ToUtf8(std::wstring_view text);
std::wstring ToUtf16(std::string_view utf8);

// The columns that a text takes on a terminal: two for each ideograph and the like, none for combining marks.
std::size_t DisplayWidth(std::string_view utf8);

}  // namespace ZOTDam::Client
