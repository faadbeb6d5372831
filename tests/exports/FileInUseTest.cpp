// Tests of saves that cannot proceed, because the file is read-only or in use, or because the folder is
// missing or its path is too long. The tests check the result of the call and the files.
#include <windows.h>

#include <optional>
#include <set>
#include <span>

#include "support/FunctionDefaultsTest.h"
#include "support/ImportPatch.h"
#include "support/LongPaths.h"
#include "support/MarkerCalls.h"
#include "support/OpenFile.h"
#include "support/SaveCalls.h"

namespace ZOTDam::Test {

namespace {

enum class SavedFile { UserSettings, Defaults };

// A call that saves one of the two files.
struct SavingCall {
    std::string name;
    SavedFile file;
    bool (*call)(const Library& dll);
    bool whenSaved;
    bool whenNotSaved;
};

void PrintTo(const SavingCall& saving, std::ostream* out) {
    *out << saving.name;
}

bool ReadScheme(const Library& dll) {
    auto ignore = MakeCallback<IGetParameterCallback>([](std::int32_t, const ParamValue*) {});
    return dll.GetParameter(&HighPerformance, &ignore);
}

bool ReadCommands(const Library& dll) {
    auto ignore = MakeCallback<IGetCommandInfoCallback>([](const CommandInfoRecord*) {});
    return dll.GetCommandInfo(&HighPerformance, &ignore);
}

bool ReplaceFunctions(const Library& dll) {
    const FunctionBaseHolder holder = HolderOf({Record(20)});
    return dll.AddFunctionDefault(&holder);
}

// The exports that read a scheme save too: they store the defaults of a scheme that is not stored yet.
std::vector<SavingCall> SavingCalls() {
    constexpr SavedFile user = SavedFile::UserSettings;
    constexpr SavedFile defaults = SavedFile::Defaults;
    return {
        {"SetParameter", user,
         [](const Library& dll) {
             return dll.SetParameter(&Balanced, ParamHolder{{{1, {5, 6}}}}.get());
         },
         true, true},
        {"SetCommonSetting", user, [](const Library& dll) { return dll.SetCommonSetting(L"Name", L"new"); },
         true, false},
        {"ResetDefault", user, [](const Library& dll) { return dll.ResetDefault(); }, true, true},
        {"GetParameter", user, ReadScheme, true, true},
        {"TEVGetParam", user, [](const Library& dll) { return dll.TEVGetParam(&HighPerformance); }, true,
         true},
        {"GetCommandInfo", user, ReadCommands, true, true},
        {"GetDiffFuncList", user,
         [](const Library& dll) {
             return dll.GetDiffFuncList(&HighPerformance, &PowerSaver, 1, nullptr, nullptr);
         },
         false, false},
        {"InitCommonSetting", defaults, [](const Library& dll) { return dll.InitCommonSetting(); }, true,
         false},
        {"AddFunctionDefault", defaults, ReplaceFunctions, true, true},
    };
}

// ---- Conflicting attributes and handles ----

DWORD WINAPI RefuseAttributes(const wchar_t*) {
    SetLastError(ERROR_ACCESS_DENIED);
    return INVALID_FILE_ATTRIBUTES;
}

class ReadOnlyFile {
public:
    explicit ReadOnlyFile(std::filesystem::path file) : path{std::move(file)} {
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    }
    ReadOnlyFile(const ReadOnlyFile&) = delete;
    ReadOnlyFile& operator=(const ReadOnlyFile&) = delete;
    ~ReadOnlyFile() { SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL); }

private:
    std::filesystem::path path;
};

struct OpenMode {
    std::string name;
    DWORD access;
    DWORD shared;
    bool isLocked = false;
};

constexpr DWORD Reading = GENERIC_READ;
constexpr DWORD Writing = GENERIC_READ | GENERIC_WRITE;
constexpr DWORD SharesReading = FILE_SHARE_READ;
constexpr DWORD SharesWriting = FILE_SHARE_READ | FILE_SHARE_WRITE;
constexpr DWORD SharesDeleting = FILE_SHARE_READ | FILE_SHARE_DELETE;
constexpr DWORD SharesAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Handles that prevent even the DOM from reading the file.
const OpenMode BlockingReads[] = {
    {"WhileOpenForReadingWithoutSharing", Reading, 0},
    {"WhileOpenForWritingWithoutSharing", Writing, 0},
    {"WhileOpenForWritingForOneOnly", Writing, SharesReading},
};

// Handles that prevent other processes from writing to the file.
const OpenMode BlockingWrites[] = {
    {"WhileOpenForReadingOnly", Reading, SharesReading},
    {"WhileOpenForReadingOnlyAndLocked", Reading, SharesReading, true},
};

// Handles that allow other processes to write to the file.
const OpenMode AllowingWrites[] = {
    {"WhileOpenForReadingAndWriting", Reading, SharesWriting},
    {"WhileOpenForAnything", Reading, SharesAll},
};

// Handles that systems treat differently. Some systems allow the replacement of a file that is being written
// or is locked.
const OpenMode SystemDependent[] = {
    {"WhileOpenForReadingAndDeleting", Reading, SharesDeleting}, {"WhileWritten", Writing, SharesWriting},
    {"WhileWrittenWithAnythingShared", Writing, SharesAll},      {"WhileLocked", Reading, SharesAll, true},
    {"WhileWrittenAndLocked", Writing, SharesAll, true},
};

constexpr wchar_t KeepFileOpen[] = L"keep-file-open";

// A second process that keeps the file open until it is terminated.
const RegisterRole KeepFileOpenRole{KeepFileOpen, [](const std::vector<std::wstring>& arguments) {
                                        const OpenFile open{arguments.at(0), Reading, SharesReading};
                                        SignalReady();
                                        Sleep(INFINITE);
                                        return 0;
                                    }};

}  // namespace

