// Tests of the data files' documents: where the files are located, when they are read, which sections are
// created in them, and how they are saved.
#include <windows.h>

#include "support/DataFiles.h"
#include "support/DomDocuments.h"
#include "support/ExportTest.h"
#include "support/ImportPatch.h"
#include "support/LongPaths.h"
#include "support/SaveCalls.h"

namespace ZOTDam::Test {

class DocumentsTest : public ExportTest {
protected:
    bool SetFunctionOne() { return SetParameter(Balanced, {{1, {5, 6}}}); }
    bool HasUserFile() const { return std::filesystem::exists(installation.UserFile()); }

    std::filesystem::path TemporaryFile() const { return TemporaryFileOf(installation.UserFile()); }
    std::filesystem::path Backup() const { return UnreadableCopyOf(installation.UserFile()); }

    // Writes user settings in the format that the library saves, so that tests can compare whole files.
    void WriteStored() const { WriteUserSettings(Stored); }
    inline static const std::string Stored = OldUserFile(OldScheme(BalancedText, OldFunction(1, 2, 3)));
    inline static const std::string Updated = OldUserFile(OldScheme(BalancedText, OldFunction(1, 5, 6)));
    inline static const std::string Created = NewUserFile(NewScheme(BalancedText, NewFunction(1, 5, 6)));
};

// ---- The defaults ----

TEST_F(DocumentsTest, MissingDefaultsFileMakesCatalogueUnavailable) {
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

TEST_F(DocumentsTest, UnreadableDefaultsFileMakesCatalogueUnavailable) {
    WriteDefaults("<ZOTDefault><Functions>");
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
    EXPECT_EQ(Defaults(), "<ZOTDefault><Functions>");
}

TEST_F(DocumentsTest, MissingFunctionsSectionMakesCatalogueUnavailable) {
    WriteDefaults("<ZOTDefault><CommonSettings/></ZOTDefault>");
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

TEST_F(DocumentsTest, EmptyFunctionsSectionMakesCatalogueEmpty) {
    WriteDefaults("<ZOTDefault><Functions/></ZOTDefault>");
    EXPECT_EQ(Dll().GetFuncCount(), 0u);
}

TEST_F(DocumentsTest, ReadersDoNotCreateDefaultsFile) {
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
    EXPECT_EQ(GetParameterDefault(Balanced), Params{});
    EXPECT_EQ(GetParameter(Balanced), Params{});
    Unload();
    EXPECT_FALSE(std::filesystem::exists(installation.DefaultsFile()));
}

TEST_F(DocumentsTest, DefaultsAreReadOnceUntilReload) {
    WriteDefaults("<ZOTDefault><Functions/></ZOTDefault>");
    EXPECT_EQ(Dll().GetFuncCount(), 0u);
    WriteDefaults(TwoFunctions);
    EXPECT_EQ(Dll().GetFuncCount(), 0u);
    Unload();
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
}

TEST_F(DocumentsTest, DefaultsCreatedAfterLoadAreIgnored) {
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
    WriteDefaults(TwoFunctions);
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

TEST_F(DocumentsTest, DefaultsDeletedAfterLoadStayAvailable) {
    WriteDefaults(TwoFunctions);
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    std::filesystem::remove(installation.DefaultsFile());
    EXPECT_EQ(GetParameterDefault(Balanced), (Params{{1, {2, 3}}, {2, {4, 5}}}));
}

TEST_F(DocumentsTest, DefaultsRootOfAnyNameIsAccepted) {
    WriteDefaults("<Anything><Functions/></Anything>");
    EXPECT_EQ(Dll().GetFuncCount(), 0u);
}

TEST_F(DocumentsTest, OnlyFirstFunctionsSectionIsRead) {
    WriteDefaults(
        "<ZOTDefault><Functions/><Functions><Function ID=\"1\"><Display/><Commands/></Function>"
        "</Functions></ZOTDefault>");
    EXPECT_EQ(Dll().GetFuncCount(), 0u);
}

TEST_F(DocumentsTest, FunctionsSectionInNamespaceIsIgnored) {
    WriteDefaults("<ZOTDefault xmlns:x=\"urn:x\"><x:Functions/><Functions xmlns=\"urn:x\"/></ZOTDefault>");
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

TEST_F(DocumentsTest, NestedFunctionsSectionIsIgnored) {
    WriteDefaults("<ZOTDefault><Other><Functions/></Other></ZOTDefault>");
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

// ---- The user settings ----

TEST_F(DocumentsTest, FirstSaveCreatesDeclarationAndRoot) {
    EXPECT_TRUE(SetFunctionOne());
    std::string saved = ReadFile(installation.UserFile());
    std::ranges::replace(saved, '"', '\'');
    std::erase(saved, '\r');
    EXPECT_TRUE(saved.starts_with("<?xml version='1.0' encoding='UTF-8'?>\n<OrloPowerCfg>")) << saved;
}

TEST_F(DocumentsTest, ReadOfMissingSettingCreatesNoFile) {
    wchar_t value[TextCapacity] = L"untouched";
    EXPECT_FALSE(Dll().GetCommonSetting(L"Name", value));
    EXPECT_STREQ(value, L"untouched");
    EXPECT_FALSE(HasUserFile());
    EXPECT_FALSE(std::filesystem::exists(installation.DefaultsFile()));
    EXPECT_FALSE(std::filesystem::exists(installation.BaseFile()));
}

TEST_F(DocumentsTest, ReadOfMissingSchemeCreatesNoFile) {
    EXPECT_EQ(GetParameter(Balanced), Params{});
    EXPECT_FALSE(Dll().TEVGetParam(&Balanced));
    EXPECT_FALSE(HasUserFile());
}

TEST_F(DocumentsTest, UserSettingsAreReadAgainForEachUse) {
    WriteDefaults(TwoFunctions);
    WriteUserSettings(OldUserFile(OldScheme(BalancedText, OldFunction(1, 7, 7) + OldFunction(2, 7, 7))));
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {7, 7}}, {2, {7, 7}}}));
    WriteUserSettings(OldUserFile(OldScheme(BalancedText, OldFunction(1, 8, 8) + OldFunction(2, 9, 9))));
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {8, 8}}, {2, {9, 9}}}));
}

