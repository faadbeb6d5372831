// Tests of InitCommonSetting, which replaces the common settings of the defaults file with those of the base
// catalogue.
#include "support/CommonSettingsTest.h"
#include "support/DataFiles.h"
#include "support/DomDocuments.h"
#include "support/DomMethods.h"
#include "support/MarkerCalls.h"
#include "support/SaveCalls.h"
#include "support/XmlFile.h"

namespace ZOTDam::Test {

class CommonSettingInitTest : public CommonSettingsTest {
protected:
    bool Init() { return Dll().InitCommonSetting(); }

    void ExpectFailureLeaves(const std::string& defaults) {
        EXPECT_FALSE(Init());
        EXPECT_EQ(Defaults(), defaults);
        EXPECT_FALSE(std::filesystem::exists(TemporaryFileOf(installation.DefaultsFile())));
    }

    inline static const std::string NewFile =
        "<?xml version='1.0' encoding='UTF-8'?>\n<ZOTDefault><CommonSettings A=\"base\"/></ZOTDefault>\n";
};

// ---- The defaults file after the call ----

TEST_F(CommonSettingInitTest, InitLeavesOnlyBaseSettings) {
    WriteBaseValues(R"(A="base" B="2")");
    WriteDefaults(R"(<ZOTDefault><CommonSettings A="old" Extra="x"/></ZOTDefault>)");
    EXPECT_TRUE(Init());
    EXPECT_EQ(Defaults(), SavedXml{"<ZOTDefault><CommonSettings A=\"base\" B=\"2\"/></ZOTDefault>\n"});
}

TEST_F(CommonSettingInitTest, InitAddsMissingSection) {
    WriteBaseValues(R"(A="base")");
    WriteDefaults(R"(<ZOTDefault><Functions/></ZOTDefault>)");
    EXPECT_TRUE(Init());
    EXPECT_EQ(Defaults(), SavedXml{"<ZOTDefault><Functions/><CommonSettings A=\"base\"/></ZOTDefault>\n"});
}

TEST_F(CommonSettingInitTest, InitAppendsSectionAsLastChild) {
    WriteBaseValues(R"(A="base")");
    WriteDefaults(R"(<ZOTDefault><CommonSettings/><Functions/><Other/></ZOTDefault>)");
    EXPECT_TRUE(Init());
    EXPECT_EQ(Defaults(),
              SavedXml{"<ZOTDefault><Functions/><Other/><CommonSettings A=\"base\"/></ZOTDefault>\n"});
}

TEST_F(CommonSettingInitTest, InitRemovesOnlyFirstOldSection) {
    WriteBaseValues(R"(A="base")");
    WriteDefaults(
        R"(<ZOTDefault><CommonSettings A="1"/><CommonSettings A="2"/><CommonSettings A="3"/></ZOTDefault>)");
    EXPECT_TRUE(Init());
    EXPECT_EQ(
        Defaults(),
        SavedXml{"<ZOTDefault><CommonSettings A=\"2\"/><CommonSettings A=\"3\"/><CommonSettings A=\"base\"/>"
                 "</ZOTDefault>\n"});
    EXPECT_EQ(Setting(L"A"), L"2");
}

TEST_F(CommonSettingInitTest, NamespacedAndNestedSectionsAreNotRemoved) {
    WriteBaseValues(R"(A="base")");
    const std::string others =
        "<CommonSettings xmlns=\"urn:x\" A=\"1\"/><Other><CommonSettings A=\"2\"/></Other>";
    WriteDefaults("<ZOTDefault>" + others + "</ZOTDefault>");
    EXPECT_TRUE(Init());
    EXPECT_EQ(Defaults(), SavedXml{"<ZOTDefault>" + others + "<CommonSettings A=\"base\"/></ZOTDefault>\n"});
}

TEST_F(CommonSettingInitTest, InitCreatesMissingDefaultsFile) {
    WriteBaseValues(R"(A="base")");
    EXPECT_TRUE(Init());
    EXPECT_EQ(Defaults(), SavedXml{NewFile});
}

TEST_F(CommonSettingInitTest, InitCreatesDefaultsFileAfterRead) {
    WriteBaseValues(R"(A="base")");
    EXPECT_EQ(Setting(L"A"), L"base");
    EXPECT_TRUE(Init());
    EXPECT_EQ(Defaults(), SavedXml{NewFile});
}

TEST_F(CommonSettingInitTest, InitKeepsAllOtherContent) {
    WriteBaseValues(R"(A="base")");
    const std::string before =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!--head-->\n<Any Root=\"&lt;r&gt;\">"
        "<Functions F=\"f\"><Function ID=\"1\"><Display/><Commands/>text<![CDATA[a < "
        "b]]></Function></Functions>"
        "<!--note-->";
    WriteDefaults(before + "<CommonSettings A=\"old\"/></Any>\n<!--tail-->\n");
    EXPECT_TRUE(Init());
    EXPECT_EQ(Defaults(), SavedXml{before + "<CommonSettings A=\"base\"/></Any>\n<!--tail-->\n"});
}

TEST_F(CommonSettingInitTest, InitKeepsCatalogue) {
    WriteBaseValues(R"(A="base")");
    WriteDefaults(TwoFunctions);
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    EXPECT_TRUE(Init());
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    EXPECT_EQ(GetParameterDefault(Balanced), (Params{{1, {2, 3}}, {2, {4, 5}}}));
    Unload();
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
}

TEST_F(CommonSettingInitTest, EmptyBaseSectionIsCopied) {
    WriteBase("<ZOTBase><CommonSettings/></ZOTBase>");
    WriteDefaults(R"(<ZOTDefault><CommonSettings A="old"/></ZOTDefault>)");
    EXPECT_TRUE(Init());
    EXPECT_EQ(Defaults(), SavedXml{"<ZOTDefault><CommonSettings/></ZOTDefault>\n"});
}

TEST_F(CommonSettingInitTest, AllContentOfBaseSectionIsCopied) {
    const std::string section =
        "<CommonSettings A=\"&lt;1&gt;&#9;\xe4\xb8\xad\xf0\x9f\x98\x80\"><Note B=\"2\">text<Deep>er</Deep>"
        "</Note><!--comment--><![CDATA[d < e]]><?tool x?>tail</CommonSettings>";
    WriteBase("<ZOTBase>" + section + "</ZOTBase>");
    WriteDefaults("<ZOTDefault/>");
    EXPECT_TRUE(Init());
    EXPECT_EQ(Defaults(), SavedXml{"<ZOTDefault>" + section + "</ZOTDefault>\n"});
}

TEST_F(CommonSettingInitTest, NamespacesOfCopiedNamesAreDeclared) {
    WriteBase(R"(<ZOTBase xmlns:x="urn:x"><CommonSettings A="1" x:B="2"><x:C/></CommonSettings></ZOTBase>)");
    EXPECT_TRUE(Init());
    EXPECT_NE(Defaults().find("xmlns:x=\"urn:x\""), std::string::npos) << Defaults();
    EXPECT_TRUE(IsWellFormed(installation.DefaultsFile()));
    Unload();
    EXPECT_EQ(Setting(L"A"), L"1");
}

TEST_F(CommonSettingInitTest, OnlyFirstBaseSectionIsCopied) {
    WriteBase(R"(<B xmlns:x="urn:x"><x:CommonSettings A="0"/><X><CommonSettings A="1"/></X>)"
              R"(<CommonSettings A="base"/><CommonSettings A="3"/></B>)");
    EXPECT_TRUE(Init());
    EXPECT_EQ(Defaults(), SavedXml{NewFile});
}

TEST_F(CommonSettingInitTest, ThousandSettingsAreCopied) {
    std::string settings;
    for (int i = 0; i < 1000; ++i)
        settings += "S" + std::to_string(i) + "=\"" + std::to_string(i) + "\" ";
    WriteBaseValues(settings);
    EXPECT_TRUE(Init());
    Unload();
    std::filesystem::remove(installation.BaseFile());
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(Setting(L"S" + std::to_wstring(i)), std::to_wstring(i));
}

TEST_F(CommonSettingInitTest, LongValueIsNotTruncated) {
    WriteBaseValues("A=\"" + std::string(5000, 'x') + "\"");
    EXPECT_TRUE(Init());
    EXPECT_NE(Defaults().find("A=\"" + std::string(5000, 'x') + "\""), std::string::npos);
}

TEST_F(CommonSettingInitTest, InitWritesOnlyDefaultsFile) {
    WriteBaseValues(R"(A="base")");
    WriteUserValues(R"(A="user")");
    EXPECT_TRUE(Init());
    Unload();
    EXPECT_EQ(Base(), FileWith(R"(A="base")"));
    EXPECT_EQ(UserSettings(), FileWith(R"(A="user")"));
}

TEST_F(CommonSettingInitTest, InitCreatesNoUserSettings) {
    WriteBaseValues(R"(A="base")");
    EXPECT_TRUE(Init());
    EXPECT_FALSE(HasUserFile());
}

TEST_F(CommonSettingInitTest, RepeatedInitLeavesSameContent) {
    WriteBaseValues(R"(A="base")");
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(Init());
        EXPECT_NE(Defaults().find("<ZOTDefault><CommonSettings A=\"base\"/></ZOTDefault>"), std::string::npos)
            << Defaults();
    }
}

