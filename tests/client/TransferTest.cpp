// Tests of zotdamctl export, import, backup, restore and diff --with.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

constexpr char Brightness[] = R"(<Function ID="1" Name="Brightness"><Display>
    <AC><DisplayItem Label="Bright" Option="100"/><DisplayItem Label="Dark" Option="20"/></AC>
    <DC><DisplayItem Label="Dim" Option="50"/><DisplayItem Label="Off" Option="0"/></DC>
</Display><Commands/><Default ACParamIndex="0" DCParamIndex="0"/></Function>)";

constexpr char Sleep[] = R"(<Function ID="2" Name="Sleep"><Display>
    <AC><DisplayItem Label="Soon" Option="1"/><DisplayItem Label="Late" Option="2"/></AC>
    <DC><DisplayItem Label="Soon" Option="1"/></DC>
</Display><Commands/><Default ACParamIndex="0" DCParamIndex="0"/></Function>)";

class TransferTest : public ClientTest {
protected:
    TransferTest() {
        WriteFunctions(std::string{Brightness} + Sleep);
        WriteUserSettings("<OrloPowerCfg><CommonSettings Warning=\"15 %\" Icon=\"日本\"/><PowerSchemes>" +
                          OldScheme(HighPerformanceText, OldFunction(2, 1, 0)) +
                          OldScheme(BalancedText, OldFunction(1, 1, 1) + OldFunction(9, 7, -8)) +
                          "</PowerSchemes></OrloPowerCfg>");
    }

    std::filesystem::path File(const wchar_t* name) const { return installation.ProgramFiles() / name; }

    // Returns the content of the new export.
    std::string Export(const wchar_t* name) const {
        Output({L"export", File(name)});
        return ReadFile(File(name));
    }
};

using ExportCommandTest = TransferTest;

TEST_F(ExportCommandTest, FileContainsStoredSettings) {
    const Json json = Json::parse(Export(L"a.json"));
    EXPECT_EQ(json["format"], "zotdamctl-export");
    EXPECT_EQ(json["version"], 1);
    EXPECT_EQ(json["catalogue"]["count"], 2);
    EXPECT_EQ(json["schemes"][0]["schemeName"], "high-performance");
    EXPECT_EQ(json["schemes"][1]["parameters"][0], Json::parse(R"({"id": 1, "name": "Brightness",
        "acIndex": 1, "acOption": 20, "acLabel": "Dark", "dcIndex": 1, "dcOption": 0, "dcLabel": "Off"})"));
    EXPECT_EQ(json["commonSettings"][0], Json({{"name", "Warning"}, {"value", "15 %"}}));
}

TEST_F(ExportCommandTest, ReportCountsSchemesAndSettings) {
    EXPECT_EQ(Output({L"export", File(L"a.json")}),
              "Exported to " + Utf8(File(L"a.json")) + ": 2 schemes, 2 common settings\n");
}

TEST_F(ExportCommandTest, FileHasOnlyAsciiCharacters) {
    EXPECT_NE(Export(L"a.json").find(R"("\u65e5\u672c")"), std::string::npos);
}

TEST_F(ExportCommandTest, UserSettingsStayUnchanged) {
    const std::string before = UserSettings();
    Export(L"a.json");
    EXPECT_EQ(UserSettings(), before);
}

TEST_F(ExportCommandTest, FingerprintDependsOnOptionsOnly) {
    const auto fingerprint = [this] { return Json::parse(Export(L"a.json"))["catalogue"]["fingerprint"]; };
    const Json before = fingerprint();
    WriteEntries(Entry("Brightness", "Helligkeit"));
    EXPECT_EQ(fingerprint(), before);
    WriteFunctions(Brightness);
    EXPECT_NE(fingerprint(), before);
}

TEST_F(ExportCommandTest, FileThatCannotBeWrittenIsAnError) {
    const std::filesystem::path file = File(L"missing") / L"a.json";
    ExpectError({L"export", file}, Failure, "The file " + Utf8(file) + " cannot be written.");
}

using ImportCommandTest = TransferTest;

TEST_F(ImportCommandTest, ImportAfterResetRestoresExport) {
    const std::string before = Export(L"a.json");
    Output({L"reset"});
    EXPECT_NE(Export(L"b.json"), before);
    Output({L"import", File(L"a.json")});
    EXPECT_EQ(Export(L"c.json"), before);
}

