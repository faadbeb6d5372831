// Tests of the command line of zotdamctl: options and errors.
#include <thread>

#include "client/ClientTest.h"

namespace ZOTDam::Test {

class CommandLineTest : public ClientTest {
protected:
    // Creates a second installation with one function.
    std::filesystem::path MakeProgramFiles(const std::wstring& name) const {
        std::filesystem::path folder = installation.ProgramData() / name;
        std::filesystem::create_directories(DefaultsFile(folder).parent_path());
        WriteFile(DefaultsFile(folder), R"(<ZOTDefault><Functions><Function ID="1"><Display/><Commands/>
            <Default ACParamIndex="2" DCParamIndex="3"/></Function></Functions></ZOTDefault>)");
        return folder;
    }

    void ExpectUsage(Arguments command, const std::string& usage) const {
        command.emplace_back(L"--help");
        const std::string help = Output(command);
        EXPECT_NE(help.find("\nUsage: zotdamctl " + usage), std::string::npos) << help;
    }
};

TEST_F(CommandLineTest, ProgramFilesOptionSelectsFolder) {
    WriteDefaults(ThreeFunctions);
    const std::filesystem::path folder = MakeProgramFiles(L"Other Programs");
    EXPECT_EQ(JsonOutput({L"count", L"--program-files", folder}), Json({{"count", 1}}));
}

TEST_F(CommandLineTest, ProgramDataOptionSelectsFolder) {
    WriteDefaults(ThreeFunctions);
    const std::filesystem::path folder = installation.ProgramFiles() / L"Other Data";
    const std::filesystem::path file =
        folder / L"Orlo Corporation" / L"QUEN Power Management" / L"ZOTPowercfg.xml";
    std::filesystem::create_directories(file.parent_path());
    Output({L"--program-data", folder, L"set", L"balanced", L"1", L"8", L"9", L"--force"});
    EXPECT_NE(ReadFile(file).find(R"(ACParamIndex="8" DCParamIndex="9")"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(installation.UserFile()));
}

TEST_F(CommandLineTest, RelativeFolderIsResolved) {
    const std::filesystem::path folder = MakeProgramFiles(L"Other");
    const Outcome outcome =
        RunProgram(Client(), {L"--program-files", L"Other\\..\\Other", L"count"}, folder.parent_path());
    EXPECT_EQ(outcome.output, "1 function\n");
}

TEST_F(CommandLineTest, ForwardSlashesInFolderAreAccepted) {
    const std::filesystem::path folder = MakeProgramFiles(L"Other");
    EXPECT_EQ(Output({L"--program-files", folder.generic_wstring(), L"count"}), "1 function\n");
}

TEST_F(CommandLineTest, FolderBeginningWithSlashIsNotAnOption) {
    ExpectError({L"--program-files", L"/nowhere", L"count"}, Failure,
                MissingCatalogue(std::filesystem::absolute(L"/nowhere")));
}

TEST_F(CommandLineTest, NonAsciiFolderIsAccepted) {
    const std::filesystem::path folder = MakeProgramFiles(L"Grüße 日本 \U0001F50B");
    EXPECT_EQ(Output({L"--program-files", folder, L"count"}), "1 function\n");
}

TEST_F(CommandLineTest, NonAsciiFolderIsPrintedAsUtf8) {
    const std::filesystem::path folder = installation.ProgramData() / L"Grüße 日本 \U0001F50B";
    ExpectError({L"--program-files", folder, L"count"}, Failure, MissingCatalogue(folder));
}

TEST_F(CommandLineTest, EmptyFolderNameIsRejected) {
    ExpectError({L"count", L"--program-files", L""}, WrongUsage,
                "--program-files: the name of the folder is empty.");
    ExpectError({L"count", L"--program-data", L""}, WrongUsage,
                "--program-data: the name of the folder is empty.");
}

TEST_F(CommandLineTest, OptionsMayPrecedeOrFollowCommand) {
    WriteDefaults(ThreeFunctions);
    EXPECT_EQ(Json::parse(Output({L"--json", L"count"})), Json({{"count", 3}}));
    EXPECT_EQ(Json::parse(Output({L"count", L"--json"})), Json({{"count", 3}}));
}

TEST_F(CommandLineTest, HelpListsCommandsAndOptions) {
    const std::string help = Output({L"--help"});
    for (const char* const word :
         {"\n  count ", "\n  functions ", "\n  params ", "\n  current ", "\n  set ", "\n  reset ",
          "\n  commands ", "\n  diff ", "\n  setting ", "--program-files", "--program-data", "--json",
          "--help", "--version", "--licenses", "balanced, high-performance or power-saver"})
        EXPECT_NE(help.find(word), std::string::npos) << word;
}

TEST_F(CommandLineTest, EachCommandHasItsOwnHelp) {
    ExpectUsage({L"functions"}, "functions [OPTIONS] [ID...]\n");
    ExpectUsage({L"current"}, "current [OPTIONS] SCHEME\n");
    ExpectUsage({L"set"}, "set [OPTIONS] SCHEME VALUES...\n");
    ExpectUsage({L"commands"}, "commands [OPTIONS] SCHEME\n");
    ExpectUsage({L"diff"}, "diff [OPTIONS] SCHEME [OTHER]\n");
}

TEST_F(CommandLineTest, EachCommandHasExamples) {
    for (const Arguments& command : {Arguments{L"count"},
                                     {L"functions"},
                                     {L"base"},
                                     {L"adopt"},
                                     {L"spec-schemes"},
                                     {L"params"},
                                     {L"current"},
                                     {L"set"},
                                     {L"setacvalueindex"},
                                     {L"setdcvalueindex"},
                                     {L"reset"},
                                     {L"forget"},
                                     {L"list"},
                                     {L"aliases"},
                                     {L"export"},
                                     {L"import"},
                                     {L"backup"},
                                     {L"restore"},
                                     {L"help"},
                                     {L"commands"},
                                     {L"diff"},
                                     {L"doctor"},
                                     {L"report"},
                                     {L"setting", L"get"},
                                     {L"setting", L"list"},
                                     {L"setting", L"set"},
                                     {L"setting", L"init"},
                                     {L"completion"}}) {
        Arguments help = command;
        help.emplace_back(L"--help");
        std::string example = "\nExamples:\n  zotdamctl";
        for (const std::wstring& word : command)
            example += " " + Utf8(word);
        EXPECT_NE(Output(help).find(example), std::string::npos) << example;
    }
}

TEST_F(CommandLineTest, ColorOptionControlsBoldHeadings) {
    EXPECT_EQ(Output({L"aliases", L"--color", L"always"}).find("\x1b[1mGUID "), 0u);
    EXPECT_EQ(Output({L"aliases", L"--color", L"never"}).find("GUID "), 0u);
}

TEST_F(CommandLineTest, RedirectedOutputHasPlainHeadings) {
    EXPECT_EQ(Output({L"aliases"}), Output({L"aliases", L"--color", L"never"}));
    EXPECT_EQ(Output({L"aliases", L"--color", L"auto"}), Output({L"aliases", L"--color", L"never"}));
}

TEST_F(CommandLineTest, UnknownColorModeIsRejected) {
    ExpectError({L"aliases", L"--color", L"red"}, WrongUsage,
                "--color must be auto, always or never, not \"red\".");
}

TEST_F(CommandLineTest, CommandHelpListsItsOptions) {
    EXPECT_NE(Output({L"functions", L"--help"}).find("\n  --language TAG "), std::string::npos);
    EXPECT_NE(Output({L"diff", L"--help"}).find("\n  --ac "), std::string::npos);
    EXPECT_NE(Output({L"diff", L"--help"}).find("\n  --dc "), std::string::npos);
}

TEST_F(CommandLineTest, EachSubcommandHasItsOwnHelp) {
    ExpectUsage({L"setting"}, "setting [OPTIONS] SUBCOMMAND\n");
    ExpectUsage({L"setting", L"get"}, "setting get [OPTIONS] NAME\n");
    ExpectUsage({L"setting", L"set"}, "setting set [OPTIONS] NAME VALUE\n");
    ExpectUsage({L"setting", L"init"}, "setting init [OPTIONS]\n");
}

TEST_F(CommandLineTest, CommandHelpListsItsSubcommands) {
    const std::string help = Output({L"setting", L"--help"});
    for (const char* const word : {"\n  get ", "\n  set ", "\n  init "})
        EXPECT_NE(help.find(word), std::string::npos) << word;
}

TEST_F(CommandLineTest, VersionOptionPrintsVersion) {
    EXPECT_EQ(Output({L"--version"}), "zotdamctl " ZOTDAM_VERSION "\n");
    EXPECT_EQ(Output({L"-v"}), "zotdamctl " ZOTDAM_VERSION "\n");
}

TEST_F(CommandLineTest, MissingCommandIsRejectedWithHelp) {
    const Outcome outcome = Run({});
    EXPECT_EQ(outcome.exitStatus, WrongUsage);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "zotdamctl: No command is specified.\n\n" + Output({L"--help"}) + "\n");
}

TEST_F(CommandLineTest, MissingCommandIsOneSentenceInJson) {
    const Outcome outcome = Run({L"--json"});
    EXPECT_EQ(outcome.exitStatus, WrongUsage);
    EXPECT_EQ(Json::parse(outcome.output)["error"]["message"],
              "No command is specified. See \"zotdamctl --help\".");
}

TEST_F(CommandLineTest, MissingSubcommandIsRejected) {
    ExpectError({L"setting"}, WrongUsage, "A subcommand is required.");
}

TEST_F(CommandLineTest, OptionsMayPrecedeOrFollowSubcommand) {
    WriteUserSettings(R"(<OrloPowerCfg><CommonSettings Warning="15"/></OrloPowerCfg>)");
    EXPECT_EQ(Json::parse(Output({L"setting", L"--json", L"get", L"Warning"}))["value"], "15");
    EXPECT_EQ(Json::parse(Output({L"setting", L"get", L"Warning", L"--json"}))["value"], "15");
}

TEST_F(CommandLineTest, OptionWithoutArgumentIsRejected) {
    ExpectError({L"functions", L"--language"}, WrongUsage, "--language: 1 required TAG missing.");
    ExpectError({L"count", L"--program-files"}, WrongUsage, "--program-files: 1 required DIR missing.");
}

TEST_F(CommandLineTest, OptionOfOtherCommandIsRejected) {
    ExpectError({L"count", L"--language", L"de-DE"}, WrongUsage,
                "The following arguments were not expected: --language de-DE.");
}

TEST_F(CommandLineTest, UnknownCommandIsRejectedWithSuggestion) {
    EXPECT_EQ(Run({L"lst"}).errors,
              "zotdamctl: \"lst\" is not a command. Did you mean \"list\"? See \"zotdamctl --help\".\n");
    EXPECT_EQ(Run({L"whatever", L"--json"}).errors,
              "zotdamctl: \"whatever\" is not a command. See \"zotdamctl --help\".\n");
    EXPECT_EQ(
        Run({L"setting", L"gt"}).errors,
        "zotdamctl: \"gt\" is not a command of \"setting\". Did you mean \"get\"? See \"zotdamctl setting "
        "--help\".\n");
    EXPECT_EQ(Run({L"lst"}).exitStatus, WrongUsage);
}

TEST_F(CommandLineTest, UsageErrorIsJsonToo) {
    ExpectJsonError({L"lst"}, "usage", nullptr);
    ExpectJsonError({L"set", L"balanced", L"1"}, "usage", nullptr);
}

TEST_F(CommandLineTest, HelpCommandEqualsHelpOption) {
    EXPECT_EQ(Output({L"help"}), Output({L"--help"}));
    EXPECT_EQ(Output({L"help", L"set"}), Output({L"set", L"--help"}));
    EXPECT_EQ(Output({L"help", L"setting", L"get"}), Output({L"setting", L"get", L"--help"}));
    ExpectError({L"help", L"ste"}, WrongUsage, "\"ste\" is not a command. Did you mean \"set\"?");
}

TEST_F(CommandLineTest, SlashWithQuestionMarkRequestsHelp) {
    EXPECT_EQ(Output({L"/?"}), Output({L"--help"}));
    EXPECT_EQ(Output({L"set", L"/?"}), Output({L"set", L"--help"}));
}

TEST_F(CommandLineTest, WaitOptionWaitsForFileInUse) {
    WriteDefaults(ThreeFunctions);
    const ULONGLONG start = GetTickCount64();
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_EQ(Run({L"params", L"balanced", L"--wait", L"1"}).exitStatus, InUse);
    EXPECT_GE(GetTickCount64() - start, 1000u);
}

TEST_F(CommandLineTest, CommandSucceedsWhenFileBecomesFree) {
    WriteDefaults(ThreeFunctions);
    SecondProcess other{HoldMutex, {UserMarker}};
    std::thread release{[&] {
        Sleep(500);
        other.Kill();
    }};
    EXPECT_EQ(Run({L"set", L"balanced", L"1", L"5", L"6", L"--force", L"--wait", L"60"}).exitStatus, Success);
    release.join();
    EXPECT_EQ(IndexesOf({L"params", L"balanced"})[0], Param(1, 5, 6));
}

TEST_F(CommandLineTest, ReportOnBusyFileIsWrittenButFails) {
    WriteDefaults(ThreeFunctions);
    const std::filesystem::path page = installation.ProgramData() / L"page.html";
    SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_EQ(Run({L"report", L"--output", page}).exitStatus, InUse);
    EXPECT_TRUE(std::filesystem::exists(page));
    std::thread release{[&] {
        Sleep(500);
        other.Kill();
    }};
    EXPECT_EQ(Run({L"report", L"--output", page, L"--wait", L"60"}).exitStatus, Success);
    release.join();
}

TEST_F(CommandLineTest, ReportIsNamedWithAbsolutePath) {
    WriteDefaults(ThreeFunctions);
    const std::filesystem::path page = installation.ProgramData() / L"page.html";
    const Arguments arguments = {L"--program-files", installation.ProgramFiles(),
                                 L"--program-data",  installation.ProgramData(),
                                 L"report",          L"--output",
                                 L"page.html"};
    const Outcome outcome = RunProgram(Client(), arguments, page.parent_path());
    EXPECT_EQ(outcome.output, "The report was written to " + Utf8(page) + ".\n");
    EXPECT_TRUE(exists(page));
}

TEST_F(CommandLineTest, InvalidWaitingTimeIsRejected) {
    for (const wchar_t* const time : {L"-1", L"soon", L""})
        ExpectError({L"count", L"--wait", time}, WrongUsage,
                    "--wait must be a number of seconds, not \"" + Utf8(time) + "\".");
}

TEST_F(CommandLineTest, UnknownOptionIsRejected) {
    ExpectError({L"count", L"--xml"}, WrongUsage, "The following argument was not expected: --xml.");
}

TEST_F(CommandLineTest, SecondCommandIsRejected) {
    ExpectError({L"count", L"reset"}, WrongUsage, "The following argument was not expected: reset.");
}

TEST_F(CommandLineTest, MissingArgumentIsRejected) {
    ExpectError({L"params"}, WrongUsage, "SCHEME is required.");
    ExpectError({L"set", L"balanced", L"1", L"2"}, WrongUsage, "DC is required.");
    ExpectError({L"diff", L"balanced"}, WrongUsage, "OTHER is required.");
    ExpectError({L"setting", L"get"}, WrongUsage, "NAME is required.");
    ExpectError({L"setting", L"set", L"Warning"}, WrongUsage, "VALUE is required.");
}

TEST_F(CommandLineTest, ExtraArgumentIsRejected) {
    ExpectError({L"set", L"balanced", L"1", L"2", L"3", L"4"}, WrongUsage,
                "The following argument was not expected: 4.");
    ExpectError({L"diff", L"balanced", L"balanced", L"balanced"}, WrongUsage,
                "The following argument was not expected: balanced.");
    ExpectError({L"setting", L"set", L"Warning", L"15", L"%"}, WrongUsage,
                "The following argument was not expected: %.");
}

}  // namespace ZOTDam::Test
