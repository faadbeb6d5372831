// Tests of SetParameter: the maps that it accepts, and the user settings file that it writes.
#include <windows.h>

#include <algorithm>
#include <limits>
#include <random>

#include "support/ClientMap.h"
#include "support/DataFiles.h"
#include "support/ExportTest.h"

namespace ZOTDam::Test {

class SchemeWritingTest : public ExportTest {
protected:
    // Writes user settings with one scheme that has the given functions.
    void WriteScheme(const std::string& functions) const {
        WriteUserSettings(OldUserFile(OldScheme(BalancedText, functions)));
    }
    static std::string SchemeFile(const std::string& functions) {
        return OldUserFile(OldScheme(BalancedText, functions));
    }
    static std::string NewSchemeFile(const std::string& functions) {
        return NewUserFile(NewScheme(BalancedText, functions));
    }
    bool SetParameter(const ParamMapHolder* holder) { return Dll().SetParameter(&Balanced, holder); }
    using ExportTest::SetParameter;
};

TEST_F(SchemeWritingTest, NewFileContainsDeclarationRootSchemeAndFunction) {
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(
        UserSettings(),
        SavedXml{"<?xml version='1.0' encoding='UTF-8'?>\n<OrloPowerCfg><PowerSchemes>"
                 "<PowerScheme GUID=\"381b4222-f694-41f0-9685-ff5bb260df2e\">\n\t"
                 "<Function ID=\"1\" ACParamIndex=\"5\" DCParamIndex=\"6\">\n\t</Function></PowerScheme>"
                 "</PowerSchemes></OrloPowerCfg>\n"});
}

TEST_F(SchemeWritingTest, NewSchemeIsAppendedAfterOthers) {
    const std::string other = OldScheme(HighPerformanceText, OldFunction(1, 2, 3));
    WriteUserSettings(OldUserFile(other));
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(), SavedXml{OldUserFile(other + NewScheme(BalancedText, NewFunction(1, 5, 6)))});
}

