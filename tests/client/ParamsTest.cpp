// Tests of zotdamctl params.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

class ParamsTest : public ClientTest {
protected:
    ParamsTest() { WriteDefaults(ThreeFunctions); }
};

// Names and labels without translation are shown as they are.
class ParamsNamesTest : public ClientTest {
protected:
    ParamsNamesTest() {
        WriteFunctions(R"(
            <Function ID="1" Name="Brightness"><Display>
                <AC><DisplayItem Label="Bright" Option="100"/><DisplayItem Label="Dark" Option="20"/></AC>
                <DC><DisplayItem Label="Dark" Option="20"/></DC>
            </Display><Commands/><Default ACParamIndex="1" DCParamIndex="0"/></Function>
            <Function ID="2" Name="Sleep after"><Display/><Commands/>
                <Default ACParamIndex="0" DCParamIndex="0"/></Function>)");
    }
};

TEST_F(ParamsNamesTest, TableListsUserValuesWithNamesAndLabels) {
    WriteBalanced(R"(<Function ID="1" ACParamIndex="0" DCParamIndex="-6"/>
                     <Function ID="20" ACParamIndex="7" DCParamIndex="1234"/>)");
    EXPECT_EQ(Output({L"params", L"balanced"}),
              "Scheme: balanced (381b4222-f694-41f0-9685-ff5bb260df2e)\n"
              "Source: user settings\n"
              "\n"
              "ID  Function                Plugged in (index)  On battery (index)\n"
              " 1  Brightness              Bright (0)          - (-6)\n"
              " 2  Sleep after             - (0)               - (0)               not stored: default\n"
              "20  (not in the catalogue)  - (7)               - (1234)\n");
}

TEST_F(ParamsNamesTest, JsonHasFieldsInOrder) {
    WriteBalanced(R"(<Function ID="1" ACParamIndex="0" DCParamIndex="-6"/>)");
    EXPECT_EQ(Output({L"params", L"balanced", L"--json"}), R"({
  "scheme": "381b4222-f694-41f0-9685-ff5bb260df2e",
  "schemeName": "balanced",
  "source": "user",
  "parameters": [
    {
      "id": 1,
      "name": "Brightness",
      "acIndex": 0,
      "acOption": 100,
      "acLabel": "Bright",
      "dcIndex": -6,
      "dcOption": null,
      "dcLabel": null,
      "stored": true
    },
    {
      "id": 2,
      "name": "Sleep after",
      "acIndex": 0,
      "acOption": null,
      "acLabel": null,
      "dcIndex": 0,
      "dcOption": null,
      "dcLabel": null,
      "stored": false
    }
  ]
}
)");
}

TEST_F(ParamsNamesTest, SchemeThatIsNotStoredShowsDefaults) {
    WriteSchemes("");
    EXPECT_EQ(Output({L"params", L"balanced"}),
              "Scheme: balanced (381b4222-f694-41f0-9685-ff5bb260df2e)\n"
              "Source: not stored: defaults\n"
              "\n"
              "ID  Function     Plugged in (index)  On battery (index)\n"
              " 1  Brightness   Dark (1)            Dark (0)\n"
              " 2  Sleep after  - (0)               - (0)\n");
    EXPECT_EQ(JsonOutput({L"params", L"balanced"})["source"], "default");
}

TEST_F(ParamsNamesTest, SourceNamesProblemOfUserSettings) {
    const auto source = [this] { return Output({L"params", L"balanced"}); };
    EXPECT_NE(source().find("\nSource: not stored: defaults (the user settings file " +
                            Utf8(installation.UserFile()) + " does not exist)\n"),
              std::string::npos);
    WriteUserSettings("<OrloPowerCfg>");
    EXPECT_NE(source().find("\nSource: not stored: defaults (the user settings file " +
                            Utf8(installation.UserFile()) + " is not well-formed)\n"),
              std::string::npos);
}

TEST_F(ParamsTest, UnknownFunctionHasNoName) {
    WriteBalanced(OldFunction(20, 7, 8));
    EXPECT_EQ(JsonOutput({L"params", L"balanced"})["parameters"][2]["name"], nullptr);
}

TEST_F(ParamsTest, EmptySchemeHasNoParameters) {
    WriteBalanced("");
    EXPECT_EQ(JsonOutput({L"params", L"balanced"}), Json({{"scheme", BalancedText},
                                                          {"schemeName", "balanced"},
                                                          {"source", "user"},
                                                          {"parameters", Json::array()}}));
}

TEST_F(ParamsNamesTest, TableListsDefaults) {
    WriteBalanced(OldFunction(1, 0, 0));
    EXPECT_EQ(Output({L"params", L"balanced", L"--default"}),
              "Scheme: balanced (381b4222-f694-41f0-9685-ff5bb260df2e)\n"
              "Source: defaults\n"
              "\n"
              "ID  Function     Plugged in (index)  On battery (index)\n"
              " 1  Brightness   Dark (1)            Dark (0)\n"
              " 2  Sleep after  - (0)               - (0)\n");
}

TEST_F(ParamsTest, DefaultsOfSchemeAreListed) {
    EXPECT_EQ(IndexesOf({L"params", L"high-performance", L"--default"}),
              Json({Param(1, 2, 3), Param(2, 4, 5), Param(8, 1, 1)}));
}

TEST_F(ParamsTest, JsonListsDefaults) {
    EXPECT_EQ(IndexesOf({L"params", L"--default", L"balanced"}),
              Json({Param(1, 2, 3), Param(2, 0, 0), Param(8, 1, 1)}));
    EXPECT_EQ(JsonOutput({L"params", L"--default", L"balanced"})["source"], "default");
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

TEST_F(ParamsTest, NamesAreCaseInsensitive) {
    EXPECT_EQ(JsonOutput({L"params", L"BALANCED"}), JsonOutput({L"params", L"balanced"}));
    EXPECT_EQ(JsonOutput({L"params", L"Power-Saver"}), JsonOutput({L"params", L"power-saver"}));
}

TEST_F(ParamsTest, SimilarNameIsSuggested) {
    ExpectUnknownScheme({L"params", L"ballanced"}, "ballanced", ". Did you mean \"balanced\"?");
    ExpectUnknownScheme({L"params", L"balncd"}, "balncd", ". Did you mean \"balanced\"?");
    ExpectUnknownScheme({L"params", L"scheme_mim"}, "scheme_mim", ". Did you mean \"SCHEME_MIN\"?");
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
         {"", "381b4222-f694-41f0-9685-ff5bb260df2", "00000000-0000-0000-0000-000000000000",
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
