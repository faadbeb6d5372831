// Tests of the string table's file: which file is used, and when it is read.
#include <windows.h>

#include <cwchar>
#include <thread>

#include "support/DomDocuments.h"
#include "support/LongPaths.h"
#include "support/TranslationTest.h"
#include "support/UserLanguage.h"
#include "xml/DomInterfaces.h"

namespace ZOTDam::Test {

// ---- The language ----

class StringTableLanguageTest : public StringTableTest {
protected:
    std::wstring TextFor(LANGID id) {
        const UserLanguage language{Dll().Handle(), id};
        return FirstName();
    }

    void WriteGermanCopy() const { WriteCopy(L"de-DE", Entry("Key", "deutsch")); }
};

TEST_F(StringTableLanguageTest, NeutralTableIsUsedWithoutCopies) {
    EXPECT_EQ(FirstName(), L"neutral");
}

TEST_F(StringTableLanguageTest, CopyInUserLanguageIsUsed) {
    wchar_t name[LOCALE_NAME_MAX_LENGTH];
    ASSERT_NE(LCIDToLocaleName(GetUserDefaultUILanguage(), name, LOCALE_NAME_MAX_LENGTH, 0), 0);
    WriteCopy(name, Entry("Key", "localised"));
    EXPECT_EQ(FirstName(), L"localised");
}

TEST_F(StringTableLanguageTest, LanguageNameBufferHasMaximumLength) {
    static LCID locale;
    static int capacity;
    static DWORD flags;
    const UserLanguage language{Dll().Handle(), German};
    const ImportPatch patch{Dll().Handle(), "LCIDToLocaleName",
                            [](LCID id, wchar_t*, int size, DWORD options) {
                                locale = id;
                                capacity = size;
                                flags = options;
                                return 0;
                            }};
    EXPECT_EQ(FirstName(), L"neutral");
    EXPECT_EQ(locale, German);
    EXPECT_EQ(capacity, LOCALE_NAME_MAX_LENGTH);
    EXPECT_EQ(flags, 0u);
}

TEST_F(StringTableLanguageTest, LookupRequestsCopyInUserLanguage) {
    const UserLanguage language{Dll().Handle(), German};
    FirstName();
    ASSERT_EQ(language.LookupCalls().size(), 1u);
    const UserLanguage::LookupCall& question = language.LookupCalls().front();
    EXPECT_EQ(question.flags, DWORD{MUI_LANGUAGE_NAME});
    EXPECT_EQ(question.language, L"de-DE");
    EXPECT_EQ(question.file, installation.StringTableFile().wstring());
}

TEST_F(StringTableLanguageTest, LookupRequestsFirstCopyWithPathBuffer) {
    const UserLanguage language{Dll().Handle(), German};
    FirstName();
    ASSERT_EQ(language.LookupCalls().size(), 1u);
    EXPECT_EQ(language.LookupCalls().front().enumerator, 0u);
    EXPECT_EQ(language.LookupCalls().front().copyCapacity, 260u);
    EXPECT_GT(language.LookupCalls().front().languageCapacity, std::wcslen(L"de-DE"));
}

TEST_F(StringTableLanguageTest, CopyFoundByLookupIsUsedAnywhere) {
    UserLanguage language{Dll().Handle(), German};
    const std::filesystem::path copy = installation.ProgramData() / L"anywhere.xml";
    WriteFile(copy, StringTable(Entry("Key", "found")));
    WriteGermanCopy();
    language.SetLookupResult(copy);
    EXPECT_EQ(FirstName(), L"found");
}

TEST_F(StringTableLanguageTest, MissingCopyFoundByLookupMakesTableEmpty) {
    UserLanguage language{Dll().Handle(), German};
    WriteGermanCopy();
    language.SetLookupResult(installation.ProgramData() / L"missing.xml");
    EXPECT_EQ(FirstName(), L"Key");
}

class LookupErrorTest : public StringTableLanguageTest, public testing::WithParamInterface<DWORD> {};

TEST_P(LookupErrorTest, NeutralTableIsUsedAfterLookupError) {
    UserLanguage language{Dll().Handle(), German};
    WriteGermanCopy();
    language.FailLookup(GetParam());
    EXPECT_EQ(FirstName(), L"neutral");
}

INSTANTIATE_TEST_SUITE_P(ErrorsOtherThanNotImplemented, LookupErrorTest,
                         testing::Values(ERROR_SUCCESS, ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND,
                                         ERROR_NOT_SUPPORTED, ERROR_INVALID_PARAMETER,
                                         ERROR_INSUFFICIENT_BUFFER, ERROR_MUI_FILE_NOT_FOUND));

// Rules that hold on systems with and without a lookup.
class LanguageCopyTest : public StringTableLanguageTest, public testing::WithParamInterface<MuiLookup> {
protected:
    std::wstring TextFor(LANGID id) {
        const UserLanguage language{Dll().Handle(), id, GetParam()};
        return FirstName();
    }
};

TEST_P(LanguageCopyTest, PlainCopyIsUsed) {
    WriteGermanCopy();
    EXPECT_EQ(TextFor(German), L"deutsch");
}

TEST_P(LanguageCopyTest, NeutralTableIsUsedWithoutCopy) {
    EXPECT_EQ(TextFor(German), L"neutral");
}

TEST_P(LanguageCopyTest, CopyDoesNotRequireNeutralTable) {
    std::filesystem::remove(installation.StringTableFile());
    WriteGermanCopy();
    EXPECT_EQ(TextFor(German), L"deutsch");
}

TEST_P(LanguageCopyTest, CopyInOtherLanguageIsIgnored) {
    WriteGermanCopy();
    EXPECT_EQ(TextFor(French), L"neutral");
}

TEST_P(LanguageCopyTest, CopyInParentOrRelatedLanguageIsIgnored) {
    WriteGermanCopy();
    WriteCopy(L"de", Entry("Key", "parent"));
    EXPECT_EQ(TextFor(AustrianGerman), L"neutral");
}

TEST_P(LanguageCopyTest, FolderWithNameOfCopyIsIgnored) {
    std::filesystem::create_directories(CopyFor(L"de-DE"));
    std::filesystem::create_directories(MuiCopyFor(L"de-DE"));
    EXPECT_EQ(TextFor(German), L"neutral");
}

TEST_P(LanguageCopyTest, NeutralTableDoesNotSupplementCopy) {
    WriteCopy(L"de-DE", Entry("Other", "deutsch"));
    EXPECT_EQ(TextFor(German), L"Key");
}

TEST_P(LanguageCopyTest, MalformedCopyIsNotReplacedByNeutralTable) {
    WriteGermanCopy();
    WriteFile(CopyFor(L"de-DE"), "<root>" + Entry("Key", "deutsch"));
    EXPECT_EQ(TextFor(German), L"Key");
}

INSTANTIATE_TEST_SUITE_P(WithoutLookup, LanguageCopyTest, testing::Values(MuiLookup::NotImplemented));
INSTANTIATE_TEST_SUITE_P(WithLookup, LanguageCopyTest, testing::Values(MuiLookup::Documented));

TEST_F(StringTableLanguageTest, UnsupportedLookupPrefersMuiExtension) {
    WriteGermanCopy();
    WriteMuiCopy(L"de-DE", Entry("Key", "mui"));
    EXPECT_EQ(TextFor(German), L"mui");
}

TEST_F(StringTableLanguageTest, LookupIgnoresCopyWithMuiExtension) {
    const UserLanguage language{Dll().Handle(), German, MuiLookup::Documented};
    WriteMuiCopy(L"de-DE", Entry("Key", "mui"));
    EXPECT_EQ(FirstName(), L"neutral");
}

// The buffer for the copy's path has MAX_PATH UTF-16 code units.
TEST_F(StringTableLanguageTest, CopyTooLongForLookupIsIgnored) {
    LoadCatalogue();
    SetLongInstallationPath(installation.ProgramFiles(), 243);
    const UserLanguage language{Dll().Handle(), German, MuiLookup::Documented};
    WriteGermanCopy();
    EXPECT_EQ(FirstName(), L"neutral");
}

TEST_F(StringTableLanguageTest, MalformedCopyFoundByLookupMakesTableEmpty) {
    UserLanguage language{Dll().Handle(), German};
    const std::filesystem::path copy = installation.ProgramData() / L"broken.xml";
    WriteFile(copy, "<root>" + Entry("Key", "found"));
    language.SetLookupResult(copy);
    EXPECT_EQ(FirstName(), L"Key");
}

// The parameter is a language for which the system returns no name or an empty name.
class NamelessLanguageTest : public StringTableLanguageTest, public testing::WithParamInterface<LANGID> {
protected:
    void WriteCopyBesideTheTable() const { WriteMuiCopy(L"", Entry("Key", "beside")); }
};

TEST_P(NamelessLanguageTest, NeutralTableIsUsedForNamelessLanguage) {
    WriteCopyBesideTheTable();
    EXPECT_EQ(TextFor(GetParam()), L"neutral");
}

TEST_P(NamelessLanguageTest, NamelessLanguageIsNotLookedUp) {
    UserLanguage language{Dll().Handle(), GetParam()};
    language.SetLookupResult(installation.ProgramData() / L"missing.xml");
    EXPECT_EQ(FirstName(), L"neutral");
    EXPECT_TRUE(language.LookupCalls().empty());
}

INSTANTIATE_TEST_SUITE_P(Invariant, NamelessLanguageTest, testing::Values(LANG_INVARIANT));
INSTANTIATE_TEST_SUITE_P(Unknown, NamelessLanguageTest, testing::Values(LANGID{0x03ff}));

TEST_F(StringTableLanguageTest, NameReturnedWithFailureIsIgnored) {
    const UserLanguage language{Dll().Handle(), German};
    const ImportPatch patch{Dll().Handle(), "LCIDToLocaleName", [](LCID, wchar_t* name, int, DWORD) {
                                std::wcscpy(name, L"de-DE");
                                return 0;
                            }};
    WriteGermanCopy();
    EXPECT_EQ(FirstName(), L"neutral");
}

// ---- The folder ----

TEST_F(StringTableLanguageTest, LongestFolderIsUsed) {
    LoadCatalogue();
    SetLongInstallationPath(installation.ProgramFiles(), 259);
    EXPECT_EQ(FirstName(), L"neutral");
}

TEST_F(StringTableLanguageTest, OverlongFolderMakesTableEmpty) {
    LoadCatalogue();
    SetLongInstallationPath(installation.ProgramFiles(), 260);
    EXPECT_EQ(FirstName(), L"Key");
}

TEST_F(StringTableLanguageTest, OverlongFolderDoesNotSelectCurrentFolder) {
    LoadCatalogue();
    const UserLanguage language{Dll().Handle(), German};
    WriteGermanCopy();
    std::filesystem::copy_file(CopyFor(L"de-DE"), CopyFor(L"de-DE").replace_filename(L".mui"));
    SetLongInstallationPath(installation.ProgramFiles(), 1000);
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(installation.StringTableFile().parent_path());
    EXPECT_EQ(FirstName(), L"Key");
    std::filesystem::current_path(before);
}

TEST_F(StringTableTest, MissingFolderMakesTableEmpty) {
    LoadCatalogue();
    std::filesystem::remove_all(installation.ProgramFiles());
    EXPECT_EQ(FirstName(), L"Key");
    EXPECT_FALSE(std::filesystem::exists(installation.ProgramFiles()));
}

// ---- When the file is read ----

TEST_F(StringTableTest, LoadingLibraryDoesNotReadTable) {
    Dll();
    WriteEntries(Entry("Key", "new"));
    EXPECT_EQ(FirstName(), L"new");
}

TEST_F(StringTableTest, LoadingCatalogueDoesNotReadTable) {
    LoadCatalogue();
    WriteEntries(Entry("Key", "new"));
    EXPECT_EQ(FirstName(), L"new");
}

TEST_F(StringTableTest, TableIsReadOnceUntilReload) {
    EXPECT_EQ(FirstName(), L"neutral");
    WriteEntries(Entry("Key", "new"));
    EXPECT_EQ(FirstName(), L"neutral");
    Unload();
    EXPECT_EQ(FirstName(), L"new");
}

TEST_F(StringTableTest, TableIsKeptAfterFileDeletion) {
    EXPECT_EQ(FirstName(), L"neutral");
    std::filesystem::remove(installation.StringTableFile());
    EXPECT_EQ(FirstName(), L"neutral");
}

TEST_F(StringTableTest, TableStaysEmptyAfterFileCreation) {
    std::filesystem::remove(installation.StringTableFile());
    EXPECT_EQ(FirstName(), L"Key");
    WriteEntries(Entry("Key", "new"));
    EXPECT_EQ(FirstName(), L"Key");
}

TEST_F(StringTableTest, TableStaysEmptyAfterFileRepair) {
    EXPECT_EQ(TextInTable("broken"), L"Key");
    WriteEntries(Entry("Key", "new"));
    EXPECT_EQ(FirstName(), L"Key");
}

TEST_F(StringTableLanguageTest, LanguageChangeIsIgnoredUntilReload) {
    WriteGermanCopy();
    WriteCopy(L"fr-FR", Entry("Key", "fran\u00e7ais"));
    EXPECT_EQ(TextFor(German), L"deutsch");
    EXPECT_EQ(TextFor(French), L"deutsch");
    Unload();
    EXPECT_EQ(TextFor(French), L"fran\u00e7ais");
}

TEST_F(StringTableLanguageTest, CopyIsLookedUpOnce) {
    const UserLanguage language{Dll().Handle(), German};
    FirstName();
    FirstName();
    EXPECT_EQ(language.LookupCalls().size(), 1u);
}

TEST_F(StringTableTest, TableIsOneDocumentReleasedByExit) {
    DomDocuments documents{Dll().Handle()};
    LoadCatalogue();
    EXPECT_EQ(documents.CreatedCount(), 1u);
    FirstName();
    FirstName();
    EXPECT_EQ(documents.CreatedCount(), 2u);
    EXPECT_EQ(documents.HeldCount(), 2u);
    EXPECT_TRUE(Dll().ZOTDamExit());
    EXPECT_EQ(documents.HeldCount(), 0u);
}

TEST_F(StringTableTest, BusyMarkersDoNotPreventRead) {
    LoadCatalogue();
    const SecondProcess defaults{HoldMutex, {DefaultsMarker}};
    const SecondProcess userSettings{HoldMutex, {UserMarker}};
    EXPECT_EQ(FirstName(), L"neutral");
}

// ---- A table that cannot be read ----

TEST_F(StringTableTest, MissingFileMakesTableEmpty) {
    std::filesystem::remove(installation.StringTableFile());
    EXPECT_EQ(FirstName(), L"Key");
    EXPECT_FALSE(std::filesystem::exists(installation.StringTableFile()));
}

TEST_F(StringTableTest, FolderInPlaceOfFileMakesTableEmpty) {
    std::filesystem::remove(installation.StringTableFile());
    std::filesystem::create_directory(installation.StringTableFile());
    EXPECT_EQ(FirstName(), L"Key");
}

TEST_F(StringTableTest, FileInUseIsNotReadLater) {
    const HANDLE lock = CreateFileW(installation.StringTableFile().c_str(), GENERIC_READ, 0, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_EQ(FirstName(), L"Key");
    CloseHandle(lock);
    EXPECT_EQ(FirstName(), L"Key");
}

class MalformedStringTableTest : public StringTableTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(MalformedStringTableTest, MalformedFileMakesTableEmpty) {
    EXPECT_EQ(TextInTable(GetParam().xml), L"Key");
    EXPECT_EQ(Content(installation.StringTableFile()), GetParam().xml);
}

INSTANTIATE_TEST_SUITE_P(, MalformedStringTableTest,
                         testing::Values(XmlCase{"Empty", ""}, XmlCase{"PlainText", "Key=Text"},
                                         XmlCase{"MissingEndTag", "<root>" + Entry("Key", "Text")},
                                         XmlCase{"TwoRoots", StringTable(Entry("Key", "Text")) + "<root/>"},
                                         XmlCase{"WrongEncoding", StringTable(Entry("Key", "\xfc"))}),
                         CaseName<XmlCase>);

TEST_F(StringTableTest, FailedDomCreationIsNotRetried) {
    LoadCatalogue();
    DomDocuments documents{Dll().Handle()};
    documents.Fail(E_OUTOFMEMORY);
    EXPECT_EQ(FirstName(), L"Key");
    documents.Fail(S_OK);
    EXPECT_EQ(FirstName(), L"Key");
    EXPECT_EQ(documents.CreatedCount(), 0u);
}

TEST_F(StringTableTest, FailureOnThreadWithoutComIsNotRetried) {
    LoadCatalogue();
    std::jthread{[this] { EXPECT_EQ(FirstName(), L"Key"); }}.join();
    EXPECT_EQ(FirstName(), L"Key");
    Unload();
    EXPECT_EQ(FirstName(), L"neutral");
}

}  // namespace ZOTDam::Test
