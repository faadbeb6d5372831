// Tests of zotdamctl current.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

// A function with two options on AC and three on DC.
constexpr char Brightness[] = R"(<Function ID="1" Name="Brightness"><Display>
    <AC><DisplayItem Label="Bright" Option="1000"/><DisplayItem Label="Dark" Option="-20"/></AC>
    <DC><DisplayItem Label="Off" Option="0"/><DisplayItem Label="Auto" Option="-1"/><DisplayItem Option="7"/></DC>
</Display><Commands/><Default ACParamIndex="0" DCParamIndex="2"/></Function>)";

class CurrentCommandTest : public ClientTest {
protected:
    CurrentCommandTest() {
        WriteFunctions(std::string{Brightness} + R"(<Function ID="20" Name="Sleep"><Display/><Commands/>
            <Default ACParamIndex="0" DCParamIndex="0"/></Function>)");
    }

    static Json Options(int id, const Json& ac, const Json& dc) {
        return {{"id", id}, {"acOption", ac}, {"dcOption", dc}};
    }

    // Returns the ids and options, without names and labels.
    Json Current() const {
        Json current = Json::array();
        const Json json = JsonOutput({L"current", L"balanced"});
        for (const Json& option : json["options"])
            current.push_back(Options(option["id"], option["acOption"], option["dcOption"]));
        return current;
    }
};

TEST_F(CurrentCommandTest, TableListsSelectedOptions) {
    WriteBalanced(OldFunction(1, 1, 2));
    EXPECT_EQ(Output({L"current", L"balanced"}),
              "Scheme: balanced (381b4222-f694-41f0-9685-ff5bb260df2e)\n"
              "Source: user settings\n"
              "\n"
              "ID  Function    Plugged in (option)  On battery (option)\n"
              " 1  Brightness  Dark (-20)           Auto (7)\n"
              "20  Sleep       -                    -\n");
}

TEST_F(CurrentCommandTest, JsonListsOptionsWithFieldsInOrder) {
    WriteBalanced(OldFunction(1, 0, 1));
    EXPECT_EQ(Output({L"current", L"balanced", L"--json"}), R"({
  "scheme": "381b4222-f694-41f0-9685-ff5bb260df2e",
  "schemeName": "balanced",
  "source": "user",
  "options": [
    {
      "id": 1,
      "reportedId": 1,
      "name": "Brightness",
      "acOption": 1000,
      "acLabel": "Bright",
      "dcOption": -1,
      "dcLabel": "Auto"
    },
    {
      "id": 20,
      "reportedId": 20,
      "name": "Sleep",
      "acOption": null,
      "acLabel": null,
      "dcOption": null,
      "dcLabel": null
    }
  ]
}
)");
}

TEST_F(CurrentCommandTest, LabelOfRepeatedOptionIsTheSelectedOne) {
    WriteFunctions(R"(<Function ID="1"><Display>
        <AC><DisplayItem Label="First" Option="5"/><DisplayItem Label="Second" Option="5"/></AC></Display>
        <Commands/><Default ACParamIndex="1" DCParamIndex="0"/></Function>)");
    EXPECT_EQ(JsonOutput({L"current", L"balanced"})["options"][0]["acLabel"], "Second");
}

TEST_F(CurrentCommandTest, SchemeWithoutNameIsShownByGuid) {
    EXPECT_TRUE(Output({L"current", L"{0A1B2C3D-1111-2222-3333-444455556666}"})
                    .starts_with("Scheme: 0a1b2c3d-1111-2222-3333-444455556666\n"));
}

TEST_F(CurrentCommandTest, UnsetSchemeUsesDefaults) {
    EXPECT_EQ(Current()[0], Options(1, 1000, 7));
}

TEST_F(CurrentCommandTest, ZeroAndNegativeOptionsAreNotNull) {
    WriteBalanced(OldFunction(1, 1, 0));
    EXPECT_EQ(Current()[0], Options(1, -20, 0));
    WriteBalanced(OldFunction(1, 1, 1));
    EXPECT_EQ(Current()[0], Options(1, -20, -1));
}

TEST_F(CurrentCommandTest, IndexBeyondListSelectsNoOption) {
    WriteBalanced(OldFunction(1, 2, 2));
    EXPECT_EQ(Current()[0], Options(1, nullptr, 7));
}

TEST_F(CurrentCommandTest, NegativeIndexSelectsNoOption) {
    WriteBalanced(OldFunction(1, 0, -1));
    EXPECT_EQ(Current()[0], Options(1, 1000, nullptr));
}

TEST_F(CurrentCommandTest, SecondRefreshRateHasIdOfFirst) {
    WriteFunctions(std::string{Brightness} + R"(<Function ID="8"><Display>
        <AC><DisplayItem Option="60"/></AC><DC><DisplayItem Option="60"/></DC>
        </Display><Commands/><Default ACParamIndex="0" DCParamIndex="0"/></Function>)");
    EXPECT_EQ(Current(), Json({Options(1, 1000, 7), Options(8, 60, 60)}));
    EXPECT_EQ(JsonOutput({L"current", L"balanced"})["options"][1]["reportedId"], 7);
}

TEST_F(CurrentCommandTest, FunctionsHiddenByDisplayAreNotListed) {
    WriteFunctions(R"(<Function ID="8">
        <Display><AC><DisplayItem Option="60"/><DisplayItem Option="100000"/></AC></Display>
        <Commands/><Default ACParamIndex="0" DCParamIndex="0"/></Function>)");
    EXPECT_EQ(Current(), Json::array());
}

TEST_F(CurrentCommandTest, EmptySchemeHasNoOptions) {
    WriteBalanced("");
    EXPECT_EQ(Current(), Json::array());
}

TEST_F(CurrentCommandTest, EmptyCatalogueHasNoOptions) {
    WriteFunctions("");
    EXPECT_EQ(Output({L"current", L"balanced"}),
              "Scheme: balanced (381b4222-f694-41f0-9685-ff5bb260df2e)\n"
              "Source: not stored: defaults (the user settings file " +
                  Utf8(installation.UserFile()) +
                  " does not exist)\n"
                  "\n"
                  "ID  Function  Plugged in (option)  On battery (option)\n");
    EXPECT_EQ(Current(), Json::array());
}

TEST_F(CurrentCommandTest, UnloadableSchemeIsAnError) {
    WriteFunctions(Function(1));
    ExpectError({L"current", L"balanced"}, Failure,
                "The scheme balanced (381b4222-f694-41f0-9685-ff5bb260df2e) cannot be loaded.");
}

TEST_F(CurrentCommandTest, UnavailableCatalogueIsAnError) {
    ExpectNeedsCatalogue({L"current", L"balanced"});
}

TEST_F(CurrentCommandTest, UserSettingsInUseAreAnError) {
    WriteBalanced(OldFunction(1, 1, 1));
    ExpectNeedsUserSettings({L"current", L"balanced"});
}

TEST_F(CurrentCommandTest, UnloadableSchemeReportsUserSettingsInUse) {
    WriteFunctions(Function(1));
    ExpectNeedsUserSettings({L"current", L"balanced"});
}

TEST_F(CurrentCommandTest, InvalidSchemeIsRejected) {
    ExpectUnknownScheme({L"current", L"Balance"}, "Balance", ". Did you mean \"balanced\"?");
    ExpectUnknownScheme({L"current", L""}, "");
}

}  // namespace ZOTDam::Test
