#include "Text.h"

#include <windows.h>

#include "platform/AsciiCase.h"

namespace ZOTDam::Client {

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

}  // namespace ZOTDam::Client