TEST_F(SchemeWritingTest, NewSchemeIsWrittenByAscendingSignedId) {
    EXPECT_TRUE(
        SetParameter(Balanced, {{10, {1, 1}}, {-1, {2, 2}}, {0, {3, 3}}, {9, {4, 4}}, {-20, {5, 5}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{NewSchemeFile(NewFunction(-20, 5, 5) + NewFunction(-1, 2, 2) + NewFunction(0, 3, 3) +
                                     NewFunction(9, 4, 4) + NewFunction(10, 1, 1))});
}

TEST_F(SchemeWritingTest, StoredFunctionsAreUpdatedAndNewOnesAppended) {
    WriteScheme(OldFunction(5, 1, 1) + OldFunction(9, 2, 2));
    EXPECT_TRUE(SetParameter(Balanced, {{3, {30, 31}}, {5, {50, 51}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{SchemeFile(OldFunction(5, 50, 51) + OldFunction(9, 2, 2) + NewFunction(3, 30, 31))});
}

TEST_F(SchemeWritingTest, NewFunctionsAreAppendedByAscendingId) {
    WriteScheme(OldFunction(5, 1, 1));
    EXPECT_TRUE(SetParameter(Balanced, {{8, {8, 8}}, {-2, {2, 2}}, {7, {7, 7}}}));
    EXPECT_EQ(UserSettings(), SavedXml{SchemeFile(OldFunction(5, 1, 1) + NewFunction(-2, 2, 2) +
                                                  NewFunction(7, 7, 7) + NewFunction(8, 8, 8))});
}

TEST_F(SchemeWritingTest, ExtremeNumbersAreWrittenInDecimal) {
    constexpr auto min = std::numeric_limits<std::int32_t>::min();
    constexpr auto max = std::numeric_limits<std::int32_t>::max();
    EXPECT_TRUE(SetParameter(Balanced, {{min, {-1, max}}, {max, {min, 0}}}));
    EXPECT_EQ(UserSettings(), SavedXml{NewSchemeFile(NewFunction(min, -1, max) + NewFunction(max, min, 0))});
    EXPECT_NE(UserSettings().find("ID=\"-2147483648\" ACParamIndex=\"-1\" DCParamIndex=\"2147483647\""),
              std::string::npos);
}

TEST_F(SchemeWritingTest, EveryDuplicateOfFunctionIsUpdated) {
    WriteScheme(OldFunction(5, 1, 1) + OldFunction(6, 1, 1) + OldFunction(5, 2, 2));
    EXPECT_TRUE(SetParameter(Balanced, {{5, {50, 51}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{SchemeFile(OldFunction(5, 50, 51) + OldFunction(6, 1, 1) + OldFunction(5, 50, 51))});
}

TEST_F(SchemeWritingTest, OtherAttributesKeepTheirPlaces) {
    WriteScheme(R"(<Function A="a" DCParamIndex="1" ID="5" B="b" ACParamIndex="1" C="c"/>)");
    EXPECT_TRUE(SetParameter(Balanced, {{5, {50, 51}}}));
    EXPECT_EQ(
        UserSettings(),
        SavedXml{SchemeFile(R"(<Function A="a" DCParamIndex="51" ID="5" B="b" ACParamIndex="50" C="c"/>)")});
}

TEST_F(SchemeWritingTest, MissingValuesAreAddedAcBeforeDc) {
    WriteScheme(R"(<Function ID="5"/>)");
    EXPECT_TRUE(SetParameter(Balanced, {{5, {50, 51}}}));
    EXPECT_EQ(UserSettings(), SavedXml{SchemeFile(OldFunction(5, 50, 51))});
}

TEST_F(SchemeWritingTest, ChildrenOfUpdatedFunctionAreKept) {
    WriteScheme(R"(<Function ID="5" ACParamIndex="1" DCParamIndex="1"><Note>kept</Note></Function>)");
    EXPECT_TRUE(SetParameter(Balanced, {{5, {50, 51}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{SchemeFile(
                  R"(<Function ID="5" ACParamIndex="50" DCParamIndex="51"><Note>kept</Note></Function>)")});
}

TEST_F(SchemeWritingTest, StoredIdIsParsedAndItsTextKept) {
    WriteScheme(R"(<Function ID=" +5x" ACParamIndex="1" DCParamIndex="1"/>)");
    EXPECT_TRUE(SetParameter(Balanced, {{5, {50, 51}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{SchemeFile(R"(<Function ID=" +5x" ACParamIndex="50" DCParamIndex="51"/>)")});
}

TEST_F(SchemeWritingTest, IdWithoutDigitsIsZero) {
    WriteScheme(R"(<Function ID="abc" ACParamIndex="1" DCParamIndex="1"/>)");
    EXPECT_TRUE(SetParameter(Balanced, {{0, {50, 51}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{SchemeFile(R"(<Function ID="abc" ACParamIndex="50" DCParamIndex="51"/>)")});
}

TEST_F(SchemeWritingTest, GuidIsComparedIgnoringCase) {
    const std::string upper = "381B4222-F694-41F0-9685-FF5BB260DF2E";
    WriteUserSettings(OldUserFile(OldScheme(upper, OldFunction(1, 2, 3))));
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(), SavedXml{OldUserFile(OldScheme(upper, OldFunction(1, 5, 6)))});
}

TEST_F(SchemeWritingTest, GuidWithBracesDoesNotMatch) {
    const std::string braced = OldScheme("{" + std::string{BalancedText} + "}", OldFunction(1, 2, 3));
    WriteUserSettings(OldUserFile(braced));
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(), SavedXml{OldUserFile(braced + NewScheme(BalancedText, NewFunction(1, 5, 6)))});
}

TEST_F(SchemeWritingTest, FirstSchemeWithSameGuidIsUpdated) {
    const std::string second = OldScheme(BalancedText, OldFunction(1, 8, 9));
    WriteUserSettings(OldUserFile(OldScheme(BalancedText, OldFunction(1, 2, 3)) + second));
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(), SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(1, 5, 6)) + second)});
}

TEST_F(SchemeWritingTest, SchemeWithoutGuidHidesLaterSchemes) {
    const std::string hidden = "<PowerScheme/>" + OldScheme(BalancedText, OldFunction(1, 2, 3));
    WriteUserSettings(OldUserFile(hidden));
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(), SavedXml{OldUserFile(hidden + NewScheme(BalancedText, NewFunction(1, 5, 6)))});
}

TEST_F(SchemeWritingTest, SchemeWithoutGuidDoesNotHideEarlierSchemes) {
    WriteUserSettings(OldUserFile(OldScheme(BalancedText, OldFunction(1, 2, 3)) + "<PowerScheme/>"));
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(1, 5, 6)) + "<PowerScheme/>")});
}

TEST_F(SchemeWritingTest, NestedFunctionsAreIgnored) {
    const std::string nested = "<Group>" + OldFunction(1, 2, 3) + "</Group>";
    WriteScheme(nested);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(), SavedXml{SchemeFile(nested + NewFunction(1, 5, 6))});
}

TEST_F(SchemeWritingTest, FirstFunctionWithoutIdPreventsSave) {
    const std::string file =
        SchemeFile(R"(<Function ACParamIndex="1" DCParamIndex="1"/>)" + OldFunction(5, 1, 1));
    WriteUserSettings(file);
    EXPECT_TRUE(SetParameter(Balanced, {{5, {50, 51}}}));
    EXPECT_EQ(UserSettings(), file);
}

TEST_F(SchemeWritingTest, LaterFunctionWithoutIdPreventsSave) {
    const std::string file = SchemeFile(OldFunction(5, 1, 1) + "<Function/>");
    WriteUserSettings(file);
    EXPECT_TRUE(SetParameter(Balanced, {{5, {50, 51}}}));
    EXPECT_EQ(UserSettings(), file);
}

TEST_F(SchemeWritingTest, ChangesOfOtherProgramsAreKept) {
    WriteScheme(OldFunction(1, 2, 3));
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    WriteScheme(OldFunction(4, 2, 3));
    EXPECT_TRUE(SetParameter(Balanced, {{1, {7, 8}}}));
    EXPECT_EQ(UserSettings(), SavedXml{SchemeFile(OldFunction(4, 2, 3) + NewFunction(1, 7, 8))});
}

TEST_F(SchemeWritingTest, RepeatedWriteCreatesNoDuplicates) {
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    const std::string file = UserSettings();
    EXPECT_EQ(file.find("<PowerScheme "), file.rfind("<PowerScheme "));
    EXPECT_EQ(file.find("<Function "), file.rfind("<Function "));
}

TEST_F(SchemeWritingTest, MissingDefaultsFileDoesNotPreventSave) {
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_FALSE(std::filesystem::exists(installation.DefaultsFile()));
    EXPECT_EQ(UserSettings(), SavedXml{NewSchemeFile(NewFunction(1, 5, 6))});
}

TEST_F(SchemeWritingTest, FunctionsMissingInCatalogueAreKept) {
    WriteDefaults(TwoFunctions);
    WriteScheme(OldFunction(77, 7, 7));
    EXPECT_TRUE(SetParameter(Balanced, {{78, {8, 8}}}));
    EXPECT_EQ(UserSettings(), SavedXml{SchemeFile(OldFunction(77, 7, 7) + NewFunction(78, 8, 8))});
}

// ---- Maps as clients build them ----

// The parameter is the order of inserting the ids 1 to 7. Each order results in a tree of a different shape.
class TreeShapeTest : public SchemeWritingTest,
                      public testing::WithParamInterface<std::vector<std::int32_t>> {};

TEST_P(TreeShapeTest, EntriesAreWrittenByAscendingId) {
    std::vector<ClientEntry> entries;
    for (const std::int32_t id : GetParam())
        entries.push_back({id, {id * 10, -id}});
    EXPECT_TRUE(SetParameter(ClientMap{entries}.get()));
    std::string functions;
    for (const std::int32_t id : {1, 2, 3, 4, 5, 6, 7})
        functions += NewFunction(id, id * 10, -id);
    EXPECT_EQ(UserSettings(), SavedXml{NewSchemeFile(functions)});
}

INSTANTIATE_TEST_SUITE_P(RightChain, TreeShapeTest, testing::Values(std::vector{1, 2, 3, 4, 5, 6, 7}));
INSTANTIATE_TEST_SUITE_P(LeftChain, TreeShapeTest, testing::Values(std::vector{7, 6, 5, 4, 3, 2, 1}));
INSTANTIATE_TEST_SUITE_P(Balanced, TreeShapeTest, testing::Values(std::vector{4, 2, 6, 1, 3, 5, 7}));
INSTANTIATE_TEST_SUITE_P(ZigzagFromTheLeft, TreeShapeTest, testing::Values(std::vector{1, 7, 2, 6, 3, 5, 4}));
INSTANTIATE_TEST_SUITE_P(ZigzagFromTheRight, TreeShapeTest,
                         testing::Values(std::vector{7, 1, 6, 2, 5, 3, 4}));
INSTANTIATE_TEST_SUITE_P(RootWithoutLeftChild, TreeShapeTest,
                         testing::Values(std::vector{1, 5, 3, 2, 4, 7, 6}));
INSTANTIATE_TEST_SUITE_P(RootWithoutRightChild, TreeShapeTest,
                         testing::Values(std::vector{7, 3, 5, 4, 6, 1, 2}));

TEST_F(SchemeWritingTest, MapWithOneEntryIsAccepted) {
    EXPECT_TRUE(SetParameter(ClientMap{{{1, {5, 6}}}}.get()));
    EXPECT_EQ(UserSettings(), SavedXml{NewSchemeFile(NewFunction(1, 5, 6))});
}

// The nodes are linked as a red-black tree. Their colours belong to the client, so they may have any value.
TEST_F(SchemeWritingTest, ColoursOfTreeNodesAreIgnored) {
    ParamTreeNode nil{};
    ParamTreeNode one{};
    ParamTreeNode two{};
    ParamTreeNode three{};
    ParamTreeNode four{};
    ParamTreeNode five{};
    nil = {&one, &two, &five, 1, 1, 0, {}};
    two = {&one, &nil, &four, 1, 0, 2, {2, 20}};
    one = {&nil, &two, &nil, 1, 0, 1, {1, 10}};
    four = {&three, &two, &five, 0, 0, 4, {4, 40}};
    three = {&nil, &four, &nil, 'r', 0, 3, {3, 30}};
    five = {&nil, &four, &nil, -1, 0, 5, {5, 50}};
    const ParamMapHolder holder{nullptr, {&nil, 5}};
    EXPECT_TRUE(SetParameter(&holder));
    EXPECT_EQ(UserSettings(),
              SavedXml{NewSchemeFile(NewFunction(1, 1, 10) + NewFunction(2, 2, 20) + NewFunction(3, 3, 30) +
                                     NewFunction(4, 4, 40) + NewFunction(5, 5, 50))});
}

TEST_F(SchemeWritingTest, TenThousandShuffledEntriesAreAccepted) {
    std::vector<ClientEntry> entries;
    std::string stored;
    std::string updated;
    for (std::int32_t id = -5000; id < 5000; ++id) {
        entries.push_back({id, {id + 1, id - 1}});
        stored += NewFunction(id, id + 1, id - 1);
        updated += OldFunction(id, id + 1, id - 1);
    }
    std::shuffle(entries.begin(), entries.end(), std::mt19937{1});
    EXPECT_TRUE(SetParameter(ClientMap{entries}.get()));
    EXPECT_EQ(UserSettings(), SavedXml{NewSchemeFile(stored)});
    EXPECT_TRUE(SetParameter(ClientMap{entries}.get()));
    EXPECT_EQ(UserSettings(), SavedXml{RewrittenUserFile(OldScheme(BalancedText, updated))});
}

TEST_F(SchemeWritingTest, LeftChainOfTenThousandEntriesIsAccepted) {
    std::vector<ClientEntry> entries;
    std::string stored;
    for (std::int32_t id = 0; id < 10000; ++id) {
        entries.push_back({-id, {id, id}});
        stored.insert(0, NewFunction(-id, id, id));
    }
    EXPECT_TRUE(SetParameter(ClientMap{entries}.get()));
    EXPECT_EQ(UserSettings(), SavedXml{NewSchemeFile(stored)});
}

// The memory is protected, so either access would terminate the test program.
TEST_F(SchemeWritingTest, ReadOnlyMapIsAccepted) {
    const ReadOnlyClientMap map{{{2, {3, 4}}, {1, {5, 6}}, {3, {7, 8}}}};
    EXPECT_TRUE(SetParameter(map.get()));
    EXPECT_EQ(UserSettings(),
              SavedXml{NewSchemeFile(NewFunction(1, 5, 6) + NewFunction(2, 3, 4) + NewFunction(3, 7, 8))});
}

TEST_F(SchemeWritingTest, NonzeroCountDoesNotLimitEntries) {
    ClientMap map{{{1, {5, 6}}, {2, {7, 8}}, {3, {9, 9}}}};
    EXPECT_TRUE(SetParameter(map.WithCount(1)));
    EXPECT_EQ(UserSettings(),
              SavedXml{NewSchemeFile(NewFunction(1, 5, 6) + NewFunction(2, 7, 8) + NewFunction(3, 9, 9))});
}

TEST_F(SchemeWritingTest, NonzeroCountOfEmptyMapStoresEmptyScheme) {
    ClientMap map{{}};
    EXPECT_TRUE(SetParameter(map.WithCount(5)));
    EXPECT_EQ(UserSettings(), SavedXml{NewSchemeFile("")});
}

TEST_F(SchemeWritingTest, MapWithZeroCountIsRejectedDespiteLinks) {
    ClientMap map{{{1, {5, 6}}}};
    EXPECT_FALSE(SetParameter(map.WithCount(0)));
    EXPECT_FALSE(std::filesystem::exists(installation.UserFile()));
}

}  // namespace ZOTDam::Test
