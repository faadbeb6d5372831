// Tests that the commands that read do not change an installation: no content, no time and no file.
#include <iterator>
#include <map>
#include <utility>

#include "client/ClientTest.h"
#include "support/KillAtCall.h"

namespace ZOTDam::Test {

constexpr wchar_t InventedScheme[] = L"0a1b2c3d-1111-2222-3333-444455556666";

// A file or folder: its content and its times. The time of the last access depends on the system.
struct FileCopy {
    std::string content;
    std::uint64_t created = 0;
    std::uint64_t written = 0;

    bool operator==(const FileCopy&) const = default;
};

inline void PrintTo(const FileCopy& copy, std::ostream* out) {
    *out << copy.content << " (" << copy.created << ", " << copy.written << ")";
}

std::uint64_t TimeFrom(const FILETIME& time) {
    return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

class ReadOnlyTest : public ClientTest {
protected:
    ReadOnlyTest() {
        WriteDefaults(ThreeFunctions);
        SetEnvironmentVariableW(L"TMP", TemporaryFolder().c_str());
        std::filesystem::create_directory(TemporaryFolder());
    }
    ~ReadOnlyTest() override { SetEnvironmentVariableW(L"TMP", oldTemporaryFolder.c_str()); }

    // Runs each command that reads the user settings.
    void ExpectNoChange(DWORD exitStatus) const {
        for (const Arguments& command : ReadingCommands())
            ExpectNoChange(exitStatus, command);
    }

    // The exit code is the expected one, and everything in the folders of the installation is the same before
    // and after.
    void ExpectNoChange(DWORD exitStatus, const Arguments& command) const {
        const auto before = Everything();
        EXPECT_EQ(Run(command).exitStatus, exitStatus) << Utf8(command.front());
        EXPECT_EQ(Everything(), before) << Utf8(command.front());
    }

    using Copies = std::map<std::filesystem::path, FileCopy>;

    Copies Everything() const {
        Copies everything;
        for (const std::filesystem::path& folder : {installation.ProgramFiles(), installation.ProgramData()})
            for (const auto& entry : std::filesystem::recursive_directory_iterator{folder})
                everything[entry.path()] = Copy(entry);
        return everything;
    }

    // Returns a folder that is not a part of the installation.
    std::filesystem::path Outside() const { return installation.ProgramData().parent_path(); }

    std::filesystem::path TemporaryFolder() const { return installation.ProgramFiles() / L"Temp"; }

private:
    static std::vector<Arguments> ReadingCommands() {
        return {{L"params", L"balanced"},
                {L"params", InventedScheme},
                {L"current", L"balanced"},
                {L"commands", L"balanced"},
                {L"diff", L"balanced", L"power-saver"},
                {L"setting", L"list"},
                {L"list"}};
    }

    FileCopy Copy(const std::filesystem::directory_entry& entry) const {
        // The command creates and deletes a folder in the temporary folder, which changes its times.
        if (entry.path() == TemporaryFolder())
            return {};
        WIN32_FILE_ATTRIBUTE_DATA data = {};
        GetFileAttributesExW(entry.path().c_str(), GetFileExInfoStandard, &data);
        return {entry.is_directory() ? "" : ReadFile(entry.path()), TimeFrom(data.ftCreationTime),
                TimeFrom(data.ftLastWriteTime)};
    }

    std::filesystem::path oldTemporaryFolder = std::filesystem::temp_directory_path();
};

TEST_F(ReadOnlyTest, StoredSchemeStaysUnchanged) {
    WriteBalanced(OldFunction(1, 5, 6));
    ExpectNoChange(Success);
}

TEST_F(ReadOnlyTest, MissingFileIsNotCreated) {
    ExpectNoChange(Success);
}

TEST_F(ReadOnlyTest, MissingFolderIsNotCreated) {
    std::filesystem::remove(installation.UserFile().parent_path());
    ExpectNoChange(Success);
}

TEST_F(ReadOnlyTest, FileThatIsNotWellFormedStaysUnchanged) {
    WriteUserSettings("<OrloPowerCfg><PowerSchemes>");
    ExpectNoChange(Success);
}

TEST_F(ReadOnlyTest, FileWithDocumentTypeStaysUnchanged) {
    WriteUserSettings("<!DOCTYPE OrloPowerCfg><OrloPowerCfg/>");
    ExpectNoChange(Success);
}

TEST_F(ReadOnlyTest, BusyFileStaysUnchanged) {
    WriteBalanced(OldFunction(1, 5, 6));
    const SecondProcess other{HoldMutex, {UserMarker}};
    ExpectNoChange(InUse);
}

TEST_F(ReadOnlyTest, FileThatAnotherProgramHasOpenStaysUnchanged) {
    WriteBalanced(OldFunction(1, 5, 6));
    const HANDLE open = CreateFileW(installation.UserFile().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    ExpectNoChange(Success);
    CloseHandle(open);
}

TEST_F(ReadOnlyTest, ReadOnlyFileIsRead) {
    WriteBalanced(OldFunction(1, 5, 6));
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_READONLY);
    ExpectNoChange(Success);
    EXPECT_EQ(IndexesOf({L"params", L"balanced"})[0], Param(1, 5, 6));
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(ReadOnlyTest, InterruptedSaveIsReadButNotCompleted) {
    WriteUserSettings("");
    WriteFile(RedoFileOf(installation.UserFile()),
              OldUserFile(OldScheme(BalancedText, OldFunction(1, 5, 6))));
    ExpectNoChange(Success);
    EXPECT_EQ(IndexesOf({L"params", L"balanced"})[0], Param(1, 5, 6));
}

TEST_F(ReadOnlyTest, OtherReadingCommandsChangeNothing) {
    WriteBase("<ZOTBase><Functions/><SpecSchemes/></ZOTBase>");
    WriteUserSettings(R"(<OrloPowerCfg><CommonSettings Warning="15"/><PowerSchemes/></OrloPowerCfg>)");
    const std::filesystem::path exported = Outside() / L"export.json";
    for (const Arguments& command : {Arguments{L"export", exported},
                                     {L"import", exported, L"--dry-run"},
                                     {L"diff", L"balanced", L"--with", exported},
                                     {L"count"},
                                     {L"functions"},
                                     {L"base"},
                                     {L"spec-schemes"},
                                     {L"aliases"},
                                     {L"setting", L"get", L"Warning"},
                                     {L"doctor", installation.UserFile()}})
        ExpectNoChange(Success, command);
}

// These commands create and delete a file in the folder of the user settings.
TEST_F(ReadOnlyTest, DoctorAndReportLeaveNoFile) {
    WriteBalanced(OldFunction(1, 5, 6));
    const std::filesystem::path folder = installation.UserFile().parent_path();
    for (const Arguments& command :
         {Arguments{L"doctor"}, {L"report", L"--output", Outside() / L"page.html"}}) {
        Copies before = Everything();
        Run(command);
        Copies after = Everything();
        EXPECT_NE(std::exchange(after[folder], {}), std::exchange(before[folder], {}));
        EXPECT_EQ(after, before);
    }
}

TEST_F(ReadOnlyTest, KilledDoctorLeavesNoFile) {
    WriteBalanced(OldFunction(1, 5, 6));
    const auto filesInFolder = [folder = installation.UserFile().parent_path()] {
        return std::distance(std::filesystem::directory_iterator{folder}, {});
    };
    // At this call, doctor closes the file that it has created.
    KillAtCall debugger{reinterpret_cast<void*>(&CloseHandle), [&] { return filesInFolder() == 2; }};
    const std::wstring commandLine = L"zotdamctl --program-files \"" + installation.ProgramFiles().native() +
                                     L"\" --program-data \"" + installation.ProgramData().native() +
                                     L"\" doctor";
    EXPECT_TRUE(debugger.Run({Client().native(), commandLine}));
    EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(ReadOnlyTest, FolderWithNameOfFileIsAnError) {
    std::filesystem::create_directory(installation.UserFile());
    ExpectError({L"params", L"balanced"}, Failure, UserFile() + " cannot be read.");
}

}  // namespace ZOTDam::Test
