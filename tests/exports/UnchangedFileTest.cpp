// Tests that an unchanged file is not loaded again, and that every change, and every doubt, causes a load.
#include <windows.h>

#include <functional>

#include "support/CommonSettingsTest.h"
#include "support/DomLoads.h"
#include "support/FileOpens.h"
#include "support/FileStateQueries.h"
#include "support/FileTimes.h"
#include "support/MarkerCalls.h"
#include "support/SettingsTest.h"

namespace ZOTDam::Test {

class UnchangedFileTest : public CommonSettingsTest {
protected:
    void SetUp() override {
        WriteUserValues(R"(Name="old")");
        counters.emplace(Dll().Handle());
    }

    std::filesystem::path Path() const { return installation.UserFile(); }

    // Reads the setting, and returns how often the library has opened the file for this.
    std::size_t OpensForReading(const std::optional<std::wstring>& expected) {
        counters->opens.calls.clear();
        EXPECT_EQ(Setting(L"Name"), expected);
        return counters->opens.CallsFor(Path()).size();
    }

    // Returns how often it has loaded the file, which is well-formed.
    std::size_t LoadsForReading(const std::wstring& expected) {
        counters->dom.sources.clear();
        const std::size_t opens = OpensForReading(expected);
        EXPECT_EQ(counters->dom.sources.size(), opens);
        return opens;
    }

    void LoadOnce() { EXPECT_EQ(LoadsForReading(L"old"), 1u); }

    FakeClock& Clock() { return counters->clock; }

    FileStateQueries queries;

private:
    struct Counters {
        explicit Counters(HMODULE dll) : opens{dll}, clock{dll} {}

        FileOpens opens;
        FakeClock clock;
        DomLoads dom;
    };

    std::optional<Counters> counters;
};

// ---- Unchanged files ----

TEST_F(UnchangedFileTest, UnchangedFileIsNeitherOpenedNorParsedAgain) {
    LoadOnce();
    EXPECT_EQ(LoadsForReading(L"old"), 0u);
    EXPECT_EQ(LoadsForReading(L"old"), 0u);
}

TEST_F(UnchangedFileTest, UnchangedFileProbesNoBusyMarker) {
    LoadOnce();
    const MarkerCalls calls{Dll().Handle()};
    EXPECT_EQ(LoadsForReading(L"old"), 0u);
    EXPECT_EQ(calls.opened, Names{});
    EXPECT_EQ(calls.created, Names{});
}

TEST_F(UnchangedFileTest, FailedEditOfInvalidNameKeepsDocumentLoaded) {
    LoadOnce();
    EXPECT_FALSE(Set(L"no name", L"new"));
    EXPECT_EQ(LoadsForReading(L"old"), 0u);
}

// ---- Changed files ----

TEST_F(UnchangedFileTest, OverwrittenFileIsLoadedAgain) {
    LoadOnce();
    ChangeLaterThan(ChangeTimeOf(Path()), Path(), [&] { WriteUserValues(R"(Name="longer")"); });
    EXPECT_EQ(LoadsForReading(L"longer"), 1u);
}

TEST_F(UnchangedFileTest, SameSizeAndRestoredTimesAreLoadedAgain) {
    LoadOnce();
    ChangeWithRestoredTimes(Path(), [&] { WriteUserValues(R"(Name="new")"); });
    EXPECT_EQ(LoadsForReading(L"new"), 1u);
}

TEST_F(UnchangedFileTest, ReplacedFileWithRestoredTimesIsLoadedAgain) {
    LoadOnce();
    const std::filesystem::path replacement = Path() += L".other";
    ChangeWithRestoredTimes(Path(), [&] {
        WriteFile(replacement, FileWith(R"(Name="new")"));
        MoveFileExW(replacement.c_str(), Path().c_str(), MOVEFILE_REPLACE_EXISTING);
    });
    EXPECT_EQ(LoadsForReading(L"new"), 1u);
}

TEST_F(UnchangedFileTest, RecreatedFileWithRestoredTimesIsLoadedAgain) {
    LoadOnce();
    ChangeWithRestoredTimes(Path(), [&] {
        std::filesystem::remove(Path());
        WriteUserValues(R"(Name="new")");
    });
    EXPECT_EQ(LoadsForReading(L"new"), 1u);
}

// The library removes the settings of a deleted file only if the file had a scheme.
class DeletedFileTest : public UnchangedFileTest {
protected:
    void DeleteLoadedFile() {
        WriteUserSettings(
            R"(<Any><PowerSchemes><PowerScheme/></PowerSchemes><CommonSettings Name="old"/></Any>)");
        LoadOnce();
        time = ChangeTimeOf(Path());
        std::filesystem::remove(Path());
    }

