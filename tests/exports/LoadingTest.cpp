// Tests of loading the four data files: from any folder, from a file that cannot be read, and in the presence
// of other programs.
#include <windows.h>

#include <tuple>

#include "support/AllocationFailures.h"
#include "support/DataFileTest.h"
#include "support/DomLoads.h"
#include "support/FileOpens.h"
#include "support/FileSize.h"
#include "support/OpenFile.h"
#include "support/Repeat.h"
#include "support/Watchdog.h"

namespace ZOTDam::Test {

// ---- Folders ----

namespace {

struct FolderName {
    std::string name;
    std::wstring folder;  // empty for the longest folder that the library accepts
};

void PrintTo(const FolderName& folder, std::ostream* out) {
    *out << folder.name;
}

template <class Case>
std::string NameOfFileCase(const testing::TestParamInfo<std::tuple<DataFile, Case>>& info) {
    return std::get<1>(info.param).name + "For" + std::get<0>(info.param).name;
}

}  // namespace

class FolderTest : public DataFileTest, public testing::WithParamInterface<std::tuple<DataFile, FolderName>> {
protected:
    void SetUp() override {
        MoveTo(L"ProgramFiles", installation.ProgramFiles());
        MoveTo(L"ProgramData", installation.ProgramData());
    }

    const DataFile& File() const { return std::get<0>(GetParam()); }

    // The path of the file in the folder of the test. The prefix permits more than 260 characters.
    std::filesystem::path MovedFile() const {
        const std::filesystem::path old = PathOf(File());
        const bool isUserFile = old == installation.UserFile();
        const std::filesystem::path folder =
            isUserFile ? installation.ProgramData() : installation.ProgramFiles();
        return LR"(\\?\)" + (NewPathOf(folder) / old.lexically_relative(folder)).wstring();
    }

private:
    void MoveTo(const wchar_t* variable, const std::filesystem::path& folder) const {
        std::filesystem::rename(folder, NewPathOf(folder));
        SetEnvironmentVariableW(variable, NewPathOf(folder).c_str());
    }

    std::filesystem::path NewPathOf(const std::filesystem::path& folder) const {
        const std::wstring& name = std::get<1>(GetParam()).folder;
        const std::wstring unique = folder == installation.ProgramData() ? L"Data" : L"Files";
        return folder.parent_path() / (unique + (name.empty() ? Padding(folder, unique) : name));
    }

    // Extends the name of the first folder so that the path of the file's folder has the maximum length,
    // which is 255 characters with its last backslash.
    std::wstring Padding(const std::filesystem::path& folder, const std::wstring& name) const {
        const std::filesystem::path parent = PathOf(File()).parent_path();
        const std::size_t length =
            (folder.parent_path() / name / parent.lexically_relative(folder)).wstring().size() + 1;
        std::wstring missing(parent.wstring().starts_with(folder.wstring()) ? 255 - length : 1, L'n');
        return missing;
    }
};

INSTANTIATE_TEST_SUITE_P(
    , FolderTest,
    testing::Combine(testing::ValuesIn(AllDataFiles()),
                     testing::Values(FolderName{"Hash", L"a#b"}, FolderName{"EscapedLetter", L"a%41b"},
                                     FolderName{"EscapedSpace", L"a%20b"}, FolderName{"Umlaut", L"\u00e4"},
                                     FolderName{"MaximumLength", L""})),
    NameOfFileCase<FolderName>);

TEST_P(FolderTest, FileInFolderIsRead) {
    EXPECT_TRUE(File().isRead(*this));
}

TEST_P(FolderTest, FileInFolderIsSavedIfWritable) {
    const std::string before = ReadFile(MovedFile());
    EXPECT_EQ(before, File().content);
    if (File().save != nullptr) {
        EXPECT_TRUE(File().save(Dll()));
        EXPECT_NE(ReadFile(MovedFile()), before);
    }
}

// ---- Files that cannot be read ----

namespace {

// Prevents the library from reading a file.
struct Obstacle {
    std::string name;
    void (*put)(const std::filesystem::path& path, PatchedImports& imports);
};

void PrintTo(const Obstacle& obstacle, std::ostream* out) {
    *out << obstacle.name;
}

const Obstacle Obstacles[] = {
    {"ExcessiveSize",
     [](const std::filesystem::path& path, PatchedImports&) { ExtendTo(MaximumSize + 1, path); }},
    {"SizeOfMoreThan32Bits",
     [](const std::filesystem::path&, PatchedImports& imports) {
         imports.Patch("GetFileSizeEx", [](HANDLE file, LARGE_INTEGER* size) -> BOOL {
             const BOOL result = GetFileSizeEx(file, size);
             size->HighPart = 1;
             return result;
         });
     }},
    {"FolderInPlace",
     [](const std::filesystem::path& path, PatchedImports&) {
         std::filesystem::remove(path);
         std::filesystem::create_directory(path);
     }},
    {"Device",
     [](const std::filesystem::path&, PatchedImports& imports) {
         imports.Patch("GetFileType", [](HANDLE) -> DWORD { return FILE_TYPE_CHAR; });
     }},
    {"Pipe",
     [](const std::filesystem::path&, PatchedImports& imports) {
         imports.Patch("GetFileType", [](HANDLE) -> DWORD { return FILE_TYPE_PIPE; });
     }},
    {"TruncationWhileRead",
     [](const std::filesystem::path&, PatchedImports& imports) {
         imports.Patch("ReadFile",
                       [](HANDLE file, void* buffer, DWORD size, DWORD* count, OVERLAPPED* overlapped) {
                           return ReadFile(file, buffer, size - 1, count, overlapped);
                       });
     }},
    {"ReadError",
     [](const std::filesystem::path&, PatchedImports& imports) {
         imports.Patch("ReadFile", [](HANDLE, void*, DWORD, DWORD*, OVERLAPPED*) -> BOOL {
             SetLastError(ERROR_CRC);
             return FALSE;
         });
     }},
};

using ObstacleCase = std::tuple<DataFile, Obstacle>;

}  // namespace

class ObstacleTest : public DataFileTest, public testing::WithParamInterface<ObstacleCase> {
protected:
    void SetUp() override {
        imports.emplace(Dll().Handle());
        std::get<Obstacle>(GetParam()).put(Path(), *imports);
    }

