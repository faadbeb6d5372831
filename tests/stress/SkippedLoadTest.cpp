// Compares two copies of the library. One does not load an unchanged file again, the other one always loads.
// Random calls, changes of the files by other programs, busy markers and failures must lead to the same
// results and to the same files.
#include <windows.h>

#include <array>
#include <functional>
#include <optional>
#include <utility>

#include "support/DomMethods.h"
#include "support/ExportCalls.h"
#include "support/FileTimes.h"
#include "support/Random.h"
#include "support/Stress.h"
#include "support/Watchdog.h"

namespace ZOTDam::Test {

namespace {

// ---- The patches of the two copies ----

bool diskFails = false;
std::array<int, 2> loads = {};

BOOL WINAPI FlushUnlessDiskFails(HANDLE) {
    return diskFails ? FALSE : TRUE;
}

template <std::size_t Copy>
HANDLE WINAPI CountLoads(LPCWSTR path, DWORD access, DWORD shared, LPSECURITY_ATTRIBUTES security,
                         DWORD disposition, DWORD flags, HANDLE model) {
    loads[Copy] += access == GENERIC_READ;
    return CreateFileW(path, access, shared, security, disposition, flags, model);
}

// A file always counts as old, even right after it was written.
void WINAPI ReadTimeAhead(FILETIME* time) {
    *time = FileTimeOf(Now() + 10 * OneSecond);
}

// A file never counts as old.
void WINAPI ReadTimeZero(FILETIME* time) {
    *time = {};
}

// ---- One copy ----

enum class File { UserSettings, Defaults };

// A copy of the DLL with its own installation.
class LibraryCopy {
public:
    explicit LibraryCopy(std::size_t number) : index{number} {
        std::filesystem::copy_file(Library::ProgramFolder() / L"ZOTDam.dll", dll);
    }
    LibraryCopy(const LibraryCopy&) = delete;
    LibraryCopy& operator=(const LibraryCopy&) = delete;
    ~LibraryCopy() {
        library.reset();
        std::filesystem::remove(dll);
    }

    // Loads the DLL again, with complete data files.
    void Restart() {
        Select();
        library.reset();
        WriteFile(installation.BaseFile(), WholeBase);
        WriteFile(installation.StringTableFile(), StringTable(Entry("Key", "Text")));
        for (const File file : {File::UserSettings, File::Defaults}) {
            std::filesystem::remove(UnreadableCopyOf(PathOf(file)));
            WriteFile(PathOf(file), file == File::Defaults ? FullDefaults : FullUserSettings());
        }
        library.emplace(dll);
        PatchPermanently(library->Handle(), "FlushFileBuffers", &FlushUnlessDiskFails);
        PatchPermanently(library->Handle(), "CreateFileW", index == 0 ? &CountLoads<0> : &CountLoads<1>);
        PatchPermanently(library->Handle(), "GetSystemTimeAsFileTime",
                         index == 0 ? &ReadTimeAhead : &ReadTimeZero);
    }

    template <class Call>
    Answer Perform(Call call) {
        Select();
        return call(*library);
    }

    // Changes a file as another program does.
    template <class Change>
    void ChangeFile(File file, Change change) {
        LONGLONG& latest = latestChanges[static_cast<std::size_t>(file)];
        const std::filesystem::path path = PathOf(file);
        latest = std::max(latest, ChangeTimeOf(path));
        ChangeLaterThan(latest, path, [&] { change(path); });
    }

    void DeleteFileOf(File file) {
        LONGLONG& latest = latestChanges[static_cast<std::size_t>(file)];
        latest = std::max(latest, ChangeTimeOf(PathOf(file)));
        std::filesystem::remove(PathOf(file));
    }

    std::string ContentOf(File file) const { return ReadFile(PathOf(file)); }

    // Returns the content of all files that the library writes.
    std::vector<std::string> Files() const {
        std::vector<std::string> contents;
        for (const File file : {File::UserSettings, File::Defaults})
            for (const std::filesystem::path& path : {PathOf(file), UnreadableCopyOf(PathOf(file))})
                contents.push_back(ReadFile(path));
        return contents;
    }

private:
    void Select() const {
        SetEnvironmentVariableW(L"ProgramFiles", installation.ProgramFiles().c_str());
        SetEnvironmentVariableW(L"ProgramData", installation.ProgramData().c_str());
    }

    std::filesystem::path PathOf(File file) const {
        return file == File::Defaults ? installation.DefaultsFile() : installation.UserFile();
    }