// Tests of conflicts that occur after the library has read both files.
class FileInUseTest : public FunctionDefaultsTest {
protected:
    FileInUseTest() {
        WriteDefaults(OldDefaultsFile);
        WriteUserSettings(OldSettings);
        WriteBase(R"(<ZOTBase><CommonSettings Base="b"/></ZOTBase>)");
        before = Everything();
    }

    std::filesystem::path PathOf(SavedFile file) const {
        return file == SavedFile::Defaults ? installation.DefaultsFile() : installation.UserFile();
    }
    static const std::string& OldContentOf(SavedFile file) {
        return file == SavedFile::Defaults ? OldDefaultsFile : OldSettings;
    }

    void RestoreFile(SavedFile file) const { WriteFile(PathOf(file), InSelectedForm(OldContentOf(file))); }

    void ReadBothFiles() {
        EXPECT_EQ(Dll().GetFuncCount(), 2u);
        EXPECT_FALSE(Dll().GetCommonSetting(L"Missing", nullptr));
    }

    // Returns the content of the file after a successful save and restores the old file.
    std::string ContentSavedBy(const SavingCall& saving) {
        ReadBothFiles();
        EXPECT_EQ(saving.call(Dll()), saving.whenSaved);
        Unload();
        std::string content = Content(PathOf(saving.file));
        EXPECT_NE(content, OldContentOf(saving.file));
        RestoreFile(saving.file);
        return content;
    }

    bool CallWhileOpen(const OpenMode& mode, const SavingCall& saving) {
        ReadBothFiles();
        const OpenFile open{PathOf(saving.file), mode.access, mode.shared};
        if (mode.isLocked)
            open.Lock();
        const SaveCalls clock{Dll().Handle()};  // on which the pauses of a save take no time
        return saving.call(Dll());
    }

    // Returns the names of all files and folders.
    std::set<std::string> Everything() const {
        std::set<std::string> names;
        for (const auto& folder : {installation.ProgramFiles(), installation.ProgramData()})
            for (const auto& entry : std::filesystem::recursive_directory_iterator{folder})
                names.insert(Utf8(entry.path().filename()));
        return names;
    }

    // Expects that, after a failed save, the next save has the same result as without the failure.
    void ExpectNextSaveWorks(const SavingCall& saving, const std::string& saved) {
        Unload();
        ReadBothFiles();
        EXPECT_EQ(saving.call(Dll()), saving.whenSaved);
        EXPECT_EQ(Content(PathOf(saving.file)), saved);
        EXPECT_EQ(Everything(), before);
    }

    inline static const std::string OldSettings =
        OldUserFile(OldScheme(BalancedText, OldFunction(1, 2, 3) + OldFunction(2, 4, 5)));
    inline static const std::string OldDefaultsFile = TwoFunctions;
    std::set<std::string> before;
};

// ---- Each call with each conflict ----

class SavingCallTest : public FileInUseTest, public testing::WithParamInterface<SavingCall> {
protected:
    static const SavingCall& Saving() { return GetParam(); }
    std::filesystem::path Path() const { return PathOf(Saving().file); }
    const std::string& OldContent() const { return OldContentOf(Saving().file); }
    std::string CurrentContent() const { return Content(Path()); }

    void ExpectUnchangedWhileOpen(std::span<const OpenMode> modes, bool result) {
        const std::string saved = ContentSavedBy(Saving());
        for (const OpenMode& mode : modes) {
            SCOPED_TRACE(mode.name);
            EXPECT_EQ(CallWhileOpen(mode, Saving()), result);
            EXPECT_EQ(CurrentContent(), OldContent());
            EXPECT_EQ(Everything(), before);
            Unload();
        }
        ExpectNextSaveWorks(Saving(), saved);
    }
};

