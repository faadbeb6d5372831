// Tests of zotdamctl doctor: the files that it examines, and its report.
#include "client/DoctorTest.h"
#include "support/Repeat.h"

namespace ZOTDam::Test {

namespace {

std::string Replace(std::string text, const std::string& part, const std::string& replacement) {
    return text.replace(text.find(part), part.size(), replacement);
}

}  // namespace

class DoctorReportTest : public DoctorTest {
protected:
    // Replaces the first occurrence of a part of a healthy file.
    void Change(File file, const std::string& part, const std::string& replacement) const {
        WriteFile(PathOf(file), Replace(Healthy(file), part, replacement));
    }

    std::string OutputWith(DWORD exitStatus, const Arguments& arguments = {}) const {
        const Outcome outcome = RunDoctor(arguments);
        EXPECT_EQ(outcome.exitStatus, exitStatus);
        EXPECT_EQ(outcome.errors, "");
        return outcome.output;
    }

    // Returns the problem of the only finding.
    std::string Problem(const Arguments& arguments = {L"--json"}) const {
        const Json findings = FindingsWith(1, arguments);
        EXPECT_EQ(findings.size(), 1u) << findings;
        return findings.empty() ? "" : findings[0]["problem"];
    }

    // For tests of the texts of the defaults, which the base catalogue otherwise contains as well.
    void WriteBaseWithoutFunctions() const {
        WriteBase("<ZOTBase><CommonSettings/><Functions/><SpecSchemes/></ZOTBase>");
    }

    void WriteTableFor(const std::wstring& language, const std::string& content) const {
        std::filesystem::create_directories(CopyFor(language).parent_path());
        WriteFile(CopyFor(language), content);
    }

    std::map<File, std::string> AllFiles() const {
        std::map<File, std::string> files;
        for (const File file : {File::Base, File::Defaults, File::UserSettings, File::StringTable})
            files[file] = ReadFile(PathOf(file));
        return files;
    }
};

TEST_F(DoctorReportTest, ValidInstallationHasNoFindings) {
    EXPECT_EQ(OutputWith(0), "no findings\n");
    EXPECT_EQ(OutputWith(0, {L"--json"}), "{\n  \"findings\": []\n}\n");
}

TEST_F(DoctorReportTest, TextHasLineForEachFinding) {
    Change(File::Defaults, R"(Flag="3" Type="4")", R"(Flag="x" Kind="4")");
    Change(File::UserSettings, R"(ACParamIndex="1" DCParamIndex="0"/><)",
           R"(ACParamIndex="2" DCParamIndex="0"/><)");
    const std::string defaults = Utf8(installation.DefaultsFile());
    EXPECT_EQ(OutputWith(1),
              defaults +
                  ":12: unknown-attribute: the attribute \"Kind\" is unknown here; the "
                  "library ignores it\n" +
                  defaults +
                  ":12: invalid-number: \"Flag\" is \"x\", which is not a 32-bit "
                  "number; the library reads it as 0\n" +
                  defaults +
                  ":12: inherited-attribute: \"Type\" is missing; it inherits \"2\" "
                  "from /ZOTDefault/Functions/Function[1]\n" +
                  Utf8(installation.UserFile()) +
                  ":3: index-out-of-range: \"ACParamIndex\" is 2, but the function has 2 options; "
                  "it selects no option, and commands use 0\n"
                  "4 findings in 2 files\n");
}

TEST_F(DoctorReportTest, FindingAboutWholeFileHasNoLine) {
    std::filesystem::remove(installation.StringTableFile());
    EXPECT_EQ(OutputWith(2),
              Utf8(installation.StringTableFile()) +
                  ": missing-file: the file does not exist; the user sees keys instead of texts\n"
                  "1 finding in 1 file; 1 file could not be examined\n");
}

TEST_F(DoctorReportTest, JsonListsFindingsWithFieldsInOrder) {
    Change(File::Defaults, R"(ID="2" )", "");
    const std::string file = Json(Utf8(installation.DefaultsFile())).dump();
    EXPECT_EQ(OutputWith(1, {L"--json"}), R"({
  "findings": [
    {
      "file": )" + file + R"(,
      "line": 12,
      "column": 3,
      "element": "/ZOTDefault/Functions/Function[2]",
      "kind": "missing-id",
      "problem": "\"ID\" is missing",
      "consequence": "the library cannot load the catalogue"
    }
  ]
}
)");
}

TEST_F(DoctorReportTest, JsonHasNoPlaceForWholeFile) {
    std::filesystem::remove(installation.BaseFile());
    const Json finding = FindingsWith(2)[0];
    for (const char* const key : {"element", "line", "column"})
        EXPECT_EQ(finding.at(key), Json());
}

