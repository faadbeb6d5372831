// Tests of the busy markers: named mutexes that mark a data file as busy. A process that finds a marker skips
// the file and does not wait.
#include <windows.h>

#include <optional>

#include "support/DataFiles.h"
#include "support/ExportTest.h"
#include "support/ImportPatch.h"
#include "support/MarkerCalls.h"

namespace ZOTDam::Test {

namespace {

bool MarkerExists(const wchar_t* name) {
    const HANDLE marker = OpenMutexW(SYNCHRONIZE, FALSE, name);
    if (marker == nullptr)
        return false;
    CloseHandle(marker);
    return true;
}

HANDLE Fail(DWORD error) {
    SetLastError(error);
    return nullptr;
}

}  // namespace

class BusyMarkerTest : public ExportTest {
protected:
    // Writes user settings with the values {50, 51} for function 1, whose defaults are {2, 3}.
    void WriteFiles() const {
        WriteDefaults(TwoFunctions);
        WriteUserSettings(StoredSettings());
    }
    static std::string StoredSettings() {
        return OldUserFile(OldScheme(BalancedText, OldFunction(1, 50, 51) + OldFunction(2, 52, 53)));
    }
    bool HasUserFile() const { return std::filesystem::exists(installation.UserFile()); }

    const Params stored = {{1, {50, 51}}, {2, {52, 53}}};
    const Params defaults = {{1, {2, 3}}, {2, {4, 5}}};
};

// ---- When the markers are opened ----

TEST_F(BusyMarkerTest, AWriteLooksForTheMarkerBeforeItsLoadAndAgainBeforeItsSave) {
    WriteFiles();
    MarkerCalls calls{Dll().Handle()};
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(calls.opened, (Names{UserMarker, UserMarker}));
    EXPECT_EQ(calls.created, (Names{UserMarker, UserMarker}));
    EXPECT_TRUE(calls.openHandles.empty());
}

TEST_F(BusyMarkerTest, AWriteWithoutAFileLooksForTheMarkerBeforeItsSaveOnly) {
    MarkerCalls calls{Dll().Handle()};
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(calls.opened, (Names{UserMarker}));
    EXPECT_EQ(calls.created, (Names{UserMarker}));
}

TEST_F(BusyMarkerTest, AReadThatStoresNothingLooksForTheMarkerOnce) {
    WriteFiles();
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    MarkerCalls calls{Dll().Handle()};
    EXPECT_EQ(GetParameter(Balanced), stored);
    EXPECT_EQ(calls.opened, (Names{UserMarker}));
    EXPECT_TRUE(calls.openHandles.empty());
}

TEST_F(BusyMarkerTest, AResetLooksForTheMarkerOnceSinceItDoesNotReadTheFile) {
    WriteFiles();
    EXPECT_EQ(GetParameter(Balanced), stored);
    MarkerCalls calls{Dll().Handle()};
    EXPECT_TRUE(Dll().ResetDefault());
    EXPECT_EQ(calls.opened, (Names{UserMarker}));
    EXPECT_TRUE(calls.openHandles.empty());
}

TEST_F(BusyMarkerTest, TheDefaultsAreReadUnderTheirOwnMarkerOnce) {
    WriteDefaults(TwoFunctions);
    MarkerCalls calls{Dll().Handle()};
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    GetParameterDefault(Balanced);
    EXPECT_EQ(calls.opened, (Names{DefaultsMarker}));
    EXPECT_EQ(calls.created, (Names{DefaultsMarker}));
    EXPECT_TRUE(calls.openHandles.empty());
}

TEST_F(BusyMarkerTest, WithoutADefaultsFileNoMarkerIsLookedFor) {
    MarkerCalls calls{Dll().Handle()};
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
    EXPECT_EQ(calls.opened, Names{});
}

TEST_F(BusyMarkerTest, AFoundMarkerIsNotMadeAndItsHandleIsClosed) {
    WriteFiles();
    MarkerCalls calls{Dll().Handle()};
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(calls.opened, (Names{UserMarker, UserMarker}));
    EXPECT_EQ(calls.created, Names{});
    EXPECT_TRUE(calls.openHandles.empty());
}

TEST_F(BusyMarkerTest, TheHandleIsClosedWhenTheSaveFails) {
    WriteFiles();
    const ImportPatch patch{Dll().Handle(), "MoveFileExW",
                            +[](const wchar_t*, const wchar_t*, DWORD) WINAPI -> BOOL { return FALSE; }};
    MarkerCalls calls{Dll().Handle()};
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(calls.created, (Names{UserMarker, UserMarker}));
    EXPECT_TRUE(calls.openHandles.empty());
    EXPECT_FALSE(MarkerExists(UserMarker));
}

TEST_F(BusyMarkerTest, TheHandleIsClosedWhenTheLoadFails) {
    WriteDefaults("<ZOTDefault>");
    MarkerCalls calls{Dll().Handle()};
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
    EXPECT_EQ(calls.created, (Names{DefaultsMarker}));
    EXPECT_TRUE(calls.openHandles.empty());
}

TEST_F(BusyMarkerTest, TheFileIsReadBetweenTheMakingAndTheClosingOfTheMarker) {
    WriteDefaults("<ZOTDefault/>");
    MarkerCalls calls{Dll().Handle()};
    calls.onCreate = [&] {
        WriteDefaults(TwoFunctions);
        return std::nullopt;
    };
    calls.beforeClose = [&] {
        EXPECT_TRUE(MarkerExists(DefaultsMarker));
        WriteDefaults("<ZOTDefault/>");
    };
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    EXPECT_FALSE(MarkerExists(DefaultsMarker));
}

TEST_F(BusyMarkerTest, TheFileIsWrittenBetweenTheMakingAndTheClosingOfTheMarker) {
    MarkerCalls calls{Dll().Handle()};
    calls.onCreate = [&] {
        EXPECT_FALSE(HasUserFile());
        return std::nullopt;
    };
    calls.beforeClose = [&] {
        EXPECT_TRUE(MarkerExists(UserMarker));
        EXPECT_EQ(UserSettings(), NewUserFile(NewScheme(BalancedText, NewFunction(1, 5, 6))));
    };
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(calls.created, (Names{UserMarker}));
    EXPECT_FALSE(MarkerExists(UserMarker));
}

TEST_F(BusyMarkerTest, TheOwnershipIsNeverReleasedByACallOfItsOwn) {
    EXPECT_THROW((ImportPatch{Dll().Handle(), "ReleaseMutex", &ReleaseMutex}), std::invalid_argument);
}

// ---- Markers held by other processes ----

TEST_F(BusyMarkerTest, AReadSkipsABusyFile) {
    WriteFiles();
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_EQ(GetParameter(Balanced), defaults);
    EXPECT_EQ(UserSettings(), StoredSettings());
}

TEST_F(BusyMarkerTest, AReadOfABusyFileKeepsWhatWasReadBefore) {
    WriteFiles();
    EXPECT_EQ(GetParameter(Balanced), stored);
    WriteUserSettings(OldUserFile(OldScheme(BalancedText, OldFunction(1, 7, 7) + OldFunction(2, 8, 8))));
    {
        const SecondProcess other{HoldMutex, {UserMarker}};
        EXPECT_EQ(GetParameter(Balanced), stored);
    }
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {7, 7}}, {2, {8, 8}}}));
}

