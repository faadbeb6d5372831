// Tests of the characters that XML allows in names and in text.
#include "xml/XmlCharacters.h"

#include <gtest/gtest.h>

#include <string>

namespace ZOTDam::Test {

namespace {

// Converts a character to UTF-16. A surrogate, which is not a character, is converted to itself.
std::wstring Utf16(char32_t character) {
    if (character < 0x10000)
        return {static_cast<wchar_t>(character)};
    const char32_t rest = character - 0x10000;
    return {static_cast<wchar_t>(0xD800 + (rest >> 10)), static_cast<wchar_t>(0xDC00 + (rest & 0x3FF))};
}

bool MayBeginAName(char32_t character) {
    return IsNcName(Utf16(character));
}

bool MayContinueAName(char32_t character) {
    return IsNcName(L"a" + Utf16(character));
}

bool MayBeText(char32_t character) {
    return IsXmlText(Utf16(character));
}

int Count(bool (*isRight)(char32_t)) {
    int count = 0;
    for (char32_t character = 0; character <= 0x10FFFF; ++character)
        count += isRight(character);
    return count;
}

// The first and last characters of the ranges, and the characters next to them outside the ranges.
struct Border {
    const char* name;
    std::u32string inside;
    std::u32string outside;
};

const Border StartBorders[] = {
    {"LatinLetters", U"AZaz_", U"@[`{^"},
    {"LatinSupplement", U"\xC0\xD6\xD8\xF6\xF8", U"\xBF\xD7\xF7"},
    {"Greek", U"\x2FF\x370\x37D\x37F", U"\x300\x36F\x37E"},
    {"TheLettersBeforePunctuation", U"\x1FFF\x200C\x200D", U"\x2000\x200B\x200E"},
    {"LetterlikeSymbols", U"\x2070\x218F", U"\x206F\x2190"},
    {"EuropeanSupplements", U"\x2C00\x2FEF", U"\x2BFF\x2FF0"},
    {"EastAsia", U"\x3001\xD7FF", U"\x3000\xD800\xDFFF\xE000"},
    {"CompatibilityLetters", U"\xF900\xFDCF\xFDF0\xFFFD", U"\xF8FF\xFDD0\xFDEF\xFFFE\xFFFF"},
    {"OtherPlanes", U"\x10000\xEFFFF", U"\xF0000\x10FFFF"},
};

const Border FurtherBorders[] = {
    {"HyphenAndFullStop", U"-.", U",/"},        {"Digits", U"09", U"/:"},
    {"MiddleDot", U"\xB7", U"\xB6\xB8"},        {"CombiningMarks", U"\x300\x36F", U""},
    {"Ties", U"\x203F\x2040", U"\x203E\x2041"},
};

const Border TextBorders[] = {
    {"WhiteSpace", U"\t\n\r ", U"\x1\x8\xB\xC\xE\x1F"},
    {"BelowTheSurrogates", U"\xD7FF", U"\xD800\xDBFF"},
    {"BehindTheSurrogates", U"\xE000", U"\xDC00\xDFFF"},
    {"EndOfTheFirstPlane", U"\xFFFD", U"\xFFFE\xFFFF"},
    {"OtherPlanes", U"\x10000\x1FFFE\x1FFFF\x10FFFF", U""},
};

void ExpectBorder(const Border& border, bool (*isRight)(char32_t)) {
    for (const char32_t character : border.inside)
        EXPECT_TRUE(isRight(character)) << border.name << " " << std::uint32_t{character};
    for (const char32_t character : border.outside)
        EXPECT_FALSE(isRight(character)) << border.name << " " << std::uint32_t{character};
}

}  // namespace

TEST(NcNameTest, NameStartsWithLetterOrUnderscore) {
    for (const Border& border : StartBorders)
        ExpectBorder(border, MayBeginAName);
    EXPECT_EQ(Count(MayBeginAName),
              53 + 23 + 31 + 520 + 14 + 7297 + 2 + 288 + 1008 + 43007 + 1232 + 526 + 917504);
}

TEST(NcNameTest, LaterCharactersAllowFurtherRanges) {
    for (const Border& border : StartBorders)
        for (const char32_t character : border.inside)
            EXPECT_TRUE(MayContinueAName(character)) << std::uint32_t{character};
    for (const Border& border : FurtherBorders)
        ExpectBorder(border, MayContinueAName);
    EXPECT_EQ(Count(MayContinueAName), Count(MayBeginAName) + 2 + 10 + 1 + 112 + 2);
}

TEST(NcNameTest, FurtherRangesCannotStartName) {
    for (const Border& border : FurtherBorders)
        for (const char32_t character : border.inside)
            EXPECT_FALSE(MayBeginAName(character)) << std::uint32_t{character};
}

TEST(NcNameTest, EmptyStringIsInvalid) {
    EXPECT_FALSE(IsNcName(L""));
    EXPECT_FALSE(IsNcName({}));
}

TEST(NcNameTest, ColonIsInvalid) {
    for (const wchar_t* const text : {L":", L":a", L"a:", L"a:b"})
        EXPECT_FALSE(IsNcName(text));
}

TEST(NcNameTest, WhiteSpaceIsInvalid) {
    for (const wchar_t* const text : {L" ", L" a", L"a ", L"a b", L"a\t", L"\na"})
        EXPECT_FALSE(IsNcName(text));
}

TEST(NcNameTest, WholeStringIsChecked) {
    EXPECT_TRUE(IsNcName(std::wstring(100000, L'a')));
    EXPECT_FALSE(IsNcName(std::wstring(100000, L'a') + L" "));
    EXPECT_FALSE(IsNcName({L"a\0b", 3}));
    EXPECT_TRUE(IsNcName({L"a b", 1}));
}

TEST(NcNameTest, OnlyWholeSurrogatePairsAreValid) {
    EXPECT_TRUE(
        IsNcName(L"\xd83d\xde00"
                 L"a\xd83d\xde00\xd83d\xde00-"));
    EXPECT_FALSE(IsNcName(L"a\xd83d\xde00\xd83d"));
    EXPECT_FALSE(
        IsNcName(L"a\xd83d"
                 L"b"));
    EXPECT_FALSE(IsNcName(L"a\xde00\xd83d"));
}

TEST(NcNameTest, SurrogatePairBeyondEndIsNotRead) {
    EXPECT_FALSE(IsNcName({L"a\xd83d\xde00", 2}));
    EXPECT_FALSE(IsNcName({L"\xd83d\xde00", 1}));
}

TEST(XmlTextTest, OnlyControlsSurrogatesAndNoncharactersAreInvalid) {
    for (const Border& border : TextBorders)
        ExpectBorder(border, MayBeText);
    EXPECT_EQ(Count(MayBeText), 0x110000 - 29 - 0x800 - 2);
}

TEST(XmlTextTest, EmptyTextIsValid) {
    EXPECT_TRUE(IsXmlText(L""));
    EXPECT_TRUE(IsXmlText({}));
}

TEST(XmlTextTest, NullCharacterIsInvalid) {
    EXPECT_FALSE(IsXmlText({L"\0", 1}));
    EXPECT_FALSE(IsXmlText({L"a\0b", 3}));
}

TEST(XmlTextTest, WholeTextIsChecked) {
    EXPECT_TRUE(IsXmlText(std::wstring(100000, L'a')));
    EXPECT_FALSE(IsXmlText(std::wstring(100000, L'a') + L"\x1"));
    EXPECT_TRUE(IsXmlText({L"a\x1", 1}));
}

TEST(XmlTextTest, OnlyWholeSurrogatePairsAreValid) {
    EXPECT_TRUE(
        IsXmlText(L"a\xd83d\xde00\xd83d\xde00"
                  L"b"));
    for (const wchar_t* const text : {L"\xd83d", L"\xde00", L"a\xd83d",
                                      L"\xd83d"
                                      L"a",
                                      L"\xde00\xd83d", L"\xd83d\xd83d\xde00", L"\xd83d\xde00\xde00"})
        EXPECT_FALSE(IsXmlText(text));
}

TEST(XmlTextTest, SurrogatePairBeyondEndIsNotRead) {
    EXPECT_FALSE(IsXmlText({L"a\xd83d\xde00", 2}));
}

}  // namespace ZOTDam::Test
