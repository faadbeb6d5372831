#include "Text.h"

#include <windows.h>

#include "platform/AsciiCase.h"
#include "platform/CharacterRange.h"

namespace ZOTDam::Client {

namespace {

constexpr CharacterRange WideCharacters[] = {
    {0x1100, 0x115F}, {0x2E80, 0x303E}, {0x3041, 0xA4CF}, {0xAC00, 0xD7A3},
    {0xF900, 0xFAFF}, {0xFE30, 0xFE6F}, {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6},
};

constexpr CharacterRange CombiningMarks[] = {
    {0x0300, 0x036F}, {0x200B, 0x200F}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}};

// Counts each surrogate as one column, so a pair takes two: with few exceptions, characters beyond the basic
// plane are ideographs and pictures, which are two columns wide.
std::size_t WidthOf(wchar_t unit) {
    if (IsIn(CombiningMarks, unit))
        return 0;
    return IsIn(WideCharacters, unit) ? 2 : 1;
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
    const int units = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), units, utf8.data(), size, nullptr, nullptr);
    return utf8;
}

std::wstring ToUtf16(std::string_view utf8) {
    const int bytes = static_cast<int>(utf8.size());
    const int size = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, text.data(), size);
    return text;
}

bool IsSameIgnoringCase(std::string_view a, std::string_view b) {
    return ToLowerAscii(std::string{a}) == ToLowerAscii(std::string{b});
}

std::size_t DisplayWidth(std::string_view utf8) {
    std::size_t width = 0;
    for (const wchar_t unit : ToUtf16(utf8))
        width += WidthOf(unit);
    return width;
}

}  // namespace ZOTDam::Client
