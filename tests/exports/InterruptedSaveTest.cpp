// Tests of interrupted saves: the process terminates, or a file operation fails. The file then contains
// either the old or the new content, never a mixture.
#include <algorithm>
#include <array>

#include "support/DataFiles.h"
#include "support/FaultInjection.h"
#include "support/FunctionDefaultsTest.h"
#include "support/ParentInstallation.h"

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

// The fault, if any, to inject into each call of a save, and whether the save stores the new content.
struct SavePlan {
    std::string name;
    std::array<InjectedFault, 5> faults;
    bool isStored;
};

void PrintTo(const SavePlan& plan, std::ostream* out) {
    *out << plan.name;
}

// The third argument contains one digit for the fault of each call.
template <class Save>
int SaveWithFaults(const std::vector<std::wstring>& arguments, Save save) {
    EnterInstallation(arguments);
    const Library dll;
    const FaultInjection injection{dll.Handle()};
    for (std::size_t call = 0; InjectedFault* const fault : FaultInjection::Faults())
        *fault = static_cast<InjectedFault>(arguments.at(2).at(call++) - L'0');
    save(dll);
    return 0;
}

const RegisterRole saveAndExit{SaveAndExit, [](const std::vector<std::wstring>& arguments) {
                                   return SaveWithFaults(arguments,
                                                         [](const Library& dll) { Store(dll, Balanced, 2); });
                               }};

const RegisterRole replaceAndExit{ReplaceAndExit, [](const std::vector<std::wstring>& arguments) {
                                      return SaveWithFaults(
                                          arguments, [](const Library& dll) { ReplaceFunctions(dll, 100); });
                                  }};

std::wstring AsArgument(const SavePlan& plan) {
    std::wstring argument;
    for (const InjectedFault fault : plan.faults)
        argument += static_cast<wchar_t>(L'0' + static_cast<int>(fault));
    return argument;
}

constexpr InjectedFault None = InjectedFault::None;
constexpr InjectedFault ExitBefore = InjectedFault::ExitBefore;
constexpr InjectedFault ExitAfter = InjectedFault::ExitAfter;
constexpr InjectedFault Fail = InjectedFault::Fail;

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

class TerminationDuringSaveTest : public InterruptedSaveTest, public testing::WithParamInterface<SavePlan> {
protected:
    void SaveInExitingProcess(const wchar_t* role = SaveAndExit) {
        SecondProcess saver{role, WithFolders(installation, {AsArgument(GetParam())})};
        ASSERT_EQ(saver.WaitForExit(), InjectedExitCode);
    }
};

INSTANTIATE_TEST_SUITE_P(
    , TerminationDuringSaveTest,
    testing::Values(SavePlan{"BeforeTemporaryFileIsOpened", {ExitBefore, None, None, None, None}, false},
                    SavePlan{"AfterTemporaryFileIsOpened", {ExitAfter, None, None, None, None}, false},
                    SavePlan{"BeforeFlush", {None, ExitBefore, None, None, None}, false},
                    SavePlan{"AfterFlush", {None, ExitAfter, None, None, None}, false},
                    SavePlan{"BeforeMove", {None, None, ExitBefore, None, None}, false},
                    SavePlan{"AfterMove", {None, None, ExitAfter, None, None}, true},
                    SavePlan{"BeforeDeletionAfterFailedFlush", {None, Fail, None, None, ExitBefore}, false},
                    SavePlan{"AfterDeletionAfterFailedMove", {None, None, Fail, None, ExitAfter}, false}),
    CaseName<SavePlan>);

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
    EXPECT_EQ(Defaults(), GetParam().isStored ? FileOfFunctions(100) : before);
    ReplaceFunctions(Dll(), 200);
    EXPECT_EQ(Defaults(), FileOfFunctions(200));
    EXPECT_FALSE(std::filesystem::exists(TemporaryFileOf(installation.DefaultsFile())));
}

class TerminationDuringCopyTest : public TerminationDuringSaveTest {};

INSTANTIATE_TEST_SUITE_P(, TerminationDuringCopyTest,
                         testing::Values(SavePlan{"BeforeCopy", {None, None, None, ExitBefore, None}, false},
                                         SavePlan{"AfterCopy", {None, None, None, ExitAfter, None}, false}),
                         CaseName<SavePlan>);

TEST_P(TerminationDuringCopyTest, MalformedFileIsUnchanged) {
    WriteUserSettings("<unreadable");
    SaveInExitingProcess();
    EXPECT_EQ(UserSettings(), "<unreadable");
    ExpectNextSaveWorks();
    EXPECT_EQ(ReadFile(KeptFile()), "<unreadable");
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

class FailedFileOperationTest : public InterruptedSaveTest {
protected:
    // Saves while one system function fails.
    template <class Call>
    void SaveWithFailing() {
        const FaultInjection injection{Dll().Handle()};
        Call::fault = InjectedFault::Fail;
        EXPECT_TRUE(SetParameter(Balanced, AllFunctionsSetTo(2)));
        EXPECT_FALSE(Dll().SetCommonSetting(L"Name", L"value"));
    }

    template <class Call>
    void ExpectFailureChangesNothing() {
        EXPECT_TRUE(SetParameter(Balanced, AllFunctionsSetTo(1)));
        const std::string before = UserSettings();
        SaveWithFailing<Call>();
        EXPECT_EQ(UserSettings(), before);
        EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
        EXPECT_EQ(StoredValue(Balanced), 1);
        ExpectNextSaveWorks();
    }
};

TEST_F(FailedFileOperationTest, FailedOpenChangesNothing) {
    ExpectFailureChangesNothing<CreateFileHook>();
}

TEST_F(FailedFileOperationTest, FailedFlushChangesNothing) {
    ExpectFailureChangesNothing<FlushFileHook>();
}

TEST_F(FailedFileOperationTest, FailedMoveChangesNothing) {
    ExpectFailureChangesNothing<MoveFileHook>();
}

TEST_F(FailedFileOperationTest, FailedFirstSaveLeavesNoFile) {
    SaveWithFailing<MoveFileHook>();
    EXPECT_FALSE(HasUserSettings());
    EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
    ExpectNextSaveWorks();
}

TEST_F(FailedFileOperationTest, FailedCopyLeavesMalformedFileUnchanged) {
    WriteUserSettings("<unreadable");
    SaveWithFailing<CopyFileHook>();
    EXPECT_EQ(UserSettings(), "<unreadable");
    EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
    ExpectNextSaveWorks();
    EXPECT_EQ(ReadFile(KeptFile()), "<unreadable");
}

TEST_F(FailedFileOperationTest, FailedMoveLeavesMalformedFileAndItsCopy) {
    WriteUserSettings("<unreadable");
    SaveWithFailing<MoveFileHook>();
    EXPECT_EQ(UserSettings(), "<unreadable");
    EXPECT_EQ(ReadFile(KeptFile()), "<unreadable");
    ExpectNextSaveWorks();
}

TEST_F(FailedFileOperationTest, ReadSucceedsIfItsSaveFails) {
    const FaultInjection injection{Dll().Handle()};
    MoveFileHook::fault = InjectedFault::Fail;
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