TEST_F(CommonSettingInitTest, NotWellFormedDefaultsAreCopiedAndReplaced) {
    WriteBaseValues(R"(A="base")");
    WriteDefaults("<broken");
    EXPECT_TRUE(Init());
    EXPECT_EQ(Defaults(), SavedXml{NewFile});
    EXPECT_EQ(Content(UnreadableCopyOf(installation.DefaultsFile())), "<broken");
}

TEST_F(CommonSettingInitTest, ExitReleasesBothDocuments) {
    WriteBaseValues(R"(A="base")");
    WriteDefaultValues(R"(A="old")");
    DomDocuments documents{Dll().Handle()};
    EXPECT_TRUE(Init());
    EXPECT_EQ(documents.HeldCount(), 2u);
    EXPECT_TRUE(Dll().ZOTDamExit());
    EXPECT_EQ(documents.HeldCount(), 0u);
}

// ---- Reading after the call ----

TEST_F(CommonSettingInitTest, BaseValuesBecomeDefaults) {
    WriteBaseValues(R"(A="base" B="base")");
    WriteDefaultValues(R"(A="old" Extra="old")");
    EXPECT_EQ(Setting(L"A"), L"old");
    EXPECT_TRUE(Init());
    EXPECT_EQ(Setting(L"A"), L"base");
    EXPECT_EQ(Setting(L"B"), L"base");
    EXPECT_EQ(Setting(L"Extra"), Missing);
    Unload();
    WriteBaseValues(R"(A="newer")");
    EXPECT_EQ(Setting(L"A"), L"base");
    EXPECT_EQ(Setting(L"B"), L"base");
}