INSTANTIATE_TEST_SUITE_P(, SavingCallTest, testing::ValuesIn(SavingCalls()), CaseName<SavingCall>);

TEST_P(SavingCallTest, ReadOnlyFileIsUnchanged) {
    const std::string saved = ContentSavedBy(Saving());
    {
        ReadBothFiles();
        const ReadOnlyFile file{Path()};
        EXPECT_EQ(Saving().call(Dll()), Saving().whenNotSaved);
        EXPECT_EQ(CurrentContent(), OldContent());
        EXPECT_EQ(Everything(), before);
    }
    ExpectNextSaveWorks(Saving(), saved);
}

// Only the user settings are read again before a save. If they cannot be read, the save is skipped as for a
// busy file, which is not a failure.
TEST_P(SavingCallTest, FileThatCannotBeReadIsUnchanged) {
    const bool isSkipped = Saving().file == SavedFile::UserSettings;
    ExpectUnchangedWhileOpen(BlockingReads, isSkipped ? Saving().whenSaved : Saving().whenNotSaved);
}

TEST_P(SavingCallTest, FileThatCannotBeWrittenIsUnchanged) {
    ExpectUnchangedWhileOpen(BlockingWrites, Saving().whenNotSaved);
}

TEST_P(SavingCallTest, FileSharedForWritingIsSaved) {
    const std::string saved = ContentSavedBy(Saving());
    for (const OpenMode& mode : AllowingWrites) {
        SCOPED_TRACE(mode.name);
        EXPECT_EQ(CallWhileOpen(mode, Saving()), Saving().whenSaved);
        EXPECT_EQ(CurrentContent(), saved);
        EXPECT_EQ(Everything(), before);
        Unload();
        RestoreFile(Saving().file);
    }
}

TEST_P(SavingCallTest, FileInUseIsSavedCompletelyOrUnchanged) {
    const std::string saved = ContentSavedBy(Saving());
    for (const OpenMode& mode : SystemDependent) {
        SCOPED_TRACE(mode.name);
        const bool result = CallWhileOpen(mode, Saving());
        const bool isSaved = CurrentContent() != OldContent();
        EXPECT_TRUE(!isSaved || (result == Saving().whenSaved && CurrentContent() == saved))
            << CurrentContent();
        EXPECT_EQ(Everything(), before);
        Unload();
        RestoreFile(Saving().file);
    }
}

