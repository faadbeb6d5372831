// Tests that zotdamctl doctor examines the whole installation: the library, MSXML, and the folders of the
// data files.
#include "client/DoctorTest.h"
#include "support/OpenFile.h"

namespace ZOTDam::Test {

// ---- The library ----

class DoctorLibraryTest : public InstalledClientTest {
protected:
    std::filesystem::path LibraryFile() const { return Folder() / L"ZOTDam.dll"; }

    void ExpectFinding(const Json& finding, const std::string& kind, const std::string& problem,
                       const std::string& consequence) const {
        EXPECT_EQ(finding["file"], Utf8(LibraryFile()));
        EXPECT_EQ(finding["kind"], kind);
        EXPECT_EQ(finding["problem"], problem);
        EXPECT_EQ(finding["consequence"], consequence);
    }

    // Replaces each occurrence of bytes in the library with others of the same number.
    void Patch(std::string_view part, std::string_view replacement) const {
        std::string content = ReadFile(LibraryFile());
        std::size_t count = 0;
        for (std::size_t at = 0; (at = content.find(part, at)) != std::string::npos; at += part.size()) {
            content.replace(at, part.size(), replacement);
            ++count;
        }
        EXPECT_GT(count, 0u);
        WriteFile(LibraryFile(), content);
    }

    void ExpectCountFails() const { EXPECT_EQ(Run({L"count"}).exitStatus, Failure); }
};

TEST_F(DoctorLibraryTest, CompleteInstallationHasNoFindings) {
    EXPECT_EQ(FindingsWith(0), Json::array());
}

TEST_F(DoctorLibraryTest, MissingLibraryIsReported) {
    std::filesystem::remove(LibraryFile());
    const Json findings = FindingsWith(2);
    ASSERT_EQ(findings.size(), 1u);
    ExpectFinding(findings[0], "missing-library", "the library does not exist",
                  "no program can read or change the settings");
    ExpectCountFails();
}

TEST_F(DoctorLibraryTest, InvalidLibraryIsReportedWithSystemCode) {
    WriteFile(LibraryFile(), "junk");
    const Json findings = FindingsWith(2);
    ASSERT_EQ(findings.size(), 2u);
    ExpectFinding(findings[0], "library-not-loadable", "the system cannot load the library (error 193)",
                  "no program can read or change the settings");
    ExpectFinding(findings[1], "version-mismatch",
                  "the library has no version, and zotdamctl has the version " ZOTDAM_VERSION,
                  "the two files are from different packages");
    ExpectCountFails();
}

TEST_F(DoctorLibraryTest, MissingExportIsReportedByName) {
    Patch({"\0TEVGetParam\0", 13}, {"\0TEVGetParax\0", 13});
    const Json findings = FindingsWith(2);
    ASSERT_EQ(findings.size(), 1u);
    ExpectFinding(findings[0], "missing-export", "the library does not export TEVGetParam",
                  "programs that need these functions fail");
    ExpectCountFails();
}

TEST_F(DoctorLibraryTest, LibraryOfOtherProgramIsReported) {
    wchar_t folder[MAX_PATH] = {};
    GetSystemDirectoryW(folder, MAX_PATH);
    std::filesystem::remove(LibraryFile());
    std::filesystem::copy_file(std::filesystem::path{folder} / L"version.dll", LibraryFile());
    const Json findings = FindingsWith(2);
    ASSERT_EQ(findings.size(), 2u);
    EXPECT_EQ(findings[0]["kind"], "missing-export");
    const std::string problem = findings[0]["problem"];
    EXPECT_TRUE(problem.ends_with(", SetParameter, TEVGetParam, ZOTDamExit")) << problem;
    EXPECT_EQ(findings[1]["kind"], "version-mismatch");
}

TEST_F(DoctorLibraryTest, OtherVersionOfLibraryIsReported) {
    const DWORD version[] = {VS_FFI_SIGNATURE, VS_FFI_STRUCVERSION, MAKELONG(3, 2)};
    std::string old = ReadFile(LibraryFile());
    const std::string_view signature{reinterpret_cast<const char*>(version), 2 * sizeof(DWORD)};
    old = old.substr(old.find(signature), sizeof version);
    Patch(old, {reinterpret_cast<const char*>(version), sizeof version});
    const Json findings = FindingsWith(1);
    ASSERT_EQ(findings.size(), 1u);
    const std::string problem = findings[0]["problem"];
    EXPECT_EQ(findings[0]["kind"], "version-mismatch");
    EXPECT_TRUE(problem.starts_with("the library has the version 2.3.")) << problem;
}

// ---- MSXML ----

// For the lifetime of the object, the system does not find MSXML 6. Windows prefers the registration of the
// user to that of the machine, which it protects. Wine uses only that of the machine.
class WithoutMsxml {
public:
    WithoutMsxml() {
        DWORD size = sizeof registered;
        RegGetValueW(HKEY_LOCAL_MACHINE, Server, nullptr, RRF_RT_REG_SZ, nullptr, registered, &size);
        for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
            Register(root, L"C:\\missing.dll");
    }
    WithoutMsxml(const WithoutMsxml&) = delete;
    WithoutMsxml& operator=(const WithoutMsxml&) = delete;
    ~WithoutMsxml() {
        Register(HKEY_LOCAL_MACHINE, registered);
        RegDeleteTreeW(HKEY_CURRENT_USER, Class);
    }

private:
    static void Register(HKEY root, const std::wstring& file) {
        const auto size = static_cast<DWORD>((file.size() + 1) * sizeof(wchar_t));
        RegSetKeyValueW(root, Server, nullptr, REG_SZ, file.c_str(), size);
    }

