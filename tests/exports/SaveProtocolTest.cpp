// Tests of the system calls of a save: their order, the replacement of a file that other programs have open,
// the attempts after a refusal, and the temporary files of other processes.
#include <algorithm>
#include <optional>

#include "support/CommonSettingsTest.h"
#include "support/OpenFile.h"
#include "support/SaveCalls.h"

namespace ZOTDam::Test {

namespace {

using Calls = std::vector<SaveCall>;

constexpr DWORD SharesReading = FILE_SHARE_READ;
constexpr DWORD SharesWriting = FILE_SHARE_READ | FILE_SHARE_WRITE;
constexpr DWORD SharesDeleting = FILE_SHARE_READ | FILE_SHARE_DELETE;

}  // namespace

class SaveProtocolTest : public CommonSettingsTest {
protected:
    void SetUp() override { WriteUserSettings(Old); }

    bool Save() { return Dll().SetCommonSetting(L"Name", L"new"); }

    std::filesystem::path File() const { return installation.UserFile(); }
    std::filesystem::path TemporaryFile() const { return TemporaryFileOf(File()); }

    // Returns the number of files in the folder.
    auto FileCount() const {
        return std::distance(std::filesystem::directory_iterator{File().parent_path()}, {});
    }

    void ExpectOnlyNewFile() const {
        EXPECT_EQ(UserSettings(), SavedXml{New});
        EXPECT_EQ(FileCount(), 1);
    }

    // Expects that the file was replaced, not written.
    void ExpectAtomicSave(const SaveCalls& calls) const {
        EXPECT_EQ(UserSettings(), SavedXml{New});
        EXPECT_TRUE(calls.AreAtomic()) << testing::PrintToString(calls.made);
    }

    inline static const std::string Old = "<OrloPowerCfg><CommonSettings Name=\"old\"/></OrloPowerCfg>\n";
    inline static const std::string New = "<OrloPowerCfg><CommonSettings Name=\"new\"/></OrloPowerCfg>\n";
};

// ---- The order of the calls ----

struct CallOrder {
    std::string name;
    Renames renames;
    Calls replacement;
};

void PrintTo(const CallOrder& order, std::ostream* out) {
    *out << order.name;
}

class CallOrderTest : public SaveProtocolTest, public testing::WithParamInterface<CallOrder> {};

INSTANTIATE_TEST_SUITE_P(
    , CallOrderTest,
    testing::Values(CallOrder{"PosixRename", Renames::Posix, {SaveCall::PosixRename}},
                    CallOrder{"PlainRename", Renames::Plain, {SaveCall::PosixRename, SaveCall::Rename}},
                    CallOrder{"NoRenameByHandle",
                              Renames::None,
                              {SaveCall::PosixRename, SaveCall::Rename, SaveCall::Move}}),
    [](const auto& info) { return info.param.name; });

TEST_P(CallOrderTest, FileIsReplacedRightAfterWriteAndFlush) {
    SaveCalls calls{Dll().Handle(), GetParam().renames};
    EXPECT_TRUE(Save());
    Calls expected = {SaveCall::Create, SaveCall::Write, SaveCall::SetEnd, SaveCall::Flush};
    expected.insert(expected.end(), GetParam().replacement.begin(), GetParam().replacement.end());
    EXPECT_EQ(calls.made, expected);
    ExpectOnlyNewFile();
}

TEST_P(CallOrderTest, FirstFileIsCreatedInSameOrder) {
    std::filesystem::remove(File());
    SaveCalls calls{Dll().Handle(), GetParam().renames};
    EXPECT_TRUE(Save());
    EXPECT_EQ(calls.made.size(), 4 + GetParam().replacement.size());
    EXPECT_EQ(calls.made.back(), GetParam().replacement.back());
    EXPECT_EQ(FileCount(), 1);
}

TEST_P(CallOrderTest, TemporaryFileStaysOpenUntilReplacementByHandle) {
    SaveCalls calls{Dll().Handle(), GetParam().renames};
    calls.before = [&](SaveCall call) {
        if (Replacements.contains(call) && call != SaveCall::Move) {
            EXPECT_EQ(ReadFile(TemporaryFile()), "");
            EXPECT_EQ(DeleteFileW(TemporaryFile().c_str()), FALSE);
        }
        return ERROR_SUCCESS;
    };
    EXPECT_TRUE(Save());
    ExpectOnlyNewFile();
}

// A system that supports a kind of rename never needs the next kind.
TEST_F(SaveProtocolTest, RefusedRenameIsNotTriedInAnotherWay) {
    SaveCalls calls{Dll().Handle(), Renames::Posix};
    calls.Fail({SaveCall::PosixRename}, ERROR_SHARING_VIOLATION);
    Save();
    EXPECT_GT(calls.CountOf(SaveCall::PosixRename), 1);
    EXPECT_EQ(calls.CountOf(SaveCall::Rename), 0);
    EXPECT_EQ(calls.CountOf(SaveCall::Move), 0);
}

// ---- Other programs that have the file open ----

TEST_F(SaveProtocolTest, PosixRenameReplacesFileOfReaderSharingDeletion) {
    {
        const OpenFile reader{File(), GENERIC_READ, SharesDeleting};
        SaveCalls calls{Dll().Handle(), Renames::Posix};
        EXPECT_TRUE(Save());
        ExpectAtomicSave(calls);
        EXPECT_EQ(calls.CountOf(SaveCall::Sleep), 0);
    }
    ExpectOnlyNewFile();
}

class OpenTargetTest : public SaveProtocolTest, public testing::WithParamInterface<DWORD> {};

INSTANTIATE_TEST_SUITE_P(, OpenTargetTest, testing::Values(0u, SharesReading, SharesWriting, SharesDeleting));

// The program opens the file after the load and holds it longer than a save waits.
TEST_P(OpenTargetTest, SaveReportsWhatTheFileContains) {
    for (const Renames renames : {Renames::Posix, Renames::Plain, Renames::None}) {
        WriteUserSettings(Old);
        SaveCalls calls{Dll().Handle(), renames};
        std::optional<OpenFile> program;
        calls.after = [&](SaveCall call) {
            if (call == SaveCall::Create)
                program.emplace(File(), GENERIC_READ, GetParam());
        };
        const bool isSaved = Save();
        program.reset();
        EXPECT_EQ(UserSettings(), SavedXml{isSaved ? New : Old});
        EXPECT_EQ(FileCount(), 1);
        calls.after = [](SaveCall) {};
        EXPECT_TRUE(Save());
        ExpectOnlyNewFile();
    }
}

TEST_F(SaveProtocolTest, FileSharedForWritingIsWrittenAfterAttempts) {
    const OpenFile program{File(), GENERIC_READ, SharesWriting};
    SaveCalls calls{Dll().Handle(), Renames::Plain};
    EXPECT_TRUE(Save());
    ExpectOnlyNewFile();
    EXPECT_GT(calls.CountOf(SaveCall::Sleep), 1);
    EXPECT_EQ(calls.CountOf(SaveCall::OpenTarget), 1);
}

// ---- Attempts after a refusal ----

class RefusedReplacementTest : public SaveProtocolTest, public testing::WithParamInterface<DWORD> {
protected:
    static constexpr int Timeout = 100;  // milliseconds

