// Tests of ResetDefault, which clears the user settings that this process read last and saves them.
#include "support/CommonSettingsTest.h"
#include "support/DataFiles.h"
#include "support/ImportPatch.h"
#include "support/ListedDeclarations.h"
#include "support/SaveCalls.h"

namespace ZOTDam::Test {

namespace {

void* NoMemory(std::size_t) {
    return nullptr;
}

}  // namespace

class ResetTest : public CommonSettingsTest {
protected:
    void WriteScheme() const {
        WriteUserSettings(OldUserFile(OldScheme(BalancedText, OldFunction(1, 5, 6))));
    }
    // ResetDefault clears the settings in memory, so they must be read first.
    void ReadUserSettings() { Dll().TEVGetParam(&HighPerformance); }
    bool Reset() {
        ReadUserSettings();
        return Dll().ResetDefault();
    }
};

TEST_F(ResetTest, SchemesAreRemovedAndMissingSectionIsAdded) {
    WriteUserSettings(OldUserFile(OldScheme(BalancedText, OldFunction(1, 5, 6)) +
                                  OldScheme(HighPerformanceText, OldFunction(1, 7, 8))));
    EXPECT_TRUE(Reset());
    EXPECT_EQ(UserSettings(), SavedXml{"<OrloPowerCfg><PowerSchemes/><CommonSettings/></OrloPowerCfg>\n"});
}

TEST_F(ResetTest, CommonSettingsAreRemovedWithSchemes) {
    WriteUserSettings(R"(<OrloPowerCfg><CommonSettings A="a" B="b"><C/>text<!-- note --></CommonSettings>)"
                      R"(<PowerSchemes><PowerScheme GUID="x"/></PowerSchemes></OrloPowerCfg>)");
    EXPECT_TRUE(Reset());
    EXPECT_EQ(UserSettings(), SavedXml{"<OrloPowerCfg><CommonSettings/><PowerSchemes/></OrloPowerCfg>\n"});
}

TEST_F(ResetTest, ChildrenOfEveryKindAreRemoved) {
    WriteUserSettings(
        "<OrloPowerCfg><PowerSchemes>text<!-- note --><![CDATA[data]]><?pi x?><Other/>"
        "</PowerSchemes><CommonSettings/></OrloPowerCfg>");
    EXPECT_TRUE(Reset());
    EXPECT_EQ(UserSettings(), SavedXml{"<OrloPowerCfg><PowerSchemes/><CommonSettings/></OrloPowerCfg>\n"});
}

TEST_F(ResetTest, CommentInSchemesSectionIsEnoughForReset) {
    WriteUserSettings(
        "<OrloPowerCfg><PowerSchemes><!-- note --></PowerSchemes>"
        "<CommonSettings A=\"a\"/></OrloPowerCfg>");
    EXPECT_TRUE(Reset());
    EXPECT_EQ(UserSettings(), SavedXml{"<OrloPowerCfg><PowerSchemes/><CommonSettings/></OrloPowerCfg>\n"});
}

TEST_F(ResetTest, NamespaceDeclarationsOfCommonSettingsAreKept) {
    WriteUserSettings(
        "<OrloPowerCfg><PowerSchemes><PowerScheme/></PowerSchemes>"
        R"(<CommonSettings xmlns:p="urn:p" A="a" B="b"/></OrloPowerCfg>)");
    EXPECT_TRUE(Reset());
    EXPECT_EQ(UserSettings(),
              SavedXml{R"(<OrloPowerCfg><PowerSchemes/><CommonSettings xmlns:p="urn:p"/></OrloPowerCfg>)"
                       "\n"});
}

// wine counts this declaration in the attribute map, but does not return it.
TEST_F(ResetTest, EmptyDefaultNamespaceDeclarationIsKept) {
    WriteUserSettings(
        "<OrloPowerCfg><PowerSchemes><PowerScheme/></PowerSchemes>"
        R"(<CommonSettings xmlns="" xmlns:p="urn:p" A="a" p:B="b"/></OrloPowerCfg>)");
    EXPECT_TRUE(Reset());
    EXPECT_EQ(UserSettings(),
              SavedXml{R"(<OrloPowerCfg><PowerSchemes/><CommonSettings xmlns="" xmlns:p="urn:p"/>)"
                       "</OrloPowerCfg>\n"});
}

TEST_F(ResetTest, NamespaceDeclarationListedAsAttributeIsKept) {
    WriteUserSettings(
        "<OrloPowerCfg><PowerSchemes><PowerScheme/></PowerSchemes>"
        R"(<CommonSettings xmlns:p="urn:p" A="a" B="b"/></OrloPowerCfg>)");
    const ListedDeclarations declarations{L"xmlns:p"};
    EXPECT_TRUE(Reset());
    EXPECT_EQ(UserSettings(),
              SavedXml{R"(<OrloPowerCfg><PowerSchemes/><CommonSettings xmlns:p="urn:p"/></OrloPowerCfg>)"
                       "\n"});
}

TEST_F(ResetTest, AttributesOfSchemesSectionAreKept) {
    WriteUserSettings(
        "<OrloPowerCfg><PowerSchemes Version=\"2\"><PowerScheme/></PowerSchemes>"
        "<CommonSettings/></OrloPowerCfg>");
    EXPECT_TRUE(Reset());
    EXPECT_EQ(UserSettings(),
              SavedXml{"<OrloPowerCfg><PowerSchemes Version=\"2\"/><CommonSettings/></OrloPowerCfg>\n"});
}

TEST_F(ResetTest, ContentOutsideBothSectionsIsKept) {
    WriteUserSettings(
        "<!-- head --><OrloPowerCfg Root=\"kept\"><Other>kept</Other><PowerSchemes><PowerScheme/>"
        "</PowerSchemes><CommonSettings A=\"a\"/></OrloPowerCfg>");
    EXPECT_TRUE(Reset());
    EXPECT_EQ(UserSettings(),
              SavedXml{"<!-- head -->\n<OrloPowerCfg Root=\"kept\"><Other>kept</Other><PowerSchemes/>"
                       "<CommonSettings/></OrloPowerCfg>\n"});
}

TEST_F(ResetTest, OnlyFirstSectionsAreCleared) {
    WriteUserSettings(
        "<OrloPowerCfg><PowerSchemes><PowerScheme/></PowerSchemes><CommonSettings A=\"a\"/>"
        "<PowerSchemes><PowerScheme/></PowerSchemes><CommonSettings A=\"a\"/></OrloPowerCfg>");
    EXPECT_TRUE(Reset());
    EXPECT_EQ(
        UserSettings(),
        SavedXml{"<OrloPowerCfg><PowerSchemes/><CommonSettings/>"
                 "<PowerSchemes><PowerScheme/></PowerSchemes><CommonSettings A=\"a\"/></OrloPowerCfg>\n"});
}

TEST_F(ResetTest, EmptySchemesSectionReturnsFalseAndKeepsSettings) {
    const std::string file = "<OrloPowerCfg><PowerSchemes/><CommonSettings A=\"a\"/></OrloPowerCfg>";
    WriteUserSettings(file);
    EXPECT_FALSE(Reset());
    EXPECT_EQ(UserSettings(), file);
}

TEST_F(ResetTest, MissingSchemesSectionReturnsFalseAndSavesNothing) {
    const std::string file = "<OrloPowerCfg><CommonSettings A=\"a\"/></OrloPowerCfg>";
    WriteUserSettings(file);
    EXPECT_FALSE(Reset());
    EXPECT_EQ(UserSettings(), file);
}

TEST_F(ResetTest, MissingFileReturnsFalseAndIsNotCreated) {
    EXPECT_FALSE(Reset());
    EXPECT_FALSE(std::filesystem::exists(installation.UserFile()));
}

TEST_F(ResetTest, ResetReturnsFalseBeforeSettingsAreRead) {
    WriteScheme();
    const std::string file = UserSettings();
    EXPECT_FALSE(Dll().ResetDefault());
    EXPECT_EQ(UserSettings(), file);
}

TEST_F(ResetTest, SecondResetReturnsFalse) {
    WriteScheme();
    EXPECT_TRUE(Reset());
    EXPECT_FALSE(Dll().ResetDefault());
    EXPECT_FALSE(Reset());
}

TEST_F(ResetTest, FileIsNotReadAgainBeforeReset) {
    WriteScheme();
    ReadUserSettings();
    WriteUserSettings("<OrloPowerCfg><Newer/></OrloPowerCfg>");
    EXPECT_TRUE(Dll().ResetDefault());
    EXPECT_EQ(UserSettings(), SavedXml{"<OrloPowerCfg><PowerSchemes/><CommonSettings/></OrloPowerCfg>\n"});
}

TEST_F(ResetTest, DeletedFileIsCreatedAgain) {
    WriteScheme();
    ReadUserSettings();
    std::filesystem::remove(installation.UserFile());
    EXPECT_TRUE(Dll().ResetDefault());
    EXPECT_EQ(UserSettings(), SavedXml{"<OrloPowerCfg><PowerSchemes/><CommonSettings/></OrloPowerCfg>\n"});
}

TEST_F(ResetTest, NextReadStoresDefaultsAgain) {
    WriteDefaults(TwoFunctions);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {50, 60}}}));
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {50, 60}}, {2, {4, 5}}}));
    EXPECT_TRUE(Dll().ResetDefault());
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {2, 3}}, {2, {4, 5}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<OrloPowerCfg><PowerSchemes>" +
                       NewScheme(BalancedText, NewFunction(1, 2, 3) + NewFunction(2, 4, 5)) +
                       "</PowerSchemes><CommonSettings/></OrloPowerCfg>\n"});
}

