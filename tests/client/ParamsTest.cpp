// Tests of zotdamctl params.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

class ParamsTest : public ClientTest {
protected:
    ParamsTest() { WriteDefaults(ThreeFunctions); }
};

TEST_F(ParamsTest, TableListsUserValues) {
    WriteBalanced(R"(<Function ID="1" ACParamIndex="-10" DCParamIndex="6"/>
                     <Function ID="20" ACParamIndex="7" DCParamIndex="1234"/>)");
    EXPECT_EQ(Output({L"params", L"balanced"}),
              "Scheme: balanced (381b4222-f694-41f0-9685-ff5bb260df2e)\n"
              "Source: user settings\n"
              "\n"
              "ID   AC    DC\n"
              " 1  -10     6\n"
              " 2    0     0\n"
              "20    7  1234\n");
}

TEST_F(ParamsTest, JsonListsUserValues) {
    WriteBalanced(R"(<Function ID="1" ACParamIndex="5" DCParamIndex="-6"/>)");
    EXPECT_EQ(JsonOutput({L"params", L"balanced"}),
              Json({{"scheme", BalancedText},
                    {"source", "user"},
                    {"parameters", {Param(1, 5, -6), Param(2, 0, 0)}}}));
}

TEST_F(ParamsTest, JsonFieldsAreInOrder) {
    WriteBalanced("");
    EXPECT_EQ(Output({L"params", L"balanced", L"--json"}), R"({
  "scheme": "381b4222-f694-41f0-9685-ff5bb260df2e",
  "source": "user",
  "parameters": []
}
)");
}

TEST_F(ParamsTest, TableListsDefaults) {
    WriteBalanced(R"(<Function ID="1" ACParamIndex="5" DCParamIndex="6"/>)");
    EXPECT_EQ(Output({L"params", L"high-performance", L"--default"}),
              "Scheme: high-performance (8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c)\n"
              "Source: defaults\n"
              "\n"
              "ID  AC  DC\n"
              " 1   2   3\n"
              " 2   4   5\n"
              " 8   1   1\n");
}

TEST_F(ParamsTest, JsonListsDefaults) {
    EXPECT_EQ(JsonOutput({L"params", L"--default", L"balanced"}),
              Json({{"scheme", BalancedText},
                    {"source", "default"},
                    {"parameters", {Param(1, 2, 3), Param(2, 0, 0), Param(8, 1, 1)}}}));
}

TEST_F(ParamsTest, ReadingDefaultsCreatesNoUserSettings) {
    Output({L"params", L"balanced", L"--default"});
    EXPECT_FALSE(std::filesystem::exists(installation.UserFile()));
}

TEST_F(ParamsTest, NamesSelectSchemesOfWindows) {
    EXPECT_EQ(JsonOutput({L"params", L"balanced"})["scheme"], "381b4222-f694-41f0-9685-ff5bb260df2e");
    EXPECT_EQ(JsonOutput({L"params", L"high-performance"})["scheme"], "8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c");
    EXPECT_EQ(JsonOutput({L"params", L"power-saver"})["scheme"], "a1841308-3541-4fab-bc81-f71556f20b4a");
}

TEST_F(ParamsTest, GuidIsCaseInsensitiveAndBracesAreOptional) {
    for (const wchar_t* const guid :
         {L"0A1B2C3D-1111-2222-3333-444455556666", L"0a1b2c3d-1111-2222-3333-444455556666",
          L"{0a1B2c3D-1111-2222-3333-444455556666}"})
        EXPECT_EQ(JsonOutput({L"params", guid})["scheme"], "0a1b2c3d-1111-2222-3333-444455556666");
}

TEST_F(ParamsTest, SchemeWithoutNameIsShownByGuid) {
    EXPECT_TRUE(Output({L"params", L"0a1b2c3d-1111-2222-3333-444455556666"})
                    .starts_with("Scheme: 0a1b2c3d-1111-2222-3333-444455556666\n"));
}

TEST_F(ParamsTest, InvalidSchemeIsRejected) {
    for (const std::string scheme :
         {"", "Balanced", "381b4222-f694-41f0-9685-ff5bb260df2", "00000000-0000-0000-0000-000000000000",
          "381b4222-f694-41f0-9685-ff5bb260df2g", "{381b4222-f694-41f0-9685-ff5bb260df2e"})
        ExpectUnknownScheme({L"params", {scheme.begin(), scheme.end()}}, scheme);
}

TEST_F(ParamsTest, MissingCatalogueIsAnError) {
    std::filesystem::remove(installation.DefaultsFile());
    ExpectError({L"params", L"balanced"}, Failure, MissingCatalogue());
    ExpectError({L"params", L"balanced", L"--default"}, Failure, MissingCatalogue());
}

TEST_F(ParamsTest, UserSettingsInUseAreAnError) {
    WriteBalanced(R"(<Function ID="1" ACParamIndex="5" DCParamIndex="6"/>)");
    ExpectNeedsUserSettings({L"params", L"balanced"});
}

}  // namespace ZOTDam::Test
