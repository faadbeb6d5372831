// Tests of the file and its folder after a save: the file keeps its attributes and access rights, and no
// other file remains. A file that cannot be replaced is overwritten.
#include <algorithm>
#include <array>
#include <list>
#include <utility>

#include "support/FunctionDefaultsTest.h"
#include "support/OpenFile.h"
#include "support/SaveCalls.h"

#include <sddl.h>

namespace ZOTDam::Test {

namespace {

// Returns the access control list of a file as a string.
std::wstring RightsOf(const std::filesystem::path& file) {
    std::array<char, 1000> descriptor;
    DWORD size = 0;
    EXPECT_TRUE(GetFileSecurityW(file.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(),
                                 static_cast<DWORD>(descriptor.size()), &size));
    LPWSTR text = nullptr;
    EXPECT_TRUE(ConvertSecurityDescriptorToStringSecurityDescriptorW(
        descriptor.data(), SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text, nullptr));
    std::wstring rights = text;
    LocalFree(text);
    return rights;
}

void SetRights(const std::filesystem::path& file, const wchar_t* rights) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    EXPECT_TRUE(
        ConvertStringSecurityDescriptorToSecurityDescriptorW(rights, SDDL_REVISION_1, &descriptor, nullptr));
    EXPECT_TRUE(SetFileSecurityW(file.c_str(), DACL_SECURITY_INFORMATION, descriptor));
    LocalFree(descriptor);
}

}  // namespace

class SavedFileTest : public FunctionDefaultsTest {
protected:
    void SetUp() override {
        WriteFunctions(Functions({1}));
        WriteUserSettings(Before);
    }

    bool Save() { return Dll().SetCommonSetting(L"Name", L"value"); }

    std::filesystem::path File() const { return installation.UserFile(); }
    std::filesystem::path TemporaryFile() const { return TemporaryFileOf(File()); }
    std::filesystem::path UnreadableCopy() const { return UnreadableCopyOf(File()); }

    // Expects that the folder contains only the file.
    void ExpectOnlyFile(const std::string& content) const {
        EXPECT_EQ(UserSettings(), SavedXml{content});
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator{File().parent_path()}, {}), 1);
    }

    inline static const std::string Before =
        "<OrloPowerCfg><PowerSchemes/><CommonSettings Other=\"a value that makes the file longer\"/>"
        "</OrloPowerCfg>\n";
    inline static const std::string After =
        "<OrloPowerCfg><PowerSchemes/><CommonSettings Other=\"a value that makes the file longer\" "
        "Name=\"value\"/></OrloPowerCfg>\n";
};

// ---- Attributes and rights ----

class FileAttributeTest : public SavedFileTest, public testing::WithParamInterface<DWORD> {};

INSTANTIATE_TEST_SUITE_P(, FileAttributeTest,
                         testing::Values(FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM, FILE_ATTRIBUTE_ARCHIVE,
                                         FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM));

TEST_P(FileAttributeTest, SaveKeepsAttributes) {
    SetFileAttributesW(File().c_str(), GetParam());
    const DWORD attributes = GetFileAttributesW(File().c_str());
    EXPECT_TRUE(Save());
    EXPECT_EQ(GetFileAttributesW(File().c_str()), attributes);
    ExpectOnlyFile(After);
}

TEST_F(SavedFileTest, SaveDoesNotHideVisibleFile) {
    EXPECT_TRUE(Save());
    EXPECT_EQ(GetFileAttributesW(File().c_str()) & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM), 0u);
}

TEST_F(SavedFileTest, SaveKeepsAccessRights) {
    SetRights(File(), L"D:(A;;FA;;;BA)(A;;FR;;;WD)");
    const std::wstring rights = RightsOf(File());
    EXPECT_TRUE(Save());
    EXPECT_EQ(RightsOf(File()), rights);
    SetRights(File(), L"D:(A;;FA;;;BA)");
    EXPECT_NE(RightsOf(File()), rights);
    const std::wstring fewerRights = RightsOf(File());
    EXPECT_TRUE(Save());
    EXPECT_EQ(RightsOf(File()), fewerRights);
}

