// Tests of the characters that XML allows in names and in text.
#include "xml/XmlCharacters.h"

#include <gtest/gtest.h>

#include <cstdint>
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
    {"LatinSupplement", U"\xC0\xD6\xD8\xF6\xF8", U"\xAA\xB5\xBA\xBF\xD7\xF7"},
    {"LatinExtensions", U"\x131\x134\x17E\x180\x2BB\x2C1", U"\x132\x133\x13F\x17F\x218\x2BA\x2C2\x2FF"},
    {"Greek", U"\x386\x388\x3CE\x3F3", U"\x370\x37D\x37F\x387\x3F4\x3FF"},
    {"Cyrillic", U"\x401\x40C\x40E\x4F9", U"\x400\x40D\x4FA"},
    {"Thai", U"\xE01\xE2E\xE30\xE40\xE45", U"\xE2F\xE31\xE46\xE50"},
    {"AdditionalLatin", U"\x1E00\x1E9B\x1EA0\x1EF9", U"\x1E9C\x1E9F\x1EFA\x1FFF"},
    {"LetterlikeSymbols", U"\x2126\x212A\x212B\x212E\x2180\x2182", U"\x2070\x2102\x218F"},
    {"Japanese", U"\x3007\x3021\x3029\x3041\x3094\x30A1\x30FA\x3105\x312C", U"\x3001\x3006\x3095\x312D"},
    {"Ideographs", U"\x4E00\x9FA5", U"\x3400\x4DBF\x9FA6\xA000"},
    {"Hangul", U"\x1100\x11F9\xAC00\xD7A3", U"\x1101\x11FA\xD7A4\xD7FF\xD800\xDFFF\xE000"},
    {"OtherBlocks", U"", U"\x200C\x200D\x2C00\x2FEF\xF900\xFDCF\xFDF0\xFFFD\xFFFF"},
    {"OtherPlanes", U"", U"\x10000\x20000\xEFFFF\xF0000\x10FFFF"},
};

const Border FurtherBorders[] = {
    {"HyphenAndFullStop", U"-.", U",/"},
    {"Digits", U"09", U"/:"},
    {"MiddleDot", U"\xB7\x387", U"\xB6\xB8"},
    {"CombiningMarks", U"\x300\x345\x360\x361\x20D0\x20DC\x20E1", U"\x346\x35F\x362\x20DD\x20E2"},
    {"HebrewMarks", U"\x591\x5A1\x5A3\x5C4", U"\x590\x5A2\x5C5"},
    {"ArabicDigits", U"\x660\x669\x6F0\x6F9", U"\x65F\x66A\x6EF\x6FA"},
    {"Extenders", U"\x2D0\x2D1\x640\xE46\x3005\x3031\x3035\x309D\x30FC\x30FE", U"\x2D2\x3036\x309F\x30FF"},
    {"Ties", U"", U"\x203F\x2040"},
};

const Border TextBorders[] = {
    {"WhiteSpace", U"\t\n\r ", U"\x1\x8\xB\xC\xE\x1F"},
    {"BelowTheSurrogates", U"\xD7FF", U"\xD800\xDBFF"},
    {"AfterTheSurrogates", U"\xE000", U"\xDC00\xDFFF"},
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
    EXPECT_EQ(Count(MayBeginAName), 34515);
}

TEST(NcNameTest, LaterCharactersAllowFurtherRanges) {
    for (const Border& border : StartBorders)
        for (const char32_t character : border.inside)
            EXPECT_TRUE(MayContinueAName(character)) << std::uint32_t{character};
    for (const Border& border : FurtherBorders)
        ExpectBorder(border, MayContinueAName);
    EXPECT_EQ(Count(MayContinueAName), Count(MayBeginAName) + 606);
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

TEST(NcNameTest, SurrogatesAreInvalid) {
    for (const wchar_t* const text : {L"\xd83d\xde00", L"a\xd83d\xde00", L"a\xd83d", L"a\xde00\xd83d"})
        EXPECT_FALSE(IsNcName(text));
    EXPECT_FALSE(
        IsNcName(L"a\xd83d"
                 L"b"));
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
    for (const wchar_t* const text : {L"\xd83d", L"\xde00", L"a\xd83d", L"\xd83d\x61", L"\xde00\xd83d",
                                      L"\xd83d\xd83d\xde00", L"\xd83d\xde00\xde00"})
        EXPECT_FALSE(IsXmlText(text));
}

TEST(XmlTextTest, SurrogatePairBeyondEndIsNotRead) {
    EXPECT_FALSE(IsXmlText({L"a\xd83d\xde00", 2}));
}

}  // namespace ZOTDam::Test
