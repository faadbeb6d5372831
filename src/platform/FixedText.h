#pragma once

#include <string_view>

namespace ZOTDam {

// Copies a text for display into a buffer of TextCapacity units. What does not fit is cut off, but never
// inside a surrogate pair.
void CopyTruncated(std::wstring_view text, wchar_t* buffer) noexcept;

}  // namespace ZOTDam
