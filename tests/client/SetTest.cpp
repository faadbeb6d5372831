// Tests of zotdamctl set.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

class SetCommandTest : public ClientTest {
protected:
    SetCommandTest() { WriteDefaults(ThreeFunctions); }

    Json Balanced() const { return JsonOutput({L"params", L"balanced"})["parameters"]; }
};

TEST_F(SetCommandTest, NewValuesAreStoredAndShown) {
    EXPECT_EQ(Output({L"set", L"balanced", L"1", L"6", L"70"}),
              "Stored in balanced (381b4222-f694-41f0-9685-ff5bb260df2e):\n"
              "\n"
              "ID  AC  DC\n"
              " 1   6  70\n");
    EXPECT_EQ(Balanced(), Json({Param(1, 6, 70), Param(2, 0, 0)}));
}

TEST_F(SetCommandTest, JsonReportsStoredValues) {
    EXPECT_EQ(JsonOutput({L"set", L"balanced", L"1", L"6", L"7"}),
              Json({{"scheme", BalancedText}, {"id", 1}, {"ac", 6}, {"dc", 7}, {"hidden", false}}));
}

TEST_F(SetCommandTest, NegativeNumbersAreStored) {
    WriteUserSettings(R"(<OrloPowerCfg><PowerSchemes><PowerScheme GUID="381b4222-f694-41f0-9685-ff5bb260df2e">
        <Function ID="-9" ACParamIndex="0" DCParamIndex="0"/></PowerScheme></PowerSchemes></OrloPowerCfg>)");
    Output({L"set", L"balanced", L"1", L"-1", L"0"});
    Output({L"set", L"balanced", L"-9", L"0", L"-25"});
    EXPECT_EQ(Balanced(), Json({Param(-9, 0, -25), Param(1, -1, 0), Param(2, 0, 0)}));
}

TEST_F(SetCommandTest, ExtremeThirtyTwoBitNumbersAreStored) {
    Output({L"set", L"balanced", L"1", L"-2147483648", L"2147483647"});
    EXPECT_EQ(Balanced()[0], Param(1, INT32_MIN, INT32_MAX));
}

TEST_F(SetCommandTest, NonNumericArgumentIsRejected) {
    const std::string range = " must be a whole number from -2147483648 to 2147483647, not ";
    ExpectError({L"set", L"balanced", L"one", L"0", L"0"}, WrongUsage, "ID" + range + "\"one\".");
    ExpectError({L"set", L"balanced", L"1", L"1.5", L"0"}, WrongUsage, "AC" + range + "\"1.5\".");
    ExpectError({L"set", L"balanced", L"1", L"0", L""}, WrongUsage, "DC" + range + "\"\".");
}

TEST_F(SetCommandTest, NumberBeyondThirtyTwoBitsIsRejected) {
    const std::string range = " must be a whole number from -2147483648 to 2147483647, not ";
    ExpectError({L"set", L"balanced", L"4294967297", L"0", L"0"}, WrongUsage,
                "ID" + range + "\"4294967297\".");
    ExpectError({L"set", L"balanced", L"1", L"2147483648", L"0"}, WrongUsage,
                "AC" + range + "\"2147483648\".");
    ExpectError({L"set", L"balanced", L"1", L"0", L"-2147483649"}, WrongUsage,
                "DC" + range + "\"-2147483649\".");
}

TEST_F(SetCommandTest, UnknownFunctionIsAnErrorAndNotStored) {
    ExpectError({L"set", L"balanced", L"3", L"0", L"0"}, Failure,
                "The catalogue " + Utf8(installation.DefaultsFile()) + " has no function 3.");
    EXPECT_EQ(Balanced(), Json({Param(1, 2, 3), Param(2, 0, 0)}));
}

TEST_F(SetCommandTest, FunctionHiddenByDisplayIsStoredWithNotice) {
    EXPECT_EQ(Output({L"set", L"balanced", L"8", L"0", L"1"}),
              "Stored in balanced (381b4222-f694-41f0-9685-ff5bb260df2e):\n"
              "\n"
              "ID  AC  DC\n"
              " 8   0   1\n"
              "\n"
              "Function 8 is hidden on this display, so \"params\" does not list it.\n");
    EXPECT_NE(UserSettings().find(R"(<Function ID="8" ACParamIndex="0" DCParamIndex="1")"),
              std::string::npos);
}

TEST_F(SetCommandTest, JsonReportsHiddenFunction) {
    EXPECT_EQ(JsonOutput({L"set", L"balanced", L"8", L"0", L"1"})["hidden"], true);
}

TEST_F(SetCommandTest, MissingCatalogueIsAnError) {
    std::filesystem::remove(installation.DefaultsFile());
    ExpectError({L"set", L"balanced", L"1", L"0", L"0"}, Failure, MissingCatalogue());
}

TEST_F(SetCommandTest, UserSettingsInUseAreAnError) {
    Output({L"set", L"balanced", L"1", L"5", L"6"});
    const std::string before = UserSettings();
    const SecondProcess other{HoldMutex, {UserMarker}};
    ExpectError({L"set", L"balanced", L"1", L"7", L"7"}, Failure,
                UserFile() + " is in use by another program.");
    EXPECT_EQ(UserSettings(), before);
}

TEST_F(SetCommandTest, DefaultValuesAreNotTakenForStoredOnes) {
    Output({L"set", L"balanced", L"1", L"5", L"6"});
    const SecondProcess other{HoldMutex, {UserMarker}};
    ExpectError({L"set", L"balanced", L"1", L"2", L"3"}, Failure,
                UserFile() + " is in use by another program.");
}

TEST_F(SetCommandTest, MissingUserSettingsFolderIsAnError) {
    std::filesystem::remove(installation.UserFile().parent_path());
    ExpectError({L"set", L"balanced", L"1", L"7", L"7"}, Failure, UserFile() + " cannot be written.");
}

TEST_F(SetCommandTest, MissingFolderFailsForHiddenFunction) {
    std::filesystem::remove(installation.UserFile().parent_path());
    ExpectError({L"set", L"balanced", L"8", L"0", L"1"}, Failure, UserFile() + " cannot be written.");
}

TEST_F(SetCommandTest, FolderNamedAsUserSettingsIsAnError) {
    std::filesystem::create_directory(installation.UserFile());
    ExpectError({L"set", L"balanced", L"1", L"7", L"7"}, Failure, UserFile() + " cannot be written.");
}

TEST_F(SetCommandTest, OldValuesReadBackAreAnError) {
    WriteUserSettings(R"(<OrloPowerCfg><PowerSchemes><PowerScheme GUID="381b4222-f694-41f0-9685-ff5bb260df2e">
        <Function ID="1" ACParamIndex="5" DCParamIndex="6"/><Function/></PowerScheme></PowerSchemes></OrloPowerCfg>)");
    ExpectError(
        {L"set", L"balanced", L"1", L"7", L"7"}, Failure,
        "The value could not be stored in the user settings file " + Utf8(installation.UserFile()) + ".");
}

TEST_F(SetCommandTest, ValuesMissingAfterStoreAreAnError) {
    WriteUserSettings(R"(<OrloPowerCfg><PowerSchemes><PowerScheme GUID="381b4222-f694-41f0-9685-ff5bb260df2e">
        <Function/></PowerScheme></PowerSchemes></OrloPowerCfg>)");
    ExpectError(
        {L"set", L"balanced", L"1", L"7", L"7"}, Failure,
        "The value could not be stored in the user settings file " + Utf8(installation.UserFile()) + ".");
}

}  // namespace ZOTDam::Test
