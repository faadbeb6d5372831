// Tests of zotdamctl reset.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

class ResetCommandTest : public ClientTest {
protected:
    ResetCommandTest() { WriteDefaults(ThreeFunctions); }
};

TEST_F(ResetCommandTest, ResetRestoresDefaultParameters) {
    Output({L"set", L"balanced", L"1", L"7", L"7", L"--force"});
    Output({L"set", L"power-saver", L"1", L"7", L"7", L"--force"});
    EXPECT_TRUE(Output({L"reset"}).starts_with("The user settings are reset to the defaults.\nBackup: "));
    EXPECT_EQ(IndexesOf({L"params", L"balanced"})[0], Param(1, 2, 3));
    EXPECT_EQ(IndexesOf({L"params", L"power-saver"})[0], Param(1, 2, 3));
}

TEST_F(ResetCommandTest, ResetEmptiesUserSettings) {
    WriteUserSettings(R"(<OrloPowerCfg><CommonSettings LowBatteryWarning="15"/><PowerSchemes>
        <PowerScheme GUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c"/></PowerSchemes></OrloPowerCfg>)");
    EXPECT_EQ(JsonOutput({L"reset"})["reset"], true);
    const std::string settings = UserSettings();
    EXPECT_NE(settings.find("<PowerSchemes/>"), std::string::npos) << settings;
    EXPECT_NE(settings.find("<CommonSettings/>"), std::string::npos) << settings;
}

TEST_F(ResetCommandTest, MissingCatalogueDoesNotPreventReset) {
    Output({L"set", L"balanced", L"1", L"7", L"7", L"--force"});
    std::filesystem::remove(installation.DefaultsFile());
    EXPECT_EQ(JsonOutput({L"reset"})["reset"], true);
    EXPECT_EQ(UserSettings().find("<PowerScheme "), std::string::npos);
}

TEST_F(ResetCommandTest, MissingUserSettingsLeaveNothingToReset) {
    EXPECT_EQ(Output({L"reset"}), "There is nothing to reset.\n");
    EXPECT_EQ(JsonOutput({L"reset"}), Json({{"reset", false}, {"backup", nullptr}}));
}

TEST_F(ResetCommandTest, OldSettingsAreKeptAsBackup) {
    WriteBalanced(OldFunction(1, 5, 6));
    const std::string before = UserSettings();
    const std::string backup = JsonOutput({L"reset"})["backup"];
    EXPECT_EQ(ReadFile(std::filesystem::path{backup}), before);
}

TEST_F(ResetCommandTest, FailedResetKeepsNoBackup) {
    WriteBalanced(OldFunction(1, 5, 6));
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(Run({L"reset"}).exitStatus, Failure);
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_NORMAL);
    const std::filesystem::directory_iterator entries{installation.UserFile().parent_path()};
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

TEST_F(ResetCommandTest, UserSettingsInUseAreAnError) {
    Output({L"set", L"balanced", L"1", L"7", L"7", L"--force"});
    const std::string before = UserSettings();
    const SecondProcess other{HoldMutex, {UserMarker}};
    ExpectError({L"reset"}, InUse, UserFile() + " is in use by another program.");
    EXPECT_EQ(UserSettings(), before);
}

TEST_F(ResetCommandTest, MissingCatalogueDoesNotHideFileInUse) {
    Output({L"set", L"balanced", L"1", L"7", L"7", L"--force"});
    std::filesystem::remove(installation.DefaultsFile());
    const SecondProcess other{HoldMutex, {UserMarker}};
    ExpectError({L"reset"}, InUse, UserFile() + " is in use by another program.");
}

TEST_F(ResetCommandTest, ReadOnlyUserSettingsAreAnError) {
    Output({L"set", L"balanced", L"1", L"7", L"7", L"--force"});
    const std::string before = UserSettings();
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_READONLY);
    ExpectError({L"reset"}, Failure, UserFile() + " cannot be written.");
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(UserSettings(), before);
}

}  // namespace ZOTDam::Test
