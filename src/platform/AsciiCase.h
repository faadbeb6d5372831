#pragma once

namespace ZOTDam {

template <class Character>
constexpr Character ToLowerAsciiLetter(Character character) noexcept {
    return character >= 'A' && character <= 'Z' ? static_cast<Character>(character + 'a' - 'A') : character;
}

// Returns the string with its ASCII letters in lower case. _wcsicmp compares strings in this way.
template <class String>
String ToLowerAscii(String string) {
    for (auto& character : string)
        character = ToLowerAsciiLetter(character);
    return string;
}

}  // namespace ZOTDam
