// Attribute values where a number is expected, and the numbers that they are read as.
#pragma once

#include <cstdint>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

namespace ZOTDam::Test {

struct NumberText {
    std::string name;
    std::string text;
    std::int32_t value;
};

inline void PrintTo(const NumberText& number, std::ostream* out) {
    *out << '"' << number.text << "\", which is " << number.value;
}

inline std::vector<NumberText> NumberTexts() {
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();
    return {
        {"Digits", "42", 42},
        {"LeadingZeros", "007", 7},
        {"MinusSign", "-3", -3},
        {"PlusSign", "+5", 5},
        {"NegativeZero", "-0", 0},
        {"LeadingSpaces", "  12", 12},
        {"LeadingTab", "&#9;12", 12},
        {"LeadingLineBreak", "&#13;&#10;-4", -4},
        {"CharacterReference", "&#49;2", 12},
        {"TrailingSpaces", "12  ", 12},
        {"TrailingText", "12abc", 12},
        {"Fraction", "1.9", 1},
        {"Exponent", "1e3", 1},
        {"Hexadecimal", "0x1F", 0},
        {"NoNumber", "abc", 0},
        {"NoText", "", 0},
        {"SignAlone", "-", 0},
        {"TwoSigns", "+-5", 0},
        {"SpaceAfterTheSign", "- 5", 0},
        {"Largest", "2147483647", largest},
        {"OneMoreThanTheLargest", "2147483648", largest},
        {"Smallest", "-2147483648", smallest},
        {"OneLessThanTheSmallest", "-2147483649", smallest},
        {"LargestPlusTheRangeOf32Bits", "6442450943", largest},
        {"FarAboveTheRangeOf64Bits", "184467440737095516170", largest},
        {"FarBelowTheRangeOf64Bits", "-184467440737095516170", smallest},
        {"MoreZerosThanATextFieldHolds", std::string(300, '0') + "5", 5},
        {"MoreSpacesThanATextFieldHolds", std::string(300, ' ') + "-6", -6},
    };
}

}  // namespace ZOTDam::Test
