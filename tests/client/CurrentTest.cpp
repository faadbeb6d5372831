// Tests of zotdamctl current.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

// A function with two options on AC and three on DC.
constexpr char Brightness[] = R"(<Function ID="1"><Display>
    <AC><DisplayItem Option="1000"/><DisplayItem Option="-20"/></AC>
    <DC><DisplayItem Option="0"/><DisplayItem Option="-1"/><DisplayItem Option="7"/></DC>
</Display><Commands/><Default ACParamIndex="0" DCParamIndex="2"/></Function>)";

class CurrentCommandTest : public ClientTest {
protected:
    CurrentCommandTest() {
        WriteFunctions(std::string{Brightness} + R"(<Function ID="20"><Display/><Commands/>
            <Default ACParamIndex="0" DCParamIndex="0"/></Function>)");
    }

    static Json Options(int id, const Json& ac, const Json& dc) {
        return {{"id", id}, {"ac", ac}, {"dc", dc}};
    }

    Json Current() const { return JsonOutput({L"current", L"balanced"})["options"]; }
};

TEST_F(CurrentCommandTest, TableListsSelectedOptions) {
    WriteBalanced(OldFunction(1, 1, 2));
    EXPECT_EQ(Output({L"current", L"balanced"}),
              "Scheme: balanced (381b4222-f694-41f0-9685-ff5bb260df2e)\n"
              "\n"
              "ID   AC  DC\n"
              " 1  -20   7\n"
              "20    -   -\n");
}

TEST_F(CurrentCommandTest, JsonListsOptionsWithFieldsInOrder) {
    WriteBalanced(OldFunction(1, 0, 1));
    EXPECT_EQ(Output({L"current", L"balanced", L"--json"}), R"({
  "scheme": "381b4222-f694-41f0-9685-ff5bb260df2e",
  "options": [
    {
      "id": 1,
      "ac": 1000,
      "dc": -1
    },
    {
      "id": 20,
      "ac": null,
      "dc": null
    }
  ]
}
)");
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
    EXPECT_EQ(Current(), Json({Options(1, 1000, 7), Options(7, 60, 60)}));
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
              "\n"
              "ID  AC  DC\n");
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
    ExpectUnknownScheme({L"current", L"Balanced"}, "Balanced");
    ExpectUnknownScheme({L"current", L""}, "");
}

}  // namespace ZOTDam::Test
