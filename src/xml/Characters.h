// What XML 1.0 can carry. Some DOMs take anything and then save a file that no parser reads again.
#pragma once

#include <string_view>

namespace ZOTDam {

// Whether a text is a name without a colon.
bool IsNcName(std::wstring_view text) noexcept;

// Whether a text has only characters that a document may contain. An unpaired surrogate is none.
bool IsXmlText(std::wstring_view text) noexcept;

}  // namespace ZOTDam
