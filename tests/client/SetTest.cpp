// Tests of zotdamctl set.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

// Function 1 has three options on AC and two on DC, function 2 has options whose labels are numbers. Function
// 8 is hidden on every display.
constexpr char FunctionsWithOptions[] = R"(<ZOTDefault><Functions>
    <Function ID="1" Name="Brightness"><Display>
        <AC><DisplayItem Label="Bright" Option="100"/><DisplayItem Label="Dark" Option="20"/>
            <DisplayItem Label="Dark, very" Option="5"/></AC>
        <DC><DisplayItem Label="Dark" Option="20"/><DisplayItem Label="Off" Option="0"/></DC>
    </Display><Commands/><Default ACParamIndex="1" DCParamIndex="0"/></Function>
    <Function ID="2" Name="Sleep after"><Display>
        <AC><DisplayItem Label="1"/><DisplayItem Label="5"/></AC>
        <DC><DisplayItem Label="1"/><DisplayItem Label="5"/></DC>
    </Display><Commands/><Default ACParamIndex="0" DCParamIndex="0"/></Function>
    <Function ID="8" Name="Rate">
        <Display><AC><DisplayItem Option="60"/><DisplayItem Option="100000"/></AC>
            <DC><DisplayItem Option="60"/><DisplayItem Option="100000"/></DC></Display>
        <Commands/><Default ACParamIndex="1" DCParamIndex="1"/>
    </Function>
</Functions></ZOTDefault>)";

class SetCommandTest : public ClientTest {
protected:
    SetCommandTest() { WriteDefaults(FunctionsWithOptions); }

    Json Balanced() const { return IndexesOf({L"params", L"balanced"}); }

    // Runs `set balanced` with these values.
    Json Set(Arguments values) const {
        values.insert(values.begin(), {L"set", L"balanced"});
        return IndexesOf(values);
    }

    void ExpectNotStored(Arguments values, DWORD exitStatus, const std::string& sentence) const {
        values.insert(values.begin(), {L"set", L"balanced"});
        ExpectError(values, exitStatus, sentence);
        EXPECT_FALSE(HasUserSettings());
    }

    inline static const std::string PluggedInOptions =
        "Its options are: 0: Bright (100)  1: Dark (20)  2: Dark, very (5). --force stores any index.";
    inline static const std::string Range = " must be a whole number from -2147483648 to 2147483647, not ";
};

TEST_F(SetCommandTest, NewValuesAreStoredAndShown) {
    EXPECT_EQ(Output({L"set", L"balanced", L"1", L"0", L"1"}),
              "Stored in balanced (381b4222-f694-41f0-9685-ff5bb260df2e):\n"
              "\n"
              "ID  Function    Plugged in (index)  On battery (index)\n"
              " 1  Brightness  Bright (0)          Off (1)\n");
    EXPECT_EQ(Balanced(), Json({Param(1, 0, 1), Param(2, 0, 0)}));
}

TEST_F(SetCommandTest, JsonReportsStoredValues) {
    EXPECT_EQ(JsonOutput({L"set", L"balanced", L"1", L"0", L"1"}), Json::parse(R"({
        "scheme": "381b4222-f694-41f0-9685-ff5bb260df2e", "schemeName": "balanced", "parameters": [
            {"id": 1, "name": "Brightness", "acIndex": 0, "acOption": 100, "acLabel": "Bright",
             "dcIndex": 1, "dcOption": 0, "dcLabel": "Off", "hidden": false}]})"));
}

TEST_F(SetCommandTest, OnlySpecifiedFunctionsAreStored) {
    Output({L"set", L"balanced", L"1", L"0", L"1"});
    const std::string settings = UserSettings();
    EXPECT_NE(settings.find(R"(<Function ID="1" ACParamIndex="0" DCParamIndex="1")"), std::string::npos);
    EXPECT_EQ(settings.find("ID=\"2\""), std::string::npos);
}

TEST_F(SetCommandTest, SeveralFunctionsAreSetAtOnce) {
    EXPECT_EQ(Set({L"1=0,1", L"2=1,0"}), Json({Param(1, 0, 1), Param(2, 1, 0)}));
    EXPECT_EQ(Balanced(), Json({Param(1, 0, 1), Param(2, 1, 0)}));
}

TEST_F(SetCommandTest, OmittedValueIsKept) {
    Set({L"1=0,1"});
    EXPECT_EQ(Set({L"1=2,"}), Json({Param(1, 2, 1)}));
    EXPECT_EQ(Set({L"1=,0"}), Json({Param(1, 2, 0)}));
}

