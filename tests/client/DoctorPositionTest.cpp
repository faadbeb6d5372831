// Tests of the lines and columns in the findings of zotdamctl doctor.
#include "client/DoctorTest.h"

namespace ZOTDam::Test {

// Each test writes a defaults file with one unknown element, and checks the reported place.
class DoctorPositionTest : public DoctorTest {
protected:
    void ExpectPlace(std::string_view content, int line, int column) {
        WriteDefaults(content);
        std::filesystem::remove(installation.UserFile());
        const Json findings = FindingsWith(1);
        ASSERT_EQ(findings.size(), 1u) << findings;
        EXPECT_EQ(findings[0]["line"], line);
        EXPECT_EQ(findings[0]["column"], column);
    }
};

TEST_F(DoctorPositionTest, PlaceIsStartOfTag) {
    ExpectPlace("<ZOTDefault>\n  <Functions/>\n  <Other\n    A=\"1\"\n  />\n</ZOTDefault>", 3, 3);
}

TEST_F(DoctorPositionTest, LinesMayEndWithCarriageReturns) {
    ExpectPlace("<ZOTDefault>\r\n<Functions/>\r\n<Other/></ZOTDefault>", 3, 1);
    ExpectPlace("<ZOTDefault>\r<Functions/>\r\r<Other/></ZOTDefault>", 4, 1);
}

TEST_F(DoctorPositionTest, TagsInCommentsAndDeclarationsAreSkipped) {
    ExpectPlace(
        "<?xml version='1.0'?>\n<!-- <A>\n<B/> - ><Functions> -->\n<ZOTDefault><?pi <A> ?>\n"
        "<Functions/><Other/></ZOTDefault>",
        5, 13);
}

TEST_F(DoctorPositionTest, TagsInCharacterDataAreSkipped) {
    ExpectPlace("<ZOTDefault><![CDATA[<A>\n]]]><Functions/>\n<Other/></ZOTDefault>", 3, 1);
}

TEST_F(DoctorPositionTest, AttributeValuesMayContainEndOfTag) {
    ExpectPlace("<ZOTDefault>\n<CommonSettings A='/>' B=\"'>\" C='\">'/>\n<Functions/><Other/></ZOTDefault>",
                3, 13);
}

TEST_F(DoctorPositionTest, ColumnsCountCharactersOfUtf8) {
    ExpectPlace("\xEF\xBB\xBF<ZOTDefault>größe\U0001F50B<Functions/><Other/></ZOTDefault>", 1, 31);
}

TEST_F(DoctorPositionTest, Utf16FilesHavePlaces) {
    const std::wstring text = L"\xFEFF<ZOTDefault>größe\n<Functions/>ß<Other/></ZOTDefault>";
    std::string bytes{reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)};
    ExpectPlace(bytes, 2, 14);
    for (std::size_t i = 0; i < bytes.size(); i += 2)
        std::swap(bytes[i], bytes[i + 1]);
    ExpectPlace(bytes, 2, 14);
}

TEST_F(DoctorPositionTest, ElementsAfterDeeplyNestedOnesHaveTheirPlaces) {
    std::string startTags;
    std::string endTags;
    for (int depth = 0; depth < 50; ++depth) {
        startTags += "<A>";
        endTags += "</A>";
    }
    WriteDefaults("<ZOTDefault>\n" + startTags + endTags + "\n<Functions/><Other/></ZOTDefault>");
    std::filesystem::remove(installation.UserFile());
    const Json findings = FindingsWith(1);
    ASSERT_EQ(findings.size(), 2u);
    EXPECT_EQ(findings[1]["line"], 3);
    EXPECT_EQ(findings[1]["column"], 13);
}

}  // namespace ZOTDam::Test
