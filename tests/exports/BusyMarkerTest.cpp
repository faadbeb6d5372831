// Tests of the busy markers: named mutexes that mark a data file as busy. A process that finds a marker skips
// the file and does not wait.
#include <windows.h>

#include <optional>

#include "support/DataFiles.h"
#include "support/DomMethods.h"
#include "support/ExportTest.h"
#include "support/ImportPatch.h"
#include "support/MarkerCalls.h"
#include "support/SaveCalls.h"

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

TEST_F(BusyMarkerTest, WriteOpensMarkerBeforeLoadAndBeforeSave) {
    WriteFiles();
    MarkerCalls calls{Dll().Handle()};
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(calls.opened, (Names{UserMarker, UserMarker}));
    EXPECT_EQ(calls.created, (Names{UserMarker, UserMarker}));
    EXPECT_TRUE(calls.openHandles.empty());
}

TEST_F(BusyMarkerTest, WriteWithoutFileOpensMarkerBeforeSaveOnly) {
    MarkerCalls calls{Dll().Handle()};
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(calls.opened, (Names{UserMarker}));
    EXPECT_EQ(calls.created, (Names{UserMarker}));
}

TEST_F(BusyMarkerTest, ReadWithoutSaveOpensMarkerOnce) {
    WriteFiles();
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    MarkerCalls calls{Dll().Handle()};
    EXPECT_EQ(GetParameter(Balanced), stored);
    EXPECT_EQ(calls.opened, (Names{UserMarker}));
    EXPECT_TRUE(calls.openHandles.empty());
}

TEST_F(BusyMarkerTest, ResetOpensMarkerForSaveOnly) {
    WriteFiles();
    EXPECT_EQ(GetParameter(Balanced), stored);
    MarkerCalls calls{Dll().Handle()};
    EXPECT_TRUE(Dll().ResetDefault());
    EXPECT_EQ(calls.opened, (Names{UserMarker}));
    EXPECT_TRUE(calls.openHandles.empty());
}

TEST_F(BusyMarkerTest, DefaultsAreReadOnceUnderOwnMarker) {
    WriteDefaults(TwoFunctions);
    MarkerCalls calls{Dll().Handle()};
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    GetParameterDefault(Balanced);
    EXPECT_EQ(calls.opened, (Names{DefaultsMarker}));
    EXPECT_EQ(calls.created, (Names{DefaultsMarker}));
    EXPECT_TRUE(calls.openHandles.empty());
}

TEST_F(BusyMarkerTest, MissingDefaultsFileOpensNoMarker) {
    MarkerCalls calls{Dll().Handle()};
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
    EXPECT_EQ(calls.opened, Names{});
}

TEST_F(BusyMarkerTest, FoundMarkerIsClosedAndNotCreated) {
    WriteFiles();
    MarkerCalls calls{Dll().Handle()};
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(calls.opened, (Names{UserMarker, UserMarker}));
    EXPECT_EQ(calls.created, Names{});
    EXPECT_TRUE(calls.openHandles.empty());
}

TEST_F(BusyMarkerTest, FailedSaveClosesMarker) {
    WriteFiles();
    SaveCalls save{Dll().Handle()};
    save.Fail(Replacements);
    MarkerCalls calls{Dll().Handle()};
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(calls.created, (Names{UserMarker, UserMarker}));
    EXPECT_TRUE(calls.openHandles.empty());
    EXPECT_FALSE(MarkerExists(UserMarker));
}

TEST_F(BusyMarkerTest, FailedLoadClosesMarker) {
    WriteDefaults("<ZOTDefault>");
    MarkerCalls calls{Dll().Handle()};
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
    EXPECT_EQ(calls.created, (Names{DefaultsMarker}));
    EXPECT_TRUE(calls.openHandles.empty());
}

