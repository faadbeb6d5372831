// Tests of a file that cannot be replaced and is therefore written in place. A redo file with the complete
// new content exists meanwhile, from which any process can complete the write.
#include <algorithm>
#include <optional>
#include <tuple>

#include "support/FunctionDefaultsTest.h"
#include "support/LogonSession.h"
#include "support/MarkerCalls.h"
#include "support/OpenFile.h"
#include "support/ParentInstallation.h"
#include "support/SaveCalls.h"

namespace ZOTDam::Test {

namespace {

using Calls = std::vector<SaveCall>;

constexpr DWORD SharesWriting = FILE_SHARE_READ | FILE_SHARE_WRITE;

// ---- Both files ----

// A writable file, and calls that save and load it.
struct WritableFile {
    std::string name;
    std::filesystem::path (Installation::*path)() const;
    bool (*save)(const Library& dll);
    void (*load)(const Library& dll);
};

void PrintTo(const WritableFile& file, std::ostream* out) {
    *out << file.name;
}

void ReadMissingSetting(const Library& dll) {
    dll.GetCommonSetting(L"Missing", nullptr);
}

const std::vector<WritableFile> WritableFiles = {
    {"UserSettings", &Installation::UserFile,
     [](const Library& dll) { return dll.SetCommonSetting(L"New", L"stored"); }, ReadMissingSetting},
    {"Defaults", &Installation::DefaultsFile, [](const Library& dll) { return dll.InitCommonSetting(); },
     ReadMissingSetting},
};

const WritableFile& FileNamed(const std::wstring& name) {
    return *std::ranges::find_if(
        WritableFiles, [&](const WritableFile& file) { return std::filesystem::path{name} == file.name; });
}

// ---- Processes that end ----

// The calls of a save in place, with one attempt to replace the file.
constexpr SaveCall SaveInPlace[] = {SaveCall::Create,      SaveCall::Write,       SaveCall::SetEnd,
                                    SaveCall::Flush,       SaveCall::PosixRename, SaveCall::Sleep,
                                    SaveCall::PosixRename, SaveCall::OpenTarget,  SaveCall::RenameToRedo,
                                    SaveCall::SetEnd,      SaveCall::Flush,       SaveCall::Write,
                                    SaveCall::SetEnd,      SaveCall::Flush,       SaveCall::Delete};
constexpr std::size_t FirstCallWithRedoFile = 9;

// The calls of the recovery of an incomplete file.
constexpr SaveCall Recovery[] = {SaveCall::OpenRedo, SaveCall::OpenTarget, SaveCall::SetEnd,
                                 SaveCall::Flush,    SaveCall::Write,      SaveCall::SetEnd,
                                 SaveCall::Flush,    SaveCall::Delete};

// Makes the file appear open in another program, whatever the system.
void RefuseReplacement(SaveCalls& calls) {
    calls.minimumSleep = 100;
    calls.Fail(Replacements, ERROR_ACCESS_DENIED);
}

// Ends the process before the call with this index.
void ExitBefore(SaveCalls& calls, std::size_t index) {
    calls.before = [&calls, index, refuse = calls.before](SaveCall call) {
        if (calls.made.size() > index)
            ExitAtOnce();
        return refuse(call);
    };
}

constexpr wchar_t SavesInPlace[] = L"saves-in-place";
constexpr wchar_t Recovers[] = L"recovers";
constexpr wchar_t UsesFileInOwnSession[] = L"uses-file-in-own-session";

// Arguments: the folders, the file, and the index of the call before which the process ends.
const RegisterRole SavesInPlaceRole{SavesInPlace, [](const std::vector<std::wstring>& arguments) {
                                        EnterInstallation(arguments);
                                        const Library dll;
                                        SaveCalls calls{dll.Handle()};
                                        RefuseReplacement(calls);
                                        ExitBefore(calls, std::stoul(arguments.at(3)));
                                        return FileNamed(arguments.at(2)).save(dll) ? 0 : 1;
                                    }};

const RegisterRole RecoversRole{Recovers, [](const std::vector<std::wstring>& arguments) {
                                    EnterInstallation(arguments);
                                    const Library dll;
                                    SaveCalls calls{dll.Handle()};
                                    ExitBefore(calls, std::stoul(arguments.at(3)));
                                    FileNamed(arguments.at(2)).load(dll);
                                    return 0;
                                }};

const RegisterRole UsesFileInOwnSessionRole{UsesFileInOwnSession,
                                            [](const std::vector<std::wstring>& arguments) {
                                                EnterInstallation(arguments);
                                                const Library dll;
                                                EnterOwnSession(dll.Handle());
                                                const WritableFile& file = FileNamed(arguments.at(2));
                                                file.load(dll);
                                                file.save(dll);
                                                return 0;
                                            }};

}  // namespace

// ---- The fixture ----

class RedoFileTest : public FunctionDefaultsTest {
protected:
    virtual const WritableFile& Tested() const = 0;