    static constexpr wchar_t Class[] = L"Software\\Classes\\CLSID\\{88d96a05-f192-11d4-a65f-0040963251e5}";
    static constexpr wchar_t Server[] =
        L"Software\\Classes\\CLSID\\{88d96a05-f192-11d4-a65f-0040963251e5}\\InprocServer32";

    wchar_t registered[MAX_PATH] = {};
};

class MissingMsxmlTest : public DoctorTest {
protected:
    const WithoutMsxml withoutMsxml;
    const std::string problem = "the system cannot create a document of MSXML 6 (error 0x8";
};

TEST_F(MissingMsxmlTest, DoctorReportsMissingMsxmlWithSystemCode) {
    const Json findings = FindingsWith(2);
    ASSERT_EQ(findings.size(), 1u) << findings;
    EXPECT_EQ(findings[0]["kind"], "missing-msxml");
    EXPECT_TRUE(std::string{findings[0]["problem"]}.starts_with(problem)) << findings;
    EXPECT_EQ(findings[0]["consequence"], "the library reads and writes no file");
}

TEST_F(MissingMsxmlTest, EachCommandThatUsesLibraryFails) {
    const std::vector<Arguments> commands = {
        {L"count"},
        {L"functions"},
        {L"base"},
        {L"adopt", L"--all"},
        {L"spec-schemes"},
        {L"params", L"balanced"},
        {L"current", L"balanced"},
        {L"set", L"balanced", L"1", L"0", L"0"},
        {L"commands", L"balanced"},
        {L"diff", L"balanced", L"power-saver"},
        {L"reset"},
        {L"setting", L"get", L"Warning"},
        {L"setting", L"set", L"Warning", L"1"},
        {L"setting", L"init"},
    };
    for (const Arguments& arguments : commands) {
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.exitStatus, Failure) << Utf8(arguments[0]);
        EXPECT_EQ(outcome.output, "");
        EXPECT_TRUE(
            outcome.errors.starts_with("zotdamctl: The library cannot read the data files: " + problem))
            << outcome.errors;
    }
}

// ---- Busy markers ----

class DoctorMarkerTest : public DoctorTest {
protected:
    void ExpectFileInUse(File file) const {
        EXPECT_EQ(WithoutProblems(FindingsWith(1)),
                  Json::array({FindingIn(file, nullptr, "file-in-use",
                                         "the library neither loads nor saves the file")}));
    }
};