TEST_F(CommonSettingInitTest, UserValuesOverrideCopiedDefaults) {
    WriteBaseValues(R"(A="base")");
    EXPECT_TRUE(Dll().SetCommonSetting(L"A", L"user"));
    EXPECT_TRUE(Init());
    EXPECT_EQ(Setting(L"A"), L"user");
}

TEST_F(CommonSettingInitTest, InitUsesBaseCatalogueAsFirstRead) {
    WriteBaseValues(R"(A="base")");
    EXPECT_EQ(Setting(L"A"), L"base");
    WriteBaseValues(R"(A="newer")");
    EXPECT_TRUE(Init());
    EXPECT_EQ(Defaults(), SavedXml{NewFile});
}

TEST_F(CommonSettingInitTest, InitWritesDefaultsAsFirstRead) {
    WriteBaseValues(R"(A="base")");
    WriteDefaults("<ZOTDefault><Functions/></ZOTDefault>");
    EXPECT_EQ(Dll().GetFuncCount(), 0u);
    WriteDefaults("<Newer/>");
    EXPECT_TRUE(Init());
    EXPECT_EQ(Defaults(), SavedXml{"<ZOTDefault><Functions/><CommonSettings A=\"base\"/></ZOTDefault>\n"});
}

// ---- Nothing to copy ----