    void SetUp() override {
        WriteUserSettings("<OrloPowerCfg><CommonSettings Old=\"a text that is longer\"/></OrloPowerCfg>\n");
        WriteDefaults(
            "<ZOTDefault><Functions/><CommonSettings Old=\"a text that is longer\"/></ZOTDefault>\n");
        WriteBase(R"(<ZOTBase><CommonSettings New="stored"/></ZOTBase>)");
        oldContent = Content();
        EXPECT_TRUE(Save());
        newContent = Content();
        EXPECT_NE(newContent, oldContent);
        Unload();
        WriteFile(File(), oldContent);
    }

    std::filesystem::path File() const { return (installation.*Tested().path)(); }
    std::filesystem::path RedoFile() const { return RedoFileOf(File()); }
    std::string Content() const { return ReadFile(File()); }
    bool HasRedoFile() const { return std::filesystem::exists(RedoFile()); }

    bool Save() { return Tested().save(Dll()); }
    void Load() { Tested().load(Dll()); }

    // Writes the files that a process leaves if it ends during a write in place.
    void WriteInterrupted(const std::string& partOfNewContent) const {
        WriteFile(File(), partOfNewContent);
        WriteFile(RedoFile(), newContent);
    }

    DWORD ExitCodeOf(const wchar_t* role, std::size_t index = 0) const {
        const std::string& name = Tested().name;
        return SecondProcess{role,
                             WithFolders(installation, {{name.begin(), name.end()}, std::to_wstring(index)})}
            .WaitForExit();
    }

    // Expects that the folder contains no other file that the library creates.
    void ExpectOnlyFile(const std::string& content) const {
        EXPECT_EQ(Content(), content);
        for (const std::filesystem::path& other :
             {TemporaryFileOf(File()), RedoFile(), UnreadableCopyOf(File())})
            EXPECT_FALSE(std::filesystem::exists(other)) << other;
    }

