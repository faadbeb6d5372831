// Tests of copying strings to buffers of a fixed size.
#include "platform/FixedText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include "ZOTDam.h"

namespace ZOTDam::Test {

namespace {

struct FixedText {
    const char* name;
    std::wstring text;
    std::wstring copied;
};

void PrintTo(const FixedText& fixedText, std::ostream* out) {
    *out << fixedText.name;
}

std::wstring X(std::size_t count) {
    std::wstring text(count, L'x');
    return text;
}

constexpr wchar_t Pair[] = L"\xd83d\xde00";
constexpr wchar_t High[] = L"\xd83d";
constexpr wchar_t Low[] = L"\xde00";

std::vector<FixedText> FixedTexts() {
    return {
        {"NoText", L"", L""},
        {"OneCodeUnit", L"x", L"x"},
        {"ATextWithAZero", {L"a\0b", 3}, {L"a\0b", 3}},
        {"OneCodeUnitLessThanFits", X(258), X(258)},
        {"AsMuchAsFits", X(259), X(259)},
        {"OneCodeUnitMore", X(260), X(259)},
        {"FarMore", X(100000), X(259)},
        {"APairThatJustFits", X(257) + Pair, X(257) + Pair},
        {"APairThatEndsAtTheCut", X(257) + Pair + L"x", X(257) + Pair},
        {"APairAcrossTheCut", X(258) + Pair, X(258)},
        {"APairAcrossTheCutAndMore", X(258) + Pair + Pair, X(258)},
        {"PairsOnlyAcrossTheCut", L"x" + std::wstring{Pair} + X(255) + Pair + Pair,
         L"x" + std::wstring{Pair} + X(255)},
        {"APairAfterTheCut", X(259) + Pair, X(259)},
        {"HalfAPairBeforeTheCut", X(258) + High + L"x", X(258)},
        {"HalfAPairThatJustFits", X(258) + High, X(258) + High},
        {"TheOtherHalfBeforeTheCut", X(258) + Low + L"x", X(258) + Low},
    };
}

}  // namespace

class CopyTruncatedTest : public testing::TestWithParam<FixedText> {};

INSTANTIATE_TEST_SUITE_P(, CopyTruncatedTest, testing::ValuesIn(FixedTexts()),
                         [](const auto& info) { return info.param.name; });

TEST_P(CopyTruncatedTest, CopyIsTruncatedBetweenCharactersAndTerminated) {
    const std::wstring& copied = GetParam().copied;
    wchar_t buffer[TextCapacity + 1];
    std::ranges::fill(buffer, L'#');
    CopyTruncated(GetParam().text, buffer);
    EXPECT_EQ(std::wstring(buffer, copied.size()), copied);
    EXPECT_EQ(buffer[copied.size()], L'\0');
    EXPECT_TRUE(
        std::all_of(buffer + copied.size() + 1, std::end(buffer), [](wchar_t unit) { return unit == L'#'; }));
}

}  // namespace ZOTDam::Test
