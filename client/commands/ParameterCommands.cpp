// params, current.
#include <algorithm>

#include "commands/Commands.h"
#include "Error.h"
#include "Parameters.h"
#include "Scheme.h"
#include "SettingsSnapshot.h"

namespace ZOTDam::Client {

namespace {

struct ParamsArguments {
    GUID scheme;
    bool defaults;
};

Report ListDefaults(const GUID& scheme) {
    const Library library;
    const FunctionCatalogue catalogue = ReadCatalogue(library);
    Table table = ParamTable();
    Json list = Json::array();
    for (const auto& [id, value] : CollectParams(library.GetParameterDefault, scheme)) {
        table.Add(ParamCells(id, value, catalogue));
        list.push_back(ParamJson(id, value, catalogue));
    }
    Json json = SchemeJson(scheme, "default");
    json["parameters"] = list;
    return {SchemeHeading(scheme, "defaults") + table.Text(), json};
}

Report ListUserValues(const GUID& scheme) {
    const SettingsSnapshot settings;
    const FunctionCatalogue catalogue = ReadCatalogue(settings.Dll());
    const Params* const stored = settings.Stored().Find(scheme);
    Table table{{{"ID"},
                 {"Function", Align::Left},
                 {"Plugged in (index)", Align::Left},
                 {"On battery (index)", Align::Left},
                 {"", Align::Left}}};
    Json list = Json::array();
    for (const auto& [id, value] : CollectParams(settings.Dll().GetParameter, scheme)) {
        const bool isStored = stored != nullptr && stored->contains(id);
        std::vector<std::string> cells = ParamCells(id, value, catalogue);
        cells.emplace_back(stored == nullptr || isStored ? "" : "not stored: default");
        table.Add(std::move(cells));
        list.push_back(ParamJson(id, value, catalogue));
        list.back()["stored"] = isStored;
    }
    Json json = SourceJson(settings, scheme);
    json["parameters"] = list;
    return {SourceHeading(settings, scheme) + table.Text(), json};
}

Report ListParams(const ParamsArguments& arguments) {
    return arguments.defaults ? ListDefaults(arguments.scheme) : ListUserValues(arguments.scheme);
}

// Returns the number of an option, or nothing if the parameter selects none. In that case the library does
// not write the field, so the two initial values differ.
std::optional<std::int32_t> NumberFrom(std::uint32_t zeroFilled, std::uint32_t oneFilled) {
    if (zeroFilled != oneFilled)
        return {};
    return static_cast<std::int32_t>(zeroFilled);
}

// Returns the option with this number: the one at the position if it is that option, because several options
// can have the same number.
const Option* FindOption(const Options& options, const std::optional<std::int32_t>& number,
                         std::int32_t index) {
    if (!number)
        return nullptr;
    const Option* const selected = SelectOption(options, index);
    if (selected != nullptr && selected->option == *number)
        return selected;
    const auto found = std::ranges::find(options, *number, &Option::option);
    return found == options.end() ? nullptr : &*found;
}

// The options of a scheme, by the position of their function.
class CurrentOptions {
public:
    CurrentOptions(const Library& loadedLibrary, const GUID& scheme)
        : library{loadedLibrary}, params{CollectParams(loadedLibrary.GetParameter, scheme)} {}

    void Add(std::uint32_t position, std::int32_t id, const CatalogueFunction& function) {
        FuncCurValue zeroFilled = {};
        FuncCurValue oneFilled = {~0U, ~0U, ~0U};
        if (!library.GetFuncCurValue(position, &zeroFilled) || !library.GetFuncCurValue(position, &oneFilled))
            return;  // the library has no value for any function of the scheme
        const auto found = params.find(id);
        const ParamValue value = found == params.end() ? ParamValue{} : found->second;
        const Option* const ac = FindOption(
            function.acOptions, NumberFrom(zeroFilled.ACValue, oneFilled.ACValue), value.ACParamIndex);
        const Option* const dc = FindOption(
            function.dcOptions, NumberFrom(zeroFilled.DCValue, oneFilled.DCValue), value.DCParamIndex);
        table.Add({std::to_string(id), function.name, OptionText(ac), OptionText(dc)});
        list.push_back({{"id", id},
                        {"reportedId", zeroFilled.FunctionId},
                        {"name", function.name},
                        {"acOption", NumberJson(ac)},
                        {"acLabel", LabelJson(ac)},
                        {"dcOption", NumberJson(dc)},
                        {"dcLabel", LabelJson(dc)}});
    }

    std::string Text() const { return table.Text(); }
    const Json& List() const { return list; }

private:
    const Library& library;
    Params params;
    Table table{{{"ID"},
                 {"Function", Align::Left},
                 {"Plugged in (option)", Align::Left},
                 {"On battery (option)", Align::Left}}};
    Json list = Json::array();
};

Report ListCurrentOptions(const GUID& scheme) {
    const SettingsSnapshot settings;
    const FunctionCatalogue catalogue = ReadCatalogue(settings.Dll());
    CurrentOptions options{settings.Dll(), scheme};
    if (!settings.Dll().TEVGetParam(&scheme))
        throw Error{"The scheme " + SchemeTitle(scheme) + " cannot be loaded."};
    for (std::uint32_t position = 0; const auto& [id, function] : catalogue)
        options.Add(position++, id, function);
    Json json = SourceJson(settings, scheme);
    json["options"] = options.List();
    return {SourceHeading(settings, scheme) + options.Text(), json};
}

}  // namespace

void AddParameterCommands(CommandSet& commands) {
    commands.Add<ParamsArguments>(
        "params", "List the values of the functions in a power scheme",
        {"params balanced", "params SCHEME_MAX --default",
         "params 381b4222-f694-41f0-9685-ff5bb260df2e --json"},
        [](CLI::App& command, ParamsArguments& arguments) {
            AddArgument(command, "SCHEME", arguments.scheme, "The power scheme to list");
            AddFlag(command, "--default", arguments.defaults,
                    "List the defaults instead of the user's values");
        },
        ListParams);
    commands.Add("current", "List the options that a power scheme selects; \"-\" if a value selects none",
                 {"current balanced"}, ListCurrentOptions);
}

}  // namespace ZOTDam::Client