TEST_F(DocumentsTest, RootOfAnyNameIsKeptWithContent) {
    WriteUserSettings("<Anything A=\"a\"><Other/></Anything>");
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(),
              SavedXml{"<Anything A=\"a\"><Other/><PowerSchemes>" +
                       NewScheme(BalancedText, NewFunction(1, 5, 6)) + "</PowerSchemes></Anything>\n"});
}

TEST_F(DocumentsTest, MissingSectionIsAppendedToRoot) {
    WriteUserSettings("<OrloPowerCfg><CommonSettings A=\"a\"/></OrloPowerCfg>");
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(),
              SavedXml{"<OrloPowerCfg><CommonSettings A=\"a\"/><PowerSchemes>" +
                       NewScheme(BalancedText, NewFunction(1, 5, 6)) + "</PowerSchemes></OrloPowerCfg>\n"});
}

TEST_F(DocumentsTest, OnlyFirstSchemesSectionIsUsed) {
    const std::string second =
        "<PowerSchemes>" + OldScheme(BalancedText, OldFunction(1, 2, 3)) + "</PowerSchemes>";
    WriteUserSettings("<OrloPowerCfg><PowerSchemes/>" + second + "</OrloPowerCfg>");
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(),
              SavedXml{"<OrloPowerCfg><PowerSchemes>" + NewScheme(BalancedText, NewFunction(1, 5, 6)) +
                       "</PowerSchemes>" + second + "</OrloPowerCfg>\n"});
}

