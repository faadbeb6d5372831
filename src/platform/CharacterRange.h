#pragma once

#include <algorithm>
#include <cstddef>

namespace ZOTDam {

// A range of characters that includes `first` and `last`.
struct CharacterRange {
    char32_t first;
    char32_t last;
};

template <std::size_t Size>
bool IsIn(const CharacterRange (&ranges)[Size], char32_t character) noexcept {
    return std::ranges::any_of(ranges, [character](const CharacterRange& range) {
        return range.first <= character && character <= range.last;
    });
}

}  // namespace ZOTDam