class MissingBaseSettingsTest : public CommonSettingInitTest {
protected:
    static constexpr char Old[] = R"(<ZOTDefault><CommonSettings A="old"/><Functions/></ZOTDefault>)";

    void ExpectFailure() {
        WriteDefaults(Old);
        ExpectFailureLeaves(Old);
        EXPECT_EQ(Setting(L"A"), L"old");
    }
};

TEST_F(MissingBaseSettingsTest, MissingBaseCatalogueFailsInit) {
    ExpectFailure();
    EXPECT_FALSE(std::filesystem::exists(installation.BaseFile()));
}

TEST_F(MissingBaseSettingsTest, MissingBaseSectionFailsInit) {
    WriteBase("<ZOTBase><Functions/><SpecSchemes/></ZOTBase>");
    ExpectFailure();
    EXPECT_EQ(Base(), "<ZOTBase><Functions/><SpecSchemes/></ZOTBase>");
}

TEST_F(MissingBaseSettingsTest, NamespacedBaseSectionFailsInit) {
    WriteBase(R"(<ZOTBase><CommonSettings xmlns="urn:x" A="base"/></ZOTBase>)");
    ExpectFailure();
}

TEST_F(MissingBaseSettingsTest, NotWellFormedBaseCatalogueFailsInit) {
    WriteBase(R"(<ZOTBase><CommonSettings A="base"/>)");
    ExpectFailure();
}

TEST_F(MissingBaseSettingsTest, FailedInitCreatesNoFile) {
    EXPECT_FALSE(Init());
    EXPECT_FALSE(HasDefaultsFile());
    EXPECT_FALSE(HasUserFile());
}

TEST_F(MissingBaseSettingsTest, InitIgnoresBaseCatalogueCreatedLater) {
    EXPECT_FALSE(Init());
    WriteBaseValues(R"(A="base")");
    EXPECT_FALSE(Init());
    Unload();
    EXPECT_TRUE(Init());
}

// ---- Busy defaults ----

TEST_F(CommonSettingInitTest, InitOfBusyDefaultsChangesMemoryOnly) {
    WriteBaseValues(R"(A="base")");
    WriteDefaultValues(R"(A="old")");
    EXPECT_EQ(Setting(L"A"), L"old");
    {
        const SecondProcess other{HoldMutex, {DefaultsMarker}};
        EXPECT_TRUE(Init());
        EXPECT_EQ(Defaults(), FileWith(R"(A="old")"));
        EXPECT_EQ(Setting(L"A"), L"base");
    }
    EXPECT_EQ(Setting(L"A"), L"base");
    EXPECT_EQ(Defaults(), FileWith(R"(A="old")"));
    Unload();
    EXPECT_EQ(Setting(L"A"), L"old");
}

TEST_F(CommonSettingInitTest, NextInitSavesSkippedChange) {
    WriteBaseValues(R"(A="base")");
    WriteDefaultValues(R"(A="old")");
    EXPECT_EQ(Setting(L"A"), L"old");
    {
        const SecondProcess other{HoldMutex, {DefaultsMarker}};
        EXPECT_TRUE(Init());
    }
    EXPECT_TRUE(Init());
    EXPECT_EQ(Defaults(), SavedXml{"<Any><CommonSettings A=\"base\"/></Any>\n"});
}

TEST_F(CommonSettingInitTest, DefaultsBusyAtFirstLoadAreNotReplaced) {
    WriteBaseValues(R"(A="base")");
    WriteDefaults(TwoFunctions);
    {
        const SecondProcess other{HoldMutex, {DefaultsMarker}};
        EXPECT_TRUE(Init());
        EXPECT_EQ(Defaults(), TwoFunctions);
    }
    EXPECT_TRUE(Init());
    EXPECT_EQ(Defaults(), TwoFunctions);
    Unload();
    EXPECT_TRUE(Init());
    EXPECT_NE(Defaults().find("<CommonSettings A=\"base\"/>"), std::string::npos) << Defaults();
}