TEST_F(DocumentsTest, ElementsInNamespaceAreIgnoredAtEveryLevel) {
    const std::string functions = "<x:Function ID=\"1\" ACParamIndex=\"2\" DCParamIndex=\"3\"/>";
    const std::string schemes =
        "<x:PowerScheme GUID=\"" + std::string{BalancedText} + "\">" + functions + "</x:PowerScheme>";
    WriteUserSettings("<OrloPowerCfg xmlns:x=\"urn:x\"><x:PowerSchemes/><PowerSchemes>" + schemes +
                      OldScheme(BalancedText, functions) + "</PowerSchemes></OrloPowerCfg>");
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(), SavedXml{"<OrloPowerCfg xmlns:x=\"urn:x\"><x:PowerSchemes/><PowerSchemes>" +
                                       schemes + OldScheme(BalancedText, functions + NewFunction(1, 5, 6)) +
                                       "</PowerSchemes></OrloPowerCfg>\n"});
}

TEST_F(DocumentsTest, SectionInDefaultNamespaceIsIgnored) {
    const std::string foreign =
        "<PowerSchemes xmlns=\"urn:x\">" + OldScheme(BalancedText, OldFunction(1, 2, 3)) + "</PowerSchemes>";
    WriteUserSettings("<OrloPowerCfg>" + foreign + "</OrloPowerCfg>");
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(),
              SavedXml{"<OrloPowerCfg>" + foreign + "<PowerSchemes>" +
                       NewScheme(BalancedText, NewFunction(1, 5, 6)) + "</PowerSchemes></OrloPowerCfg>\n"});
}

TEST_F(DocumentsTest, UnknownContentSurvivesWrite) {
    const std::string head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- head -->\n<?tool x=\"1\"?>\n";
    const std::string before =
        "<OrloPowerCfg Root=\"&lt;kept&gt; &amp; \xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80\">"
        "<Other A=\"a\"><Deep>text</Deep></Other><!-- note --><PowerSchemes B=\"b\">"
        "<Unknown/><PowerScheme GUID=\"" +
        std::string{BalancedText} + "\" Name=\"mine\">";
    const std::string after =
        "<![CDATA[a < b]]><!-- in --><Extra/></PowerScheme></PowerSchemes>"
        "<![CDATA[ ]]><CommonSettings C=\"c\"/></OrloPowerCfg>\n<!-- tail -->\n";
    WriteUserSettings(head + before + OldFunction(1, 2, 3) + after);
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(), SavedXml{head + before + OldFunction(1, 5, 6) + after});
}

TEST_F(DocumentsTest, DeletedFileClearsSchemesInMemory) {
    WriteDefaults(TwoFunctions);
    WriteStored();
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {2, 3}}, {2, {4, 5}}}));
    EXPECT_TRUE(SetParameter(HighPerformance, {{1, {8, 9}}}));
    std::filesystem::remove(installation.UserFile());
    EXPECT_EQ(GetParameter(HighPerformance), (Params{{1, {2, 3}}, {2, {4, 5}}}));
    EXPECT_EQ(UserSettings().find(BalancedText), std::string::npos);
}

TEST_F(DocumentsTest, DeletedFileClearsCommonSettingsInMemory) {
    WriteUserSettings(
        "<OrloPowerCfg><CommonSettings A=\"a\"/><PowerSchemes><PowerScheme/></PowerSchemes>"
        "<Other/></OrloPowerCfg>");
    EXPECT_FALSE(Dll().TEVGetParam(&Balanced));
    std::filesystem::remove(installation.UserFile());
    Text value = {};
    EXPECT_FALSE(Dll().GetCommonSetting(L"A", value));
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(), SavedXml{"<OrloPowerCfg><CommonSettings/><PowerSchemes>" +
                                       NewScheme(BalancedText, NewFunction(1, 5, 6)) +
                                       "</PowerSchemes><Other/></OrloPowerCfg>\n"});
}