TEST_F(DoctorReportTest, FindingsAreListedInDocumentOrder) {
    std::string defaults = Replace(Healthy(File::Defaults), R"(Label="DarkKey")", R"(Label="NewKey")");
    defaults = Replace(defaults, R"(Flag="3")", R"(Flag="x")");
    WriteDefaults(Replace(defaults, R"(Warning="10"/>)", R"(Warning="10"><Eco/></CommonSettings>)"));
    const Json findings = FindingsWith(1);
    ASSERT_EQ(findings.size(), 3u);
    EXPECT_EQ(findings[0]["kind"], "setting-as-element");
    EXPECT_EQ(findings[1]["kind"], "missing-translation");
    EXPECT_EQ(findings[2]["kind"], "invalid-number");
}

TEST_F(DoctorReportTest, OtherFilesAreExaminedDespiteMalformedFile) {
    WriteUserSettings("<OrloPowerCfg>");
    Change(File::Defaults, R"(Flag="3")", R"(Flag="x")");
    const Json findings = FindingsWith(2);
    ASSERT_EQ(findings.size(), 2u) << "what is wrong with the other files is told all the same";
    EXPECT_EQ(findings[0]["kind"], "invalid-number");
    EXPECT_EQ(findings[1]["kind"], "not-well-formed");
}

TEST_F(DoctorReportTest, MalformedFileIsReportedWithReasonAndPlace) {
    WriteUserSettings("<OrloPowerCfg>\n<A></B></OrloPowerCfg>");
    const Json finding = FindingsWith(2)[0];
    const std::string problem = finding["problem"];
    EXPECT_TRUE(problem.starts_with("the file is not well-formed: ")) << problem;
    EXPECT_EQ(finding["line"], 2);
}

TEST_F(DoctorReportTest, RejectedCatalogueCausesNoUnknownFunctionFindings) {
    std::string defaults = Replace(Healthy(File::Defaults), R"(ID="2" )", R"(ID="-2" )");
    WriteDefaults(defaults);
    EXPECT_EQ(FindingsWith(1).size(), 1u);
}

TEST_F(DoctorReportTest, MissingTranslationOfKeyIsReportedOnce) {
    WriteBaseWithoutFunctions();
    Change(File::StringTable, Entry("ScreenKey", "Screen text"), "");
    Change(File::Defaults, "PowerKey", "SCREENKEY");
    EXPECT_EQ(Problem(), "\"Group\" is \"ScreenKey\", which is missing from StringTable.xml");
}

TEST_F(DoctorReportTest, SchemaReferenceIsNoFinding) {
    const std::string reference = R"( xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" )"
                                  R"(xsi:noNamespaceSchemaLocation="ZOTDefault.xsd">)";
    Change(File::Defaults, "<ZOTDefault>", "<ZOTDefault" + reference);
    EXPECT_EQ(OutputWith(0), "no findings\n");
    EXPECT_EQ(FuncCount(), 2u) << "in the library";
}

TEST_F(DoctorReportTest, StringTableKeysAreCaseInsensitive) {
    Change(File::StringTable, "ScreenKey", "SCREENkey");
    EXPECT_EQ(OutputWith(0), "no findings\n");
}

TEST_F(DoctorReportTest, OnlyInvalidNumbersAreReported) {
    for (const char* const number : {"3", "+3", "-3", "003", " 3", "3 ", "-2147483648", "2147483647"}) {
        Change(File::Defaults, R"(Flag="3")", "Flag=\"" + std::string{number} + "\"");
        EXPECT_EQ(OutputWith(0), "no findings\n") << number;
    }
    for (const char* const number :
         {"", "+", "-", "+-3", "--3", "- 3", "3 4", "0x3", "3.0", "1e3", "2147483648"}) {
        Change(File::Defaults, R"(Flag="3")", "Flag=\"" + std::string{number} + "\"");
        EXPECT_TRUE(Problem().ends_with(", which is not a 32-bit number")) << number;
    }
}

TEST_F(DoctorReportTest, TextsOfMaximumLengthHaveNoFindings) {
    WriteBaseWithoutFunctions();
    const std::string longest(TextCapacity - 1, 'n');
    Change(File::Defaults, "SleepKey", longest);
    WriteStringTable(Replace(HealthyStringTable(), "SleepKey", longest));
    EXPECT_EQ(OutputWith(0), "no findings\n");
}

TEST_F(DoctorReportTest, ForeignStringTableContentIsIgnored) {
    Change(File::StringTable, "<root>",
           R"(<root><resheader name="version"><value>2.0</value></resheader><!-- no entry -->)");
    Change(File::StringTable, "<value>Never</value>", "<value>Never</value><comment>a time</comment>");
    EXPECT_EQ(OutputWith(0), "no findings\n");
}

