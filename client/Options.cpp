#include "Options.h"

#include <algorithm>
#include <charconv>
#include <CLI/CLI.hpp>
#include <cstdint>
#include <sstream>

#include "Error.h"
#include "Scheme.h"

namespace ZOTDam::Client {

namespace {

std::int32_t ParseNumber(const std::string& name, const std::string& text) {
    std::int32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end)
        throw UsageError{name + " must be a whole number from -2147483648 to 2147483647, not \"" + text +
                         "\"."};
    return number;
}

std::optional<std::filesystem::path> ParseFolder(const std::string& text) {
    if (text.empty())
        return {};
    return std::filesystem::path{std::u8string{text.begin(), text.end()}};
}

class Parser {
public:
    Parser() {
        app.require_subcommand(0, 1);
        // What commands inherit comes before them. The general options may also stand behind the command, and
        // a slash begins a folder, not an option.
        app.fallthrough()->allow_windows_style_options(false);
        app.set_version_flag("--version", "zotdamctl " ZOTDAM_VERSION, "Print the version and exit");
        app.footer("SCHEME is the GUID of a power scheme, or " + SchemeNames() + ".\n" +
                   "The options of zotdamctl may also stand behind the command.");
        AddOptions();
        AddCommands();
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
        return Options{ParseCommand(), json, ParseFolder(programFiles), ParseFolder(programData)};
    }

private:
    void AddOptions() {
        app.add_flag("--json", json, "Write JSON instead of tables");
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

    void AddCommands() {
        count = app.add_subcommand("count", "Count the functions of the catalogue");
        params = app.add_subcommand("params", "List what the functions are set to in a power scheme");
        AddArgument(*params, "SCHEME", scheme, "The power scheme to list");
        params->add_flag("--default", defaults, "List the defaults instead of the user's values");
        set = app.add_subcommand("set", "Set a function in a power scheme");
        AddArgument(*set, "SCHEME", scheme, "The power scheme to change");
        AddArgument(*set, "ID", functionId, "The id of the function");
        AddArgument(*set, "AC", acIndex, "The position of its option on mains power, from 0");
        AddArgument(*set, "DC", dcIndex, "The position of its option on battery, from 0");
        reset = app.add_subcommand("reset", "Reset all user settings to the defaults");
    }

    static void AddArgument(CLI::App& command, const char* name, std::string& text, const char* description) {
        command.add_option(name, text, description)->required()->type_name("");
    }

    Command ParseCommand() const {
        if (count->parsed())
            return CountCommand{};
        if (params->parsed())
            return ParamsCommand{ParseScheme(scheme), defaults};
        if (set->parsed())
            return SetCommand{ParseScheme(scheme),
                              ParseNumber("ID", functionId),
                              {ParseNumber("AC", acIndex), ParseNumber("DC", dcIndex)}};
        if (reset->parsed())
            return ResetCommand{};
        throw UsageError{"No command is given.\n\n" + app.help()};
    }

    CLI::App app{"Reads and changes the settings of QUEN Power Management.", "zotdamctl"};
    CLI::App* count = nullptr;
    CLI::App* params = nullptr;
    CLI::App* set = nullptr;
    CLI::App* reset = nullptr;

    bool json = false;
    bool defaults = false;
    std::string programFiles;
    std::string programData;
    std::string scheme;
    std::string functionId;
    std::string acIndex;
    std::string dcIndex;
};

}  // namespace

std::variant<Options, Information> ParseOptions(std::vector<std::string> arguments) {
    return Parser{}.Parse(std::move(arguments));
}

}  // namespace ZOTDam::Client
