// Eight processes write and read one user settings file while the test observes it. They run in one logon
// session or each in one of its own, and other programs may have the file open.
#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "support/ImportPatch.h"
#include "support/LogonSession.h"
#include "support/ParentInstallation.h"
#include "support/SaveCalls.h"
#include "support/SettingsTest.h"
#include "support/SharedMemory.h"
#include "support/Stress.h"
#include "support/XmlFile.h"

namespace ZOTDam::Test {

namespace {

constexpr wchar_t WriteAndRead[] = L"write-and-read";
constexpr wchar_t OwnSession[] = L"own-session";
constexpr wchar_t SharedSession[] = L"shared-session";
constexpr std::int32_t ProcessCount = 8;
constexpr std::int32_t FunctionCount = 12;
constexpr DWORD Timeout = 60000;

// ---- Written values ----

// Every write has a number that identifies the writing process and its round. The defaults contain number 0.
using Stamp = std::int32_t;

constexpr std::int32_t MaxRounds = 1'000'000;

constexpr Stamp StampOf(std::int32_t process, std::int32_t round) {
    return (process + 1) * MaxRounds + round;
}

// The two halves of a value do not match if they come from two writes.
constexpr ParamValue ValueOf(Stamp stamp) {
    return {stamp, ~stamp};
}

std::map<std::int32_t, ParamValue> AllFunctionsSetTo(Stamp stamp) {
    std::map<std::int32_t, ParamValue> params;
    for (std::int32_t id = 0; id < FunctionCount; ++id)
        params[id] = ValueOf(stamp);
    return params;
}

// Strings of different lengths, so that a new file is longer or shorter than the old one.
std::wstring TextOf(Stamp stamp) {
    std::wstring text;
    for (Stamp count = 0; count <= stamp % 20; ++count)
        text += std::to_wstring(stamp) + L";";
    return text;
}

std::optional<Stamp> StampIn(const Params& params) {
    if (params.size() != FunctionCount)
        return std::nullopt;
    const Stamp stamp = params.front().second.ACParamIndex;
    const bool isOfOneWrite =
        std::ranges::all_of(params, [&](const auto& param) { return param.second == ValueOf(stamp); });
    return isOfOneWrite ? std::optional{stamp} : std::nullopt;
}

std::optional<Stamp> StampIn(const std::wstring& text) {
    const Stamp stamp = _wtoi(text.c_str());
    return text == TextOf(stamp) ? std::optional{stamp} : std::nullopt;
}

// ---- Shared state of the processes ----

struct SharedState {
    std::array<std::atomic<std::int32_t>, ProcessCount> rounds;  // the rounds that each process has begun
    std::atomic<int> calls;
    std::atomic<int> failedWrites;
    std::atomic<int> wrongValues;          // values that no single call wrote
    std::atomic<int> replacements;         // of the file
    std::atomic<int> refusedReplacements;  // because a process has the file open
    std::atomic<int> failedReplacements;
    std::atomic<int> writesInPlace;
    std::atomic<int> unguardedWrites;  // in place, without a redo file
    // For each name of a temporary file, the process that has the file open (its number + 1), or 0.
    std::array<std::atomic<std::int32_t>, 10> temporaryFiles;
    std::atomic<int> takenTemporaryFiles;  // of living processes, opened by another one
    std::atomic<int> waits;
    std::atomic<std::int64_t> longestCall;  // in microseconds
    std::atomic<bool> ends;

    bool WasWritten(Stamp stamp) const {
        const std::int32_t process = stamp / MaxRounds - 1;
        const std::int32_t round = stamp % MaxRounds;
        return stamp == 0 || (process >= 0 && process < ProcessCount && round <= rounds[process]);
    }
};

// Lets the processes begin together and report each round.
struct Synchronization {
    explicit Synchronization(const std::wstring& name)
        : state{name + L"-state"},
          start{CreateEventW(nullptr, TRUE, FALSE, (name + L"-start").c_str())},
          progress{CreateSemaphoreW(nullptr, 0, MAXLONG, (name + L"-progress").c_str())} {}
    Synchronization(const Synchronization&) = delete;
    Synchronization& operator=(const Synchronization&) = delete;
    ~Synchronization() {
        CloseHandle(start);
        CloseHandle(progress);
    }