TEST_F(BusyMarkerTest, AWriteLeavesAFileUnchangedThatWasBusyWheneverItWasToBeRead) {
    WriteUserSettings(OldUserFile(OldScheme(HighPerformanceText, OldFunction(1, 7, 8))));
    const std::string before = UserSettings();
    MarkerCalls calls{Dll().Handle()};
    calls.BeBusyAtOpen(1);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(), before);
}

TEST_F(BusyMarkerTest, AWriteLeavesABusyFileUnchangedAndGivesTrue) {
    WriteFiles();
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(), StoredSettings());
}

TEST_F(BusyMarkerTest, OnceTheHolderHasEndedTheNextWriteIsSaved) {
    WriteFiles();
    {
        SecondProcess other{HoldMutex, {UserMarker}};
        EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
        other.Kill();
    }
    EXPECT_TRUE(SetParameter(Balanced, {{2, {7, 8}}}));
    EXPECT_EQ(UserSettings(),
              OldUserFile(OldScheme(BalancedText, OldFunction(1, 50, 51) + OldFunction(2, 7, 8))));
}

TEST_F(BusyMarkerTest, AMarkerOfTheSameProcessCountsTooAndNeedsNoOwner) {
    WriteFiles();
    const HANDLE marker = CreateMutexW(nullptr, FALSE, UserMarker);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(), StoredSettings());
    CloseHandle(marker);
}

TEST_F(BusyMarkerTest, ASkippedReadAndSaveChangeNoResult) {
    WriteFiles();
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_TRUE(Dll().TEVGetParam(&Balanced));
    EXPECT_TRUE(Dll().ResetDefault());
    EXPECT_TRUE(Dll().SetCommonSetting(L"Name", L"value"));
    EXPECT_EQ(UserSettings(), StoredSettings());
}

TEST_F(BusyMarkerTest, TheUserMarkerDoesNotKeepTheDefaultsFromBeingRead) {
    WriteDefaults(TwoFunctions);
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
}

TEST_F(BusyMarkerTest, TheDefaultsMarkerDoesNotKeepTheUserSettingsFromBeingSaved) {
    const SecondProcess other{HoldMutex, {DefaultsMarker}};
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(), NewUserFile(NewScheme(BalancedText, NewFunction(1, 5, 6))));
}

