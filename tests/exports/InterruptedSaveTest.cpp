// Tests of interrupted saves: the process terminates, or a file operation fails. The file then contains
// either the old or the new content, never a mixture.
#include <algorithm>
#include <set>
#include <span>

#include "support/DataFiles.h"
#include "support/FunctionDefaultsTest.h"
#include "support/ParentInstallation.h"
#include "support/SaveCalls.h"

namespace ZOTDam::Test {

namespace {

constexpr wchar_t SaveAndExit[] = L"save-and-exit";
constexpr wchar_t ReplaceAndExit[] = L"replace-and-exit";
constexpr int FunctionCount = 40;

std::map<std::int32_t, ParamValue> AllFunctionsSetTo(std::int32_t value) {
    std::map<std::int32_t, ParamValue> params;
    for (int id = 0; id < FunctionCount; ++id)
        params[id] = {value, value};
    return params;
}

void Store(const Library& dll, const GUID& scheme, std::int32_t value) {
    dll.SetParameter(&scheme, ParamHolder{AllFunctionsSetTo(value)}.get());
}

// Replaces all functions with functions whose ids start at firstId.
void ReplaceFunctions(const Library& dll, std::int32_t firstId) {
    FunctionBaseHolder holder;
    for (std::int32_t id = firstId; id < firstId + FunctionCount; ++id)
        holder.records.push_back(Record(id));
    dll.AddFunctionDefault(&holder);
}

std::string FileOfFunctions(std::int32_t firstId) {
    std::string functions;
    for (std::int32_t id = firstId; id < firstId + FunctionCount; ++id)
        functions += Written(id);
    return OldDefaults(functions);
}

// A call of a save at which the process ends, and whether the save stores the new content.
struct Termination {
    std::string name;
    SaveCall call;
    bool isAfter;
    bool isStored = false;
    Renames renames = Renames::None;
    std::set<SaveCall> failing = {};
};

void PrintTo(const Termination& termination, std::ostream* out) {
    *out << termination.name;
}

constexpr bool Before = false;
constexpr bool After = true;
constexpr bool Stored = true;

std::vector<Termination> TerminationsDuringSave() {
    return {
        {"BeforeTemporaryFileIsOpened", SaveCall::Create, Before},
        {"AfterTemporaryFileIsOpened", SaveCall::Create, After},
        {"BeforeWrite", SaveCall::Write, Before},
        {"AfterWrite", SaveCall::Write, After},
        {"BeforeFlush", SaveCall::Flush, Before},
        {"AfterFlush", SaveCall::Flush, After},
        {"BeforeRename", SaveCall::PosixRename, Before},
        {"AfterPosixRename", SaveCall::PosixRename, After, Stored, Renames::Posix},
        {"BeforePlainRename", SaveCall::Rename, Before, !Stored, Renames::Plain},
        {"AfterPlainRename", SaveCall::Rename, After, Stored, Renames::Plain},
        {"BeforeMove", SaveCall::Move, Before},
        {"AfterMove", SaveCall::Move, After, Stored},
        {"BeforeDeletionAfterFailedFlush",
         SaveCall::Delete,
         Before,
         !Stored,
         Renames::None,
         {SaveCall::Flush}},
        {"AfterDeletionAfterFailedRename", SaveCall::Delete, After, !Stored, Renames::None, Replacements},
    };
}

std::vector<Termination> TerminationsDuringCopy() {
    return {{"BeforeCopy", SaveCall::Copy, Before}, {"AfterCopy", SaveCall::Copy, After}};
}

Termination TerminationOf(const std::wstring& name) {
    for (const auto& terminations : {TerminationsDuringSave(), TerminationsDuringCopy()})
        for (const Termination& termination : terminations)
            if (std::wstring{termination.name.begin(), termination.name.end()} == name)
                return termination;
    std::abort();
}

// The third argument is the name of the termination.
template <class Save>
int SaveAndTerminate(const std::vector<std::wstring>& arguments, Save save) {
    EnterInstallation(arguments);
    const Library dll;
    const Termination termination = TerminationOf(arguments.at(2));
    SaveCalls calls{dll.Handle(), termination.renames};
    calls.before = [&](SaveCall call) -> DWORD {
        if (call == termination.call && !termination.isAfter)
            ExitAtOnce();
        return termination.failing.contains(call) ? ERROR_DISK_FULL : ERROR_SUCCESS;
    };
    calls.after = [&](SaveCall call) {
        if (call == termination.call)
            ExitAtOnce();
    };
    save(dll);
    return 0;
}

const RegisterRole SaveAndExitRole{SaveAndExit, [](const std::vector<std::wstring>& arguments) {
                                       return SaveAndTerminate(
                                           arguments, [](const Library& dll) { Store(dll, Balanced, 2); });
                                   }};

const RegisterRole ReplaceAndExitRole{
    ReplaceAndExit, [](const std::vector<std::wstring>& arguments) {
        return SaveAndTerminate(arguments, [](const Library& dll) { ReplaceFunctions(dll, 100); });
    }};

}  // namespace

class InterruptedSaveTest : public SettingsTest {
protected:
    InterruptedSaveTest() {
        std::string functions;
        for (int id = 0; id < FunctionCount; ++id)
            functions += Function(id, R"(<Default ACParamIndex="0" DCParamIndex="0"/>)");
        WriteFunctions(functions);
    }

