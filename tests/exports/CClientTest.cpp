// Tests of the eighteen exports through a client in C that uses none of the library's headers.
#include "exports/CClient.h"
#include "support/DataFiles.h"
#include "support/FunctionDefaultsTest.h"
#include "support/SettingsTest.h"

namespace ZOTDam::Test {

namespace {

constexpr char Catalogue[] = R"(<R><Functions>
    <Function ID="1" Type="2" Flag="3" Name="one" Group="Group1Name">
        <Display><AC><DisplayItem Option="10" Label="off"/><DisplayItem Option="11" Label="on"/></AC>
            <DC><DisplayItem Option="20" Label="low"/></DC></Display>
        <Commands><CommandItem ID="31" Event="32" Flag="33" State="34" ParamIndex1="0" ParamIndex2="1" SpecInfo1="x"/>
            <CommandItem ID="35"/></Commands>
        <Default ACParamIndex="0" DCParamIndex="0"/></Function>
    <Function ID="2" Name="two"><Display/><Commands/><Default ACParamIndex="4" DCParamIndex="5"/></Function>
</Functions><CommonSettings Old="1"/></R>)";

constexpr char Base[] = R"(<R><Functions>
    <Function ID="1" Type="2" Flag="3" Name="one" Group="g"><Display/><Commands>
        <CommandFamily><CommandItem ID="1" SpecInfo1="a"/><CommandItem ID="2" Event="3" State="4" SpecInfo1="b"/>
        </CommandFamily>
        <CommandFamily><CheckExistItem CheckFlag="3" Param1="c" Param4="d"/></CommandFamily></Commands></Function>
    <Function ID="6"><Default/><Commands/></Function></Functions>
    <SpecSchemes><SchemeItem SchemeGUID="381b4222-f694-41f0-9685-ff5bb260df2e">
        <SubGroup SubGroupGUID="00000001-0002-0000-0000-000000000000">
            <PowerSetting PowerSettingGUID="00000003-0004-0000-0000-000000000000" ACValue="5" DCValue="6"/>
            <PowerSetting PowerSettingGUID="00000007-0008-0000-0000-000000000000" ACValue="9" DCValue="10"/></SubGroup>
        <SubGroup SubGroupGUID="0000000b-000c-0000-0000-000000000000"/></SchemeItem></SpecSchemes>
    <CommonSettings Beep="loud"/></R>)";

std::vector<CClientParam> ParamsUpTo(std::int32_t last) {
    std::vector<CClientParam> params;
    for (std::int32_t id = 1; id <= last; ++id)
        params.push_back({id, 10 * id, -id});
    return params;
}

}  // namespace

class CClientTest : public SettingsTest {
protected:
    CClientTest() {
        WriteDefaults(Catalogue);
        WriteBase(Base);
        input.scheme = Balanced;
        input.otherScheme = HighPerformance;
        input.recordCount = 2;
    }

    std::string Call(const char* exportName) {
        CClientOutput output = {};
        CClientCall(Dll().Handle(), exportName, &input, &output);
        return output.text;
    }

    std::string Store(const std::vector<CClientParam>& params, CClientShape shape) {
        input.params = params.data();
        input.paramCount = params.size();
        input.shape = shape;
        return Call("SetParameter");
    }

    const ComScope com;
    CClientInput input = {};
};

// ---- Output ----

TEST_F(CClientTest, CClientCountsFunctions) {
    EXPECT_EQ(Call("GetFuncCount"), "2\n");
}

TEST_F(CClientTest, CClientWalksFunctionLists) {
    EXPECT_EQ(Call("GetFunctionInfo"),
              "1: 2 3 \"one\" \"Group1Name\" AC (10 \"off\") (11 \"on\") DC (20 \"low\")\n"
              "2: 2 3 \"two\" \"Group1Name\" AC DC\n"
              "true\n");
}

TEST_F(CClientTest, CClientWalksBaseCatalogueLists) {
    const std::string second = "6: 2 3 \"one\" \"g\" Default\ntrue\n";
    EXPECT_EQ(Call("GetFunctionBase"),
              "1: 2 3 \"one\" \"g\" Display family (1 0 0 0 0 0 \"a\") (2 3 4 0 0 0 \"b\")"
              " family check (3 \"c\" \"\" \"\" \"d\")\n" +
                  second);
    EXPECT_EQ(Call("GetFunctionBaseUnSupported"), second);
}

TEST_F(CClientTest, CClientWalksSpecSchemeLists) {
    EXPECT_EQ(Call("GetSpecScheme"),
              " 381b4222-f694 00000001-0002 { 00000003-0004 = 5 6 00000007-0008 = 9 10 }"
              " 0000000b-000c { }\ntrue\n");
}

TEST_F(CClientTest, CClientReadsParameters) {
    EXPECT_EQ(Call("GetParameterDefault"), "1: 0 0\n2: 4 5\ntrue\n");
    EXPECT_EQ(Call("GetParameter"), "1: 0 0\n2: 4 5\ntrue\n");
}

