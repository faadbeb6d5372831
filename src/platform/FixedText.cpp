#include "platform/FixedText.h"

#include <windows.h>

#include <algorithm>

#include "ZOTDam.h"

namespace ZOTDam {

void CopyTruncated(std::wstring_view text, wchar_t* buffer) noexcept {
    if (text.size() >= TextCapacity) {
        text.remove_suffix(text.size() - (TextCapacity - 1));
        if (IS_HIGH_SURROGATE(text.back()))
            text.remove_suffix(1);
    }
    *std::copy(text.begin(), text.end(), buffer) = L'\0';
}

}  // namespace ZOTDam