TEST_F(SavedFileTest, DefaultsKeepAttributesAndAccessRights) {
    SetRights(installation.DefaultsFile(), L"D:(A;;FA;;;BA)");
    SetFileAttributesW(installation.DefaultsFile().c_str(), FILE_ATTRIBUTE_HIDDEN);
    const DWORD attributes = GetFileAttributesW(installation.DefaultsFile().c_str());
    const std::wstring rights = RightsOf(installation.DefaultsFile());
    Replace({Record(2)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(2))});
    EXPECT_EQ(GetFileAttributesW(installation.DefaultsFile().c_str()), attributes);
    EXPECT_EQ(RightsOf(installation.DefaultsFile()), rights);
}

// ---- Leftover files of an earlier save ----

// Emulates the protection of read-only and hidden files, which not every system has.
class ProtectedLeftoverFileTest : public SavedFileTest, public testing::WithParamInterface<DWORD> {
protected:
    void SetUp() override {
        SavedFileTest::SetUp();
        patches.emplace_back(Dll().Handle(), "SetFileInformationByHandle", &SetUnlessProtected);
        patches.emplace_back(Dll().Handle(), "CopyFileW",
                             [](LPCWSTR source, LPCWSTR target, BOOL keep) -> BOOL {
                                 return IsProtected(target) ? Deny(FALSE) : CopyFileW(source, target, keep);
                             });
    }
    void TearDown() override { patches.clear(); }

private:
    static bool IsProtected(LPCWSTR path) {
        const DWORD attributes = GetFileAttributesW(path);
        return attributes != INVALID_FILE_ATTRIBUTES &&
               (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN)) != 0;
    }

    static bool IsReadOnly(HANDLE file) {
        BY_HANDLE_FILE_INFORMATION information;
        return GetFileInformationByHandle(file, &information) != FALSE &&
               (information.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
    }

    template <class Result>
    static Result Deny(Result result) {
        SetLastError(ERROR_ACCESS_DENIED);
        return result;
    }

    static BOOL WINAPI SetUnlessProtected(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, LPVOID data,
                                          DWORD size) {
        return kind == FileDispositionInfo && IsReadOnly(file)
                   ? Deny(FALSE)
                   : SetFileInformationByHandle(file, kind, data, size);
    }

    std::list<ImportPatch> patches;
};

INSTANTIATE_TEST_SUITE_P(, ProtectedLeftoverFileTest,
                         testing::Values(FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_HIDDEN,
                                         FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM));

TEST_P(ProtectedLeftoverFileTest, ProtectedTemporaryFileDoesNotPreventSave) {
    WriteFile(TemporaryFile(), "left");
    SetFileAttributesW(TemporaryFile().c_str(), GetParam());
    EXPECT_TRUE(Save());
    ExpectOnlyFile(After);
    EXPECT_EQ(GetFileAttributesW(File().c_str()) & (GetParam() | FILE_ATTRIBUTE_HIDDEN), 0u);
}

TEST_P(ProtectedLeftoverFileTest, ProtectedOldCopyIsReplacedByNewCopy) {
    WriteUserSettings("<unreadable");
    WriteFile(UnreadableCopy(), "an older one");
    SetFileAttributesW(UnreadableCopy().c_str(), GetParam());
    EXPECT_TRUE(Save());
    EXPECT_EQ(Content(UnreadableCopy()), "<unreadable");
}

TEST_F(SavedFileTest, MalformedFileIsUnchangedIfCopyFlushFails) {
    WriteUserSettings("<unreadable");
    static bool isFirst;
    isFirst = true;
    const ImportPatch failure{Dll().Handle(), "FlushFileBuffers", [](HANDLE file) -> BOOL {
                                  return std::exchange(isFirst, false) ? FALSE : FlushFileBuffers(file);
                              }};
    EXPECT_FALSE(Save());
    EXPECT_EQ(UserSettings(), "<unreadable");
}

// ---- The temporary file cannot be created ----

// Emulates a folder in which the user may change files and not create them.
class NoTemporaryFileTest : public SavedFileTest {
protected:
    void SetUp() override {
        SavedFileTest::SetUp();
        calls.emplace(Dll().Handle());
        calls->Fail({SaveCall::Create}, ERROR_ACCESS_DENIED);
    }
    void TearDown() override { calls.reset(); }

