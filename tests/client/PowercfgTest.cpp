// Tests of the powercfg names that zotdamctl accepts: aliases of schemes, setacvalueindex, setdcvalueindex.
#include <algorithm>

#include "client/ClientTest.h"

namespace ZOTDam::Test {

class PowercfgTest : public ClientTest {
protected:
    PowercfgTest() { WriteDefaults(ThreeFunctions); }

    Json Parameters(const std::wstring& scheme) const { return IndexesOf({L"params", scheme}); }
};

TEST_F(PowercfgTest, AliasesCommandListsSchemes) {
    EXPECT_EQ(Output({L"aliases"}),
              "GUID                                  Name              Alias\n"
              "381b4222-f694-41f0-9685-ff5bb260df2e  balanced          SCHEME_BALANCED\n"
              "8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c  high-performance  SCHEME_MIN\n"
              "a1841308-3541-4fab-bc81-f71556f20b4a  power-saver       SCHEME_MAX\n");
    EXPECT_EQ(JsonOutput({L"aliases"})["schemes"][1],
              Json({{"scheme", "8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c"},
                    {"schemeName", "high-performance"},
                    {"alias", "SCHEME_MIN"}}));
}

TEST_F(PowercfgTest, AliasIsCaseInsensitive) {
    EXPECT_EQ(JsonOutput({L"params", L"SCHEME_MIN"}), JsonOutput({L"params", L"high-performance"}));
    EXPECT_EQ(JsonOutput({L"params", L"scheme_max"}), JsonOutput({L"params", L"power-saver"}));
    EXPECT_EQ(JsonOutput({L"params", L"Scheme_Balanced"}), JsonOutput({L"params", L"balanced"}));
}

TEST_F(PowercfgTest, UnknownAliasIsRejected) {
    ExpectUnknownScheme({L"params", L"SCHEME_ALL"}, "SCHEME_ALL");
}

// The test cannot select the active scheme. Some systems, such as wine 8, do not report it.
TEST_F(PowercfgTest, CurrentSchemeIsActiveOneOrUnknown) {
    const Json schemes = JsonOutput({L"list"})["schemes"];
    const auto active =
        std::ranges::find_if(schemes, [](const Json& scheme) { return scheme["active"] == true; });
    if (active != schemes.end())
        EXPECT_EQ(JsonOutput({L"params", L"scheme_current"})["scheme"], (*active)["scheme"]);
    else
        ExpectError({L"params", L"scheme_current"}, Failure,
                    "Windows does not report the active power scheme.");
}

TEST_F(PowercfgTest, ListContainsSchemesOfWindowsAndUserSettings) {
    WriteSchemes(OldScheme(BalancedText, OldFunction(1, 5, 6) + OldFunction(2, 5, 6)) +
                 OldScheme("0a1b2c3d-1111-2222-3333-444455556666", OldFunction(1, 5, 6)));
    const Json schemes = JsonOutput({L"list"})["schemes"];
    EXPECT_EQ(schemes[0]["scheme"], BalancedText);
    EXPECT_EQ(schemes[0]["schemeName"], "balanced");
    EXPECT_EQ(schemes[0]["alias"], "SCHEME_BALANCED");
    EXPECT_EQ(schemes[0]["storedCount"], 2);
    EXPECT_EQ(schemes[1]["stored"], false);
    EXPECT_EQ(schemes.back()["scheme"], "0a1b2c3d-1111-2222-3333-444455556666");
    EXPECT_EQ(schemes.back()["stored"], true);
    EXPECT_NE(Output({L"list"}).find("\n  0a1b2c3d-1111-2222-3333-444455556666 "), std::string::npos);
}

TEST_F(PowercfgTest, ListStatesWhyThereAreNoUserSettings) {
    EXPECT_TRUE(Output({L"list"}).ends_with("\n\nThere are no user settings: the user settings file " +
                                            Utf8(installation.UserFile()) + " does not exist.\n"));
    WriteUserSettings("<OrloPowerCfg>");
    EXPECT_TRUE(Output({L"list"}).ends_with(" is not well-formed.\n"));
    WriteBalanced(OldFunction(1, 5, 6));
    EXPECT_EQ(Output({L"list"}).find("There are no user settings"), std::string::npos);
}

TEST_F(PowercfgTest, AcIndexIsSetAndDcIndexKept) {
    EXPECT_EQ(IndexesOf({L"setacvalueindex", L"SCHEME_BALANCED", L"1", L"7", L"--force"}),
              Json({Param(1, 7, 3)}));
    EXPECT_EQ(Parameters(L"balanced"), Json({Param(1, 7, 3), Param(2, 0, 0)}));
}

TEST_F(PowercfgTest, DcIndexIsSetAndAcIndexKept) {
    Output({L"setdcvalueindex", L"high-performance", L"2", L"9", L"--force"});
    EXPECT_EQ(Parameters(L"high-performance"), Json({Param(1, 2, 3), Param(2, 4, 9)}));
}

TEST_F(PowercfgTest, UnknownFunctionIsAnError) {
    ExpectError({L"setacvalueindex", L"balanced", L"3", L"0"}, Failure,
                "The catalogue " + Utf8(installation.DefaultsFile()) + " has no function 3.");
}

TEST_F(PowercfgTest, HiddenFunctionIsAnError) {
    ExpectError({L"setdcvalueindex", L"balanced", L"8", L"0"}, Failure,
                "Function 8 is hidden on this display: use \"set\" to set both indices.");
}

TEST_F(PowercfgTest, LabelSelectsIndex) {
    WriteFunctions(R"(<Function ID="1"><Display>
        <AC><DisplayItem Label="Bright"/><DisplayItem Label="Dark"/></AC></Display><Commands/>
        <Default ACParamIndex="0" DCParamIndex="0"/></Function>)");
    EXPECT_EQ(IndexesOf({L"setacvalueindex", L"balanced", L"1", L"dark"}), Json({Param(1, 1, 0)}));
}

TEST_F(PowercfgTest, IndexWithoutOptionIsAnError) {
    ExpectError({L"setacvalueindex", L"balanced", L"1", L"7"}, Failure,
                "Function 1 has no option \"7\" when plugged in. Its options are: none. --force stores any "
                "index.");
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(PowercfgTest, UnavailableFilesAreAnError) {
    ExpectNeedsUserSettings({L"setacvalueindex", L"balanced", L"1", L"0", L"--force"});
    ExpectNeedsCatalogue({L"setacvalueindex", L"balanced", L"1", L"0", L"--force"});
}

}  // namespace ZOTDam::Test