    SharedMemory<SharedState> state;
    HANDLE start;
    HANDLE progress;
};

// ---- A process ----

SharedState* countedState = nullptr;
std::int32_t countedProcess = 0;

void ForgetTemporaryFile(SharedState& state, std::int32_t process) {
    for (auto& owner : state.temporaryFiles) {
        std::int32_t expected = process + 1;
        owner.compare_exchange_strong(expected, 0);
    }
}

// The names end in "new", "nw1", and so on.
std::atomic<std::int32_t>& OwnerOf(std::wstring_view temporaryFile) {
    return countedState->temporaryFiles[temporaryFile.back() == L'w' ? 0 : temporaryFile.back() - L'0'];
}

HANDLE WINAPI TrackTemporaryFile(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                 DWORD disposition, DWORD flags, HANDLE model) {
    const HANDLE file = CreateFileW(path, access, share, security, disposition, flags, model);
    const DWORD error = GetLastError();
    const bool opensLeftOver =
        disposition == OPEN_EXISTING && (access & DELETE) != 0 && (access & GENERIC_READ) == 0;
    countedState->unguardedWrites += disposition == OPEN_ALWAYS;
    if (file != INVALID_HANDLE_VALUE && disposition == CREATE_NEW)
        OwnerOf(path) = countedProcess + 1;
    else if (file != INVALID_HANDLE_VALUE && opensLeftOver)
        countedState->takenTemporaryFiles += OwnerOf(path) != 0;
    SetLastError(error);
    return file;
}

// Returns whether the system does not have this kind of rename.
bool IsUnsupported(DWORD error) {
    return error == ERROR_INVALID_PARAMETER;
}

bool IsInUse(DWORD error) {
    return error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

BOOL WINAPI CountReplacement(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, LPVOID data, DWORD size) {
    const bool isRename = kind == FileRenameInfo || kind == PosixRenameClass;
    if (kind == FileDispositionInfo)
        ForgetTemporaryFile(*countedState, countedProcess);
    const BOOL done = SetFileInformationByHandle(file, kind, data, size);
    const DWORD error = GetLastError();
    if (isRename && done != FALSE)
        ForgetTemporaryFile(*countedState, countedProcess);
    if (isRename && static_cast<const FILE_RENAME_INFO*>(data)->ReplaceIfExists == FALSE)
        ++countedState->writesInPlace;
    else if (isRename && done != FALSE)
        ++countedState->replacements;
    else if (isRename && IsInUse(error))
        ++countedState->refusedReplacements;
    else if (isRename && !IsUnsupported(error))
        ++countedState->failedReplacements;
    SetLastError(error);
    return done;
}

DWORD WINAPI CountWait(HANDLE object, DWORD timeout) {
    ++countedState->waits;
    return WaitForSingleObject(object, timeout);
}

void WINAPI CountSleep(DWORD duration) {
    ++countedState->waits;
    Sleep(duration);
}

std::int64_t Microseconds() {
    LARGE_INTEGER frequency;
    LARGE_INTEGER now;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&now);
    return now.QuadPart * 1'000'000 / frequency.QuadPart;
}

class Participant {
public:
    Participant(SharedState& sharedState, std::int32_t processNumber, bool hasOwnSession)
        : state{sharedState}, number{processNumber} {
        countedState = &state;
        countedProcess = number;
        if (hasOwnSession)
            EnterOwnSession(dll.Handle());
        PatchPermanently(dll.Handle(), "CreateFileW", &TrackTemporaryFile);
        PatchPermanently(dll.Handle(), "SetFileInformationByHandle", &CountReplacement);
        PatchPermanentlyIfImported(dll.Handle(), "WaitForSingleObject", &CountWait);
        PatchPermanentlyIfImported(dll.Handle(), "Sleep", &CountSleep);
        // Reads the defaults now. They are read only once, and a process that finds them busy would have
        // none.
        dll.GetFuncCount();
    }

    // Writes and reads either the values that all processes share or those of this process alone.
    void Round() {
        const Stamp stamp = StampOf(number, ++state.rounds[number]);
        GUID ownScheme = PowerSaver;
        ownScheme.Data1 = static_cast<unsigned long>(number);
        const std::wstring ownSetting = L"Own" + std::to_wstring(number);
        const bool isOwn = stamp % 3 == 0;
        const GUID& scheme = isOwn ? ownScheme : Balanced;
        const std::wstring setting = isOwn ? ownSetting : L"Shared";
        Write(scheme, setting, stamp);
        CountIfWrong(ReadScheme(scheme), isOwn);
        CountIfWrong(ReadSetting(setting), isOwn);
    }

private:
    template <class Call>
    void Measure(Call call) {
        const std::int64_t start = Microseconds();
        call();
        const std::int64_t duration = Microseconds() - start;
        // Processes that check without a pause whether the file is busy keep it busy for each other.
        Sleep(random() % (2 * ProcessCount));
        ++state.calls;
        std::int64_t longest = state.longestCall;
        while (longest < duration && !state.longestCall.compare_exchange_weak(longest, duration)) {
        }
    }