TEST_F(SetCommandTest, LabelsInAnyCaseSelectIndexes) {
    EXPECT_EQ(Set({L"1=bright,OFF"}), Json({Param(1, 0, 1)}));
    EXPECT_EQ(Set({L"1", L"Dark", L"Dark"}), Json({Param(1, 1, 0)}));
}

TEST_F(SetCommandTest, LabelMayContainComma) {
    EXPECT_EQ(Set({L"1=Dark, very,Off"}), Json({Param(1, 2, 1)}));
}

TEST_F(SetCommandTest, NumberIsIndexBeforeItIsLabel) {
    EXPECT_EQ(Set({L"2=1,5"}), Json({Param(2, 1, 1)}));
}

TEST_F(SetCommandTest, ValueWithoutOptionIsNotStored) {
    ExpectNotStored({L"1", L"99", L"0"}, Failure,
                    "Function 1 (Brightness) has no option \"99\" when plugged in. " + PluggedInOptions);
    ExpectNotStored({L"1=0,1", L"2=0,-5"}, Failure,
                    "Function 2 (Sleep after) has no option \"-5\" on battery. Its options are: 0: 1 (0)  1: "
                    "5 (0). --force stores any index.");
    ExpectNotStored({L"1=Brigth,0"}, Failure,
                    "Function 1 (Brightness) has no option \"Brigth\" when plugged in. " + PluggedInOptions);
    ExpectJsonError({L"set", L"balanced", L"1", L"99", L"0"}, "invalid-value", nullptr);
}

TEST_F(SetCommandTest, ForceStoresIndexWithoutOption) {
    EXPECT_EQ(Set({L"--force", L"1", L"99", L"-5"}), Json({Param(1, 99, -5)}));
    EXPECT_EQ(Balanced()[0], Param(1, 99, -5));
}

TEST_F(SetCommandTest, ForceStoresUnknownFunction) {
    EXPECT_EQ(Set({L"--force", L"3=1,2"}), Json({Param(3, 1, 2)}));
}

TEST_F(SetCommandTest, NegativeNumbersAreStoredWithForce) {
    WriteBalanced(OldFunction(-9, 0, 0));
    Set({L"1", L"-1", L"0", L"--force"});
    Set({L"-9", L"0", L"-25", L"--force"});
    EXPECT_EQ(Balanced(), Json({Param(-9, 0, -25), Param(1, -1, 0), Param(2, 0, 0)}));
}

TEST_F(SetCommandTest, ExtremeThirtyTwoBitNumbersAreStored) {
    Set({L"1", L"-2147483648", L"2147483647", L"--force"});
    EXPECT_EQ(Balanced()[0], Param(1, INT32_MIN, INT32_MAX));
}

TEST_F(SetCommandTest, NonNumericIdIsRejected) {
    ExpectNotStored({L"one", L"0", L"0"}, WrongUsage, "ID" + Range + "\"one\".");
    ExpectNotStored({L"one=0,0"}, WrongUsage, "ID" + Range + "\"one\".");
    ExpectNotStored({L"4294967297", L"0", L"0"}, WrongUsage, "ID" + Range + "\"4294967297\".");
}

TEST_F(SetCommandTest, ForceAcceptsOnlyNumbersAndLabels) {
    ExpectNotStored({L"--force", L"1", L"1.5", L"0"}, WrongUsage, "AC" + Range + "\"1.5\".");
    ExpectNotStored({L"--force", L"1", L"2147483648", L"0"}, WrongUsage, "AC" + Range + "\"2147483648\".");
    ExpectNotStored({L"--force", L"1", L"0", L"-2147483649"}, WrongUsage, "DC" + Range + "\"-2147483649\".");
}

TEST_F(SetCommandTest, MalformedAssignmentIsRejected) {
    ExpectNotStored({L"1=0"}, WrongUsage, "\"1=0\" is not a value: specify ID=AC,DC.");
    ExpectNotStored({L"1=,"}, WrongUsage, "\"1=,\" is not a value: specify ID=AC,DC.");
    ExpectNotStored({L"1=0,0", L"2"}, WrongUsage, "\"2\" is not a value: specify ID=AC,DC.");
    ExpectNotStored({L"1=0,0", L"1=1,1"}, WrongUsage, "Function 1 is specified more than once.");
}

