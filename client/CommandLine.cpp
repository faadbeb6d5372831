#include "CommandLine.h"

#include <algorithm>
#include <CLI/CLI.hpp>
#include <sstream>
#include <utility>

#include "commands/Commands.h"
#include "Completion.h"
#include "Error.h"
#include "Licenses.h"
#include "Scheme.h"
#include "Text.h"

namespace ZOTDam::Client {

namespace {

std::optional<std::filesystem::path> FolderOf(const std::string& text) {
    if (text.empty())
        return {};
    return std::filesystem::path{ToUtf16(text)};
}

Styling ParseStyling(const std::string& when) {
    if (when == "always")
        return Styling::Always;
    if (when == "never")
        return Styling::Never;
    if (when == "auto")
        return Styling::Automatic;
    throw UsageError{"--color must be auto, always or never, not \"" + when + "\"."};
}

struct CompletionArguments {
    std::string shell;
};

Report WriteCompletion(const CompletionArguments& arguments);

class Parser {
public:
    Parser() {
        app.require_subcommand(0, 1);
        // Set before the commands are added, because commands inherit these settings. General options may
        // also follow the command, and a slash begins a path, not an option.
        app.fallthrough()->allow_windows_style_options(false);
        app.set_version_flag("--version", "zotdamctl " ZOTDAM_VERSION, "Print the version and exit");
        app.add_flag_callback(
            "--licenses",
            [] {
                throw CLI::CallForVersion{Licenses(), 0};
            },
            "Print the licences and exit");
        app.footer("SCHEME and OTHER are the GUID of a power scheme, or " + SchemeNames() + ".\n" +
                   "The options of zotdamctl may also follow the command.");
        AddGeneralOptions();
        CommandSet commands{app, invocation.action};
        AddCatalogueCommands(commands);
        AddBaseCommands(commands);
        AddParameterCommands(commands);
        AddSchemeCommands(commands);
        AddSettingCommands(commands);
        AddDoctorCommand(commands);
        AddCompletionCommand(commands);
    }

    const CLI::App& App() const noexcept { return app; }

    std::variant<Invocation, Information> Parse(std::vector<std::string> arguments) {
        std::ranges::reverse(arguments);  // the order that CLI11 expects
        try {
            app.parse(std::move(arguments));
        } catch (const CLI::Success& request) {
            std::ostringstream text;
            app.exit(request, text, text);
            return text.str();
        } catch (const CLI::ParseError& error) {
            throw UsageError{std::string{error.what()} + "."};
        }
        if (!invocation.action)
            throw UsageError{"No command is specified.\n\n" + app.help()};
        invocation.programFiles = FolderOf(programFiles);
        invocation.programData = FolderOf(programData);
        return invocation;
    }

private:
    void AddCompletionCommand(CommandSet& commands) {
        commands.Add<CompletionArguments>(
            "completion", "Write a completion script for a shell",
            {"completion bash >> ~/.bashrc", "completion powershell >> $PROFILE"},
            [](CLI::App& command, CompletionArguments& arguments) {
                AddArgument(command, "SHELL", arguments.shell, "bash or powershell");
            },
            WriteCompletion);
    }

    void AddGeneralOptions() {
        app.add_flag("--json", invocation.json, "Write JSON instead of tables");
        app.add_option_function<std::string>(
               "--color", [this](const std::string& when) { invocation.styling = ParseStyling(when); },
               "Show headings in bold: auto, always or never")
            ->type_name("WHEN")
            ->take_last();
        AddFolder("--program-files", programFiles, "The folder to use instead of %ProgramFiles%");
        AddFolder("--program-data", programData, "The folder to use instead of %ProgramData%");
    }

    void AddFolder(const char* name, std::string& folder, const char* description) {
        app.add_option(name, folder, description)
            ->type_name("DIR")
            ->take_last()
            ->check([](const std::string& text) {
                return std::string{text.empty() ? "the name of the folder is empty" : ""};
            });
    }

    CLI::App app{"Reads and changes the settings of QUEN Power Management.", "zotdamctl"};
    Invocation invocation;
    std::string programFiles;
    std::string programData;
};

Report WriteCompletion(const CompletionArguments& arguments) {
    const Parser parser;
    std::string script;
    if (arguments.shell == "bash")
        script = BashCompletion(parser.App());
    else if (arguments.shell == "powershell")
        script = PowerShellCompletion(parser.App());
    else
        throw UsageError{"SHELL must be bash or powershell, not \"" + arguments.shell + "\"."};
    return {script, {{"script", script}}};
}

}  // namespace

std::variant<Invocation, Information> ParseCommandLine(std::vector<std::string> arguments) {
    return Parser{}.Parse(std::move(arguments));
}

}  // namespace ZOTDam::Client
