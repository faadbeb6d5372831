// Tests of zotdamctl doctor: the files that it examines, and its report.
#include "client/DoctorTest.h"

namespace ZOTDam::Test {

namespace {

std::string Replace(std::string text, const std::string& part, const std::string& replacement) {
    return text.replace(text.find(part), part.size(), replacement);
}

std::wstring LanguageOfUser() {
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = {};
    LCIDToLocaleName(MAKELCID(GetUserDefaultUILanguage(), SORT_DEFAULT), name, LOCALE_NAME_MAX_LENGTH, 0);
    return name;
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

TEST_F(DoctorReportTest, TextGroupsFindingsByFileAndElement) {
    Change(File::Defaults, R"(Flag="3" Type="4")", R"(Flag="x" Kind="4")");
    Change(File::UserSettings, R"(ACParamIndex="1" DCParamIndex="0"/><)",
           R"(ACParamIndex="2" DCParamIndex="0"/><)");
    EXPECT_EQ(OutputWith(1),
              "defaults file " + Utf8(installation.DefaultsFile()) +
                  "\n"
                  "    /ZOTDefault/Functions/Function[2]\n"
                  "        unknown-attribute    the attribute \"Kind\" is unknown here\n"
                  "                             the library ignores it\n"
                  "        invalid-number       \"Flag\" is \"x\", which is not a 32-bit number\n"
                  "                             the library reads it as 0\n"
                  "        inherited-attribute  \"Type\" is missing\n"
                  "                             it inherits \"2\" from "
                  "/ZOTDefault/Functions/Function[1]\n"
                  "\n"
                  "user settings file " +
                  Utf8(installation.UserFile()) +
                  "\n"
                  "    /OrloPowerCfg/PowerSchemes/PowerScheme[1]/Function[1]\n"
                  "        index-out-of-range   \"ACParamIndex\" is 2, but the function has 2 "
                  "options\n"
                  "                             it selects no option, and commands use 0\n"
                  "\n"
                  "4 findings in 2 files\n");
}

TEST_F(DoctorReportTest, FindingAboutWholeFileNamesNoElement) {
    std::filesystem::remove(installation.StringTableFile());
    EXPECT_EQ(OutputWith(2), "string table " + Utf8(installation.StringTableFile()) +
                                 "\n"
                                 "        missing-file  the file does not exist\n"
                                 "                      the user sees keys instead of texts\n"
                                 "\n"
                                 "1 finding in 1 file; 1 file could not be examined\n");
}

TEST_F(DoctorReportTest, JsonListsFindingsWithFieldsInOrder) {
    Change(File::Defaults, R"(ID="2" )", "");
    const std::string file = Json(Utf8(installation.DefaultsFile())).dump();
    EXPECT_EQ(OutputWith(1, {L"--json"}), R"({
  "findings": [
    {
      "file": )" + file + R"(,
      "element": "/ZOTDefault/Functions/Function[2]",
      "kind": "missing-id",
      "problem": "\"ID\" is missing",
      "consequence": "the library cannot load the catalogue"
    }
  ]
}
)");
}

TEST_F(DoctorReportTest, JsonElementIsNullForWholeFile) {
    std::filesystem::remove(installation.BaseFile());
    EXPECT_EQ(FindingsWith(2)[0]["element"], Json());
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

TEST_F(DoctorReportTest, ProblemSaysFileIsNotWellFormed) {
    WriteUserSettings("<OrloPowerCfg>\n<A></B></OrloPowerCfg>");
    const std::string problem = FindingsWith(2)[0]["problem"];
    EXPECT_TRUE(problem.starts_with("the file is not well-formed")) << problem;
}

TEST_F(DoctorReportTest, RejectedCatalogueCausesNoUnknownFunctionFindings) {
    std::string defaults = Replace(Healthy(File::Defaults), R"(ID="2" )", R"(ID="-2" )");
    WriteDefaults(defaults);
    EXPECT_EQ(FindingsWith(1).size(), 1u);
}

TEST_F(DoctorReportTest, MissingTranslationOfKeyIsReportedOnce) {
    Change(File::StringTable, Entry("ScreenKey", "Screen text"), "");
    Change(File::Defaults, "PowerKey", "SCREENKEY");
    EXPECT_EQ(Problem(), "\"Group\" is \"ScreenKey\", which is missing from StringTable.xml");
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
    std::string nested;
    for (int depth = 0; depth < 200; ++depth)
        nested = "<A>" + nested + "</A>";
    Change(File::Defaults, "</Functions>", "</Functions>" + nested);
    EXPECT_EQ(FindingsWith(1)[0]["element"], "/ZOTDefault/A");
}

TEST_F(DoctorReportTest, ExaminationChangesNoFile) {
    Change(File::UserSettings, R"( GUID="381b4222-f694-41f0-9685-ff5bb260df2e")", "");
    const auto before = AllFiles();
    OutputWith(1);
    EXPECT_EQ(AllFiles(), before);
}

TEST_F(DoctorReportTest, FilesInUseAreExamined) {
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_EQ(OutputWith(0), "no findings\n");
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

TEST_F(DoctorReportTest, LanguageOptionSelectsStringTable) {
    WriteCopy(L"de-DE", "");
    EXPECT_EQ(OutputWith(0), "no findings\n") << "of the user's";
    EXPECT_EQ(FindingsWith(1, {L"--json", L"--language", L"de-DE"}).size(), 10u);
}

TEST_F(DoctorReportTest, StringTableOfUserLanguageIsExamined) {
    std::filesystem::create_directories(CopyFor(LanguageOfUser()).parent_path());
    WriteFile(CopyFor(LanguageOfUser()), Replace(HealthyStringTable(), Entry("NeverKey", "Never"), ""));
    EXPECT_EQ(Problem(), "\"Label\" is \"NeverKey\", which is missing from StringTable.xml");
    EXPECT_EQ(GetFunctionInfo()[1].ac[1].second, L"NeverKey") << "in the library";
}

TEST_F(DoctorReportTest, MissingStringTableOfLanguageIsReported) {
    const Json finding = FindingsWith(2, {L"--json", L"--language", L"fr-FR"})[0];
    EXPECT_EQ(finding["file"], Utf8(CopyFor(L"fr-FR")));
    EXPECT_EQ(finding["kind"], "missing-file");
}

TEST_F(DoctorReportTest, InvalidLanguageNameIsRejected) {
    ExpectError({L"doctor", L"--language", L"../x"}, WrongUsage,
                "\"../x\" is not a language name: specify a name such as de-DE.");
}

// ---- The samples ----

TEST_F(DoctorReportTest, SamplesHaveNoFindings) {
    const std::filesystem::path samples = ZOTDAM_SAMPLES;
    const Arguments folders = {L"doctor", L"--program-files", samples / L"Program Files", L"--program-data",
                               samples / L"ProgramData"};
    for (const wchar_t* const language : {L"", L"de-DE", L"ja-JP"}) {
        Arguments arguments = folders;
        if (*language != L'\0')
            arguments.insert(arguments.end(), {L"--language", language});
        const Outcome outcome = RunProgram(Client(), arguments, Library::ProgramFolder());
        EXPECT_EQ(outcome.output, "no findings\n");
        EXPECT_EQ(outcome.exitStatus, Success);
    }
}

}  // namespace ZOTDam::Test