TEST_F(BusyMarkerTest, FileIsReadWhileMarkerExists) {
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

TEST_F(BusyMarkerTest, FileIsWrittenWhileMarkerExists) {
    MarkerCalls calls{Dll().Handle()};
    calls.onCreate = [&] {
        EXPECT_FALSE(HasUserFile());
        return std::nullopt;
    };
    calls.beforeClose = [&] {
        EXPECT_TRUE(MarkerExists(UserMarker));
        EXPECT_EQ(UserSettings(), SavedXml{NewUserFile(NewScheme(BalancedText, NewFunction(1, 5, 6)))});
    };
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(calls.created, (Names{UserMarker}));
    EXPECT_FALSE(MarkerExists(UserMarker));
}

TEST_F(BusyMarkerTest, MarkerOwnershipIsNeverReleasedExplicitly) {
    EXPECT_THROW((ImportPatch{Dll().Handle(), "ReleaseMutex", &ReleaseMutex}), std::invalid_argument);
}

// ---- Markers held by other processes ----

TEST_F(BusyMarkerTest, ReadSkipsBusyFile) {
    WriteFiles();
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_EQ(GetParameter(Balanced), defaults);
    EXPECT_EQ(UserSettings(), StoredSettings());
}

TEST_F(BusyMarkerTest, ReadOfBusyFileKeepsPreviousContent) {
    WriteFiles();
    EXPECT_EQ(GetParameter(Balanced), stored);
    WriteUserSettings(OldUserFile(OldScheme(BalancedText, OldFunction(1, 7, 7) + OldFunction(2, 8, 8))));
    {
        const SecondProcess other{HoldMutex, {UserMarker}};
        EXPECT_EQ(GetParameter(Balanced), stored);
    }
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {7, 7}}, {2, {8, 8}}}));
}

TEST_F(BusyMarkerTest, FileThatWasNeverReadIsNotReplaced) {
    WriteUserSettings(OldUserFile(OldScheme(HighPerformanceText, OldFunction(1, 7, 8))));
    const std::string before = UserSettings();
    MarkerCalls calls{Dll().Handle()};
    calls.BeBusyAtOpen(1);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(), before);
}

TEST_F(BusyMarkerTest, WriteToBusyFileSucceedsWithoutSaving) {
    WriteFiles();
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(), StoredSettings());
}

TEST_F(BusyMarkerTest, WriteIsSavedAfterMarkerHolderEnds) {
    WriteFiles();
    {
        SecondProcess other{HoldMutex, {UserMarker}};
        EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
        other.Kill();
    }
    EXPECT_TRUE(SetParameter(Balanced, {{2, {7, 8}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(1, 50, 51) + OldFunction(2, 7, 8)))});
}

TEST_F(BusyMarkerTest, UnownedMarkerOfSameProcessMakesFileBusy) {
    WriteFiles();
    const HANDLE marker = CreateMutexW(nullptr, FALSE, UserMarker);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(), StoredSettings());
    CloseHandle(marker);
}

TEST_F(BusyMarkerTest, SkippedLoadsAndSavesDoNotChangeResults) {
    WriteFiles();
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_TRUE(Dll().TEVGetParam(&Balanced));
    EXPECT_TRUE(Dll().ResetDefault());
    EXPECT_TRUE(Dll().SetCommonSetting(L"Name", L"value"));
    EXPECT_EQ(UserSettings(), StoredSettings());
}

TEST_F(BusyMarkerTest, UserMarkerDoesNotBlockReadingDefaults) {
    WriteDefaults(TwoFunctions);
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
}

TEST_F(BusyMarkerTest, DefaultsMarkerDoesNotBlockSavingUserSettings) {
    const SecondProcess other{HoldMutex, {DefaultsMarker}};
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(), SavedXml{NewUserFile(NewScheme(BalancedText, NewFunction(1, 5, 6)))});
}