TEST_F(ImportCommandTest, ChangesAreShown) {
    Export(L"a.json");
    Output({L"set", L"balanced", L"1=0,0"});
    Output({L"forget", L"high-performance"});
    Output({L"setting", L"set", L"Warning", L"20"});
    const std::string output = Output({L"import", File(L"a.json"), L"--dry-run"});
    EXPECT_EQ(output,
              "Scheme            ID  Function    Stored: plugged in / on battery  New\n"
              "high-performance   2  Sleep       (not stored)                     Late (1) / Soon (0)\n"
              "balanced           1  Brightness  Bright (0) / Dim (0)             Dark (1) / Off (1)\n"
              "\n"
              "Setting  Stored  New\n"
              "Warning  20      15 %\n"
              "\n"
              "Nothing was stored, because this is a dry run.\n");
}

TEST_F(ImportCommandTest, JsonListsChanges) {
    Export(L"a.json");
    Output({L"set", L"balanced", L"1=0,0"});
    const Json json = JsonOutput({L"import", File(L"a.json")});
    EXPECT_EQ(json["dryRun"], false);
    EXPECT_EQ(json["parameterChanges"], Json::parse(R"([{"scheme": "381b4222-f694-41f0-9685-ff5bb260df2e",
        "schemeName": "balanced", "id": 1, "name": "Brightness",
        "before": {"acIndex": 0, "acOption": 100, "acLabel": "Bright",
                   "dcIndex": 0, "dcOption": 50, "dcLabel": "Dim"},
        "after": {"acIndex": 1, "acOption": 20, "acLabel": "Dark",
                  "dcIndex": 1, "dcOption": 0, "dcLabel": "Off"}}])"));
    EXPECT_EQ(json["settingChanges"], Json::array());
}

TEST_F(ImportCommandTest, DryRunStoresNothing) {
    Export(L"a.json");
    Output({L"reset"});
    const std::string before = UserSettings();
    EXPECT_EQ(JsonOutput({L"import", File(L"a.json"), L"--dry-run"})["backup"], nullptr);
    EXPECT_EQ(UserSettings(), before);
}

TEST_F(ImportCommandTest, OldSettingsAreKeptAsBackup) {
    Export(L"a.json");
    Output({L"set", L"balanced", L"1=0,0"});
    const std::string before = UserSettings();
    const std::string backup = JsonOutput({L"import", File(L"a.json")})["backup"];
    EXPECT_EQ(ReadFile(std::filesystem::path{backup}), before);
}

TEST_F(ImportCommandTest, OtherSchemesAreKept) {
    Export(L"a.json");
    Output({L"set", L"power-saver", L"2=1,0"});
    Output({L"forget", L"balanced"});
    Output({L"import", File(L"a.json")});
    EXPECT_EQ(IndexesOf({L"params", L"power-saver"})[1], Param(2, 1, 0));
    EXPECT_EQ(IndexesOf({L"params", L"balanced"})[0], Param(1, 1, 1));
}

TEST_F(ImportCommandTest, StoredExportLeavesNothingToChange) {
    Export(L"a.json");
    EXPECT_EQ(Output({L"import", File(L"a.json")}), "There is nothing to change.\n");
}

TEST_F(ImportCommandTest, OtherCatalogueRequiresForce) {
    Export(L"a.json");
    Output({L"reset"});
    WriteFunctions(Brightness);
    ExpectError({L"import", File(L"a.json")}, Failure,
                "The export is from a machine with another catalogue than " +
                    Utf8(installation.DefaultsFile()) +
                    ", where positions can select other options. --force imports them unchanged.");
    Output({L"import", File(L"a.json"), L"--force"});
    EXPECT_EQ(IndexesOf({L"params", L"balanced"})[0], Param(1, 1, 1));
}

TEST_F(ImportCommandTest, FileThatIsNoExportIsAnError) {
    ExpectError({L"import", File(L"a.json")}, Failure,
                "The file " + Utf8(File(L"a.json")) + " does not exist.");
    for (const char* const content :
         {"", "{", "[]", "{}", R"({"format": "zotdamctl-export", "version": 2})"}) {
        WriteFile(File(L"a.json"), content);
        ExpectJsonError({L"import", File(L"a.json")}, "unreadable-file", Utf8(File(L"a.json")));
    }
}

TEST_F(ImportCommandTest, MessageStatesWhyFileIsNoExport) {
    const std::string start = R"({"format": "zotdamctl-export", "version": 1)";
    const std::string beforeSchemes = start + R"(, "catalogue": {"fingerprint": ""}, "schemes": )";
    const std::string beforeId = beforeSchemes + R"([{"scheme": "balanced", "parameters": [{"id": )";
    const std::vector<std::pair<std::string, std::string>> reasons = {
        {"[]", "it has another format or version"},
        {"{}", "it has another format or version"},
        {start + "}", "key 'catalogue' not found"},
        {beforeSchemes + R"([{"scheme": "any"}]})",
         "\"any\" is not a power scheme: specify its GUID, or balanced, high-performance or power-saver"},
        {beforeId + R"(4294967297, "acIndex": 0, "dcIndex": 0}]}]})", "4294967297 is not a 32-bit integer"},
        {beforeId + R"(1, "acIndex": 18446744073709551615, "dcIndex": 0}]}]})",
         "18446744073709551615 is not a 32-bit integer"},
        {beforeId + R"(1, "acIndex": 0, "dcIndex": 1.5}]}]})", "1.5 is not a 32-bit integer"},
    };
    for (const auto& [content, reason] : reasons) {
        WriteFile(File(L"a.json"), content);
        ExpectError({L"import", File(L"a.json")}, Failure,
                    "The file " + Utf8(File(L"a.json")) + " is not an export of zotdamctl: " + reason + ".");
    }
}