    void Write(const GUID& scheme, const std::wstring& setting, Stamp stamp) {
        const ParamHolder params{AllFunctionsSetTo(stamp)};
        Measure([&] { state.failedWrites += !dll.SetParameter(&scheme, params.get()); });
        const std::wstring text = TextOf(stamp);
        Measure([&] { state.failedWrites += !dll.SetCommonSetting(setting.c_str(), text.c_str()); });
    }

    std::optional<Stamp> ReadScheme(const GUID& scheme) {
        Params params;
        auto collect = MakeCallback<IGetParameterCallback>(
            [&](std::int32_t id, const ParamValue* value) { params.emplace_back(id, *value); });
        Measure([&] { dll.GetParameter(&scheme, &collect); });
        return StampIn(params);
    }

    std::optional<Stamp> ReadSetting(const std::wstring& setting) {
        Text text = {};
        bool found = false;
        Measure([&] { found = dll.GetCommonSetting(setting.c_str(), text); });
        return found ? StampIn(text) : std::nullopt;
    }

    void CountIfWrong(std::optional<Stamp> read, bool isOwn) {
        const bool isRight =
            read && state.WasWritten(*read) && (!isOwn || *read == 0 || *read / MaxRounds - 1 == number);
        state.wrongValues += !isRight;
    }

    Library dll;
    SharedState& state;
    std::int32_t number;
    std::minstd_rand random;
};

// Arguments: the folders, the name of the synchronization, the number of the process, its number of rounds,
// and whether it has its own logon session. With 0 rounds, the process runs until the test ends.
const RegisterRole WriteAndReadRole{
    WriteAndRead, [](const std::vector<std::wstring>& arguments) {
        EnterInstallation(arguments);
        const Synchronization sync{arguments.at(2)};
        Participant participant{*sync.state, std::stoi(arguments.at(3)), arguments.at(5) == OwnSession};
        SignalReady();
        WaitForSingleObject(sync.start, Timeout);
        const int rounds = std::stoi(arguments.at(4));
        for (int round = 0; rounds == 0 ? !sync.state->ends : round < rounds; ++round) {
            participant.Round();
            ReleaseSemaphore(sync.progress, 1, nullptr);
        }
        return 0;
    }};

// Reads a file that other processes may be using. Returns nothing while a process does not share it.
std::optional<std::string> ReadFileInUse(const std::filesystem::path& path) {
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
        return std::nullopt;
    }
    std::string content(GetFileSize(file, nullptr), '\0');
    DWORD count = 0;
    ::ReadFile(file, content.data(), static_cast<DWORD>(content.size()), &count, nullptr);
    EXPECT_EQ(count, content.size());
    CloseHandle(file);
    return content;
}

}  // namespace

// ---- The test ----

class ConcurrentProcessesTest : public SettingsTest {
protected:
    ConcurrentProcessesTest() {
        std::string functions;
        for (std::int32_t id = 0; id < FunctionCount; ++id)
            functions += Function(id, R"(<Default ACParamIndex="0" DCParamIndex="-1"/>)");
        std::string settings = R"(Shared="0;")";
        for (std::int32_t process = 0; process < ProcessCount; ++process)
            settings += " Own" + std::to_string(process) + R"(="0;")";
        WriteDefaults("<ZOTDefault><Functions>" + functions + "</Functions><CommonSettings " + settings +
                      "/></ZOTDefault>");
    }

    void StartProcess(std::int32_t number, int rounds) {
        processes[number].emplace(
            WriteAndRead,
            WithFolders(installation, {name, std::to_wstring(number), std::to_wstring(rounds), session}));
    }

    void StartAll(int rounds) {
        for (std::int32_t number = 0; number < ProcessCount; ++number)
            StartProcess(number, rounds);
        SetEvent(sync.start);
    }

    void WaitForRound() const { ASSERT_EQ(WaitForSingleObject(sync.progress, Timeout), WAIT_OBJECT_0); }

