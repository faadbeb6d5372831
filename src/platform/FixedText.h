#pragma once

#include <string_view>

namespace ZOTDam {

// Copies a string and a terminator into a buffer of TextCapacity UTF-16 code units. Truncates a string that
// does not fit, but never inside a surrogate pair.
void CopyTruncated(std::wstring_view text, wchar_t* buffer) noexcept;

}  // namespace ZOTDam