TEST_F(ImportCommandTest, ReadOnlyUserSettingsAreAnError) {
    Export(L"a.json");
    Output({L"reset"});
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_READONLY);
    ExpectError({L"import", File(L"a.json")}, Failure, UserFile() + " cannot be written.");
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(ImportCommandTest, UserSettingsInUseAreAnError) {
    Export(L"a.json");
    ExpectNeedsUserSettings({L"import", File(L"a.json")});
}

using BackupCommandTest = TransferTest;

TEST_F(BackupCommandTest, BackupIsCopyOfUserSettings) {
    const std::string backup = JsonOutput({L"backup"})["backup"];
    EXPECT_EQ(ReadFile(std::filesystem::path{backup}), UserSettings());
    EXPECT_TRUE(backup.starts_with(Utf8(installation.UserFile()) + ".2")) << backup;
}

TEST_F(BackupCommandTest, SecondBackupHasAnotherName) {
    EXPECT_NE(JsonOutput({L"backup"})["backup"], JsonOutput({L"backup"})["backup"]);
}

TEST_F(BackupCommandTest, FileCanBeSpecified) {
    EXPECT_EQ(Output({L"backup", File(L"copy.xml")}), "Backup: " + Utf8(File(L"copy.xml")) + "\n");
    EXPECT_EQ(ReadFile(File(L"copy.xml")), UserSettings());
}

TEST_F(BackupCommandTest, DataFilesAreNotOverwritten) {
    WriteBase("<ZOTBase/>");
    WriteEntries("");
    for (const std::filesystem::path& file : {installation.UserFile(), installation.DefaultsFile(),
                                              installation.BaseFile(), installation.StringTableFile()}) {
        const std::string before = ReadFile(file);
        const std::filesystem::path otherSpelling = file.parent_path() / L"." / file.filename();
        for (const Arguments& arguments : {Arguments{L"backup", otherSpelling},
                                           {L"export", otherSpelling},
                                           {L"report", L"--output", otherSpelling}})
            EXPECT_EQ(Run(arguments).exitStatus, WrongUsage);
        EXPECT_EQ(ReadFile(file), before);
    }
    ExpectError(
        {L"export", installation.UserFile()}, WrongUsage,
        "The file " + Utf8(installation.UserFile()) + " is a data file of the suite: specify another one.");
}

TEST_F(BackupCommandTest, MissingUserSettingsAreAnError) {
    std::filesystem::remove(installation.UserFile());
    ExpectError({L"backup"}, Failure, UserFile() + " does not exist.");
}

TEST_F(BackupCommandTest, RestoreReplacesUserSettings) {
    const std::string before = UserSettings();
    Output({L"backup", File(L"copy.xml")});
    Output({L"reset"});
    const std::string reset = UserSettings();
    const Json json = JsonOutput({L"restore", File(L"copy.xml")});
    EXPECT_EQ(UserSettings(), before);
    EXPECT_EQ(json["file"], Utf8(installation.UserFile()));
    EXPECT_EQ(ReadFile(std::filesystem::path{json["backup"].get<std::string>()}), reset);
}

TEST_F(BackupCommandTest, RestoreCreatesMissingUserSettings) {
    const std::string before = UserSettings();
    Output({L"backup", File(L"copy.xml")});
    std::filesystem::remove(installation.UserFile());
    EXPECT_EQ(JsonOutput({L"restore", File(L"copy.xml")})["backup"], nullptr);
    EXPECT_EQ(UserSettings(), before);
}

TEST_F(BackupCommandTest, BackupOfCatalogueRestoresCatalogue) {
    const std::string before = Defaults();
    WriteFile(File(L"copy.xml"), before);
    WriteFunctions(Brightness);
    EXPECT_EQ(JsonOutput({L"restore", File(L"copy.xml")})["file"], Utf8(installation.DefaultsFile()));
    EXPECT_EQ(Defaults(), before);
}