    // Checks a copy, because a DOM cannot open the file while a suspended process is replacing it.
    bool IsCopyWellFormed(const std::string& content) const {
        const std::filesystem::path copy = installation.ProgramData() / L"copy.xml";
        WriteFile(copy, content);
        return IsWellFormed(copy);
    }

    void SuspendAll() {
        for (auto& process : processes)
            process->Suspend();
    }

    // Returns false if a process does not share the file, as is the case until it has closed the new file.
    // The file is incomplete only while a process writes it in place, which is rare.
    bool CheckFile() {
        hasFile = hasFile || HasUserSettings();
        const std::optional<std::string> content =
            hasFile ? ReadFileInUse(installation.UserFile()) : std::nullopt;
        if (hasFile && !content)
            return false;
        EXPECT_TRUE(!hasFile || IsCopyWellFormed(*content) ||
                    std::filesystem::exists(RedoFileOf(installation.UserFile())));
        ++checks;
        return true;
    }

    // Suspends all processes at arbitrary points, as if the machine had stopped, and checks the file.
    void SuspendAndCheckFile() {
        for (SuspendAll(); !CheckFile(); SuspendAll())
            ResumeAll();
    }

    void ResumeAll() {
        for (auto& process : processes)
            process->Resume();
    }

    // Suspends the processes after a random number of rounds, checks the file and kills one of them.
    void KillProcesses(int kills) {
        std::minstd_rand random;
        StartAll(0);
        for (int kill = 0; kill < kills; ++kill) {
            for (auto rounds = random() % (2 * ProcessCount); rounds > 0; --rounds)
                ASSERT_NO_FATAL_FAILURE(WaitForRound());
            SuspendAndCheckFile();
            const auto victim = static_cast<std::int32_t>(random() % ProcessCount);
            processes[victim].reset();
            ForgetTemporaryFile(*sync.state, victim);
            leftFiles += FileCount() > 1;
            StartProcess(victim, 0);
            processes[victim]->Suspend();
            ResumeAll();
        }
        sync.state->ends = true;
        ShowFigure("processes killed", kills);
    }

    void WaitForAll() {
        for (auto& process : processes)
            EXPECT_EQ(process->WaitForExit(), 0u);
        EXPECT_EQ(sync.state->wrongValues, 0);
        EXPECT_EQ(sync.state->failedReplacements, 0);
        EXPECT_EQ(sync.state->unguardedWrites, 0);
        EXPECT_EQ(sync.state->takenTemporaryFiles, 0);
    }

    // Expects that no call was disturbed. The processes see each other's busy markers.
    void ExpectNoConflicts() const {
        EXPECT_EQ(sync.state->failedWrites, 0);
        EXPECT_EQ(sync.state->refusedReplacements, 0);
        EXPECT_EQ(sync.state->writesInPlace, 0);
        EXPECT_EQ(sync.state->waits, 0);
    }

    // Checks that this process can read and write the file as usual.
    void ExpectNextSaveWorks() {
        EXPECT_TRUE(IsWellFormed(installation.UserFile()));
        const std::optional<Stamp> last = StampIn(GetParameter(Balanced));
        EXPECT_TRUE(last && sync.state->WasWritten(*last));
        EXPECT_TRUE(SetParameter(Balanced, AllFunctionsSetTo(5)));
        EXPECT_EQ(StampIn(GetParameter(Balanced)), 5);
        EXPECT_TRUE(IsWellFormed(installation.UserFile()));
        EXPECT_EQ(FileCount(), 1);
    }

    // Returns the number of files in the folder of the user settings.
    std::ptrdiff_t FileCount() const {
        return std::distance(std::filesystem::directory_iterator{installation.UserFile().parent_path()}, {});
    }

    void ShowFigures() const {
        ShowFigure("processes", ProcessCount);
        ShowFigure("calls", sync.state->calls.load());
        ShowFigure("writes among them", sync.state->calls / 2);
        ShowFigure("replacements of the file", sync.state->replacements.load());
        ShowFigure("replacements refused at first", sync.state->refusedReplacements.load());
        ShowFigure("writes in place", sync.state->writesInPlace.load());
        ShowFigure("calls that returned false", sync.state->failedWrites.load());
        ShowFigure("checks of the file", checks);
    }

    const std::wstring name = L"zotdam-stress-" + std::to_wstring(GetCurrentProcessId());
    const Synchronization sync{name};
    std::array<std::optional<SecondProcess>, ProcessCount> processes;
    const wchar_t* session = SharedSession;
    bool hasFile = false;
    int checks = 0;
    int leftFiles = 0;  // kills after which other files were in the folder
};