TEST_F(DoctorReportTest, NonAsciiNamesAreWrittenAsUtf8) {
    Change(File::Defaults, "SleepKey", "画面 &amp; &lt;größer&gt; \U0001F50B");
    EXPECT_EQ(Problem(), "\"Name\" is \"画面 & <größer> \U0001F50B\", which is missing from StringTable.xml");
    Change(File::Defaults, "</Functions>", "</Functions><Größe/>");
    EXPECT_EQ(FindingsWith(1)[0]["element"], "/ZOTDefault/Größe");
}

TEST_F(DoctorReportTest, LineBreakInTextBecomesSpace) {
    Change(File::Defaults, "SleepKey", "two&#10;lines");
    EXPECT_EQ(Problem(), "\"Name\" is \"two lines\", which is missing from StringTable.xml");
}

TEST_F(DoctorReportTest, LongTextIsShortened) {
    Change(File::Defaults, "SleepKey", std::string(100, 'n'));
    EXPECT_EQ(Problem(),
              "\"Name\" is \"" + std::string(60, 'n') + "...\", which is missing from StringTable.xml");
}

TEST_F(DoctorReportTest, Utf16FileIsRead) {
    std::wstring wide = L"\xFEFF<ZOTDefault><Functions/></ZOTDefault>";
    WriteDefaults({reinterpret_cast<const char*>(wide.data()), wide.size() * sizeof(wchar_t)});
    std::filesystem::remove(installation.UserFile());
    EXPECT_EQ(OutputWith(0), "no findings\n");
}

TEST_F(DoctorReportTest, DeeplyNestedFileIsRead) {
    Change(File::Defaults, "</Functions>", "</Functions>" + Repeat("<A>", 200) + Repeat("</A>", 200));
    EXPECT_EQ(FindingsWith(1)[0]["element"], "/ZOTDefault/A");
}

TEST_F(DoctorReportTest, ExaminationChangesNoFile) {
    Change(File::UserSettings, R"( GUID="381b4222-f694-41f0-9685-ff5bb260df2e")", "");
    const auto before = AllFiles();
    OutputWith(1);
    EXPECT_EQ(AllFiles(), before);
}

TEST_F(DoctorReportTest, HelpListsExitCodesAndLanguageOption) {
    const std::string help = Output({L"doctor", L"--help"});
    EXPECT_NE(
        help.find("\nThe exit code is 0 if there are no findings, 1 if there are findings, and 2 if a file "),
        std::string::npos)
        << help;
    EXPECT_NE(help.find("\n  --language TAG "), std::string::npos);
    EXPECT_NE(Output({L"--help"}).find("\n  doctor "), std::string::npos);
}

// ---- The string tables ----

TEST_F(DoctorReportTest, MissingTranslationNamesAllStringTables) {
    WriteBaseWithoutFunctions();
    Change(File::StringTable, Entry("SleepKey", "Sleep text"), "");
    WriteTableFor(L"de-DE", HealthyStringTable());
    WriteTableFor(L"fr-FR", Replace(HealthyStringTable(), Entry("SleepKey", "Sleep text"), ""));
    EXPECT_EQ(Problem(),
              "\"Name\" is \"SleepKey\", which is missing from StringTable.xml, fr-FR\\StringTable.xml");
    EXPECT_EQ(Problem({L"--json", L"--all-languages"}), Problem());
}

TEST_F(DoctorReportTest, LanguageOptionSelectsStringTable) {
    WriteBaseWithoutFunctions();
    WriteTableFor(L"de-DE", StringTable(""));
    WriteTableFor(L"fr-FR", HealthyStringTable());
    EXPECT_EQ(OutputWith(0, {L"--language", L"fr-FR"}), "no findings\n");
    EXPECT_EQ(FindingsWith(1, {L"--json", L"--language", L"de-DE"}).size(), 10u);
}

TEST_F(DoctorReportTest, LanguageWithoutCopyUsesNeutralTable) {
    WriteBaseWithoutFunctions();
    Change(File::StringTable, Entry("SleepKey", "Sleep text"), "");
    const Json findings = FindingsWith(1, {L"--json", L"--language", L"fr-FR"});
    ASSERT_EQ(findings.size(), 2u);
    EXPECT_EQ(findings[0]["kind"], "missing-translation");
    EXPECT_EQ(findings[1]["file"], Utf8(CopyFor(L"fr-FR")));
    EXPECT_EQ(findings[1]["kind"], "missing-file");
    EXPECT_EQ(findings[1]["consequence"], "the library uses the neutral string table");
}

TEST_F(DoctorReportTest, UnreadableLanguageCopyIsReported) {
    WriteTableFor(L"de-DE", "<root>");
    const Json finding = FindingsWith(2)[0];
    EXPECT_EQ(finding["file"], Utf8(CopyFor(L"de-DE")));
    EXPECT_EQ(finding["consequence"], "users of this language see keys instead of texts");
}

