// Tests of the tables of zotdamctl: columns are aligned in all writing systems.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

class TableTest : public ClientTest {
protected:
    // Writes a function whose option differs between two schemes. The texts are their own keys.
    static std::string FunctionNamed(int id, const std::string& name) {
        return "<Function ID=\"" + std::to_string(id) + "\" Name=\"" + name +
               R"(" Group="G"><Display><AC><DisplayItem Label="One" Option="1"/>)"
               R"(<DisplayItem Label="Two" Option="2"/></AC></Display><Commands/>)"
               R"(<Default ACParamIndex="0" DCParamIndex="0">)"
               R"(<DefaultItem GUID="a1841308-3541-4fab-bc81-f71556f20b4a" ACParamIndex="1" DCParamIndex="0"/>)"
               "</Default></Function>";
    }

    // Checks the space between a name and the next column, which begins after the longest name.
    void ExpectWidth(const std::string& name, std::size_t width) {
        const std::string longest = "LongestName";
        WriteFunctions(FunctionNamed(1, longest) + FunctionNamed(2, name));
        WriteEntries(Entry("Two", "two"));
        const std::string output = Output({L"diff", L"balanced", L"power-saver", L"--ac"});
        const std::size_t longestAt = output.find(longest + "  ");
        const std::size_t nameAt = output.find(name + std::string(longest.size() - width + 2, ' '));
        ASSERT_NE(longestAt, std::string::npos) << output;
        ASSERT_NE(nameAt, std::string::npos) << output;
        EXPECT_NE(output[nameAt + name.size() + longest.size() - width + 2], ' ') << output;
    }
};

TEST_F(TableTest, IdeographsTakeTwoColumns) {
    ExpectWidth("画面", 4);
    ExpectWidth("ｶﾅ", 2);
}

TEST_F(TableTest, CombiningMarksTakeNoColumn) {
    ExpectWidth("สวัสดี", 4);
    ExpectWidth("שָׁלוֹם", 4);
    ExpectWidth("हिन्दी", 3);
    ExpectWidth("e\u0301te\u0301", 3);
}

TEST_F(TableTest, EmojiTakeTwoColumns) {
    ExpectWidth("\U0001F50B", 2);
    ExpectWidth("\u26A1", 2);
    ExpectWidth("\u2600\uFE0F", 2);
    ExpectWidth("\U0001F1E9\U0001F1EA", 2);
}

TEST_F(TableTest, JoinedEmojiTakeTwoColumns) {
    ExpectWidth("\U0001F468\u200D\U0001F469\u200D\U0001F467", 2);
    ExpectWidth("\U0001F44D\U0001F3FD", 2);
}

}  // namespace ZOTDam::Test
