// Tests of saves in a folder that several users share: access that the system denies, and links that another
// user has created at the paths of the library's files.
#include "support/CommonSettingsTest.h"
#include "support/ImportPatch.h"
#include "support/SaveCalls.h"
#include "support/SettingsTest.h"

namespace ZOTDam::Test {

class SharedFolderTest : public CommonSettingsTest {
protected:
    SharedFolderTest() { WriteUserValues(R"(Name="old")"); }

    std::vector<std::wstring> FilesInFolder() const {
        std::vector<std::wstring> names;
        for (const auto& entry : std::filesystem::directory_iterator{installation.UserFile().parent_path()})
            names.push_back(entry.path().filename());
        std::ranges::sort(names);
        return names;
    }

    std::filesystem::path UserFile() const { return installation.UserFile(); }
};

// ---- Access denied ----

// The calls to which the system denies access, and whether a save can still store the new content.
struct Denial {
    std::string name;
    std::set<SaveCall> calls;
    bool isStored;
};

void PrintTo(const Denial& denial, std::ostream* out) {
    *out << denial.name;
}

std::set<SaveCall> ReplacementsAnd(SaveCall other) {
    std::set<SaveCall> calls = Replacements;
    calls.insert(other);
    return calls;
}

const Denial Denials[] = {
    {"OpeningOfLeftOverFiles", {SaveCall::OpenLeftOver}, true},
    {"CreationOfFiles", {SaveCall::Create}, true},
    {"CreationAndWritingOfFiles", {SaveCall::Create, SaveCall::OpenUnguarded}, false},
    {"Write", {SaveCall::Write}, false},
    {"SettingOfEnd", {SaveCall::SetEnd}, false},
    {"Flush", {SaveCall::Flush}, false},
    {"Replacement", Replacements, true},
    {"ReplacementAndWritingOfFile", ReplacementsAnd(SaveCall::OpenTarget), false},
    {"ReplacementAndRedoFile", ReplacementsAnd(SaveCall::RenameToRedo), false},
};

class AccessDenialTest : public SharedFolderTest, public testing::WithParamInterface<Denial> {};

INSTANTIATE_TEST_SUITE_P(, AccessDenialTest, testing::ValuesIn(Denials), CaseName<Denial>);

TEST_P(AccessDenialTest, DeniedAccessLeavesOldOrNewContent) {
    const std::string old = UserSettings();
    {
        SaveCalls calls{Dll().Handle()};
        calls.Fail(GetParam().calls, ERROR_ACCESS_DENIED);
        EXPECT_EQ(Set(L"Name", L"new"), GetParam().isStored);
        EXPECT_NE(calls.made, std::vector<SaveCall>{});
    }
    EXPECT_EQ(UserSettings() == old, !GetParam().isStored);
    EXPECT_EQ(Setting(L"Name"), GetParam().isStored ? L"new" : L"old");
    EXPECT_EQ(FilesInFolder(), std::vector<std::wstring>{L"ZOTPowercfg.xml"});
}

TEST_F(SharedFolderTest, DeniedCopyOfMalformedFileLeavesFile) {
    WriteUserSettings("<malformed");
    SaveCalls calls{Dll().Handle()};
    calls.Fail({SaveCall::Copy}, ERROR_ACCESS_DENIED);
    EXPECT_FALSE(Set(L"Name", L"new"));
    EXPECT_EQ(UserSettings(), "<malformed");
    EXPECT_EQ(FilesInFolder(), std::vector<std::wstring>{L"ZOTPowercfg.xml"});
}

// The temporary files of another user stay, because this user may not delete them.
TEST_F(SharedFolderTest, ForeignTemporaryFileDoesNotPreventSave) {
    WriteFile(TemporaryFileOf(UserFile()), "of another user");
    SaveCalls calls{Dll().Handle()};
    calls.Fail({SaveCall::OpenLeftOver}, ERROR_ACCESS_DENIED);
    EXPECT_TRUE(Set(L"Name", L"new"));
    EXPECT_TRUE(calls.AreAtomic());
    EXPECT_EQ(ReadFile(TemporaryFileOf(UserFile())), "of another user");
}

// ---- Links ----

// Marks a file as a link for the calls that ask for attributes by path or by handle.
class FakeLink {
public:
    enum Visibility { Always, OnlyByHandle };

    FakeLink(HMODULE dll, std::filesystem::path link, Visibility visibility = Always)
        : path{std::move(link)},
          visibility{visibility},
          attributesPatch{dll, "GetFileAttributesW", &GetAttributes},
          informationPatch{dll, "GetFileInformationByHandleEx", &GetInformation} {
        current = this;
    }
    FakeLink(const FakeLink&) = delete;
    FakeLink& operator=(const FakeLink&) = delete;

private:
    static DWORD WINAPI GetAttributes(LPCWSTR file) {
        const DWORD attributes = GetFileAttributesW(file);
        return current->visibility == Always && current->path == file
                   ? attributes | FILE_ATTRIBUTE_REPARSE_POINT
                   : attributes;
    }

