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
        AddOptions();
        CommandSet commands{app, options.action};
        AddCatalogueCommands(commands);
        AddParameterCommands(commands);
        AddSchemeCommands(commands);
        AddSettingCommands(commands);
    }

    std::variant<Options, Information> Parse(std::vector<std::string> arguments) {
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
        if (!options.action)
            throw UsageError{"No command is given.\n\n" + app.help()};
        options.programFiles = FolderOf(programFiles);
        options.programData = FolderOf(programData);
        return options;
    }

private:
    void AddOptions() {
        app.add_flag("--json", options.json, "Write JSON instead of tables");
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
    Options options;
    std::string programFiles;
    std::string programData;
};

}  // namespace

std::variant<Options, Information> ParseCommandLine(std::vector<std::string> arguments) {
    return Parser{}.Parse(std::move(arguments));
}

}  // namespace ZOTDam::Client