TEST_F(BusyMarkerTest, DefaultsBusyAtFirstLoadStayUnread) {
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

TEST_F(BusyMarkerTest, DefaultsBusyAfterLoadStayAvailable) {
    WriteDefaults(TwoFunctions);
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    const SecondProcess other{HoldMutex, {DefaultsMarker}};
    EXPECT_EQ(GetParameterDefault(Balanced), defaults);
}

// ---- Separate markers for load and save ----

TEST_F(BusyMarkerTest, FileBusyDuringLoadIsSavedFromMemory) {
    WriteFiles();
    EXPECT_EQ(GetParameter(Balanced), stored);
    WriteUserSettings("<OrloPowerCfg><Newer/></OrloPowerCfg>");
    MarkerCalls calls{Dll().Handle()};
    calls.BeBusyAtOpen(1);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(calls.opened.size(), 2u);
    EXPECT_EQ(UserSettings(),
              SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(1, 5, 6) + OldFunction(2, 52, 53)))});
    EXPECT_TRUE(calls.openHandles.empty());
}

// A half-built scheme would hide the schemes after it.
TEST_F(BusyMarkerTest, IncompleteNewSchemeIsNotSavedLater) {
    const ComScope com;
    WriteFiles();
    {
        const DomMethodFailingOnce failure{DomMethod::SetAttribute, 1};
        SetParameter(HighPerformance, {{1, {5, 6}}});
        EXPECT_TRUE(DomMethodFailingOnce::HasFailed());
    }
    MarkerCalls calls{Dll().Handle()};
    calls.BeBusyAtOpen(1);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(1, 5, 6) + OldFunction(2, 52, 53)))});
}

// Changes parameters in memory while the file is busy, so that they are not saved.
class UnsavedChangeTest : public BusyMarkerTest {
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

TEST_F(UnsavedChangeTest, UnsavedChangeIsReadWhileFileIsBusy) {
    WriteFiles();
    EditWithoutSaving();
    EXPECT_EQ(UserSettings(), StoredSettings());
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_EQ(GetParameter(Balanced), edited);
    EXPECT_EQ(GetParameter(Balanced), edited);
}

TEST_F(UnsavedChangeTest, NextLoadDiscardsUnsavedChange) {
    WriteFiles();
    EditWithoutSaving();
    EXPECT_EQ(GetParameter(Balanced), stored);
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_EQ(GetParameter(Balanced), stored);
}

TEST_F(UnsavedChangeTest, NextSaveWithoutLoadWritesUnsavedChange) {
    WriteFiles();
    EditWithoutSaving();
    MarkerCalls calls{Dll().Handle()};
    calls.BeBusyAtOpen(1);
    EXPECT_TRUE(SetParameter(Balanced, {{2, {7, 8}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(1, 5, 6) + OldFunction(2, 7, 8)))});
}

TEST_F(UnsavedChangeTest, NextUseWithoutFileDiscardsUnsavedChange) {
    EditWithoutSaving();
    EXPECT_FALSE(HasUserFile());
    EXPECT_TRUE(SetParameter(Balanced, {{2, {7, 8}}}));
    EXPECT_EQ(UserSettings().find("<Function ID=\"1\""), std::string::npos);
    EXPECT_NE(UserSettings().find("<Function ID=\"2\""), std::string::npos);
}

// A write that reaches a function without "ID" is not saved. The next save writes its changes in memory.
TEST_F(BusyMarkerTest, WriteUpdatesUntilFunctionWithoutIdThenAppends) {
    WriteUserSettings(
        OldUserFile(OldScheme(BalancedText, OldFunction(5, 1, 1) + "<Function/>" + OldFunction(6, 1, 1))));
    EXPECT_TRUE(SetParameter(Balanced, {{5, {50, 51}}, {6, {60, 61}}}));
    MarkerCalls calls{Dll().Handle()};
    calls.BeBusyAtOpen(1);
    EXPECT_TRUE(SetParameter(HighPerformance, {{1, {2, 3}}}));
    EXPECT_EQ(
        UserSettings(),
        SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(5, 50, 51) + "<Function/>" +
                                                         OldFunction(6, 1, 1) + NewFunction(6, 60, 61)) +
                             NewScheme(HighPerformanceText, NewFunction(1, 2, 3)))});
}