    static BOOL WINAPI GetInformation(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, LPVOID data, DWORD size) {
        const BOOL result = GetFileInformationByHandleEx(file, kind, data, size);
        wchar_t name[MAX_PATH] = {};
        GetFinalPathNameByHandleW(file, name, MAX_PATH, FILE_NAME_NORMALIZED);
        if (kind == FileBasicInfo && std::filesystem::path{name}.filename() == current->path.filename())
            static_cast<FILE_BASIC_INFO*>(data)->FileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
        return result;
    }

    inline static FakeLink* current = nullptr;
    std::filesystem::path path;
    Visibility visibility;
    ImportPatch attributesPatch;
    ImportPatch informationPatch;
};

class LinkTest : public SharedFolderTest {
protected:
    void ExpectSaveChangesNothing(SaveCalls& calls) {
        const std::string old = UserSettings();
        EXPECT_FALSE(Set(L"Name", L"new"));
        EXPECT_EQ(UserSettings(), old);
        EXPECT_EQ(calls.followed, std::vector<std::filesystem::path>{});
    }
};

TEST_F(LinkTest, LinkInPlaceOfFileIsNotReplaced) {
    SaveCalls calls{Dll().Handle()};
    const FakeLink link{Dll().Handle(), UserFile()};
    ExpectSaveChangesNothing(calls);
    EXPECT_EQ(calls.made, std::vector<SaveCall>{});
}

TEST_F(LinkTest, LinkCreatedDuringSaveIsNotFollowed) {
    SaveCalls calls{Dll().Handle()};
    calls.Fail(Replacements, ERROR_ACCESS_DENIED);
    const FakeLink link{Dll().Handle(), UserFile(), FakeLink::OnlyByHandle};
    ExpectSaveChangesNothing(calls);
}

TEST_F(LinkTest, LinkIsNotWrittenWithoutTemporaryFile) {
    SaveCalls calls{Dll().Handle()};
    calls.Fail({SaveCall::Create}, ERROR_ACCESS_DENIED);
    const FakeLink link{Dll().Handle(), UserFile(), FakeLink::OnlyByHandle};
    ExpectSaveChangesNothing(calls);
}

TEST_F(LinkTest, MalformedFileIsNotCopiedToLink) {
    WriteUserSettings("<malformed");
    WriteFile(UnreadableCopyOf(UserFile()), "of another user");
    SaveCalls calls{Dll().Handle()};
    const FakeLink link{Dll().Handle(), UnreadableCopyOf(UserFile())};
    ExpectSaveChangesNothing(calls);
    EXPECT_EQ(calls.CountOf(SaveCall::Copy), 0);
    EXPECT_EQ(ReadFile(UnreadableCopyOf(UserFile())), "of another user");
}

TEST_F(LinkTest, LinkInPlaceOfRedoFileIsIgnored) {
    WriteFile(RedoFileOf(UserFile()), UserSettings());
    const FakeLink link{Dll().Handle(), RedoFileOf(UserFile())};
    EXPECT_EQ(Setting(L"Name"), L"old");
    EXPECT_TRUE(Set(L"Name", L"new"));
    EXPECT_TRUE(std::filesystem::exists(RedoFileOf(UserFile())));
}

TEST_F(LinkTest, LinkThatReplacesRedoFileIsNotRead) {
    const std::string file = UserSettings();
    WriteUserSettings(file.substr(0, 20));
    WriteFile(RedoFileOf(UserFile()), file);
    const FakeLink link{Dll().Handle(), RedoFileOf(UserFile()), FakeLink::OnlyByHandle};
    EXPECT_EQ(Setting(L"Name"), Missing);
    EXPECT_EQ(UserSettings(), file.substr(0, 20));
}

TEST_F(LinkTest, SaveOpensEachFileWithoutFollowingLinks) {
    SaveCalls calls{Dll().Handle()};
    WriteFile(TemporaryFileOf(UserFile()), "left over");
    EXPECT_TRUE(Set(L"Name", L"atomic"));
    calls.Fail(Replacements, ERROR_ACCESS_DENIED);
    EXPECT_TRUE(Set(L"Name", L"in place"));
    calls.Fail({SaveCall::Create}, ERROR_ACCESS_DENIED);
    EXPECT_TRUE(Set(L"Name", L"without temporary file"));
    WriteFile(RedoFileOf(UserFile()), UserSettings());
    calls.Fail({});
    EXPECT_TRUE(Set(L"Name", L"after recovery"));
    for (const SaveCall call : {SaveCall::OpenLeftOver, SaveCall::Create, SaveCall::OpenTarget,
                                SaveCall::OpenUnguarded, SaveCall::OpenRedo})
        EXPECT_NE(calls.CountOf(call), 0) << NameOf(call);
    EXPECT_EQ(calls.followed, std::vector<std::filesystem::path>{});
}

}  // namespace ZOTDam::Test
