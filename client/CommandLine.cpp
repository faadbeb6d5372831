#include "CommandLine.h"

#include <algorithm>
#include <CLI/CLI.hpp>
#include <sstream>
#include <utility>

#include "commands/Commands.h"
#include "Completion.h"
#include "Error.h"
#include "HelpPage.h"
#include "Licenses.h"
#include "Scheme.h"
#include "Suggestion.h"
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

int ParseSeconds(const std::string& text) {
    const auto seconds = TryParseNumber(text);
    if (!seconds || *seconds < 0)
        throw UsageError{"--wait must be a number of seconds, not \"" + text + "\"."};
    return *seconds;
}

struct CompletionArguments {
    std::string shell;
};

struct HelpArguments {
    std::vector<std::string> command;
};

Report WriteCompletion(const CompletionArguments& arguments);
Report WriteHelp(const HelpArguments& arguments);

// The commands that the command line contains, from the program to the last subcommand.
const CLI::App& LastCommand(const CLI::App& app) {
    const CLI::App* command = &app;
    for (auto parsed = app.get_subcommands(); !parsed.empty(); parsed = command->get_subcommands())
        command = parsed.front();
    return *command;
}

// Returns the names of the commands without the name of the program: "setting get".
std::string CommandPath(const CLI::App& command) {
    std::string path;
    for (const CLI::App* part = &command; part->get_parent() != nullptr; part = part->get_parent())
        path.insert(0, part->get_name() + (path.empty() ? "" : " "));
    return path;
}

std::vector<std::string> SubcommandNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::App* const subcommand : command.get_subcommands({}))
        names.push_back(subcommand->get_name());
    return names;
}

std::string UnknownCommandText(const CLI::App& command, const std::string& name) {
    const std::string path = CommandPath(command);
    return "\"" + name + "\" is not a command" + (path.empty() ? "" : " of \"" + path + "\"") +
           SuggestionFor(name, SubcommandNames(command));
}

// Returns the word of the command line at the place of a command that is not a command, or an empty string.
std::string FindUnknownCommand(const CLI::App& app) {
    if (LastCommand(app).get_subcommands({}).empty())
        return {};
    const std::vector<std::string> unexpected = app.remaining(true);
    const auto found = std::ranges::find_if(
        unexpected, [](const std::string& word) { return !word.empty() && !word.starts_with('-'); });
    return found == unexpected.end() ? std::string{} : *found;
}

// Returns the error about arguments that the command does not have.
std::string UnexpectedArgumentsText(const CLI::App& app) {
    const std::vector<std::string> unexpected = app.remaining(true);
    std::string text = unexpected.size() == 1 ? "The following argument was not expected:"
                                              : "The following arguments were not expected:";
    for (const std::string& argument : unexpected)
        text += " " + argument;
    return text + ".";
}

// Returns the sentence that describes an error of the parser's library.
std::string MessageOf(const CLI::ParseError& error, const CLI::App& app) {
    const std::string unknown = FindUnknownCommand(app);
    if (!unknown.empty())
        return UnknownCommandText(LastCommand(app), unknown);
    // The message of the library has the arguments in an order that differs between its versions.
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError))
        return UnexpectedArgumentsText(app);
    return std::string{error.what()} + ".";
}

// Returns the argument in the notation of the parser's library, which since version 2.5 reads "[[aabb]]" as
// "[ab]".
std::string Escaped(const std::string& argument) {
    constexpr bool hasNotation = CLI11_VERSION_MAJOR > 2 || CLI11_VERSION_MINOR >= 5;
    if (!hasNotation || !argument.starts_with("[[") || !argument.ends_with("]]"))
        return argument;
    std::string escaped = "[[";
    for (const char unit : argument.substr(1, argument.size() - 2))
        escaped.append(2, unit);
    return escaped + "]]";
}

class Parser {
public:
    Parser() {
        app.require_subcommand(0, 1);
        // The page of the parser's library differs between its versions.
        app.formatter_fn([](const CLI::App* command, const std::string& path, CLI::AppFormatMode) {
            return HelpPage(*command, path);
        });
        // Set before the commands are added, because commands inherit these settings. General options may
        // also follow the command, and a slash begins a path, not an option.
        app.fallthrough()->allow_windows_style_options(false);
        app.set_version_flag("-v,--version", "zotdamctl " ZOTDAM_VERSION, "Print the version and exit");
        app.add_flag_callback(
            "--licenses",
            [] {
                throw CLI::CallForVersion{Licenses(), 0};
            },
            "Print the licences and exit");
        app.footer("SCHEME and OTHER are the GUID of a power scheme, " + SchemeNames() + ",\n" +
                   "or an alias of powercfg such as SCHEME_CURRENT.\n" +
                   "The options that \"zotdamctl --help\" lists may also follow the command.");
        AddGeneralOptions();
        CommandSet commands{app, invocation.action};
        AddCatalogueCommands(commands);
        AddBaseCommands(commands);
        AddParameterCommands(commands);
        AddSetCommands(commands);
        AddResetCommands(commands);
        AddSchemeCommands(commands);
        AddDiffCommand(commands);
        AddSettingCommands(commands);
        AddDoctorCommand(commands);
        AddReportCommand(commands);
        AddTransferCommands(commands);
        AddCompletionCommand(commands);
        AddHelpCommand(commands);
    }