TEST_F(BusyMarkerTest, DefaultsThatAreBusyAtTheirOnlyLoadStayUnread) {
    WriteFiles();
    {
        const SecondProcess other{HoldMutex, {DefaultsMarker}};
        EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
    }
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
    EXPECT_EQ(GetParameterDefault(Balanced), Params{});
    EXPECT_EQ(GetParameter(Balanced), Params{});
    EXPECT_FALSE(Dll().TEVGetParam(&Balanced));
    Unload();
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    EXPECT_EQ(Defaults(), TwoFunctions);
}

TEST_F(BusyMarkerTest, DefaultsThatAreBusyAfterTheirLoadAreStillKnown) {
    WriteDefaults(TwoFunctions);
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    const SecondProcess other{HoldMutex, {DefaultsMarker}};
    EXPECT_EQ(GetParameterDefault(Balanced), defaults);
}

// ---- Separate markers for load and save ----

TEST_F(BusyMarkerTest, AFileThatIsBusyForTheLoadOnlyIsSavedFromMemory) {
    WriteFiles();
    EXPECT_EQ(GetParameter(Balanced), stored);
    WriteUserSettings("<OrloPowerCfg><Newer/></OrloPowerCfg>");
    MarkerCalls calls{Dll().Handle()};
    calls.BeBusyAtOpen(1);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(calls.opened.size(), 2u);
    EXPECT_EQ(UserSettings(),
              OldUserFile(OldScheme(BalancedText, OldFunction(1, 5, 6) + OldFunction(2, 52, 53))));
    EXPECT_TRUE(calls.openHandles.empty());
}

// Changes parameters in memory while the file is busy, so that they are not saved.
class UnsavedEditTest : public BusyMarkerTest {
protected:
    void EditWithoutSaving() {
        MarkerCalls calls{Dll().Handle()};
        const std::size_t save = HasUserFile() ? 2 : 1;
        calls.BeBusyAtOpen(save);
        EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
        EXPECT_EQ(calls.opened.size(), save);
        EXPECT_TRUE(calls.openHandles.empty());
    }
    const Params edited = {{1, {5, 6}}, {2, {52, 53}}};
};

TEST_F(UnsavedEditTest, LivesWhileTheFileIsBusy) {
    WriteFiles();
    EditWithoutSaving();
    EXPECT_EQ(UserSettings(), StoredSettings());
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_EQ(GetParameter(Balanced), edited);
    EXPECT_EQ(GetParameter(Balanced), edited);
}

TEST_F(UnsavedEditTest, IsLostWithTheNextLoad) {
    WriteFiles();
    EditWithoutSaving();
    EXPECT_EQ(GetParameter(Balanced), stored);
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_EQ(GetParameter(Balanced), stored);
}

TEST_F(UnsavedEditTest, IsSavedWithTheNextSaveWhenNoLoadCameBefore) {
    WriteFiles();
    EditWithoutSaving();
    MarkerCalls calls{Dll().Handle()};
    calls.BeBusyAtOpen(1);
    EXPECT_TRUE(SetParameter(Balanced, {{2, {7, 8}}}));
    EXPECT_EQ(UserSettings(),
              OldUserFile(OldScheme(BalancedText, OldFunction(1, 5, 6) + OldFunction(2, 7, 8))));
}

TEST_F(UnsavedEditTest, IsLostWithTheNextUseWhenThereIsNoFile) {
    EditWithoutSaving();
    EXPECT_FALSE(HasUserFile());
    EXPECT_TRUE(SetParameter(Balanced, {{2, {7, 8}}}));
    EXPECT_EQ(UserSettings().find("<Function ID=\"1\""), std::string::npos);
    EXPECT_NE(UserSettings().find("<Function ID=\"2\""), std::string::npos);
}

// A write that reaches a function without "ID" is not saved. The next save writes its changes in memory.
TEST_F(BusyMarkerTest, AWriteUpdatesUpToAFunctionWithoutIdAndStillAppendsTheRest) {
    WriteUserSettings(
        OldUserFile(OldScheme(BalancedText, OldFunction(5, 1, 1) + "<Function/>" + OldFunction(6, 1, 1))));
    EXPECT_TRUE(SetParameter(Balanced, {{5, {50, 51}}, {6, {60, 61}}}));
    MarkerCalls calls{Dll().Handle()};
    calls.BeBusyAtOpen(1);
    EXPECT_TRUE(SetParameter(HighPerformance, {{1, {2, 3}}}));
    EXPECT_EQ(UserSettings(),
              OldUserFile(OldScheme(BalancedText, OldFunction(5, 50, 51) + "<Function/>" +
                                                      OldFunction(6, 1, 1) + NewFunction(6, 60, 61)) +
                          NewScheme(HighPerformanceText, NewFunction(1, 2, 3))));
}