TEST_F(DoctorReportTest, LanguageCopyWithMuiExtensionIsReported) {
    WriteTableFor(L"de-DE", HealthyStringTable());
    std::filesystem::rename(CopyFor(L"de-DE"), MuiCopyFor(L"de-DE"));
    const Json finding = FindingsWith(1)[0];
    EXPECT_EQ(finding["file"], Utf8(MuiCopyFor(L"de-DE")));
    EXPECT_EQ(finding["kind"], "misnamed-copy");
    EXPECT_EQ(finding["consequence"], "Windows does not find it; it must be named StringTable.xml");
}

TEST_F(DoctorReportTest, ContradictingArgumentsAreRejected) {
    const std::string sentence = "--language cannot be combined with FILE or --all-languages.";
    ExpectError({L"doctor", L"--language", L"de-DE", L"--all-languages"}, WrongUsage, sentence);
    ExpectError({L"doctor", L"--language", L"de-DE", L"ZOTBase.xml"}, WrongUsage, sentence);
}

TEST_F(DoctorReportTest, InvalidLanguageNameIsRejected) {
    ExpectError({L"doctor", L"--language", L"../x"}, WrongUsage,
                "\"../x\" is not a language name: specify a name such as de-DE.");
}

// ---- One file ----

class DoctorOneFileTest : public DoctorReportTest {
protected:
    // The file is in a folder that has no other data files.
    std::filesystem::path Write(const std::wstring& name, const std::string& content) const {
        std::filesystem::path path = installation.UserFile().parent_path() / name;
        WriteFile(path, content);
        return path;
    }

    Json Finding(const std::filesystem::path& file, DWORD exitStatus = 1) const {
        const Json findings = FindingsWith(exitStatus, {L"--json", file});
        EXPECT_EQ(findings.size(), 1u) << findings;
        return findings.empty() ? Json() : findings[0];
    }
};

TEST_F(DoctorOneFileTest, FilesOfAllKindsAreRecognisedByName) {
    EXPECT_EQ(Finding(Write(L"ZOTDefault.xml", "<Any/>"))["kind"], "missing-section");
    EXPECT_EQ(Finding(Write(L"zotpowercfg.XML", "<Any><Scheme/></Any>"))["kind"], "unknown-element");
    EXPECT_EQ(Finding(Write(L"StringTable.xml", "<Any><data/></Any>"))["kind"], "missing-name");
    EXPECT_EQ(Finding(Write(L"StringTable.xml.mui", "<Any><data/></Any>"))["kind"], "missing-name");
}

TEST_F(DoctorOneFileTest, FileWithOtherNameIsRecognisedByRoot) {
    EXPECT_EQ(OutputWith(0, {Write(L"mine.xml", HealthyBase)}), "no findings\n");
    const std::filesystem::path file = Write(L"mine.xml", Replace(HealthyBase, R"(Flag="3")", R"(Flag="x")"));
    EXPECT_EQ(OutputWith(1, {file}),
              Utf8(file) +
                  ":10: invalid-number: \"Flag\" is \"x\", which is not a 32-bit number; the "
                  "library reads it as 0\n1 finding in 1 file\n");
}

TEST_F(DoctorOneFileTest, OtherXmlFileIsNotExamined) {
    EXPECT_EQ(Finding(Write(L"mine.xml", "<html/>"), 2)["kind"], "unknown-file");
}

TEST_F(DoctorOneFileTest, MissingFileIsReported) {
    for (const wchar_t* const name : {L"none.xml", L"ZOTBase.xml", L"ZOTPowercfg.xml"}) {
        std::filesystem::remove(installation.UserFile());
        EXPECT_EQ(Finding(installation.UserFile().replace_filename(name), 2)["kind"], "missing-file") << name;
    }
}

TEST_F(DoctorOneFileTest, InstallationIsNotExamined) {
    std::filesystem::remove(installation.DefaultsFile());
    EXPECT_EQ(OutputWith(0, {installation.UserFile()}), "no findings\n");
}

// ---- The samples ----

TEST_F(DoctorReportTest, SamplesHaveNoFindings) {
    const std::filesystem::path samples = ZOTDAM_SAMPLES;
    const Arguments folders = {L"doctor", L"--program-files", samples / L"Program Files", L"--program-data",
                               samples / L"ProgramData"};
    const Outcome outcome = RunProgram(Client(), folders, Library::ProgramFolder());
    EXPECT_EQ(outcome.output, "no findings\n");
    EXPECT_EQ(outcome.exitStatus, Success);
}

}  // namespace ZOTDam::Test