TEST_F(DoctorMarkerTest, HeldMarkerOfUserSettingsIsReported) {
    const SecondProcess other{HoldMutex, {UserMarker}};
    ExpectFileInUse(File::UserSettings);
    EXPECT_TRUE(Set(L"Warning", L"20"));
    EXPECT_EQ(GetParameter(Balanced), DefaultsOfBalanced);
    EXPECT_EQ(UserSettings(), HealthyUserSettings);
}

TEST_F(DoctorMarkerTest, HeldMarkerOfDefaultsIsReported) {
    const SecondProcess other{HoldMutex, {DefaultsMarker}};
    ExpectFileInUse(File::Defaults);
    EXPECT_EQ(FuncCount(), CatalogueUnavailable);
}

TEST_F(DoctorMarkerTest, FileWithHeldMarkerIsExamined) {
    const SecondProcess other{HoldMutex, {UserMarker}};
    WriteUserSettings("<OrloPowerCfg><Other/></OrloPowerCfg>");
    const Json findings = FindingsWith(1);
    ASSERT_EQ(findings.size(), 2u);
    EXPECT_EQ(findings[1]["kind"], "unknown-element");
}

// ---- Left-over files ----

class DoctorLeftOverTest : public DoctorTest {
protected:
    void ExpectLeftOver(const std::filesystem::path& file, const std::string& consequence) const {
        EXPECT_EQ(WithoutProblems(FindingsWith(1)), Json::array({{{"file", Utf8(file)},
                                                                  {"element", nullptr},
                                                                  {"kind", "left-over-file"},
                                                                  {"consequence", consequence}}}));
    }
};

TEST_F(DoctorLeftOverTest, TemporaryFileIsReportedAndDeletedAtSave) {
    for (const wchar_t* const extension : {L".new", L".nw1", L".nw9"}) {
        const std::filesystem::path file = installation.UserFile().replace_extension(extension);
        WriteFile(file, "<OrloPowerCfg/>");
        ExpectLeftOver(file, "the library deletes it at the next save");
        EXPECT_TRUE(Set(L"Warning", L"20"));
        EXPECT_FALSE(exists(file));
    }
}

TEST_F(DoctorLeftOverTest, RedoFileIsReportedAndUsedAtLoad) {
    const std::filesystem::path file = RedoFileOf(installation.UserFile());
    WriteFile(file, Healthy(File::UserSettings));
    ExpectLeftOver(file, "the library completes the save at the next load");
    WriteUserSettings(std::string_view{HealthyUserSettings}.substr(0, 20));
    EXPECT_EQ(Setting(L"Warning"), L"15");
    EXPECT_FALSE(exists(file));
}

TEST_F(DoctorLeftOverTest, CopyOfUnreadableFileIsReportedAndReplaced) {
    const std::filesystem::path file = UnreadableUserSettings();
    WriteFile(file, "old");
    ExpectLeftOver(file, "the library does not read it, and replaces it with the next copy");
    WriteUserSettings("new");
    EXPECT_TRUE(Set(L"Warning", L"20"));
    EXPECT_EQ(ReadFile(file), "new");
}

TEST_F(DoctorLeftOverTest, LeftOverFileOfDefaultsIsReported) {
    WriteFile(TemporaryFileOf(installation.DefaultsFile()), "");
    ExpectLeftOver(TemporaryFileOf(installation.DefaultsFile()), "the library deletes it at the next save");
}

TEST_F(DoctorLeftOverTest, TemporaryFileOfRunningSaveIsNoFinding) {
    WriteFile(TemporaryFileOf(installation.UserFile()), "");
    const OpenFile open{TemporaryFileOf(installation.UserFile()), GENERIC_WRITE, 0};
    EXPECT_EQ(FindingsWith(0), Json::array());
}

TEST_F(DoctorLeftOverTest, OtherFilesAreNoFindings) {
    for (const wchar_t* const name :
         {L"ZOTPowercfg.nw0", L"ZOTPowercfg.nwx", L"ZOTPowercfg.bak", L"Other.new", L"Other.xml.redo"})
        WriteFile(installation.UserFile().replace_filename(name), "");
    EXPECT_EQ(FindingsWith(0), Json::array());
}

}  // namespace ZOTDam::Test