TEST_F(DocumentsTest, DeletedFileWithoutSchemesKeepsCommonSettings) {
    WriteUserSettings("<OrloPowerCfg><CommonSettings A=\"a\"/><PowerSchemes/></OrloPowerCfg>");
    EXPECT_FALSE(Dll().TEVGetParam(&Balanced));
    std::filesystem::remove(installation.UserFile());
    Text value = {};
    EXPECT_TRUE(Dll().GetCommonSetting(L"A", value));
    EXPECT_STREQ(value, L"a");
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(),
              SavedXml{"<OrloPowerCfg><CommonSettings A=\"a\"/><PowerSchemes>" +
                       NewScheme(BalancedText, NewFunction(1, 5, 6)) + "</PowerSchemes></OrloPowerCfg>\n"});
}

TEST_F(DocumentsTest, DeletedFileClearsSchemesWhileMarkerIsHeld) {
    WriteStored();
    EXPECT_FALSE(Dll().TEVGetParam(&Balanced));
    std::filesystem::remove(installation.UserFile());
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_FALSE(Dll().TEVGetParam(&Balanced));
    EXPECT_FALSE(Dll().ResetDefault());
}

// ---- Locations ----

TEST_F(DocumentsTest, MissingFolderIsNotCreatedBySave) {
    std::filesystem::remove_all(installation.ProgramData());
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_FALSE(std::filesystem::exists(installation.ProgramData()));
}

TEST_F(DocumentsTest, FolderCreatedLaterIsUsed) {
    const std::filesystem::path folder = installation.UserFile().parent_path();
    std::filesystem::remove_all(folder);
    EXPECT_TRUE(SetFunctionOne());
    std::filesystem::create_directories(folder);
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_TRUE(HasUserFile());
}

TEST_F(DocumentsTest, PathIsFixedWhenDocumentIsCreated) {
    EXPECT_TRUE(SetFunctionOne());
    const Installation other;
    EXPECT_TRUE(SetParameter(Balanced, {{1, {7, 8}}}));
    EXPECT_FALSE(std::filesystem::exists(other.UserFile()));
    EXPECT_EQ(UserSettings(), SavedXml{RewrittenUserFile(OldScheme(BalancedText, OldFunction(1, 7, 8)))});
}

class LongFolderTest : public DocumentsTest {
protected:
    void SetLongUserPath(std::size_t codeUnits) const {
        SetLongPath(L"ProgramData", installation.ProgramData(),
                    L"\\Orlo Corporation\\QUEN Power Management\\", codeUnits);
    }
};

TEST_F(LongFolderTest, UserFolderOf255UnitsIsUsed) {
    SetLongUserPath(255);
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(), SavedXml{Created});
}

TEST_F(LongFolderTest, UserFolderOf256UnitsStoresNothing) {
    SetLongUserPath(256);
    EXPECT_TRUE(SetFunctionOne());
    for (const std::filesystem::directory_entry& entry :
         std::filesystem::recursive_directory_iterator{installation.ProgramData()})
        EXPECT_TRUE(entry.is_directory()) << entry.path();
}

TEST_F(LongFolderTest, OverlongUserFolderLeavesCurrentFolderUnchanged) {
    SetLongUserPath(1000);
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(installation.ProgramFiles());
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_TRUE(SetFunctionOne());
    std::filesystem::current_path(before);
    for (const std::filesystem::directory_entry& entry :
         std::filesystem::directory_iterator{installation.ProgramFiles()})
        EXPECT_EQ(entry.path().filename(), L"Orlo");
}

TEST_F(LongFolderTest, InstallationFolderOf255UnitsIsUsed) {
    SetLongInstallationPath(installation.ProgramFiles(), 255);
    WriteDefaults(TwoFunctions);
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
}