TEST_F(ResetTest, CommonSettingsReturnDefaultsAfterReset) {
    WriteDefaults(R"(<ZOTDefault><CommonSettings Name="default"/></ZOTDefault>)");
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_TRUE(Dll().SetCommonSetting(L"Name", L"user"));
    EXPECT_TRUE(Dll().SetCommonSetting(L"Other", L"user"));
    EXPECT_EQ(Setting(L"Name"), L"user");
    EXPECT_TRUE(Dll().ResetDefault());
    EXPECT_EQ(Setting(L"Name"), L"default");
    EXPECT_EQ(Setting(L"Other"), Missing);
}

TEST_F(ResetTest, ResetWithoutSchemesKeepsCommonSettings) {
    EXPECT_TRUE(Dll().SetCommonSetting(L"Name", L"user"));
    EXPECT_FALSE(Dll().ResetDefault());
    EXPECT_EQ(Setting(L"Name"), L"user");
}

TEST_F(ResetTest, BusyFileClearsCommonSettingsInMemoryOnly) {
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_TRUE(Dll().SetCommonSetting(L"Name", L"user"));
    {
        const SecondProcess other{HoldMutex, {UserMarker}};
        EXPECT_TRUE(Dll().ResetDefault());
        EXPECT_EQ(Setting(L"Name"), Missing);
    }
    EXPECT_EQ(Setting(L"Name"), L"user");
}

