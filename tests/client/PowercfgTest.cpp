// Tests of the powercfg names that zotdamctl accepts: aliases of schemes, setacvalueindex, setdcvalueindex.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

class PowercfgTest : public ClientTest {
protected:
    PowercfgTest() { WriteDefaults(ThreeFunctions); }

    Json Parameters(const std::wstring& scheme) const {
        return JsonOutput({L"params", scheme})["parameters"];
    }
};

TEST_F(PowercfgTest, AliasesCommandListsSchemes) {
    EXPECT_EQ(Output({L"aliases"}),
              "GUID                                  Name              Alias\n"
              "381b4222-f694-41f0-9685-ff5bb260df2e  balanced          SCHEME_BALANCED\n"
              "8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c  high-performance  SCHEME_MIN\n"
              "a1841308-3541-4fab-bc81-f71556f20b4a  power-saver       SCHEME_MAX\n");
    EXPECT_EQ(JsonOutput({L"aliases"})["schemes"][1], Json({{"guid", "8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c"},
                                                            {"name", "high-performance"},
                                                            {"alias", "SCHEME_MIN"}}));
}

TEST_F(PowercfgTest, AliasIsCaseInsensitive) {
    EXPECT_EQ(JsonOutput({L"params", L"SCHEME_MIN"}), JsonOutput({L"params", L"high-performance"}));
    EXPECT_EQ(JsonOutput({L"params", L"scheme_max"}), JsonOutput({L"params", L"power-saver"}));
    EXPECT_EQ(JsonOutput({L"params", L"Scheme_Balanced"}), JsonOutput({L"params", L"balanced"}));
}

TEST_F(PowercfgTest, UnknownAliasIsRejected) {
    ExpectUnknownScheme({L"params", L"SCHEME_CURRENT"}, "SCHEME_CURRENT");
}

TEST_F(PowercfgTest, AcIndexIsSetAndDcIndexKept) {
    EXPECT_EQ(JsonOutput({L"setacvalueindex", L"SCHEME_BALANCED", L"1", L"7"}),
              Json({{"scheme", BalancedText}, {"id", 1}, {"ac", 7}, {"dc", 3}, {"hidden", false}}));
    EXPECT_EQ(Parameters(L"balanced"), Json({Param(1, 7, 3), Param(2, 0, 0)}));
}

TEST_F(PowercfgTest, DcIndexIsSetAndAcIndexKept) {
    Output({L"setdcvalueindex", L"high-performance", L"2", L"9"});
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

TEST_F(PowercfgTest, UnavailableFilesAreAnError) {
    ExpectNeedsUserSettings({L"setacvalueindex", L"balanced", L"1", L"0"});
    ExpectNeedsCatalogue({L"setacvalueindex", L"balanced", L"1", L"0"});
}

}  // namespace ZOTDam::Test