TEST_F(LongFolderTest, InstallationFolderOf256UnitsYieldsNoCatalogue) {
    SetLongInstallationPath(installation.ProgramFiles(), 256);
    WriteDefaults(TwoFunctions);
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

// ---- One document for each file ----

TEST_F(DocumentsTest, EachFileHasOneDocumentAcrossCalls) {
    WriteDefaults(TwoFunctions);
    DomDocuments documents{Dll().Handle()};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(Dll().GetFuncCount(), 2u);
        EXPECT_TRUE(SetFunctionOne());
        GetParameter(Balanced);
        EXPECT_FALSE(Dll().GetCommonSetting(L"Missing", nullptr));
    }
    EXPECT_EQ(documents.CreatedCount(), 3u);
}

TEST_F(DocumentsTest, DocumentIsCreatedWhenFirstUsed) {
    WriteDefaults(TwoFunctions);
    DomDocuments documents{Dll().Handle()};
    EXPECT_EQ(documents.CreatedCount(), 0u);
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    EXPECT_EQ(documents.CreatedCount(), 1u);
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(documents.CreatedCount(), 2u);
    EXPECT_FALSE(Dll().GetCommonSetting(L"Missing", nullptr));
    EXPECT_EQ(documents.CreatedCount(), 3u);
}

// ---- Saving ----

class DocumentSaveTest : public DocumentsTest {
protected:
    // Makes the replacement of the file fail.
    bool SetFunctionOneUnreplaced() {
        SaveCalls calls{Dll().Handle()};
        calls.Fail(Replacements);
        return SetFunctionOne();
    }
};

TEST_F(DocumentSaveTest, NewContentIsCompleteBeforeReplacingOldFile) {
    WriteStored();
    // The temporary file can only be read while it is closed.
    SaveCalls calls{Dll().Handle(), Renames::None};
    std::string newContent;
    std::string oldContent;
    calls.before = [&](SaveCall call) {
        if (call == SaveCall::Move) {
            newContent = ReadFile(TemporaryFile());
            oldContent = UserSettings();
        }
        return ERROR_SUCCESS;
    };
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(newContent, SavedXml{Updated});
    EXPECT_EQ(oldContent, Stored);
}

TEST_F(DocumentSaveTest, FailedReplacementKeepsFileAndDeletesTemporaryFile) {
    WriteStored();
    EXPECT_TRUE(SetFunctionOneUnreplaced());
    EXPECT_EQ(UserSettings(), Stored);
    EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
}

TEST_F(DocumentSaveTest, FailedFlushReplacesNothing) {
    WriteStored();
    const ImportPatch patch{Dll().Handle(), "FlushFileBuffers", [](HANDLE) -> BOOL { return FALSE; }};
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(), Stored);
    EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
}

TEST_F(DocumentSaveTest, SavedFileDeclaresAndUsesUtf8) {
    WriteUserSettings(
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"
        "<OrloPowerCfg><!--\xfc--><PowerSchemes/></OrloPowerCfg>");
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{"<?xml version='1.0' encoding='UTF-8'?>\n<OrloPowerCfg><!--\xc3\xbc--><PowerSchemes>" +
                       NewScheme(BalancedText, NewFunction(1, 5, 6)) + "</PowerSchemes></OrloPowerCfg>\n"});
}

TEST_F(DocumentSaveTest, SaveLeavesNoTemporaryFileOrCopy) {
    WriteStored();
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(), SavedXml{Updated});
    EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
    EXPECT_FALSE(std::filesystem::exists(Backup()));
}

TEST_F(DocumentSaveTest, FirstSaveLeavesNoTemporaryFileOrCopy) {
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(), SavedXml{Created});
    EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
    EXPECT_FALSE(std::filesystem::exists(Backup()));
}

TEST_F(DocumentSaveTest, LeftoverTemporaryFileIsReplaced) {
    WriteStored();
    WriteFile(TemporaryFile(), std::string(10000, 'x'));
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(), SavedXml{Updated});
    EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
}