    const CLI::App& App() const noexcept { return app; }

    std::variant<Invocation, Information> Parse(std::vector<std::string> arguments) {
        if (!arguments.empty() && arguments.back() == "/?")
            arguments.back() = "--help";
        std::ranges::transform(arguments, arguments.begin(), Escaped);
        std::ranges::reverse(arguments);  // the order that CLI11 expects
        try {
            app.parse(std::move(arguments));
        } catch (const CLI::Success& request) {
            std::ostringstream text;
            app.exit(request, text, text);
            return text.str();
        } catch (const CLI::ParseError& error) {
            throw WithHelp(UsageError{MessageOf(error, app)}, CommandPath(LastCommand(app)));
        } catch (const UsageError& error) {
            throw WithHelp(error, CommandPath(LastCommand(app)));
        }
        if (!invocation.action)
            ThrowMissingCommand();
        invocation.command = CommandPath(LastCommand(app));
        invocation.programFiles = FolderOf(programFiles);
        invocation.programData = FolderOf(programData);
        return invocation;
    }

private:
    // The message of a JSON error is one sentence.
    [[noreturn]] void ThrowMissingCommand() const {
        const std::string sentence = "No command is specified.";
        if (invocation.json)
            throw WithHelp(UsageError{sentence}, {});
        throw UsageError{sentence + "\n\n" + app.help()};
    }

    void AddCompletionCommand(CommandSet& commands) {
        commands.Add<CompletionArguments>(
            "completion", "Write a completion script for a shell",
            {"completion bash >> ~/.bashrc", "completion powershell >> $PROFILE"},
            [](CLI::App& command, CompletionArguments& arguments) {
                AddArgument(command, "SHELL", arguments.shell, "bash or powershell");
            },
            WriteCompletion);
    }

    static void AddHelpCommand(CommandSet& commands) {
        commands.Add<HelpArguments>(
            "help", "Describe a command", {"help", "help set", "help setting get"},
            [](CLI::App& command, HelpArguments& arguments) {
                AddOptionalArgument(command, "COMMAND", arguments.command,
                                    "The command; without it, the program");
            },
            WriteHelp);
    }

    void AddGeneralOptions() {
        app.add_flag("--json", invocation.json, "Write JSON instead of tables");
        app.add_option_function<std::string>(
               "--color", [this](const std::string& when) { invocation.styling = ParseStyling(when); },
               "Show headings in bold: auto, always or never")
            ->type_name("WHEN")
            ->take_last();
        app.add_option_function<std::string>(
               "--wait", [this](const std::string& text) { invocation.secondsToWait = ParseSeconds(text); },
               "Wait up to this time for a file that another program is using")
            ->type_name("SECONDS")
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

Report WriteHelp(const HelpArguments& arguments) {
    Parser parser;
    const CLI::App* command = &parser.App();
    for (const std::string& name : arguments.command) {
        const std::vector<const CLI::App*> subcommands = command->get_subcommands({});
        const auto found =
            std::ranges::find(subcommands, name, [](const CLI::App* app) { return app->get_name(); });
        if (found == subcommands.end())
            throw UsageError{UnknownCommandText(*command, name)};
        command = *found;
    }
    std::vector<std::string> request = arguments.command;
    request.emplace_back("--help");
    const std::string help = std::get<Information>(parser.Parse(request));
    return {help, {{"help", help}}};
}

}  // namespace

UsageError WithHelp(const UsageError& error, const std::string& command) {
    return UsageError{error.what() +
                      (" See \"zotdamctl " + command + (command.empty() ? "" : " ") + "--help\".")};
}

bool RequestsJson(const std::vector<std::string>& arguments) {
    const auto endOfOptions = std::ranges::find(arguments, "--");
    return std::find(arguments.begin(), endOfOptions, "--json") != endOfOptions;
}

std::variant<Invocation, Information> ParseCommandLine(std::vector<std::string> arguments) {
    return Parser{}.Parse(std::move(arguments));
}

}  // namespace ZOTDam::Client