TEST_F(BackupCommandTest, OtherFilesAreNotRestored) {
    const std::string before = UserSettings();
    for (const char* const content : {"", "<OrloPowerCfg>", "<ZOTBase/>"}) {
        WriteFile(File(L"copy.xml"), content);
        ExpectError(
            {L"restore", File(L"copy.xml")}, Failure,
            "The file " + Utf8(File(L"copy.xml")) + " is neither a user settings file nor a defaults file.");
    }
    EXPECT_EQ(UserSettings(), before);
}

TEST_F(BackupCommandTest, UserSettingsInUseAreAnError) {
    ExpectNeedsUserSettings({L"backup"});
    Output({L"backup", File(L"copy.xml")});
    ExpectNeedsUserSettings({L"restore", File(L"copy.xml")});
}

class DiffWithTest : public TransferTest {
protected:
    Json DiffWith(const std::filesystem::path& path) const {
        return JsonOutput({L"diff", L"balanced", L"--with", path, L"--ac"})["acDifferences"];
    }

    void ExpectDarkToBright(const std::filesystem::path& path) const {
        const Json differences = DiffWith(path);
        ASSERT_EQ(differences.size(), 1);
        EXPECT_EQ(differences[0]["fromLabel"], "Dark");
        EXPECT_EQ(differences[0]["toLabel"], "Bright");
    }

    void WriteOther(const std::filesystem::path& file) const {
        std::filesystem::create_directories(file.parent_path());
        WriteFile(file, OldUserFile(OldScheme(BalancedText, OldFunction(1, 0, 1))));
    }
};

TEST_F(DiffWithTest, FileOfOtherMachineIsCompared) {
    WriteOther(File(L"other.xml"));
    ExpectDarkToBright(File(L"other.xml"));
}

TEST_F(DiffWithTest, FolderOfOtherMachineIsCompared) {
    const std::filesystem::path inFolder =
        std::filesystem::path{L"Orlo Corporation"} / L"QUEN Power Management" / L"ZOTPowercfg.xml";
    WriteOther(File(L"A") / L"ProgramData" / inFolder);
    ExpectDarkToBright(File(L"A"));
    ExpectDarkToBright(File(L"A") / L"ProgramData");
    ExpectDarkToBright((File(L"A") / L"ProgramData" / inFolder).parent_path());
}

TEST_F(DiffWithTest, ExportIsCompared) {
    Export(L"a.json");
    EXPECT_EQ(DiffWith(File(L"a.json")), Json::array());
    Output({L"set", L"balanced", L"1=0,"});
    EXPECT_EQ(DiffWith(File(L"a.json"))[0]["toLabel"], "Dark");
}

TEST_F(DiffWithTest, TextNamesBothMachines) {
    WriteOther(File(L"other.xml"));
    EXPECT_EQ(Output({L"diff", L"balanced", L"--with", File(L"other.xml"), L"--ac"}),
              "Values of balanced (381b4222-f694-41f0-9685-ff5bb260df2e) in " + Utf8(File(L"other.xml")) +
                  "\n"
                  "that differ from those of balanced (381b4222-f694-41f0-9685-ff5bb260df2e)\n"
                  "\n"
                  "Plugged in:\n"
                  "\n"
                  "ID  Function    balanced (this machine)  balanced (other machine)\n"
                  " 1  Brightness  Dark (1)                 Bright (0)\n");
}

TEST_F(DiffWithTest, OtherSchemeCanBeCompared) {
    WriteOther(File(L"other.xml"));
    const Json json =
        JsonOutput({L"diff", L"high-performance", L"balanced", L"--with", File(L"other.xml"), L"--ac"});
    EXPECT_EQ(json["acDifferences"].size(), 1);
    EXPECT_EQ(json["acDifferences"][0]["name"], "Sleep");
}

TEST_F(DiffWithTest, UnreadableFileIsAnError) {
    ExpectError({L"diff", L"balanced", L"--with", File(L"x.xml")}, Failure,
                "The file " + Utf8(File(L"x.xml")) + " does not exist.");
    WriteFile(File(L"x.xml"), "<OrloPowerCfg>");
    ExpectError({L"diff", L"balanced", L"--with", File(L"x.xml")}, Failure,
                "The user settings in " + Utf8(File(L"x.xml")) + " are not well-formed.");
    std::filesystem::create_directory(File(L"B"));
    ExpectError({L"diff", L"balanced", L"--with", File(L"B")}, Failure,
                "The folder " + Utf8(File(L"B")) + " contains no ZOTPowercfg.xml.");
}

TEST_F(DiffWithTest, OtherSchemeOrMachineIsRequired) {
    ExpectError({L"diff", L"balanced"}, WrongUsage, "OTHER is required.");
}

}  // namespace ZOTDam::Test
