// commands, diff.
#include <string_view>
#include <vector>

#include "Catalogue.h"
#include "commands/Commands.h"
#include "Error.h"
#include "Scheme.h"
#include "Table.h"
#include "Text.h"

namespace ZOTDam::Client {

namespace {

struct CommandsArguments {
    GUID scheme;
};

struct DiffArguments {
    GUID schemeA;
    GUID schemeB;
    bool ac;
    bool dc;
};

Report ListCommands(const CommandsArguments& arguments) {
    const Library library;
    RequireCatalogue(library);
    Table table{
        {{"ID"}, {"Event"}, {"State"}, {"Option1"}, {"Option2"}, {"Flag"}, {"SpecInfo1", Align::Left}}};
    Json list = Json::array();
    auto add = MakeCallback<IGetCommandInfoCallback>([&](const CommandInfoRecord* command) {
        table.Add({std::to_string(command->id), std::to_string(command->event),
                   std::to_string(command->state), std::to_string(command->option1),
                   std::to_string(command->option2), std::to_string(command->flag),
                   ToUtf8(command->specInfo1)});
        list.push_back({{"id", command->id},
                        {"event", command->event},
                        {"state", command->state},
                        {"option1", command->option1},
                        {"option2", command->option2},
                        {"flag", command->flag},
                        {"specInfo1", ToUtf8(command->specInfo1)}});
    });
    library.GetCommandInfo(&arguments.scheme, &add);
    RequireIdle(UserSettings);
    return {"Scheme: " + SchemeTitle(arguments.scheme) + "\n\n" + table.Text(),
            {{"scheme", SchemeGuid(arguments.scheme)}, {"commands", list}}};
}

struct Difference {
    std::string function;
    std::string setting;
};

struct Differences {
    std::vector<Difference> list;
    bool complete = true;  // false if the library may have truncated a string
};

// Splits one of the library's strings into lines. Each line ends with this pair. The rest after the last pair
// is a truncated line and is dropped.
std::vector<std::string> Lines(std::wstring_view text) {
    constexpr std::wstring_view lineEnd = L"\n\r";
    std::vector<std::string> lines;
    for (auto end = text.find(lineEnd); end != std::wstring_view::npos; end = text.find(lineEnd)) {
        lines.push_back(ToUtf8(text.substr(0, end)));
        text.remove_prefix(end + lineEnd.size());
    }
    return lines;
}

// A truncated string is one code unit shorter if it would have ended inside a surrogate pair.
bool MayBeTruncated(std::wstring_view text) {
    return text.size() + 2 >= TextCapacity;
}

Differences Compare(const Library& library, const DiffArguments& arguments, std::uint32_t mode) {
    Text names = {};
    Text values = {};
    library.GetDiffFuncList(&arguments.schemeA, &arguments.schemeB, mode, names, values);
    const std::vector<std::string> functions = Lines(names);
    const std::vector<std::string> settings = Lines(values);
    Differences differences{{}, !MayBeTruncated(names) && !MayBeTruncated(values)};
    for (std::size_t i = 0; i < functions.size() && i < settings.size(); ++i)
        differences.list.push_back({functions[i].substr(2), settings[i]});  // without the "- "
    return differences;
}

std::string DifferencesText(const char* source, const Differences& differences) {
    std::string text = std::string{"\n"} + source + ":";
    if (differences.list.empty() && differences.complete)
        return text + " no differences\n";
    Table table{{{"Function", Align::Left}, {"Setting", Align::Left}}};
    for (const auto& [function, setting] : differences.list)
        table.Add({function, setting});
    return text + "\n\n" + table.Text() + (differences.complete ? "" : "There may be more.\n");
}

Json DifferencesJson(const Differences& differences) {
    Json list = Json::array();
    for (const auto& [function, setting] : differences.list)
        list.push_back({{"function", function}, {"setting", setting}});
    return {{"differences", list}, {"complete", differences.complete}};
}

Report ListDifferences(const DiffArguments& arguments) {
    const bool both = !arguments.ac && !arguments.dc;
    const Library library;
    RequireCatalogue(library);
    Report report{"Values of " + SchemeTitle(arguments.schemeB) + "\nthat differ from those of " +
                      SchemeTitle(arguments.schemeA) + "\n",
                  {{"from", SchemeGuid(arguments.schemeA)}, {"to", SchemeGuid(arguments.schemeB)}}};
    const auto add = [&](std::uint32_t mode, const char* source, const char* key) {
        const Differences differences = Compare(library, arguments, mode);
        report.text += DifferencesText(source, differences);
        report.json[key] = DifferencesJson(differences);
    };
    if (arguments.ac || both)
        add(1, "Plugged in", "ac");
    if (arguments.dc || both)
        add(2, "On battery", "dc");
    RequireIdle(UserSettings);
    return report;
}

Report ListAliases() {
    Table table{{{"GUID", Align::Left}, {"Name", Align::Left}, {"Alias", Align::Left}}};
    Json list = Json::array();
    for (const NamedScheme& named : WindowsSchemes) {
        const std::string name{named.name};
        const std::string alias{named.alias};
        table.Add({SchemeGuid(named.scheme), name, alias});
        list.push_back({{"guid", SchemeGuid(named.scheme)}, {"name", name}, {"alias", alias}});
    }
    return {table.Text(), {{"schemes", list}}};
}

}  // namespace

void AddSchemeCommands(CommandSet& commands) {
    commands.Add("aliases", "List the power schemes of Windows with their names and the aliases of powercfg",
                 {"aliases"}, ListAliases);
    commands.Add<CommandsArguments>(
        "commands", "List the commands that apply a power scheme, with their options",
        {"commands balanced", "commands power-saver --json"},
        [](CLI::App& command, CommandsArguments& arguments) {
            AddArgument(command, "SCHEME", arguments.scheme, "The power scheme to apply");
        },
        ListCommands);
    commands.Add<DiffArguments>(
        "diff", "List the values of a power scheme that differ from those of another one",
        {"diff balanced power-saver", "diff balanced high-performance --ac"},
        [](CLI::App& command, DiffArguments& arguments) {
            AddArgument(command, "SCHEME", arguments.schemeA, "The power scheme to compare with");
            AddArgument(command, "OTHER", arguments.schemeB, "The power scheme whose values to list");
            AddFlag(command, "--ac", arguments.ac, "Compare only the values when plugged in");
            AddFlag(command, "--dc", arguments.dc, "Compare only the values on battery");
        },
        ListDifferences);
}

}  // namespace ZOTDam::Client