    std::string oldContent;
    std::string newContent;
};

// ---- The write in place ----

class WriteInPlaceTest : public RedoFileTest, public testing::WithParamInterface<WritableFile> {
protected:
    const WritableFile& Tested() const override { return GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(, WriteInPlaceTest, testing::ValuesIn(WritableFiles), CaseName<WritableFile>);

TEST_P(WriteInPlaceTest, SaveInPlaceMakesTheseCalls) {
    Load();
    SaveCalls calls{Dll().Handle()};
    RefuseReplacement(calls);
    EXPECT_TRUE(Save());
    EXPECT_EQ(calls.made, Calls(std::begin(SaveInPlace), std::end(SaveInPlace)));
    ExpectOnlyFile(newContent);
}

TEST_P(WriteInPlaceTest, RedoFileExistsWheneverFileIsIncomplete) {
    SaveCalls calls{Dll().Handle()};
    RefuseReplacement(calls);
    int incomplete = 0;
    calls.after = [&](SaveCall) {
        const bool isIncomplete = Content() != oldContent && Content() != newContent;
        incomplete += isIncomplete;
        EXPECT_TRUE(!isIncomplete || HasRedoFile()) << testing::PrintToString(calls.made);
    };
    EXPECT_TRUE(Save());
    EXPECT_GT(incomplete, 0);
}

TEST_P(WriteInPlaceTest, OtherProgramsCannotWriteEitherFile) {
    SaveCalls calls{Dll().Handle()};
    RefuseReplacement(calls);
    calls.after = [&](SaveCall call) {
        if (call != SaveCall::RenameToRedo)
            return;
        EXPECT_EQ(ReadFile(RedoFile()), "");
        EXPECT_EQ(DeleteFileW(RedoFile().c_str()), FALSE);
        EXPECT_EQ(
            CreateFileW(File().c_str(), GENERIC_WRITE, SharesWriting, nullptr, OPEN_EXISTING, 0, nullptr),
            INVALID_HANDLE_VALUE);
    };
    EXPECT_TRUE(Save());
    ExpectOnlyFile(newContent);
}

TEST_P(WriteInPlaceTest, FailedWriteInPlaceRestoresOldContent) {
    for (const SaveCall failing : {SaveCall::Write, SaveCall::SetEnd, SaveCall::Flush}) {
        Load();
        SaveCalls calls{Dll().Handle()};
        RefuseReplacement(calls);
        bool hasFailed = false;
        calls.before = [&, refuse = calls.before](SaveCall call) -> DWORD {
            if (call != failing || calls.CountOf(SaveCall::RenameToRedo) == 0 || hasFailed)
                return refuse(call);
            hasFailed = true;
            return ERROR_DISK_FULL;
        };
        EXPECT_FALSE(Save());
        EXPECT_TRUE(hasFailed);
        ExpectOnlyFile(oldContent);
    }
}

TEST_P(WriteInPlaceTest, RedoFileRemainsIfNoContentIsWritten) {
    {
        SaveCalls calls{Dll().Handle()};
        RefuseReplacement(calls);
        calls.before = [&, refuse = calls.before](SaveCall call) -> DWORD {
            return call == SaveCall::Write && calls.CountOf(SaveCall::RenameToRedo) != 0 ? ERROR_IO_DEVICE
                                                                                         : refuse(call);
        };
        EXPECT_FALSE(Save());
        EXPECT_EQ(ReadFile(RedoFile()), newContent);
    }
    Unload();
    Load();
    ExpectOnlyFile(newContent);
}

// ---- Termination at each call ----

// The parameters are the file and the index of the call before which the process ends.
using InterruptedCall = std::tuple<WritableFile, std::size_t>;

std::string NameOfInterruptedCall(const testing::TestParamInfo<InterruptedCall>& info) {
    const auto& [file, index] = info.param;
    return file.name + "BeforeCall" + std::to_string(index);
}

auto CallsOf(std::size_t count) {
    return testing::Combine(testing::ValuesIn(WritableFiles), testing::Range(std::size_t{0}, count));
}

class TerminationTest : public RedoFileTest, public testing::WithParamInterface<InterruptedCall> {
protected:
    const WritableFile& Tested() const override { return std::get<WritableFile>(GetParam()); }
    static std::size_t Index() { return std::get<std::size_t>(GetParam()); }

    // Expects that a process reads this content, and that the next save succeeds.
    void ExpectRecovered(const std::string& content) {
        Load();
        EXPECT_EQ(Content(), content);
        EXPECT_TRUE(Save());
        ExpectOnlyFile(newContent);
    }
};

class TerminationInPlaceTest : public TerminationTest {};

INSTANTIATE_TEST_SUITE_P(, TerminationInPlaceTest, CallsOf(std::size(SaveInPlace)), NameOfInterruptedCall);

TEST_P(TerminationInPlaceTest, NextLoadFindsOldOrNewContent) {
    EXPECT_EQ(ExitCodeOf(SavesInPlace, Index()), InjectedExitCode);
    EXPECT_EQ(HasRedoFile(), Index() >= FirstCallWithRedoFile);
    // Before the file is truncated, its content is the old one, which makes the redo file obsolete.
    ExpectRecovered(Index() <= FirstCallWithRedoFile ? oldContent : newContent);
}

class TerminationInRecoveryTest : public TerminationTest {};

INSTANTIATE_TEST_SUITE_P(, TerminationInRecoveryTest, CallsOf(std::size(Recovery)), NameOfInterruptedCall);

TEST_P(TerminationInRecoveryTest, NextLoadFindsNewContent) {
    WriteInterrupted("");
    EXPECT_EQ(ExitCodeOf(Recovers, Index()), InjectedExitCode);
    EXPECT_TRUE(HasRedoFile());
    ExpectRecovered(newContent);
}

// ---- The recovery ----

class RecoveryTest : public WriteInPlaceTest {};

INSTANTIATE_TEST_SUITE_P(, RecoveryTest, testing::ValuesIn(WritableFiles), CaseName<WritableFile>);

TEST_P(RecoveryTest, RecoveryMakesTheseCalls) {
    WriteInterrupted("");
    SaveCalls calls{Dll().Handle()};
    Load();
    EXPECT_EQ(calls.made, Calls(std::begin(Recovery), std::end(Recovery)));
    ExpectOnlyFile(newContent);
}

TEST_P(RecoveryTest, OtherProgramsCannotOpenRedoFile) {
    WriteInterrupted("");
    SaveCalls calls{Dll().Handle()};
    calls.after = [&](SaveCall call) {
        if (call == SaveCall::OpenRedo) {
            EXPECT_EQ(ReadFile(RedoFile()), "");
            EXPECT_EQ(DeleteFileW(RedoFile().c_str()), FALSE);
        }
    };
    Load();
    ExpectOnlyFile(newContent);
}

TEST_P(RecoveryTest, PartOfNewContentIsCompleted) {
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, newContent.size() / 2, newContent.size() - 1}) {
        WriteInterrupted(newContent.substr(0, size));
        Load();
        ExpectOnlyFile(newContent);
        Unload();
    }
}

// After a power failure, a part of a file that had been written can contain zeros.
TEST_P(RecoveryTest, ZerosAreReplaced) {
    for (const std::size_t size : {std::size_t{1}, newContent.size() / 2, newContent.size()}) {
        WriteInterrupted(std::string(size, '\0'));
        Load();
        ExpectOnlyFile(newContent);
        Unload();
    }
    WriteInterrupted(newContent.substr(0, 10) + std::string(newContent.size() - 10, '\0'));
    Load();
    ExpectOnlyFile(newContent);
}

TEST_P(RecoveryTest, MissingFileIsRestored) {
    WriteInterrupted("");
    std::filesystem::remove(File());
    Load();
    ExpectOnlyFile(newContent);
}

TEST_P(RecoveryTest, ObsoleteRedoFileIsDeleted) {
    for (const std::string& content : {oldContent, newContent}) {
        WriteInterrupted(content);
        Load();
        ExpectOnlyFile(content);
        Unload();
    }
}

TEST_P(RecoveryTest, SaveDeletesRedoFileThatAppearedAfterLoad) {
    Load();
    MarkerCalls markers{Dll().Handle()};
    // The user settings are loaded once more before they are saved.
    const std::size_t markerOfSave = GetParam().name == "Defaults" ? 1 : 2;
    markers.onCreate = [&]() -> std::optional<HANDLE> {
        if (markers.created.size() == markerOfSave)
            WriteFile(RedoFile(), "<Obsolete/>");
        return std::nullopt;
    };
    EXPECT_TRUE(Save());
    EXPECT_EQ(markers.created.size(), markerOfSave);
    ExpectOnlyFile(newContent);
}

TEST_P(RecoveryTest, FailedRecoveryKeepsRedoFile) {
    for (const SaveCall failing :
         {SaveCall::OpenRedo, SaveCall::OpenTarget, SaveCall::Write, SaveCall::Flush}) {
        WriteInterrupted("");
        {
            SaveCalls calls{Dll().Handle()};
            calls.Fail({failing}, ERROR_ACCESS_DENIED);
            Load();
            Save();
        }
        EXPECT_EQ(ReadFile(RedoFile()), newContent);
        EXPECT_FALSE(std::filesystem::exists(UnreadableCopyOf(File())));
        Unload();
        Load();
        ExpectOnlyFile(newContent);
        Unload();
    }
}

// ---- Other processes ----

TEST_P(RecoveryTest, IncompleteFileOfLivingProcessIsLeftAlone) {
    const std::string part = newContent.substr(0, newContent.size() / 2);
    WriteInterrupted(part);
    {
        const OpenFile process{RedoFile(), GENERIC_WRITE, 0};
        Load();
        Save();
        EXPECT_EQ(Content(), part);
        EXPECT_FALSE(std::filesystem::exists(UnreadableCopyOf(File())));
    }
    Unload();
    Load();
    ExpectOnlyFile(newContent);
}

TEST_P(RecoveryTest, BusyFileIsNotRecovered) {
    WriteInterrupted("");
    {
        const SecondProcess other{HoldMutex, {GetParam().name == "Defaults" ? DefaultsMarker : UserMarker}};
        Load();
        EXPECT_EQ(Content(), "");
    }
    Unload();
    Load();
    ExpectOnlyFile(newContent);
}

// The parameters are the file and the index of the recovery's call before which another process begins one.
class ConcurrentRecoveryTest : public TerminationTest {};

INSTANTIATE_TEST_SUITE_P(, ConcurrentRecoveryTest, CallsOf(std::size(Recovery)), NameOfInterruptedCall);

TEST_P(ConcurrentRecoveryTest, OtherSessionDoesNotDisturbRecovery) {
    WriteInterrupted("");
    EnterOwnSession(Dll().Handle());
    SaveCalls calls{Dll().Handle()};
    calls.before = [&](SaveCall) {
        if (calls.made.size() == Index() + 1) {
            EXPECT_EQ(ExitCodeOf(UsesFileInOwnSession), 0u);
        }
        return ERROR_SUCCESS;
    };
    Load();
    ExpectOnlyFile(newContent);
}

}  // namespace ZOTDam::Test