    std::optional<SaveCalls> calls;
};

TEST_F(NoTemporaryFileTest, FileIsOverwritten) {
    EXPECT_TRUE(Save());
    ExpectOnlyFile(After);
    EXPECT_EQ(calls->CountOf(SaveCall::OpenUnguarded), 1);
}

TEST_F(NoTemporaryFileTest, FileIsCreated) {
    std::filesystem::remove(File());
    EXPECT_TRUE(Save());
    EXPECT_NE(UserSettings().find("<CommonSettings Name=\"value\"/>"), std::string::npos);
}

TEST_F(NoTemporaryFileTest, LongerFileIsTruncated) {
    EXPECT_TRUE(Dll().SetCommonSetting(L"Other", L"short"));
    const std::string content = UserSettings();
    WriteUserSettings(Before);
    EXPECT_TRUE(Dll().SetCommonSetting(L"Other", L"short"));
    EXPECT_EQ(UserSettings(), content);
}

TEST_F(NoTemporaryFileTest, DefaultsAreOverwritten) {
    Replace({Record(2)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(2))});
}

TEST_F(NoTemporaryFileTest, FileInUseIsUnchanged) {
    const OpenFile program{File(), GENERIC_READ, FILE_SHARE_READ};
    EXPECT_FALSE(Save());
    EXPECT_EQ(UserSettings(), Before);
}

// ---- The file cannot be replaced ----

TEST_F(SavedFileTest, FileIsOverwrittenIfReplacementIsDenied) {
    SaveCalls calls{Dll().Handle()};
    calls.Fail(Replacements, ERROR_ACCESS_DENIED);
    EXPECT_TRUE(Save());
    ExpectOnlyFile(After);
}

TEST_F(SavedFileTest, FileSharedForWritingIsSaved) {
    const OpenFile program{File(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE};
    EXPECT_TRUE(Save());
    ExpectOnlyFile(After);
}

class FileNotSharedForWritingTest : public SavedFileTest, public testing::WithParamInterface<DWORD> {};

INSTANTIATE_TEST_SUITE_P(, FileNotSharedForWritingTest, testing::Values(0u, FILE_SHARE_READ));

TEST_P(FileNotSharedForWritingTest, FileInUseIsUnchangedUntilClosed) {
    EXPECT_TRUE(Dll().SetCommonSetting(L"Other", L"a value that makes the file longer"));
    {
        const OpenFile program{File(), GENERIC_READ, GetParam()};
        EXPECT_EQ(Save(), GetParam() == 0);
    }
    ExpectOnlyFile(Before);
    EXPECT_TRUE(Save());
}

// ---- The disk becomes full while the file is overwritten ----

namespace {

// The maximum size of a file.
DWORD spaceForAFile = 0;

BOOL WINAPI WriteAsFarAsThereIsSpace(HANDLE file, LPCVOID data, DWORD size, LPDWORD written,
                                     LPOVERLAPPED overlapped) {
    const DWORD position = SetFilePointer(file, 0, nullptr, FILE_CURRENT);
    const DWORD fitting = std::min(size, spaceForAFile - position);
    return WriteFile(file, data, fitting, written, overlapped) && fitting == size;
}

}  // namespace

class OverwriteOnFullDiskTest : public NoTemporaryFileTest {
protected:
    void SetUp() override {
        NoTemporaryFileTest::SetUp();
        spaceForAFile = static_cast<DWORD>(Before.size());
        fullDisk.emplace(Dll().Handle(), "WriteFile", &WriteAsFarAsThereIsSpace);
    }
    void TearDown() override {
        fullDisk.reset();
        NoTemporaryFileTest::TearDown();
    }

private:
    std::optional<ImportPatch> fullDisk;
};

TEST_F(OverwriteOnFullDiskTest, FullDiskKeepsOldContent) {
    EXPECT_FALSE(Save());
    EXPECT_EQ(UserSettings(), Before);
}

TEST_F(OverwriteOnFullDiskTest, FullDiskLeavesNoPartialFirstFile) {
    std::filesystem::remove(File());
    spaceForAFile = 10;
    EXPECT_FALSE(Save());
    EXPECT_FALSE(std::filesystem::exists(File()));
}

}  // namespace ZOTDam::Test