TEST_F(ConcurrentProcessesTest, EveryReadReturnsWrittenValueWithoutWaiting) {
    StartAll(Rounds(12, 600));
    WaitForAll();
    ExpectNoConflicts();
    EXPECT_GT(sync.state->replacements, 0);
    ExpectNextSaveWorks();
    ShowFigures();
    ShowFigure("longest call in microseconds", sync.state->longestCall.load());
}

TEST_F(ConcurrentProcessesTest, FileIsWellFormedWheneverProcessesAreSuspended) {
    const int rounds = Rounds(10, 500);
    StartAll(rounds);
    for (int round = 0; round < rounds * ProcessCount; ++round) {
        ASSERT_NO_FATAL_FAILURE(WaitForRound());
        SuspendAndCheckFile();
        ResumeAll();
    }
    WaitForAll();
    ExpectNoConflicts();
    ExpectNextSaveWorks();
    ShowFigures();
}

TEST_F(ConcurrentProcessesTest, FileIsWellFormedWhicheverProcessIsKilled) {
    ASSERT_NO_FATAL_FAILURE(KillProcesses(Rounds(10, 400)));
    WaitForAll();
    ExpectNoConflicts();
    ExpectNextSaveWorks();
    ShowFigures();
}

TEST_F(ConcurrentProcessesTest, CallsDoNotWaitForBusyFile) {
    const std::string before = OldUserFile("");
    WriteUserSettings(before);
    const SecondProcess holder{HoldMutex, {UserMarker}};
    StartAll(Rounds(5, 500));
    WaitForAll();
    ExpectNoConflicts();
    EXPECT_EQ(UserSettings(), before);
    EXPECT_EQ(sync.state->replacements, 0);
}

// ---- Separate logon sessions ----

// The processes do not see each other's busy markers, so they load and save at the same time.
class SeparateSessionsTest : public ConcurrentProcessesTest {
protected:
    SeparateSessionsTest() { session = OwnSession; }
};

TEST_F(SeparateSessionsTest, FileIsWellFormedWhicheverProcessIsKilled) {
    ASSERT_NO_FATAL_FAILURE(KillProcesses(Rounds(5, 1000)));
    WaitForAll();
    EXPECT_GT(sync.state->replacements, 0);
    ExpectNextSaveWorks();
    ShowFigures();
    ShowFigure("kills after which other files were in the folder", leftFiles);
}

// ---- A scanner ----

namespace {

constexpr wchar_t ScanInALoop[] = L"scan-in-a-loop";

// Opens the file again and again for 30 ms, as a virus scanner or a backup program does.
const RegisterRole ScanInALoopRole{ScanInALoop, [](const std::vector<std::wstring>& arguments) -> int {
                                       const auto shared = static_cast<DWORD>(std::stoul(arguments.at(1)));
                                       SignalReady();
                                       for (;;) {
                                           const HANDLE file =
                                               CreateFileW(arguments.at(0).c_str(), GENERIC_READ, shared,
                                                           nullptr, OPEN_EXISTING, 0, nullptr);
                                           Sleep(30);
                                           CloseHandle(file);
                                           Sleep(5);
                                       }
                                   }};

}  // namespace

class ScannerTest : public SettingsTest, public testing::WithParamInterface<DWORD> {};

INSTANTIATE_TEST_SUITE_P(, ScannerTest,
                         testing::Values(FILE_SHARE_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                         FILE_SHARE_READ | FILE_SHARE_DELETE));

// The clock of the DLL stands still: on a busy machine the scanner can take longer than a save waits.
TEST_P(ScannerTest, EverySaveSucceeds) {
    const ImportPatch clock{Dll().Handle(), "GetTickCount64", []() -> ULONGLONG { return 0; }};
    EXPECT_TRUE(Dll().SetCommonSetting(L"Setting", L"first"));
    const SecondProcess scanner{ScanInALoop, {installation.UserFile(), std::to_wstring(GetParam())}};
    const int saves = Rounds(10, 1000);
    for (int save = 0; save < saves; ++save) {
        const std::string value = std::to_string(save);
        EXPECT_TRUE(Dll().SetCommonSetting(L"Setting", std::wstring{value.begin(), value.end()}.c_str()));
        EXPECT_NE(ReadFileInUse(installation.UserFile()).value_or("").find("Setting=\"" + value + '"'),
                  std::string::npos);
    }
    ShowFigure("saves", saves);
}

}  // namespace ZOTDam::Test