TEST_F(SetCommandTest, UnknownFunctionIsAnErrorAndNotStored) {
    const std::string sentence = "The catalogue " + Utf8(installation.DefaultsFile()) + " has no function 3.";
    ExpectNotStored({L"3", L"0", L"0"}, Failure, sentence);
    ExpectNotStored({L"1=0,0", L"3=0,0"}, Failure, sentence);
}

TEST_F(SetCommandTest, FunctionHiddenByDisplayIsStoredWithNotice) {
    EXPECT_EQ(Output({L"set", L"balanced", L"8", L"0", L"1"}),
              "Stored in balanced (381b4222-f694-41f0-9685-ff5bb260df2e):\n"
              "\n"
              "ID  Function  Plugged in (index)  On battery (index)\n"
              " 8  Rate      60 (0)              100000 (1)\n"
              "\n"
              "Function 8 is hidden on this display, so \"params\" does not list it.\n");
    EXPECT_NE(UserSettings().find(R"(<Function ID="8" ACParamIndex="0" DCParamIndex="1")"),
              std::string::npos);
}

TEST_F(SetCommandTest, JsonReportsHiddenFunction) {
    EXPECT_EQ(JsonOutput({L"set", L"balanced", L"8", L"0", L"1"})["parameters"][0]["hidden"], true);
}

TEST_F(SetCommandTest, MissingCatalogueIsAnError) {
    std::filesystem::remove(installation.DefaultsFile());
    ExpectError({L"set", L"balanced", L"1", L"0", L"0"}, Failure, MissingCatalogue());
}

TEST_F(SetCommandTest, UserSettingsInUseAreAnError) {
    Output({L"set", L"balanced", L"1", L"0", L"1"});
    const std::string before = UserSettings();
    const SecondProcess other{HoldMutex, {UserMarker}};
    ExpectError({L"set", L"balanced", L"1", L"1", L"1"}, InUse,
                UserFile() + " is in use by another program.");
    EXPECT_EQ(UserSettings(), before);
}

TEST_F(SetCommandTest, DefaultValuesAreNotTakenForStoredOnes) {
    Output({L"set", L"balanced", L"1", L"0", L"1"});
    const SecondProcess other{HoldMutex, {UserMarker}};
    ExpectError({L"set", L"balanced", L"1", L"1", L"0"}, InUse,
                UserFile() + " is in use by another program.");
}

TEST_F(SetCommandTest, MissingUserSettingsFolderIsAnError) {
    std::filesystem::remove(installation.UserFile().parent_path());
    ExpectError({L"set", L"balanced", L"1", L"1", L"1"}, Failure, UserFile() + " cannot be written.");
}

TEST_F(SetCommandTest, MissingFolderFailsForHiddenFunction) {
    std::filesystem::remove(installation.UserFile().parent_path());
    ExpectError({L"set", L"balanced", L"8", L"0", L"1"}, Failure, UserFile() + " cannot be written.");
}

TEST_F(SetCommandTest, FolderNamedAsUserSettingsIsAnError) {
    std::filesystem::create_directory(installation.UserFile());
    ExpectError({L"set", L"balanced", L"1", L"1", L"1"}, Failure, UserFile() + " cannot be read.");
}

TEST_F(SetCommandTest, OldValuesReadBackAreAnError) {
    WriteUserSettings(R"(<OrloPowerCfg><PowerSchemes><PowerScheme GUID="381b4222-f694-41f0-9685-ff5bb260df2e">
        <Function ID="1" ACParamIndex="0" DCParamIndex="0"/><Function/></PowerScheme></PowerSchemes></OrloPowerCfg>)");
    ExpectError(
        {L"set", L"balanced", L"1", L"1", L"1"}, Failure,
        "The value could not be stored in the user settings file " + Utf8(installation.UserFile()) + ".");
}

TEST_F(SetCommandTest, ValuesMissingAfterStoreAreAnError) {
    WriteUserSettings(R"(<OrloPowerCfg><PowerSchemes><PowerScheme GUID="381b4222-f694-41f0-9685-ff5bb260df2e">
        <Function/></PowerScheme></PowerSchemes></OrloPowerCfg>)");
    ExpectError(
        {L"set", L"balanced", L"1", L"1", L"1"}, Failure,
        "The value could not be stored in the user settings file " + Utf8(installation.UserFile()) + ".");
}

}  // namespace ZOTDam::Test