TEST_F(BusyMarkerTest, AWriteAppendsEverythingWhereTheFirstFunctionHasNoId) {
    const std::string functions = R"(<Function ACParamIndex="1" DCParamIndex="1"/>)" + OldFunction(5, 1, 1);
    const std::string file = OldUserFile(OldScheme(BalancedText, functions));
    WriteUserSettings(file);
    EXPECT_TRUE(SetParameter(Balanced, {{3, {30, 31}}, {5, {50, 51}}}));
    EXPECT_EQ(UserSettings(), file);
    MarkerCalls calls{Dll().Handle()};
    calls.BeBusyAtOpen(1);
    EXPECT_TRUE(SetParameter(HighPerformance, {{1, {2, 3}}}));
    EXPECT_EQ(UserSettings(), OldUserFile(OldScheme(BalancedText, functions + NewFunction(3, 30, 31) +
                                                                      NewFunction(5, 50, 51)) +
                                          NewScheme(HighPerformanceText, NewFunction(1, 2, 3))));
}

// ---- Results of OpenMutex and CreateMutex ----

struct MarkerAnswer {
    const char* name;
    std::optional<HANDLE> (*onOpen)();
    std::optional<HANDLE> (*onCreate)();
    bool busy;
};

void PrintTo(const MarkerAnswer& answer, std::ostream* out) {
    *out << answer.name;
}

std::optional<HANDLE> CallSystem() {
    return std::nullopt;
}

template <DWORD Error>
std::optional<HANDLE> FailWith() {
    return Fail(Error);
}

template <DWORD Error>
std::optional<HANDLE> CreateMutexWith() {
    return UnnamedMutex(Error);
}

class MarkerAnswerTest : public BusyMarkerTest, public testing::WithParamInterface<MarkerAnswer> {
protected:
    void Apply(MarkerCalls& calls) const {
        calls.onOpen = MarkerAnswerTest::GetParam().onOpen;
        calls.onCreate = MarkerAnswerTest::GetParam().onCreate;
    }
    bool Busy() const { return MarkerAnswerTest::GetParam().busy; }
};

TEST_P(MarkerAnswerTest, DecidesWhetherTheFileIsSaved) {
    MarkerCalls calls{Dll().Handle()};
    Apply(calls);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(HasUserFile(), !Busy());
    EXPECT_TRUE(calls.openHandles.empty());
}

TEST_P(MarkerAnswerTest, DecidesWhetherTheFileIsRead) {
    WriteDefaults(TwoFunctions);
    MarkerCalls calls{Dll().Handle()};
    Apply(calls);
    EXPECT_EQ(Dll().GetFuncCount(), Busy() ? CatalogueUnavailable : 2);
    EXPECT_TRUE(calls.openHandles.empty());
}

constexpr MarkerAnswer MarkerAnswers[] = {
    {"NobodyHasIt", CallSystem, CallSystem, false},
    {"ItOpens", CreateMutexWith<ERROR_SUCCESS>, CallSystem, true},
    {"ItOpensBesideAnOldErrorCode", CreateMutexWith<ERROR_FILE_NOT_FOUND>, CallSystem, true},
    {"OpeningIsDenied", FailWith<ERROR_ACCESS_DENIED>, CallSystem, true},
    {"OpeningFailsSinceItExists", FailWith<ERROR_ALREADY_EXISTS>, CallSystem, true},
    {"OpeningFailsOtherwise", FailWith<ERROR_NOT_ENOUGH_MEMORY>, CallSystem, false},
    {"MakingIsDenied", CallSystem, FailWith<ERROR_ACCESS_DENIED>, true},
    {"MakingFailsSinceItExists", CallSystem, FailWith<ERROR_ALREADY_EXISTS>, true},
    {"MakingFindsOneThatIsNew", CallSystem, CreateMutexWith<ERROR_ALREADY_EXISTS>, true},
    {"MakingFailsForLackOfMemory", CallSystem, FailWith<ERROR_NOT_ENOUGH_MEMORY>, false},
    {"MakingFailsSinceTheNameIsTaken", CallSystem, FailWith<ERROR_INVALID_HANDLE>, false},
    {"BothFail", FailWith<ERROR_INVALID_HANDLE>, FailWith<ERROR_NO_SYSTEM_RESOURCES>, false},
};

INSTANTIATE_TEST_SUITE_P(Each, MarkerAnswerTest, testing::ValuesIn(MarkerAnswers),
                         [](const testing::TestParamInfo<MarkerAnswer>& info) {
                             return std::string{info.param.name};
                         });

TEST_F(BusyMarkerTest, AnObjectOfAnotherKindUnderTheNameDoesNotStopASave) {
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, UserMarker);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_TRUE(HasUserFile());
    CloseHandle(event);
}

}  // namespace ZOTDam::Test