    static DWORD Error() { return GetParam(); }

    // Refuses the first replacements.
    void Refuse(SaveCalls& calls, int count) const {
        calls.before = [&calls, count](SaveCall call) -> DWORD {
            return call == SaveCall::PosixRename && calls.CountOf(call) <= count ? Error() : ERROR_SUCCESS;
        };
    }
};

class FileInUseErrorTest : public RefusedReplacementTest {};

INSTANTIATE_TEST_SUITE_P(, FileInUseErrorTest,
                         testing::Values(ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION, ERROR_LOCK_VIOLATION));

TEST_P(FileInUseErrorTest, ReplacementIsTriedAgainUntilItSucceeds) {
    for (const int refusals : {1, 2, 50}) {
        WriteUserSettings(Old);
        SaveCalls calls{Dll().Handle(), Renames::Posix};
        Refuse(calls, refusals);
        EXPECT_TRUE(Save());
        ExpectAtomicSave(calls);
        EXPECT_EQ(calls.CountOf(SaveCall::PosixRename), refusals + 1);
        EXPECT_EQ(calls.CountOf(SaveCall::Sleep), refusals);
    }
}

TEST_P(FileInUseErrorTest, AttemptsTakeAtMostPatience) {
    for (const ULONGLONG sleep : {1, 15, 70}) {
        SaveCalls calls{Dll().Handle(), Renames::Posix};
        calls.minimumSleep = sleep;
        calls.Fail({SaveCall::PosixRename}, Error());
        Save();
        EXPECT_GE(calls.time, ULONGLONG{Timeout});
        EXPECT_LT(calls.time, Timeout + sleep);
    }
}

class OtherErrorTest : public RefusedReplacementTest {};

INSTANTIATE_TEST_SUITE_P(, OtherErrorTest,
                         testing::Values(ERROR_DISK_FULL, ERROR_IO_DEVICE, ERROR_NOT_SAME_DEVICE,
                                         ERROR_FILE_NOT_FOUND, ERROR_WRITE_PROTECT));

TEST_P(OtherErrorTest, ReplacementIsTriedOnce) {
    SaveCalls calls{Dll().Handle(), Renames::Posix};
    calls.Fail({SaveCall::PosixRename}, Error());
    Save();
    EXPECT_EQ(calls.CountOf(SaveCall::PosixRename), 1);
    EXPECT_EQ(calls.CountOf(SaveCall::Sleep), 0);
}

// ---- Nothing else waits ----

class RefusedCallTest : public SaveProtocolTest, public testing::WithParamInterface<SaveCall> {};

INSTANTIATE_TEST_SUITE_P(, RefusedCallTest,
                         testing::Values(SaveCall::OpenLeftOver, SaveCall::Create, SaveCall::Write,
                                         SaveCall::SetEnd, SaveCall::Flush, SaveCall::OpenRedo,
                                         SaveCall::Delete, SaveCall::Copy),
                         [](const auto& info) { return NameOf(info.param); });

TEST_P(RefusedCallTest, RefusalOfOtherCallDoesNotWait) {
    WriteUserSettings("<malformed");
    WriteFile(TemporaryFile(), "left");
    WriteFile(RedoFileOf(File()), "left");
    SaveCalls calls{Dll().Handle()};
    calls.Fail({GetParam()}, ERROR_SHARING_VIOLATION);
    Save();
    EXPECT_GE(calls.CountOf(GetParam()), 1) << testing::PrintToString(calls.made);
    EXPECT_EQ(calls.CountOf(SaveCall::Sleep), 0);
}

TEST_F(SaveProtocolTest, LoadOfFileInUseDoesNotWait) {
    const OpenFile program{File(), GENERIC_READ, 0};
    SaveCalls calls{Dll().Handle()};
    EXPECT_EQ(Setting(L"Name"), Missing);
    EXPECT_EQ(calls.made, Calls{});
}

// ---- Temporary files of other processes ----

TEST_F(SaveProtocolTest, TemporaryFileOfEndedProcessIsDeleted) {
    for (const wchar_t* const extension : {L".new", L".nw1", L".nw9"}) {
        WriteUserSettings(Old);
        WriteFile(File().replace_extension(extension), "left");
        SaveCalls calls{Dll().Handle()};
        EXPECT_TRUE(Save());
        ExpectAtomicSave(calls);
        ExpectOnlyNewFile();
    }
}

class ProtectedTemporaryFileTest : public SaveProtocolTest, public testing::WithParamInterface<DWORD> {};

INSTANTIATE_TEST_SUITE_P(, ProtectedTemporaryFileTest,
                         testing::Values(FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_HIDDEN,
                                         FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN |
                                             FILE_ATTRIBUTE_SYSTEM));

TEST_P(ProtectedTemporaryFileTest, TemporaryFileOfEndedProcessIsDeleted) {
    WriteFile(TemporaryFile(), "left");
    SetFileAttributesW(TemporaryFile().c_str(), GetParam());
    SaveCalls calls{Dll().Handle()};
    EXPECT_TRUE(Save());
    ExpectAtomicSave(calls);
    ExpectOnlyNewFile();
}

// A process keeps its temporary file open without sharing it.
TEST_F(SaveProtocolTest, TemporaryFileOfLivingProcessIsKept) {
    WriteFile(TemporaryFile(), "in use");
    {
        const OpenFile process{TemporaryFile(), GENERIC_WRITE, 0};
        SaveCalls calls{Dll().Handle()};
        EXPECT_TRUE(Save());
        ExpectAtomicSave(calls);
        EXPECT_EQ(calls.created.back(), File().replace_extension(L".nw1"));
    }
    EXPECT_EQ(ReadFile(TemporaryFile()), "in use");
    EXPECT_EQ(FileCount(), 2);
}

TEST_F(SaveProtocolTest, FolderNamedLikeTemporaryFileIsKept) {
    std::filesystem::create_directory(TemporaryFile());
    SaveCalls calls{Dll().Handle()};
    EXPECT_TRUE(Save());
    ExpectAtomicSave(calls);
    EXPECT_TRUE(std::filesystem::is_directory(TemporaryFile()));
}

// While it is moved, the temporary file is closed, and a process of another session can delete it.
TEST_F(SaveProtocolTest, LostTemporaryFileKeepsOldContent) {
    SaveCalls calls{Dll().Handle(), Renames::None};
    calls.before = [&](SaveCall call) {
        if (call == SaveCall::Move) {
            EXPECT_TRUE(DeleteFileW(TemporaryFile().c_str()));
        }
        return ERROR_SUCCESS;
    };
    EXPECT_FALSE(Save());
    EXPECT_EQ(UserSettings(), Old);
    EXPECT_EQ(FileCount(), 1);
}

// Another process can create a temporary file between the deletion of left-over files and the creation.
TEST_F(SaveProtocolTest, TemporaryFileCreatedMeanwhileIsKept) {
    SaveCalls calls{Dll().Handle()};
    std::optional<OpenFile> process;
    calls.before = [&](SaveCall call) {
        if (call == SaveCall::Create && !process) {
            WriteFile(TemporaryFile(), "in use");
            process.emplace(TemporaryFile(), GENERIC_WRITE, 0);
        }
        return ERROR_SUCCESS;
    };
    EXPECT_TRUE(Save());
    ExpectAtomicSave(calls);
    process.reset();
    EXPECT_EQ(ReadFile(TemporaryFile()), "in use");
}

}  // namespace ZOTDam::Test