TEST_F(CClientTest, CClientReadsCommands) {
    EXPECT_EQ(Call("GetCommandInfo"), " (31 32 34 10 20 33 \"x\")\n (35 32 34 10 20 33 \"x\")\ntrue\n");
}

TEST_F(CClientTest, CClientReadsCurrentValues) {
    EXPECT_EQ(Call("GetFuncCurValue"), "-1: -1 -1\nfalse\n");
    EXPECT_EQ(Call("TEVGetParam"), "true\n");
    EXPECT_EQ(Call("GetFuncCurValue"), "1: 10 20\ntrue\n");
    input.number = 1;
    EXPECT_EQ(Call("GetFuncCurValue"), "2: -1 -1\ntrue\n");
}

TEST_F(CClientTest, CClientReadsDifferences) {
    input.number = 1;
    EXPECT_EQ(Call("GetDiffFuncList"), " \"\" \"\"\nfalse\n");
    input.scheme = HighPerformance;
    EXPECT_EQ(Store({{1, 1, 0}}, CClientBalanced), "true\n");
    input.scheme = Balanced;
    EXPECT_EQ(Call("GetDiffFuncList"), " \"- one\n\r\" \"\n\r\"\ntrue\n");
}

TEST_F(CClientTest, CClientReadsAndWritesCommonSettings) {
    input.name = L"Beep";
    input.value = L"soft";
    EXPECT_EQ(Call("GetCommonSetting"), " \"loud\"\ntrue\n");
    EXPECT_EQ(Call("SetCommonSetting"), "true\n");
    EXPECT_EQ(Call("GetCommonSetting"), " \"soft\"\ntrue\n");
    EXPECT_EQ(Call("InitCommonSetting"), "true\n");
    EXPECT_NE(Defaults().find("<CommonSettings Beep=\"loud\"/>"), std::string::npos);
}

TEST_F(CClientTest, CClientResetsSettings) {
    EXPECT_EQ(Store({{1, 1, 1}}, CClientBalanced), "true\n");
    EXPECT_EQ(Call("ResetDefault"), "true\n");
    EXPECT_EQ(Call("ResetDefault"), "false\n");
}

TEST_F(CClientTest, CClientCallAfterExitFails) {
    EXPECT_EQ(Call("ZOTDamExit"), "true\n");
    EXPECT_EQ(Call("GetFunctionInfo"), "false\n");
}

// ---- Input ----

class CClientMapTest : public CClientTest, public testing::WithParamInterface<CClientShape> {};

INSTANTIATE_TEST_SUITE_P(, CClientMapTest,
                         testing::Values(CClientBalanced, CClientAscending, CClientDescending));

TEST_P(CClientMapTest, MapIsStoredForEveryTreeShape) {
    WriteDefaults(TwoFunctions);
    for (const std::int32_t count : {1, 2, 3, 7, 64}) {
        std::string stored = count == 1 ? "1: 10 -1\n2: 4 5\n" : "";
        for (std::int32_t id = 1; count > 1 && id <= count; ++id)
            stored += std::to_string(id) + ": " + std::to_string(10 * id) + " " + std::to_string(-id) + "\n";
        EXPECT_EQ(Store(ParamsUpTo(count), GetParam()), "true\n");
        EXPECT_EQ(Call("GetParameter"), stored + "true\n");
    }
}

TEST_P(CClientMapTest, EmptyMapIsRejected) {
    EXPECT_EQ(Store({}, GetParam()), "false\n");
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(CClientTest, CClientReplacesFunctionsWithNodes) {
    const XmlTree nodes = XmlTree::OfText(L"<R><Display/><Default A=\"1\"/></R>");
    const auto display = nodes.Find(L"//Display");
    const auto defaults = nodes.Find(L"//Default");
    input.displayNode = display.get();
    input.defaultNode = defaults.get();
    WriteDefaults(TwoFunctions);
    EXPECT_EQ(Call("AddFunctionDefault"), "true\n");
    EXPECT_EQ(
        Defaults(),
        SavedXml{OldDefaults(WrittenWith(1, WrittenCommand(11) + WrittenCommand(12) + WrittenCommand(13),
                                         "<Display/><Default A=\"1\"/>") +
                             WrittenWith(2, WrittenCommand(21)))});
}

TEST_F(CClientTest, CClientReplacesFunctionsWithoutNodes) {
    WriteDefaults(TwoFunctions);
    input.recordCount = 1;
    EXPECT_EQ(Call("AddFunctionDefault"), "true\n");
    EXPECT_EQ(
        Defaults(),
        SavedXml{OldDefaults(WrittenWith(1, WrittenCommand(11) + WrittenCommand(12) + WrittenCommand(13)))});
}

TEST_F(CClientTest, EmptyFunctionListIsRejected) {
    input.recordCount = 0;
    EXPECT_EQ(Call("AddFunctionDefault"), "false\n");
    EXPECT_EQ(Defaults(), Catalogue);
}

}  // namespace ZOTDam::Test
