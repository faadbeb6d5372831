#include "DisplayWidth.h"

#include <string>

#include "CharacterWidths.h"
#include "Text.h"

namespace ZOTDam::Client {

namespace {

constexpr char32_t Joiner = 0x200D;
constexpr char32_t EmojiPresentation = 0xFE0F;
constexpr CharacterRange SkinTones[] = {{0x1F3FB, 0x1F3FF}};

std::u32string ToCharacters(std::wstring_view text) {
    std::u32string characters;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t character = text[i];
        const bool isPair = (character & 0xFC00) == 0xD800 && i + 1 < text.size();
        if (isPair)
            character = 0x10000 + ((character & 0x3FF) << 10) + (text[++i] & 0x3FF);
        characters += character;
    }
    return characters;
}

std::size_t WidthOf(char32_t character) {
    if (IsIn(ZeroWidthCharacters, character))
        return 0;
    return IsIn(WideCharacters, character) ? 2 : 1;
}

}  // namespace

std::size_t DisplayWidth(std::string_view utf8) {
    std::size_t width = 0;
    char32_t previous = 0;
    for (const char32_t character : ToCharacters(ToUtf16(utf8))) {
        const bool isJoined = previous == Joiner || (previous != 0 && IsIn(SkinTones, character));
        if (character == EmojiPresentation)
            width += previous != 0 && WidthOf(previous) == 1 ? 1 : 0;
        else if (!isJoined)
            width += WidthOf(character);
        previous = character;
    }
    return width;
}

}  // namespace ZOTDam::Client