TEST_F(DocumentSaveTest, ReadOnlyFileStaysUnchanged) {
    WriteStored();
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(), Stored);
    EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
    EXPECT_FALSE(std::filesystem::exists(Backup()));
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(DocumentSaveTest, FileOpenWithoutSharingStaysUnchanged) {
    WriteStored();
    const HANDLE lock = CreateFileW(installation.UserFile().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_TRUE(SetFunctionOne());
    CloseHandle(lock);
    EXPECT_EQ(UserSettings(), Stored);
    EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(), SavedXml{Updated});
}

TEST_F(DocumentSaveTest, FileOpenForReadingStaysUnchanged) {
    WriteStored();
    const HANDLE lock = CreateFileW(installation.UserFile().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_TRUE(SetFunctionOne());
    CloseHandle(lock);
    EXPECT_EQ(UserSettings(), Stored);
    EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
}

TEST_F(DocumentSaveTest, FolderNamedLikeFileStays) {
    std::filesystem::create_directory(installation.UserFile());
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_TRUE(std::filesystem::is_directory(installation.UserFile()));
    EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
}

TEST_F(DocumentSaveTest, FileThatCannotBeOpenedIsNotReplaced) {
    WriteStored();
    const HANDLE holder = CreateFileW(installation.UserFile().c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_TRUE(Dll().SetCommonSetting(L"Name", L"value"));
    CloseHandle(holder);
    EXPECT_EQ(UserSettings(), Stored);
}

TEST_F(DocumentSaveTest, FileThatBecomesAccessibleIsReplaced) {
    WriteStored();
    const HANDLE holder = CreateFileW(installation.UserFile().c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    SetFunctionOne();
    CloseHandle(holder);
    SetFunctionOne();
    EXPECT_EQ(UserSettings(), SavedXml{Updated});
}

TEST_F(DocumentSaveTest, NotWellFormedFileIsCopied) {
    WriteUserSettings("<OrloPowerCfg><PowerSchemes>");
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(), SavedXml{Created});
    EXPECT_EQ(Content(Backup()), "<OrloPowerCfg><PowerSchemes>");
    EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
}

TEST_F(DocumentSaveTest, EmptyFileIsCopied) {
    WriteUserSettings("");
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(), SavedXml{Created});
    EXPECT_TRUE(std::filesystem::exists(Backup()));
}

TEST_F(DocumentSaveTest, NewCopyReplacesOlderCopy) {
    WriteFile(Backup(), "older and longer than the next");
    WriteUserSettings("broken");
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(ReadFile(Backup()), "broken");
}

TEST_F(DocumentSaveTest, LaterSavesKeepCopy) {
    WriteUserSettings("broken");
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_TRUE(SetParameter(Balanced, {{1, {7, 8}}}));
    EXPECT_EQ(UserSettings(), SavedXml{RewrittenUserFile(OldScheme(BalancedText, OldFunction(1, 7, 8)))});
    EXPECT_EQ(ReadFile(Backup()), "broken");
}

TEST_F(DocumentSaveTest, FailedCopyPreventsReplacement) {
    std::filesystem::create_directory(Backup());
    WriteUserSettings("broken");
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(), "broken");
}

TEST_F(DocumentSaveTest, FileThatBecomesUnreadableIsCopied) {
    WriteStored();
    EXPECT_TRUE(SetFunctionOne());
    WriteUserSettings("broken");
    EXPECT_TRUE(SetFunctionOne());
    EXPECT_EQ(UserSettings(), SavedXml{Created});
    EXPECT_EQ(ReadFile(Backup()), "broken");
}

TEST_F(DocumentSaveTest, ReadThatAdoptsDefaultsCopiesUnreadableFile) {
    WriteDefaults(TwoFunctions);
    WriteUserSettings("broken");
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {2, 3}}, {2, {4, 5}}}));
    EXPECT_EQ(ReadFile(Backup()), "broken");
}

}  // namespace ZOTDam::Test