    const DataFile& File() const { return std::get<DataFile>(GetParam()); }
    std::filesystem::path Path() const { return PathOf(File()); }

    // Describes the file, and all files beside it. A large file is not read completely.
    std::string Describe() const {
        std::string files;
        for (const auto& entry : std::filesystem::directory_iterator{Path().parent_path()}) {
            files += Utf8(entry.path().filename());
            if (entry.is_regular_file())
                files += " " + std::to_string(entry.file_size()) + " " + Beginning(entry.path());
            files += "\n";
        }
        return files;
    }

private:
    static std::string Beginning(const std::filesystem::path& path) {
        char content[100] = {};
        std::ifstream{path, std::ios::binary}.read(content, sizeof content - 1);
        return content;
    }

    std::optional<PatchedImports> imports;
};

INSTANTIATE_TEST_SUITE_P(, ObstacleTest,
                         testing::Combine(testing::ValuesIn(AllDataFiles()), testing::ValuesIn(Obstacles)),
                         NameOfFileCase<Obstacle>);

TEST_P(ObstacleTest, UnreadFileHasNoContent) {
    EXPECT_FALSE(File().isRead(*this));
}

using UnreadFileSaveTest = ObstacleTest;

INSTANTIATE_TEST_SUITE_P(, UnreadFileSaveTest,
                         testing::Combine(testing::ValuesIn(WritableDataFiles()),
                                          testing::ValuesIn(Obstacles)),
                         NameOfFileCase<Obstacle>);

TEST_P(UnreadFileSaveTest, UnreadFileIsNotOverwritten) {
    const std::string before = Describe();
    File().save(Dll());
    EXPECT_EQ(Describe(), before);
}

class FileSizeTest : public DataFileTest {};

TEST_F(FileSizeTest, FileOfMaximumSizeIsParsed) {
    Dll();
    ExtendTo(MaximumSize, installation.StringTableFile());
    const DomLoads loads;
    FirstName();
    EXPECT_EQ(loads.sources.size(), 2u);
}

// Each of these would take hours if the time were quadratic.
TEST_F(FileSizeTest, LongPrologIsExaminedInLinearTime) {
    Watchdog watchdog{600000};
    for (const std::string_view part : {"<!--->", "<!---->", "<?a?>", "<?a", "<", "\n", "<!--"}) {
        watchdog.Begin("prolog of " + std::string{part});
        WriteUserSettings(Repeat(part, 1'000'000));
        EXPECT_FALSE(FindsSetting(L"User"));
    }
}

// ---- Files that are not well-formed ----

namespace {

struct BadContent {
    std::string name;
    std::string content;
};

void PrintTo(const BadContent& content, std::ostream* out) {
    *out << content.name;
}

const BadContent BadContents[] = {
    {"NoContent", ""},
    {"NoRoot", "<!--c-->"},
    {"NoEnd", "<R><CommonSettings User=\"u\" Base=\"b\"/>"},
    {"Zeros", std::string(1000, '\0')},
    {"DocumentType", "<!DOCTYPE R><R><CommonSettings User=\"u\" Base=\"b\"/></R>"},
};

}  // namespace

class BadContentTest : public DataFileTest,
                       public testing::WithParamInterface<std::tuple<DataFile, BadContent>> {
protected:
    BadContentTest() { WriteFile(PathOf(File()), Content()); }

    const DataFile& File() const { return std::get<DataFile>(GetParam()); }
    const std::string& Content() const { return std::get<BadContent>(GetParam()).content; }
};

INSTANTIATE_TEST_SUITE_P(, BadContentTest,
                         testing::Combine(testing::ValuesIn(AllDataFiles()), testing::ValuesIn(BadContents)),
                         NameOfFileCase<BadContent>);

TEST_P(BadContentTest, MalformedFileHasNoContent) {
    EXPECT_FALSE(File().isRead(*this));
    EXPECT_EQ(ReadFile(PathOf(File())), Content());
}

using BadContentSaveTest = BadContentTest;

INSTANTIATE_TEST_SUITE_P(, BadContentSaveTest,
                         testing::Combine(testing::ValuesIn(WritableDataFiles()),
                                          testing::ValuesIn(BadContents)),
                         NameOfFileCase<BadContent>);

TEST_P(BadContentSaveTest, MalformedFileIsCopiedBeforeItIsReplaced) {
    EXPECT_TRUE(File().save(Dll()));
    EXPECT_TRUE(std::filesystem::exists(UnreadableCopyOf(PathOf(File()))));
    EXPECT_EQ(ReadFile(UnreadableCopyOf(PathOf(File()))), Content());
    EXPECT_NE(ReadFile(PathOf(File())), Content());
}

// ---- Other programs ----

class FileAccessTest : public DataFileTest, public testing::WithParamInterface<DataFile> {
protected:
    std::filesystem::path Path() const { return PathOf(GetParam()); }
    bool IsRead() { return GetParam().isRead(*this); }
};

INSTANTIATE_TEST_SUITE_P(, FileAccessTest, testing::ValuesIn(AllDataFiles()), CaseName<DataFile>);

TEST_P(FileAccessTest, FileIsOpenedOnceAndOnlyForReading) {
    const FileOpens opens{Dll().Handle()};
    EXPECT_TRUE(IsRead());
    const std::vector<FileOpen> calls = opens.CallsFor(Path());
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].access, GENERIC_READ);
    EXPECT_EQ(calls[0].shared, DWORD{FILE_SHARE_READ | FILE_SHARE_DELETE});
}

