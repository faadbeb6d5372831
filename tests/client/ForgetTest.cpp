// Tests of zotdamctl forget.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

constexpr wchar_t InventedScheme[] = L"0a1b2c3d-1111-2222-3333-444455556666";

class ForgetTest : public ClientTest {
protected:
    ForgetTest() { WriteDefaults(ThreeFunctions); }

    Json Forget(const std::wstring& scheme) const { return JsonOutput({L"forget", scheme})["forgotten"]; }
};

TEST_F(ForgetTest, SchemeIsRemovedAndOthersAreKept) {
    const std::string other = OldScheme(HighPerformanceText, OldFunction(1, 7, 8));
    WriteUserSettings("<OrloPowerCfg><CommonSettings A=\"1\"/><PowerSchemes>" +
                      OldScheme(BalancedText, OldFunction(1, 5, 6)) + other +
                      "</PowerSchemes></OrloPowerCfg>");
    const std::string before = UserSettings();
    const Json json = JsonOutput({L"forget", L"balanced"});
    EXPECT_EQ(json["forgotten"], true);
    EXPECT_EQ(ReadFile(std::filesystem::path{json["backup"].get<std::string>()}), before);
    EXPECT_NE(UserSettings().find("<CommonSettings A=\"1\"/><PowerSchemes>" + other + "</PowerSchemes>"),
              std::string::npos)
        << UserSettings();
}

TEST_F(ForgetTest, RepeatedSchemeIsRemovedCompletely) {
    WriteSchemes(OldScheme(BalancedText, OldFunction(1, 5, 6)) +
                 OldScheme(BalancedText, OldFunction(1, 7, 8)));
    EXPECT_EQ(Forget(L"balanced"), true);
    EXPECT_EQ(UserSettings().find("<PowerScheme "), std::string::npos) << UserSettings();
}

TEST_F(ForgetTest, UnknownSchemeChangesNothing) {
    const std::string before = OldUserFile(OldScheme(BalancedText, OldFunction(1, 5, 6)));
    WriteUserSettings(before);
    EXPECT_EQ(Output({L"forget", InventedScheme}),
              "The scheme 0a1b2c3d-1111-2222-3333-444455556666 is not stored.\n");
    EXPECT_EQ(Forget(InventedScheme), false);
    EXPECT_EQ(UserSettings(), before);
}

TEST_F(ForgetTest, MissingFileIsNotCreated) {
    EXPECT_EQ(Forget(L"balanced"), false);
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(ForgetTest, UserSettingsInUseAreAnError) {
    WriteBalanced(OldFunction(1, 5, 6));
    ExpectNeedsUserSettings({L"forget", L"balanced"});
}

TEST_F(ForgetTest, ReadOnlyUserSettingsAreAnError) {
    WriteBalanced(OldFunction(1, 5, 6));
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_READONLY);
    ExpectError({L"forget", L"balanced"}, Failure, UserFile() + " cannot be written.");
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_NORMAL);
}

}  // namespace ZOTDam::Test