TEST_F(BusyMarkerTest, FirstFunctionWithoutIdMakesWriteAppendEverything) {
    const std::string functions = R"(<Function ACParamIndex="1" DCParamIndex="1"/>)" + OldFunction(5, 1, 1);
    const std::string file = OldUserFile(OldScheme(BalancedText, functions));
    WriteUserSettings(file);
    EXPECT_TRUE(SetParameter(Balanced, {{3, {30, 31}}, {5, {50, 51}}}));
    EXPECT_EQ(UserSettings(), file);
    MarkerCalls calls{Dll().Handle()};
    calls.BeBusyAtOpen(1);
    EXPECT_TRUE(SetParameter(HighPerformance, {{1, {2, 3}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{OldUserFile(
                  OldScheme(BalancedText, functions + NewFunction(3, 30, 31) + NewFunction(5, 50, 51)) +
                  NewScheme(HighPerformanceText, NewFunction(1, 2, 3)))});
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

class MutexResultTest : public BusyMarkerTest, public testing::WithParamInterface<MarkerAnswer> {
protected:
    void Apply(MarkerCalls& calls) const {
        calls.onOpen = MutexResultTest::GetParam().onOpen;
        calls.onCreate = MutexResultTest::GetParam().onCreate;
    }
    bool Busy() const { return MutexResultTest::GetParam().busy; }
};

TEST_P(MutexResultTest, MutexResultDecidesWhetherFileIsSaved) {
    MarkerCalls calls{Dll().Handle()};
    Apply(calls);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(HasUserFile(), !Busy());
    EXPECT_TRUE(calls.openHandles.empty());
}

TEST_P(MutexResultTest, MutexResultDecidesWhetherFileIsRead) {
    WriteDefaults(TwoFunctions);
    MarkerCalls calls{Dll().Handle()};
    Apply(calls);
    EXPECT_EQ(Dll().GetFuncCount(), Busy() ? CatalogueUnavailable : 2);
    EXPECT_TRUE(calls.openHandles.empty());
}

constexpr MarkerAnswer MarkerAnswers[] = {
    {"MutexDoesNotExist", CallSystem, CallSystem, false},
    {"OpenSucceeds", CreateMutexWith<ERROR_SUCCESS>, CallSystem, true},
    {"OpenSucceedsWithStaleErrorCode", CreateMutexWith<ERROR_FILE_NOT_FOUND>, CallSystem, true},
    {"OpenFailsWithAccessDenied", FailWith<ERROR_ACCESS_DENIED>, CallSystem, true},
    {"OpenFailsWithAlreadyExists", FailWith<ERROR_ALREADY_EXISTS>, CallSystem, true},
    {"OpenFailsWithNotEnoughMemory", FailWith<ERROR_NOT_ENOUGH_MEMORY>, CallSystem, false},
    {"CreateFailsWithAccessDenied", CallSystem, FailWith<ERROR_ACCESS_DENIED>, true},
    {"CreateFailsWithAlreadyExists", CallSystem, FailWith<ERROR_ALREADY_EXISTS>, true},
    {"CreateOpensExistingMutex", CallSystem, CreateMutexWith<ERROR_ALREADY_EXISTS>, true},
    {"CreateFailsWithNotEnoughMemory", CallSystem, FailWith<ERROR_NOT_ENOUGH_MEMORY>, false},
    {"CreateFailsWithInvalidHandle", CallSystem, FailWith<ERROR_INVALID_HANDLE>, false},
    {"OpenAndCreateFail", FailWith<ERROR_INVALID_HANDLE>, FailWith<ERROR_NO_SYSTEM_RESOURCES>, false},
};

INSTANTIATE_TEST_SUITE_P(, MutexResultTest, testing::ValuesIn(MarkerAnswers),
                         [](const testing::TestParamInfo<MarkerAnswer>& info) {
                             return std::string{info.param.name};
                         });

TEST_F(BusyMarkerTest, ObjectOfAnotherTypeDoesNotBlockSave) {
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, UserMarker);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_TRUE(HasUserFile());
    CloseHandle(event);
}

}  // namespace ZOTDam::Test