TEST_F(ResetTest, UnsavedCommonSettingIsCleared) {
    WriteScheme();
    ReadUserSettings();
    {
        const SecondProcess other{HoldMutex, {UserMarker}};
        EXPECT_TRUE(Dll().SetCommonSetting(L"Name", L"user"));
        EXPECT_EQ(Setting(L"Name"), L"user");
    }
    EXPECT_TRUE(Dll().ResetDefault());
    EXPECT_EQ(Setting(L"Name"), Missing);
    EXPECT_EQ(UserSettings(), SavedXml{"<OrloPowerCfg><PowerSchemes/><CommonSettings/></OrloPowerCfg>\n"});
}

TEST_F(ResetTest, DefaultsFileIsUnchanged) {
    WriteDefaults(TwoFunctions);
    WriteScheme();
    EXPECT_TRUE(Reset());
    EXPECT_EQ(Defaults(), TwoFunctions);
}

TEST_F(ResetTest, BusyFileClearsSchemesInMemoryOnly) {
    WriteDefaults(TwoFunctions);
    WriteScheme();
    ReadUserSettings();
    const std::string file = UserSettings();
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_TRUE(Dll().ResetDefault());
    EXPECT_EQ(UserSettings(), file);
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {2, 3}}, {2, {4, 5}}}));
}

TEST_F(ResetTest, NextReadUndoesUnsavedReset) {
    WriteScheme();
    ReadUserSettings();
    {
        const SecondProcess other{HoldMutex, {UserMarker}};
        EXPECT_TRUE(Dll().ResetDefault());
    }
    EXPECT_TRUE(SetParameter(Balanced, {{2, {7, 8}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(1, 5, 6) + NewFunction(2, 7, 8)))});
}

TEST_F(ResetTest, FailedSaveStillReturnsTrue) {
    WriteScheme();
    ReadUserSettings();
    const std::string file = UserSettings();
    SaveCalls calls{Dll().Handle()};
    calls.Fail(Replacements);
    EXPECT_TRUE(Dll().ResetDefault());
    EXPECT_EQ(UserSettings(), file);
}

TEST_F(ResetTest, ResetWithoutMemoryForDocumentReturnsTrue) {
    WriteScheme();
    const std::string file = UserSettings();
    {
        const ImportPatch noMemory{Dll().Handle(), "malloc", &NoMemory};
        EXPECT_TRUE(Dll().ResetDefault());
    }
    EXPECT_EQ(UserSettings(), file);
}

TEST_F(ResetTest, ResetReturnsFalseAfterExit) {
    WriteScheme();
    ReadUserSettings();
    const std::string file = UserSettings();
    EXPECT_TRUE(Dll().ZOTDamExit());
    EXPECT_FALSE(Dll().ResetDefault());
    EXPECT_EQ(UserSettings(), file);
}

}  // namespace ZOTDam::Test