    std::filesystem::path TemporaryFile() const { return TemporaryFileOf(installation.UserFile()); }
    std::filesystem::path KeptFile() const { return UnreadableCopyOf(installation.UserFile()); }

    // Returns the value that all functions of a scheme have, or -1 if only some were stored.
    std::int32_t StoredValue(const GUID& scheme) {
        const Params params = GetParameter(scheme);
        if (params.size() != FunctionCount)
            return -1;
        const ParamValue value = params.front().second;
        const bool isWhole =
            value.ACParamIndex == value.DCParamIndex &&
            std::ranges::all_of(params, [&](const auto& param) { return param.second == value; });
        return isWhole ? value.ACParamIndex : -1;
    }

    // Expects that this process can save and read as usual.
    void ExpectNextSaveWorks() {
        EXPECT_TRUE(SetParameter(Balanced, AllFunctionsSetTo(9)));
        EXPECT_EQ(StoredValue(Balanced), 9);
        EXPECT_TRUE(IsWellFormed(installation.UserFile()));
        EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
    }
};

// ---- Termination at a given call ----

class TerminationDuringSaveTest : public InterruptedSaveTest,
                                  public testing::WithParamInterface<Termination> {
protected:
    void SaveInExitingProcess(const wchar_t* role = SaveAndExit) {
        const std::string& name = GetParam().name;
        SecondProcess saver{role, WithFolders(installation, {{name.begin(), name.end()}})};
        ASSERT_EQ(saver.WaitForExit(), InjectedExitCode);
    }
};

INSTANTIATE_TEST_SUITE_P(, TerminationDuringSaveTest, testing::ValuesIn(TerminationsDuringSave()),
                         CaseName<Termination>);

TEST_P(TerminationDuringSaveTest, UserSettingsHaveOldOrNewContent) {
    EXPECT_TRUE(SetParameter(HighPerformance, AllFunctionsSetTo(5)));
    EXPECT_TRUE(SetParameter(Balanced, AllFunctionsSetTo(1)));
    const std::string before = UserSettings();
    SaveInExitingProcess();
    EXPECT_EQ(UserSettings() == before, !GetParam().isStored);
    EXPECT_TRUE(IsWellFormed(installation.UserFile()));
    EXPECT_EQ(StoredValue(Balanced), GetParam().isStored ? 2 : 1);
    EXPECT_EQ(StoredValue(HighPerformance), 5);
    ExpectNextSaveWorks();
    EXPECT_EQ(StoredValue(HighPerformance), 5);
}

TEST_P(TerminationDuringSaveTest, FirstFileIsMissingOrComplete) {
    SaveInExitingProcess();
    EXPECT_EQ(HasUserSettings(), GetParam().isStored);
    EXPECT_EQ(StoredValue(Balanced), GetParam().isStored ? 2 : 0);
    ExpectNextSaveWorks();
}

TEST_P(TerminationDuringSaveTest, DefaultsHaveOldOrNewFunctions) {
    const std::string before = Defaults();
    SaveInExitingProcess(ReplaceAndExit);
    EXPECT_EQ(Defaults(), SavedXml{GetParam().isStored ? FileOfFunctions(100) : before});
    ReplaceFunctions(Dll(), 200);
    EXPECT_EQ(Defaults(), SavedXml{FileOfFunctions(200)});
    EXPECT_FALSE(std::filesystem::exists(TemporaryFileOf(installation.DefaultsFile())));
}

class TerminationDuringCopyTest : public TerminationDuringSaveTest {};

INSTANTIATE_TEST_SUITE_P(, TerminationDuringCopyTest, testing::ValuesIn(TerminationsDuringCopy()),
                         CaseName<Termination>);

TEST_P(TerminationDuringCopyTest, MalformedFileIsUnchanged) {
    WriteUserSettings("<unreadable");
    SaveInExitingProcess();
    EXPECT_EQ(UserSettings(), "<unreadable");
    ExpectNextSaveWorks();
    EXPECT_EQ(Content(KeptFile()), "<unreadable");
}

// ---- Leftover files ----

TEST_F(InterruptedSaveTest, PartialTemporaryFileIsNeitherReadNorKept) {
    EXPECT_TRUE(SetParameter(Balanced, AllFunctionsSetTo(1)));
    WriteFile(TemporaryFile(), UserSettings().substr(0, 300));
    EXPECT_EQ(StoredValue(Balanced), 1);
    ExpectNextSaveWorks();
}

TEST_F(InterruptedSaveTest, CompleteTemporaryFileIsNotRead) {
    EXPECT_TRUE(SetParameter(Balanced, AllFunctionsSetTo(1)));
    std::string newer = UserSettings();
    WriteFile(TemporaryFile(), newer.replace(newer.find("=\"1\""), 4, "=\"6\""));
    EXPECT_EQ(StoredValue(Balanced), 1);
}

TEST_F(InterruptedSaveTest, LongTemporaryFileIsOverwrittenCompletely) {
    WriteFile(TemporaryFile(), std::string(100000, 'x'));
    ExpectNextSaveWorks();
}

// ---- Failing file operations ----

// Errors of a disk, of rights and of an unsuitable file system.
constexpr DWORD Errors[] = {ERROR_DISK_FULL,         ERROR_HANDLE_DISK_FULL, ERROR_ACCESS_DENIED,
                            ERROR_SHARING_VIOLATION, ERROR_LOCK_VIOLATION,   ERROR_IO_DEVICE,
                            ERROR_NOT_SUPPORTED,     ERROR_NOT_ENOUGH_MEMORY};
constexpr DWORD FullDiskErrors[] = {ERROR_DISK_FULL, ERROR_HANDLE_DISK_FULL};

class FailedFileOperationTest : public InterruptedSaveTest {
protected:
    void SaveWithFailing(const std::set<SaveCall>& failing, DWORD error = ERROR_DISK_FULL) {
        SaveCalls calls{Dll().Handle()};
        calls.Fail(failing, error);
        EXPECT_TRUE(SetParameter(Balanced, AllFunctionsSetTo(2)));
        EXPECT_FALSE(Dll().SetCommonSetting(L"Name", L"value"));
    }