TEST_F(CommonSettingInitTest, UserMarkerDoesNotBlockInit) {
    WriteBaseValues(R"(A="base")");
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_TRUE(Init());
    EXPECT_EQ(Defaults(), SavedXml{NewFile});
}

TEST_F(CommonSettingInitTest, InitOpensMarkerBeforeLoadAndSave) {
    WriteBaseValues(R"(A="base")");
    WriteDefaults(TwoFunctions);
    MarkerCalls calls{Dll().Handle()};
    EXPECT_TRUE(Init());
    EXPECT_EQ(calls.opened, (Names{DefaultsMarker, DefaultsMarker}));
    EXPECT_EQ(calls.created, (Names{DefaultsMarker, DefaultsMarker}));
    EXPECT_TRUE(Init());
    EXPECT_EQ(calls.opened, (Names{DefaultsMarker, DefaultsMarker, DefaultsMarker}));
    EXPECT_TRUE(calls.openHandles.empty());
}

// ---- Failures ----

class CommonSettingInitFailureTest : public CommonSettingInitTest {
protected:
    void SetUp() override {
        WriteBaseValues(R"(A="base")");
        WriteDefaults(Old);
    }
    void ExpectFailure() { ExpectFailureLeaves(Old); }

    inline static const std::string Old = FileWith(R"(A="old")");
};

TEST_F(CommonSettingInitFailureTest, ReadOnlyFileStaysUnchanged) {
    SetFileAttributesW(installation.DefaultsFile().c_str(), FILE_ATTRIBUTE_READONLY);
    ExpectFailure();
    SetFileAttributesW(installation.DefaultsFile().c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_TRUE(Init());
}

TEST_F(CommonSettingInitFailureTest, FileOpenForReadingStaysUnchanged) {
    const HANDLE reader = CreateFileW(installation.DefaultsFile().c_str(), GENERIC_READ, FILE_SHARE_READ,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ExpectFailure();
    CloseHandle(reader);
}

TEST_F(CommonSettingInitFailureTest, FileThatCannotBeReplacedStaysUnchanged) {
    SaveCalls calls{Dll().Handle()};
    calls.Fail(Replacements);
    ExpectFailure();
}

TEST_F(CommonSettingInitFailureTest, DeletedFolderIsNotCreated) {
    EXPECT_EQ(Setting(L"A"), L"old");
    EXPECT_FALSE(Dll().GetCommonSetting(L"Missing", nullptr));
    std::filesystem::remove_all(installation.ProgramFiles());
    EXPECT_FALSE(Init());
    EXPECT_FALSE(std::filesystem::exists(installation.ProgramFiles()));
}

TEST_F(CommonSettingInitFailureTest, FolderNamedLikeFileStays) {
    std::filesystem::remove(installation.DefaultsFile());
    std::filesystem::create_directory(installation.DefaultsFile());
    EXPECT_FALSE(Init());
    EXPECT_TRUE(std::filesystem::is_directory(installation.DefaultsFile()));
}

TEST_F(CommonSettingInitFailureTest, FailedImportKeepsOldSettings) {
    const FailingDomMethod failure{DomMethod::ImportNode};
    ExpectFailure();
    EXPECT_EQ(Setting(L"A"), L"old");
}

TEST_F(CommonSettingInitFailureTest, FailedRemovalKeepsOldSettings) {
    const FailingDomMethod failure{DomMethod::RemoveChild};
    ExpectFailure();
    EXPECT_EQ(Setting(L"A"), L"old");
}

TEST_F(CommonSettingInitFailureTest, FailedAppendIsNotSaved) {
    const FailingDomMethod failure{DomMethod::AppendChild};
    ExpectFailure();
}

TEST_F(CommonSettingInitFailureTest, MissingDomLeavesFileUnchanged) {
    DomDocuments documents{Dll().Handle()};
    documents.Fail(E_OUTOFMEMORY);
    ExpectFailure();
    documents.Fail(S_OK);
    ExpectFailure();
}

TEST_F(CommonSettingInitFailureTest, InitAfterExitChangesNothing) {
    EXPECT_TRUE(Dll().ZOTDamExit());
    ExpectFailure();
}

}  // namespace ZOTDam::Test
