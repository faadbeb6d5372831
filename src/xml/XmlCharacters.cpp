#include "xml/XmlCharacters.h"

#include <windows.h>

#include "platform/CharacterRange.h"
#include "xml/XmlNameCharacters.h"

namespace ZOTDam {

namespace {

constexpr CharacterRange TextCharacters[] = {
    {0x9, 0xA}, {0xD, 0xD}, {0x20, 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, 0x10FFFF},
};

// Removes the first character from a string and returns it. Returns an unpaired surrogate unchanged.
char32_t RemoveFirstCharacter(std::wstring_view& text) noexcept {
    const wchar_t first = text.front();
    text.remove_prefix(1);
    if (text.empty() || !IS_SURROGATE_PAIR(first, text.front()))
        return first;
    const wchar_t second = text.front();
    text.remove_prefix(1);
    return 0x10000 + ((first - HIGH_SURROGATE_START) << 10) + (second - LOW_SURROGATE_START);
}

}  // namespace

bool IsNcName(std::wstring_view text) noexcept {
    if (text.empty() || !IsIn(NameStartCharacters, RemoveFirstCharacter(text)))
        return false;
    while (!text.empty()) {
        const char32_t character = RemoveFirstCharacter(text);
        if (!IsIn(NameStartCharacters, character) && !IsIn(OtherNameCharacters, character))
            return false;
    }
    return true;
}

bool IsNamespaceDeclaration(std::wstring_view attributeName) noexcept {
    return attributeName == L"xmlns" || attributeName.starts_with(L"xmlns:");
}

bool IsXmlText(std::wstring_view text) noexcept {
    while (!text.empty())
        if (!IsIn(TextCharacters, RemoveFirstCharacter(text)))
            return false;
    return true;
}

}  // namespace ZOTDam