    void ExpectFailureChangesNothing(const std::set<SaveCall>& failing, std::span<const DWORD> errors) {
        EXPECT_TRUE(SetParameter(Balanced, AllFunctionsSetTo(1)));
        const std::string before = UserSettings();
        for (const DWORD error : errors) {
            SCOPED_TRACE(error);
            SaveWithFailing(failing, error);
            EXPECT_EQ(UserSettings(), before);
            EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
            EXPECT_EQ(StoredValue(Balanced), 1);
        }
        ExpectNextSaveWorks();
    }
};

TEST_F(FailedFileOperationTest, FullDiskAtOpenChangesNothing) {
    ExpectFailureChangesNothing({SaveCall::Create}, FullDiskErrors);
}

TEST_F(FailedFileOperationTest, FailedWriteChangesNothing) {
    ExpectFailureChangesNothing({SaveCall::Write}, Errors);
}

TEST_F(FailedFileOperationTest, FailedSettingOfEndChangesNothing) {
    ExpectFailureChangesNothing({SaveCall::SetEnd}, Errors);
}

TEST_F(FailedFileOperationTest, FailedFlushChangesNothing) {
    ExpectFailureChangesNothing({SaveCall::Flush}, Errors);
}

TEST_F(FailedFileOperationTest, FullDiskAtMoveChangesNothing) {
    ExpectFailureChangesNothing(Replacements, FullDiskErrors);
}

TEST_F(FailedFileOperationTest, FailedMoveAndOverwriteChangeNothing) {
    std::set<SaveCall> failing = Replacements;
    failing.insert(SaveCall::OpenTarget);
    ExpectFailureChangesNothing(failing, Errors);
}

TEST_F(FailedFileOperationTest, FailedMoveAndRedoFileChangeNothing) {
    std::set<SaveCall> failing = Replacements;
    failing.insert(SaveCall::RenameToRedo);
    ExpectFailureChangesNothing(failing, Errors);
}

TEST_F(FailedFileOperationTest, FailedFirstSaveLeavesNoFile) {
    for (const DWORD error : Errors) {
        SaveWithFailing(Replacements, error);
        EXPECT_FALSE(HasUserSettings());
        EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
    }
    ExpectNextSaveWorks();
}

TEST_F(FailedFileOperationTest, FailedCopyLeavesMalformedFileUnchanged) {
    WriteUserSettings("<unreadable");
    SaveWithFailing({SaveCall::Copy});
    EXPECT_EQ(UserSettings(), "<unreadable");
    EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
    ExpectNextSaveWorks();
    EXPECT_EQ(Content(KeptFile()), "<unreadable");
}

TEST_F(FailedFileOperationTest, FailedMoveLeavesMalformedFileAndItsCopy) {
    WriteUserSettings("<unreadable");
    SaveWithFailing(Replacements);
    EXPECT_EQ(UserSettings(), "<unreadable");
    EXPECT_EQ(Content(KeptFile()), "<unreadable");
    ExpectNextSaveWorks();
}

TEST_F(FailedFileOperationTest, ReadSucceedsIfItsSaveFails) {
    SaveCalls calls{Dll().Handle()};
    calls.Fail(Replacements);
    EXPECT_EQ(StoredValue(Balanced), 0);
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(FailedFileOperationTest, ReadOnlyFileIsNotReplaced) {
    EXPECT_TRUE(SetParameter(Balanced, AllFunctionsSetTo(1)));
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(SetParameter(Balanced, AllFunctionsSetTo(2)));
    EXPECT_EQ(StoredValue(Balanced), 1);
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_NORMAL);
    ExpectNextSaveWorks();
}

TEST_F(FailedFileOperationTest, FileInUseIsReplacedOnceClosed) {
    EXPECT_TRUE(SetParameter(Balanced, AllFunctionsSetTo(1)));
    const HANDLE reader = CreateFileW(installation.UserFile().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_TRUE(SetParameter(Balanced, AllFunctionsSetTo(2)));
    CloseHandle(reader);
    EXPECT_EQ(StoredValue(Balanced), 1);
    ExpectNextSaveWorks();
}

}  // namespace ZOTDam::Test
