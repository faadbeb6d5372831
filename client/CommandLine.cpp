#include "CommandLine.h"

#include <algorithm>
#include <CLI/CLI.hpp>
#include <sstream>

#include "commands/Commands.h"
#include "Error.h"
#include "Scheme.h"
#include "Text.h"

namespace ZOTDam::Client {

namespace {

std::optional<std::filesystem::path> FolderOf(const std::string& text) {
    if (text.empty())
        return {};
    return std::filesystem::path{ToUtf16(text)};
}

class Parser {
public:
    Parser() {
        app.require_subcommand(0, 1);
        // What commands inherit comes before them. The general options may also stand behind the command, and
        // a slash begins a folder, not an option.
        app.fallthrough()->allow_windows_style_options(false);
        app.set_version_flag("--version", "zotdamctl " ZOTDAM_VERSION, "Print the version and exit");
        app.footer("SCHEME or OTHER is the GUID of a power scheme, or " + SchemeNames() + ".\n" +
                   "The options of zotdamctl may also stand behind the command.");
        AddGeneralOptions();
        CommandSet commands{app, invocation.action};
        AddCatalogueCommands(commands);
        AddBaseCommands(commands);
        AddParameterCommands(commands);
        AddSchemeCommands(commands);
        AddSettingCommands(commands);
    }

    std::variant<Invocation, Information> Parse(std::vector<std::string> arguments) {
        std::ranges::reverse(arguments);  // the order that CLI11 takes
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
            throw UsageError{"No command is given.\n\n" + app.help()};
        invocation.programFiles = FolderOf(programFiles);
        invocation.programData = FolderOf(programData);
        return invocation;
    }

private:
    void AddGeneralOptions() {
        app.add_flag("--json", invocation.json, "Write JSON instead of tables");
        AddFolder("--program-files", programFiles, "The folder to use in place of %ProgramFiles%");
        AddFolder("--program-data", programData, "The folder to use in place of %ProgramData%");
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

}  // namespace

std::variant<Invocation, Information> ParseCommandLine(std::vector<std::string> arguments) {
    return Parser{}.Parse(std::move(arguments));
}

}  // namespace ZOTDam::Client