    std::size_t index;
    Installation installation;
    std::filesystem::path dll =
        installation.ProgramFiles() / (L"ZOTDamCopy" + std::to_wstring(index) + L".dll");
    std::optional<Library> library;
    std::array<LONGLONG, 2> latestChanges = {};
};

// ---- Random steps ----

// Most changes keep the size of the file.
std::string RandomContent(File file, const std::string& current, Random& random) {
    if (random.OneIn(6))
        return random.ElementOf<std::string>({"", "<R/>", "<R>", "<!DOCTYPE R><R/>", "<R><PowerSchemes/></R>",
                                              "<R><CommonSettings user=\"r\"/></R>"});
    const std::string complete = file == File::Defaults ? FullDefaults : FullUserSettings();
    std::string content = current.empty() || random.OneIn(4) ? complete : current;
    for (std::size_t i = 1; i < content.size(); ++i)
        if (content[i - 1] == '"' && content[i] >= '2' && content[i] <= '9' && random.OneIn(8))
            content[i] = static_cast<char>('2' + random.Below(8));
    constexpr std::string_view setting = "user=\"";
    if (const std::size_t place = content.find(setting); place != std::string::npos)
        content[place + setting.size()] = static_cast<char>('a' + random.Below(26));
    return content;
}

void Overwrite(const std::filesystem::path& path, const std::string& content) {
    WriteFile(path, content);
}

void Replace(const std::filesystem::path& path, const std::string& content) {
    const std::filesystem::path other = std::filesystem::path{path} += L".other";
    WriteFile(other, content);
    EXPECT_TRUE(MoveFileExW(other.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING));
}

void Recreate(const std::filesystem::path& path, const std::string& content) {
    std::filesystem::remove(path);
    WriteFile(path, content);
}

}  // namespace

class SkippedLoadTest : public testing::Test {
protected:
    static constexpr int CallsPerSequence = 4;

    void RunSequence(unsigned seed) {
        watchdog.Begin("seed " + std::to_string(seed));
        Random random{seed};
        // Most sequences continue with the documents that the previous ones have left.
        if (seed % 16 == 0)
            for (LibraryCopy* const copy : copies)
                copy->Restart();
        SCOPED_TRACE("seed " + std::to_string(seed));
        if (random.OneIn(2))
            ChangeRandomly(random);
        for (int call = 0; call < CallsPerSequence; ++call)
            CallRandomly(random);
        EXPECT_EQ(skipping.Files(), loading.Files());
    }

private:
    void ChangeRandomly(Random& random) {
        const File file = random.OneIn(4) ? File::Defaults : File::UserSettings;
        if (random.OneIn(8)) {
            for (LibraryCopy* const copy : copies)
                copy->DeleteFileOf(file);
            return;
        }
        const std::string content = RandomContent(file, skipping.ContentOf(file), random);
        const auto write = random.ElementOf({&Overwrite, &Replace, &Recreate});
        const bool restoresTimes = random.OneIn(2);
        const bool setsTimes = random.OneIn(4);
        const LONGLONG offset = (random.Below(7200) - 3600) * OneSecond;
        for (LibraryCopy* const copy : copies)
            copy->ChangeFile(file, [&](const std::filesystem::path& path) {
                const FILE_BASIC_INFO times = TimesOf(path);
                write(path, content);
                if (restoresTimes && times.LastWriteTime.QuadPart != 0)
                    SetTimes(path, times.CreationTime.QuadPart, times.LastWriteTime.QuadPart);
                else if (setsTimes)
                    SetTimes(path, start + offset, start + offset);
            });
    }

    void CallRandomly(Random& random) {
        const auto& [marker, isHeld] =
            std::pair{random.OneIn(2) ? L"XmlZOTDefaultMutex" : L"XmlZOTPowercfgMutex", random.OneIn(8)};
        const HANDLE mutex = isHeld ? CreateMutexW(nullptr, FALSE, marker) : nullptr;
        diskFails = random.OneIn(10);
        const int failingCall = random.OneIn(8) ? 1 + random.Below(3) : 0;
        const auto call = RandomCall(random);
        std::array<Answer, 2> answers;
        for (std::size_t i = 0; i < copies.size(); ++i) {
            std::optional<DomMethodFailingOnce> failure;
            if (failingCall != 0)
                failure.emplace(DomMethod::SetAttribute, failingCall);
            answers[i] = copies[i]->Perform(call);
        }
        diskFails = false;
        if (mutex != nullptr)
            CloseHandle(mutex);
        EXPECT_EQ(answers[0], answers[1]);
    }

    static std::function<Answer(const Library&)> RandomCall(Random& random) {
        const std::wstring value = L"v" + std::to_wstring(random.Below(100));
        if (random.OneIn(6))
            return
                [value](const Library& dll) { return Answer{dll.SetCommonSetting(L"user", value.c_str())}; };
        if (random.OneIn(5))
            return [](const Library& dll) { return CommonSetting(dll, L"user"); };
        // The last call is ZOTDamExit.
        const std::size_t last = CallsOfAllExports.size() - 1;
        return CallsOfAllExports[static_cast<std::size_t>(random.Below(last))].call;
    }

    ComScope com;
    Watchdog watchdog{60000};
    const LONGLONG start = Now();
    LibraryCopy skipping{0};
    LibraryCopy loading{1};
    const std::array<LibraryCopy*, 2> copies = {&skipping, &loading};
};

TEST_F(SkippedLoadTest, SkippedLoadsDoNotChangeAnyResult) {
    loads = {};
    const auto sequences = static_cast<unsigned>(Rounds(100, 100'000));
    for (unsigned seed = 0; seed < sequences && !HasFailure(); ++seed)
        RunSequence(seed);
    ShowFigure("loads", loads[1]);
    ShowFigure("loads that were skipped", loads[1] - loads[0]);
    EXPECT_GT(loads[1] - loads[0], static_cast<int>(sequences) / 4);
}

}  // namespace ZOTDam::Test