    LONGLONG time = 0;
};

TEST_F(DeletedFileTest, DeletedFileHasNoSettings) {
    DeleteLoadedFile();
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_F(DeletedFileTest, FileInPlaceOfDeletedFileIsLoaded) {
    DeleteLoadedFile();
    EXPECT_EQ(Setting(L"Name"), Missing);
    ChangeLaterThan(time, Path(), [&] { WriteUserValues(R"(Name="new")"); });
    EXPECT_EQ(LoadsForReading(L"new"), 1u);
}

// Even if the system reports the state that the file had when it was loaded.
TEST_F(UnchangedFileTest, FileMovedAwayAndBackIsLoadedAgain) {
    WriteUserSettings(R"(<Any><PowerSchemes/><CommonSettings Name="old"/></Any>)");
    LoadOnce();
    FileStateAnswer loaded = {};
    queries.onAnswer = [&](NTSTATUS result, FileStateAnswer& answer) {
        loaded = answer;
        return result;
    };
    EXPECT_EQ(LoadsForReading(L"old"), 0u);
    queries.onAnswer = [](NTSTATUS result, FileStateAnswer&) { return result; };
    const std::filesystem::path other = Path() += L".other";
    std::filesystem::rename(Path(), other);
    EXPECT_EQ(OpensForReading(L"old"), 0u);
    std::filesystem::rename(other, Path());
    queries.onAnswer = [&](NTSTATUS result, FileStateAnswer& answer) {
        answer = loaded;
        return result;
    };
    EXPECT_EQ(LoadsForReading(L"old"), 1u);
}

// ---- Files that cannot be recognised ----

// Changes one part of the state that the system reports.
struct StatePart {
    std::string name;
    LARGE_INTEGER FileStateAnswer::*part;
};

void PrintTo(const StatePart& part, std::ostream* out) {
    *out << part.name;
}

class FileStateTest : public UnchangedFileTest, public testing::WithParamInterface<StatePart> {};

INSTANTIATE_TEST_SUITE_P(, FileStateTest,
                         testing::Values(StatePart{"Size", &FileStateAnswer::endOfFile},
                                         StatePart{"CreationTime", &FileStateAnswer::creationTime},
                                         StatePart{"LastWriteTime", &FileStateAnswer::lastWriteTime},
                                         StatePart{"ChangeTime", &FileStateAnswer::changeTime}),
                         CaseName<StatePart>);

TEST_P(FileStateTest, FileWithOtherStateIsLoadedAgain) {
    LoadOnce();
    queries.onAnswer = [](NTSTATUS result, FileStateAnswer& answer) {
        --(answer.*GetParam().part).QuadPart;
        return result;
    };
    EXPECT_EQ(LoadsForReading(L"old"), 1u);
}

TEST_F(UnchangedFileTest, LastAccessTimeIsIgnored) {
    LoadOnce();
    queries.onAnswer = [](NTSTATUS result, FileStateAnswer& answer) {
        ++answer.lastAccessTime.QuadPart;
        return result;
    };
    EXPECT_EQ(LoadsForReading(L"old"), 0u);
}

TEST_F(UnchangedFileTest, FileOfUnknownStateIsLoadedAgain) {
    LoadOnce();
    queries.onAnswer = [](NTSTATUS, FileStateAnswer&) -> NTSTATUS {
        return static_cast<NTSTATUS>(0xC0000022);
    };
    EXPECT_EQ(LoadsForReading(L"old"), 1u);
}

// Some file systems do not store the change time. Then nothing shows that the file is unchanged.
TEST_F(UnchangedFileTest, FileWithoutChangeTimeIsLoadedAgain) {
    const ImportPatch atLoad{Dll().Handle(), "GetFileInformationByHandleEx",
                             [](HANDLE file, FILE_INFO_BY_HANDLE_CLASS type, void* information, DWORD size) {
                                 const BOOL result =
                                     GetFileInformationByHandleEx(file, type, information, size);
                                 static_cast<FILE_BASIC_INFO*>(information)->ChangeTime.QuadPart = 0;
                                 return result;
                             }};
    queries.onAnswer = [](NTSTATUS result, FileStateAnswer& answer) {
        answer.changeTime.QuadPart = 0;
        return result;
    };
    LoadOnce();
    EXPECT_EQ(LoadsForReading(L"old"), 1u);
}

// ---- Times ----

// A file that was written shortly before its load may be written again within the resolution of its times.
TEST_F(UnchangedFileTest, RecentlyChangedFileIsLoadedAgain) {
    Clock().StopAt(ChangeTimeOf(Path()) + 2 * OneSecond - 1);
    LoadOnce();
    Clock().StopAt(ChangeTimeOf(Path()) + 60 * OneSecond);
    EXPECT_EQ(LoadsForReading(L"old"), 1u);
    EXPECT_EQ(LoadsForReading(L"old"), 0u);
}

TEST_F(UnchangedFileTest, FileUnchangedForTwoSecondsIsNotReloaded) {
    const LONGLONG change = ChangeTimeOf(Path());
    SetTimes(Path(), change, change - OneSecond);
    Clock().StopAt(ChangeTimeOf(Path()) + 2 * OneSecond);
    LoadOnce();
    EXPECT_EQ(LoadsForReading(L"old"), 0u);
}

TEST_F(UnchangedFileTest, RecentlyWrittenFileIsLoadedAgain) {
    const LONGLONG later = ChangeTimeOf(Path()) + 60 * OneSecond;
    SetTimes(Path(), later, later);
    Clock().StopAt(later + 2 * OneSecond - 1);
    LoadOnce();
    EXPECT_EQ(LoadsForReading(L"old"), 1u);
}

TEST_F(UnchangedFileTest, FileWrittenInFutureIsLoadedAgain) {
    const LONGLONG future = ChangeTimeOf(Path()) + 3600 * OneSecond;
    SetTimes(Path(), future, future);
    LoadOnce();
    EXPECT_EQ(LoadsForReading(L"old"), 1u);
}

TEST_F(UnchangedFileTest, FileChangedInFutureIsLoadedAgain) {
    const LONGLONG change = ChangeTimeOf(Path());
    SetTimes(Path(), change - 3600 * OneSecond, change - 3600 * OneSecond);
    Clock().StopAt(change - 60 * OneSecond);
    LoadOnce();
    EXPECT_EQ(LoadsForReading(L"old"), 1u);
}

// A clock that was set back does not make a file appear younger.
TEST_F(UnchangedFileTest, LaterClockChangeDoesNotMatter) {
    LoadOnce();
    Clock().StopAt(ChangeTimeOf(Path()) - 3600 * OneSecond);
    EXPECT_EQ(LoadsForReading(L"old"), 0u);
}

// ---- Documents that have changed in memory ----

TEST_F(UnchangedFileTest, SavedFileIsLoadedOnceAgain) {
    LoadOnce();
    EXPECT_TRUE(Set(L"Name", L"new"));
    EXPECT_EQ(LoadsForReading(L"new"), 1u);
    EXPECT_EQ(LoadsForReading(L"new"), 0u);
}

TEST_F(UnchangedFileTest, FailedSaveDoesNotKeepChange) {
    LoadOnce();
    {
        const ImportPatch disk{Dll().Handle(), "FlushFileBuffers", [](HANDLE) { return FALSE; }};
        EXPECT_FALSE(Set(L"Name", L"new"));
    }
    EXPECT_EQ(LoadsForReading(L"old"), 1u);
}

TEST_F(UnchangedFileTest, SkippedSaveDoesNotKeepChange) {
    LoadOnce();
    {
        MarkerCalls calls{Dll().Handle()};
        calls.BeBusyAtOpen(1);
        EXPECT_TRUE(Set(L"Name", L"new"));
        EXPECT_EQ(calls.opened, Names{UserMarker});
    }
    EXPECT_EQ(LoadsForReading(L"old"), 1u);
}

// A reader creates the section in memory only.
TEST_F(UnchangedFileTest, DocumentWithCreatedSectionIsLoadedAgain) {
    WriteUserSettings("<Any/>");
    EXPECT_EQ(Setting(L"Name"), Missing);
    ChangeLaterThan(ChangeTimeOf(Path()), Path(), [&] { WriteUserValues(R"(Name="old")"); });
    LoadOnce();
}

TEST_F(UnchangedFileTest, UnchangedFileIsLoadedAgainAfterCreatedSection) {
    WriteUserSettings("<Any/>");
    EXPECT_EQ(OpensForReading(Missing), 1u);
    EXPECT_EQ(OpensForReading(Missing), 1u);
}

TEST_F(UnchangedFileTest, MalformedFileIsLoadedAgain) {
    WriteUserSettings("<Any>");
    EXPECT_EQ(OpensForReading(Missing), 1u);
    EXPECT_EQ(OpensForReading(Missing), 1u);
}

TEST_F(UnchangedFileTest, UnreadFileIsLoadedLater) {
    {
        const ImportPatch disk{Dll().Handle(), "ReadFile",
                               [](HANDLE, void*, DWORD, DWORD*, OVERLAPPED*) -> BOOL { return FALSE; }};
        EXPECT_EQ(OpensForReading(Missing), 1u);
    }
    LoadOnce();
}

}  // namespace ZOTDam::Test