// The DOM would treat a path as a URL, and open the file with its own share modes.
TEST_P(FileAccessTest, DomReceivesOnlyBytes) {
    Dll();
    const DomLoads loads;
    EXPECT_TRUE(IsRead());
    EXPECT_FALSE(loads.sources.empty());
    for (const VARTYPE source : loads.sources)
        EXPECT_EQ(source, VT_ARRAY | VT_UI1);
}

TEST_P(FileAccessTest, FileOpenForWritingElsewhereIsNotRead) {
    {
        const OpenFile writer{Path(), GENERIC_READ | GENERIC_WRITE,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE};
        EXPECT_FALSE(IsRead());
    }
    Unload();
    EXPECT_TRUE(IsRead());
}

TEST_P(FileAccessTest, FileOpenForReadingElsewhereIsRead) {
    const OpenFile reader{Path(), GENERIC_READ, FILE_SHARE_READ};
    EXPECT_TRUE(IsRead());
}

TEST_P(FileAccessTest, FileCanBeRenamedWhileItIsLoaded) {
    FileOpens opens{Dll().Handle()};
    opens.afterOpen = [&](const std::filesystem::path& opened) {
        if (opened == Path()) {
            EXPECT_TRUE(MoveFileW(Path().c_str(), (Path() += L".old").c_str()));
        }
    };
    EXPECT_TRUE(IsRead());
    EXPECT_FALSE(std::filesystem::exists(Path()));
}

TEST_P(FileAccessTest, FileCanBeDeletedWhileItIsLoaded) {
    FileOpens opens{Dll().Handle()};
    opens.afterOpen = [&](const std::filesystem::path& opened) {
        if (opened == Path()) {
            EXPECT_TRUE(DeleteFileW(Path().c_str()));
        }
    };
    EXPECT_TRUE(IsRead());
    EXPECT_FALSE(std::filesystem::exists(Path()));
}

TEST_P(FileAccessTest, FileIsClosedAfterLoad) {
    EXPECT_TRUE(IsRead());
    const OpenFile exclusive{Path(), GENERIC_READ | GENERIC_WRITE, 0};
}

}  // namespace ZOTDam::Test
