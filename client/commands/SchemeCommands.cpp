// list, aliases, commands.
#include <algorithm>

#include "commands/Commands.h"
#include "Error.h"
#include "FunctionTable.h"
#include "Parameters.h"
#include "Scheme.h"
#include "SettingsSnapshot.h"
#include "Text.h"
#include "WindowsSchemes.h"

namespace ZOTDam::Client {

namespace {

// A command as the library reports it, with its function and the labels of its options.
struct LabelledCommand {
    CommandInfoRecord record;
    std::optional<std::int32_t> functionId;
    const Option* option1 = nullptr;
    const Option* option2 = nullptr;
};

const Option* OptionOf(const CatalogueFunction& function, const ParamValue& value, std::int32_t paramIndex) {
    return paramIndex == 0 ? SelectOption(function.acOptions, value.ACParamIndex)
                           : SelectOption(function.dcOptions, value.DCParamIndex);
}

std::vector<LabelledCommand> CollectCommands(const Library& library, const GUID& scheme) {
    std::vector<LabelledCommand> commands;
    auto add = MakeCallback<IGetCommandInfoCallback>([&](const CommandInfoRecord* record) {
        commands.push_back({*record, {}});
    });
    library.GetCommandInfo(&scheme, &add);
    return commands;
}

// The records do not contain their functions. These follow from the order of the records.
void AddFunctions(std::vector<LabelledCommand>& commands, const FunctionCatalogue& catalogue,
                  const Params& params) {
    const std::vector<OwnedCommand> owned = CommandsOf(ReadFunctionTable(catalogue), params);
    if (owned.size() != commands.size())
        return;  // the file has changed
    for (std::size_t i = 0; i < owned.size(); ++i) {
        const auto& [functionId, command] = owned[i];
        const CatalogueFunction& function = FindFunction(catalogue, functionId);
        const auto value = params.find(functionId);
        const ParamValue selected = value == params.end() ? ParamValue{} : value->second;
        commands[i].functionId = functionId;
        commands[i].option1 = OptionOf(function, selected, command.paramIndex1);
        commands[i].option2 = OptionOf(function, selected, command.paramIndex2);
    }
}

// The library reports the number 0 for no option.
std::string CommandOptionText(const Option* option, std::int32_t number) {
    return LabelText(option) + " (" + std::to_string(number) + ")";
}

std::vector<std::string> CommandCells(const LabelledCommand& command, const FunctionCatalogue& catalogue) {
    const CommandInfoRecord& record = command.record;
    return {command.functionId ? std::to_string(*command.functionId) : "-",
            command.functionId ? FunctionNameText(catalogue, *command.functionId) : "-",
            std::to_string(record.id),
            std::to_string(record.event),
            std::to_string(record.state),
            CommandOptionText(command.option1, record.option1),
            CommandOptionText(command.option2, record.option2),
            std::to_string(record.flag),
            ToUtf8(record.specInfo1)};
}

Json CommandJson(const LabelledCommand& command, const FunctionCatalogue& catalogue) {
    const CommandInfoRecord& record = command.record;
    return {{"id", command.functionId ? Json(*command.functionId) : Json()},
            {"name", command.functionId ? FunctionNameJson(catalogue, *command.functionId) : Json()},
            {"commandId", record.id},
            {"event", record.event},
            {"state", record.state},
            {"option1", record.option1},
            {"label1", LabelJson(command.option1)},
            {"option2", record.option2},
            {"label2", LabelJson(command.option2)},
            {"flag", record.flag},
            {"specInfo1", ToUtf8(record.specInfo1)}};
}

Report ListCommands(const GUID& scheme) {
    const SettingsSnapshot settings;
    const FunctionCatalogue catalogue = ReadCatalogue(settings.Dll());
    std::vector<LabelledCommand> commands = CollectCommands(settings.Dll(), scheme);
    AddFunctions(commands, catalogue, CollectParams(settings.Dll().GetParameter, scheme));
    Table table{{{"ID"},
                 {"Function", Align::Left},
                 {"Command"},
                 {"Event"},
                 {"State"},
                 {"Option1", Align::Left},
                 {"Option2", Align::Left},
                 {"Flag"},
                 {"SpecInfo1", Align::Left}}};
    Json list = Json::array();
    for (const LabelledCommand& command : commands) {
        table.Add(CommandCells(command, catalogue));
        list.push_back(CommandJson(command, catalogue));
    }
    Json json = SourceJson(settings, scheme);
    json["commands"] = list;
    return {SourceHeading(settings, scheme) + table.Text(), json};
}

Report ListAliases() {
    Table table{{{"GUID", Align::Left}, {"Name", Align::Left}, {"Alias", Align::Left}}};
    Json list = Json::array();
    for (const NamedScheme& named : WindowsSchemes) {
        const std::string name{named.name};
        const std::string alias{named.alias};
        table.Add({SchemeGuid(named.scheme), name, alias});
        list.push_back({{"scheme", SchemeGuid(named.scheme)}, {"schemeName", name}, {"alias", alias}});
    }
    return {table.Text(), {{"schemes", list}}};
}

// A scheme that Windows knows or that the user settings contain.
struct ListedScheme {
    GUID scheme;
    std::string name;
    std::string alias;
};

void AddUnlessListed(std::vector<ListedScheme>& schemes, const ListedScheme& scheme) {
    if (std::ranges::find(schemes, scheme.scheme, &ListedScheme::scheme) == schemes.end())
        schemes.push_back(scheme);
}

std::vector<ListedScheme> CollectSchemes(const std::optional<GUID>& active, const StoredSettings& stored) {
    std::vector<ListedScheme> schemes;
    for (const NamedScheme& named : WindowsSchemes)
        AddUnlessListed(schemes, {named.scheme, std::string{named.name}, std::string{named.alias}});
    for (const WindowsScheme& known : EnumerateWindowsSchemes())
        AddUnlessListed(schemes, {known.scheme, known.name, {}});
    if (active)
        AddUnlessListed(schemes, {*active, {}, {}});
    for (const StoredScheme& scheme : stored.schemes)
        AddUnlessListed(schemes, {scheme.scheme, {}, {}});
    return schemes;
}

Json TextJson(const std::string& text) {
    return text.empty() ? Json() : Json(text);
}

Report ListSchemes() {
    const SettingsSnapshot settings;
    const std::optional<GUID> active = FindActiveScheme();
    Table table{{{"", Align::Left},
                 {"GUID", Align::Left},
                 {"Name", Align::Left},
                 {"Alias", Align::Left},
                 {"Stored functions"}}};
    Json list = Json::array();
    for (const auto& [scheme, name, alias] : CollectSchemes(active, settings.Stored())) {
        const Params* const stored = settings.Stored().Find(scheme);
        const bool isActive = active && *active == scheme;
        table.Add({isActive ? "*" : "", SchemeGuid(scheme), name, alias,
                   stored == nullptr ? "-" : std::to_string(stored->size())});
        list.push_back({{"scheme", SchemeGuid(scheme)},
                        {"schemeName", TextJson(name)},
                        {"alias", TextJson(alias)},
                        {"active", active ? Json(isActive) : Json()},
                        {"stored", stored != nullptr},
                        {"storedCount", stored == nullptr ? 0 : stored->size()}});
    }
    return {table.Text() + (active ? "\n* active\n" : "\nWindows does not report the active scheme.\n") +
                ProblemNotice(settings),
            {{"schemes", list}}};
}

}  // namespace

void AddSchemeCommands(CommandSet& commands) {
    commands.Add("list",
                 "List the power schemes of Windows and of the user settings; \"*\" marks the active one",
                 {"list", "list --json"}, ListSchemes);
    commands.Add("aliases", "List the power schemes of Windows with their names and the aliases of powercfg",
                 {"aliases"}, ListAliases);
    commands.Add("commands", "List the commands that apply a power scheme, with their options",
                 {"commands balanced", "commands power-saver --json"}, ListCommands);
}

}  // namespace ZOTDam::Client