TEST_P(SavingCallTest, MissingFolderIsNotCreated) {
    ReadBothFiles();
    const std::filesystem::path folder = Path().parent_path();
    std::filesystem::remove_all(folder);
    EXPECT_EQ(Saving().call(Dll()), Saving().whenNotSaved);
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_P(SavingCallTest, FileInPlaceOfFolderIsUnchanged) {
    ReadBothFiles();
    const std::filesystem::path folder = Path().parent_path();
    std::filesystem::remove_all(folder);
    WriteFile(folder, "a file");
    EXPECT_EQ(Saving().call(Dll()), Saving().whenNotSaved);
    EXPECT_EQ(ReadFile(folder), "a file");
}

TEST_P(SavingCallTest, FolderInPlaceOfFileIsUnchanged) {
    ReadBothFiles();
    std::filesystem::remove(Path());
    std::filesystem::create_directory(Path());
    EXPECT_EQ(Saving().call(Dll()), Saving().whenNotSaved);
    EXPECT_TRUE(std::filesystem::is_empty(Path()));
    EXPECT_EQ(Everything(), before);
}

// ---- Other programs ----

TEST_F(FileInUseTest, UserSettingsAreSavedAfterReadingProcessEnds) {
    {
        const SecondProcess reader{KeepFileOpen, {installation.UserFile()}};
        EXPECT_FALSE(Dll().SetCommonSetting(L"Name", L"new"));
        EXPECT_EQ(UserSettings(), OldSettings);
    }
    EXPECT_TRUE(Dll().SetCommonSetting(L"Name", L"newer"));
    EXPECT_NE(UserSettings().find(R"(Name="newer")"), std::string::npos);
}

TEST_F(FileInUseTest, DefaultsAreSavedAfterReadingProcessEnds) {
    {
        const SecondProcess reader{KeepFileOpen, {installation.DefaultsFile()}};
        EXPECT_FALSE(Dll().InitCommonSetting());
        EXPECT_EQ(Defaults(), OldDefaultsFile);
    }
    EXPECT_TRUE(Dll().InitCommonSetting());
    EXPECT_NE(Defaults().find(R"(Base="b")"), std::string::npos);
}

// The user settings are in use when they are loaded, but not when they are saved.
class UserSettingsInUseAtLoadTest : public FileInUseTest {
protected:
    void ExpectNoSave(DWORD shared) {
        std::optional<OpenFile> writer{std::in_place, installation.UserFile(), Writing, shared};
        MarkerCalls calls{Dll().Handle()};
        calls.onOpen = [&]() -> std::optional<HANDLE> {
            if (calls.opened.size() == 2)
                writer.reset();
            return std::nullopt;
        };
        Dll().SetCommonSetting(L"Name", L"new");
        EXPECT_EQ(calls.opened.size(), 2u);
        EXPECT_NE(UserSettings().find(BalancedText), std::string::npos) << UserSettings();
        EXPECT_EQ(Everything(), before);
    }
};

// A file that is in use must not be handled like a file that is not well-formed, which the library replaces.
TEST_F(UserSettingsInUseAtLoadTest, FileIsPreserved) {
    for (const DWORD shared : {SharesReading, SharesWriting, SharesAll})
        ExpectNoSave(shared);
}

// Only a missing file may be created.
TEST_F(UserSettingsInUseAtLoadTest, FileWithUnknownAttributesIsPreserved) {
    const ImportPatch refusal{Dll().Handle(), "GetFileAttributesW", &RefuseAttributes};
    ExpectNoSave(SharesAll);
}

TEST_F(FileInUseTest, DefaultsInUseAtLoadArePreserved) {
    {
        const OpenFile writer{installation.DefaultsFile(), Writing, SharesAll};
        Dll().GetFuncCount();
    }
    Dll().InitCommonSetting();
    EXPECT_NE(Defaults().find("<Function ID=\"2\""), std::string::npos) << Defaults();
    EXPECT_EQ(Everything(), before);
}

// ---- Folders with paths of the maximum length ----

class LongFolderSaveTest : public FileInUseTest {
protected:
    void SaveInUserPathOf(std::size_t codeUnits, const SavingCall& saving, bool expected) {
        WriteUserSettings(OldSettings);
        SetLongUserPath(installation.ProgramData(), codeUnits);
        ReadBothFiles();
        EXPECT_EQ(saving.call(Dll()), expected) << saving.name;
        Unload();
        EXPECT_EQ(Everything(), before);
    }

    bool InitInInstallationPathOf(std::size_t codeUnits) {
        SetLongInstallationPath(installation.ProgramFiles(), codeUnits);
        return Dll().InitCommonSetting();
    }
};

TEST_F(LongFolderSaveTest, LongestUserFolderAllowsEverySave) {
    for (const SavingCall& saving : SavingCalls())
        if (saving.file == SavedFile::UserSettings) {
            SaveInUserPathOf(255, saving, saving.whenSaved);
            EXPECT_NE(UserSettings(), OldSettings) << saving.name;
        }
}

TEST_F(LongFolderSaveTest, OverlongUserFolderPreventsEverySave) {
    for (const SavingCall& saving : SavingCalls())
        if (saving.file == SavedFile::UserSettings) {
            SaveInUserPathOf(256, saving, saving.whenNotSaved && saving.name != "ResetDefault");
            EXPECT_EQ(UserSettings(), OldSettings) << saving.name;
        }
}

TEST_F(LongFolderSaveTest, LongestInstallationFolderAllowsFunctionSave) {
    SetLongInstallationPath(installation.ProgramFiles(), 255);
    EXPECT_TRUE(ReplaceFunctions(Dll()));
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(20))});
    EXPECT_EQ(Everything(), before);
}

TEST_F(LongFolderSaveTest, OverlongInstallationFolderPreventsFunctionSave) {
    SetLongInstallationPath(installation.ProgramFiles(), 256);
    EXPECT_TRUE(ReplaceFunctions(Dll()));
    EXPECT_EQ(Defaults(), OldDefaultsFile);
    EXPECT_EQ(Everything(), before);
}

// The path of the base catalogue is five UTF-16 code units longer.
TEST_F(LongFolderSaveTest, LongestFolderForBaseCatalogueAllowsSettingsSave) {
    EXPECT_TRUE(InitInInstallationPathOf(250));
    EXPECT_NE(Defaults().find(R"(Base="b")"), std::string::npos);
    EXPECT_EQ(Everything(), before);
}

TEST_F(LongFolderSaveTest, OverlongFolderForBaseCataloguePreventsSettingsSave) {
    EXPECT_FALSE(InitInInstallationPathOf(251));
    EXPECT_EQ(Defaults(), OldDefaultsFile);
    EXPECT_EQ(Everything(), before);
}

}  // namespace ZOTDam::Test
