// params, current, set, setacvalueindex, setdcvalueindex, reset.
#include <map>

#include "Catalogue.h"
#include "commands/Commands.h"
#include "Error.h"
#include "Scheme.h"
#include "Table.h"

namespace ZOTDam::Client {

namespace {

using Params = std::map<std::int32_t, ParamValue>;

struct ParamsArguments {
    GUID scheme;
    bool defaults;
};

struct CurrentArguments {
    GUID scheme;
};

struct SetParameterArguments {
    GUID scheme;
    std::int32_t functionId;
    ParamValue value;
};

struct SetIndexArguments {
    GUID scheme;
    std::int32_t functionId;
    std::int32_t index;
};

Params Collect(decltype(&GetParameter) enumerate, const GUID& scheme) {
    Params params;
    auto collect = MakeCallback<IGetParameterCallback>(
        [&](std::int32_t functionId, const ParamValue* value) { params.emplace(functionId, *value); });
    enumerate(&scheme, &collect);
    return params;
}

std::string ParamsText(const Params& params) {
    Table table{{{"ID"}, {"AC"}, {"DC"}}};
    for (const auto& [functionId, value] : params)
        table.Add({std::to_string(functionId), std::to_string(value.ACParamIndex),
                   std::to_string(value.DCParamIndex)});
    return table.Text();
}

Json ParamJson(std::int32_t functionId, const ParamValue& value) {
    return {{"id", functionId}, {"ac", value.ACParamIndex}, {"dc", value.DCParamIndex}};
}

Report ListParams(const ParamsArguments& arguments) {
    const Library library;
    RequireCatalogue(library);
    const Params params =
        Collect(arguments.defaults ? library.GetParameterDefault : library.GetParameter, arguments.scheme);
    if (!arguments.defaults)
        RequireIdle(UserSettings);  // else the library returned the defaults, not the user's values
    Json list = Json::array();
    for (const auto& [functionId, value] : params)
        list.push_back(ParamJson(functionId, value));
    return {"Scheme: " + SchemeTitle(arguments.scheme) + "\n" + "Source: " +
                (arguments.defaults ? "defaults" : "user settings") + "\n\n" + ParamsText(params),
            {{"scheme", SchemeGuid(arguments.scheme)},
             {"source", arguments.defaults ? "default" : "user"},
             {"parameters", list}}};
}

// Returns the option, or nothing if the parameter selects none. In that case the library does not write the
// field, so the two initial values differ.
std::optional<std::int32_t> Option(std::uint32_t zeroFilled, std::uint32_t oneFilled) {
    if (zeroFilled != oneFilled)
        return {};
    return static_cast<std::int32_t>(zeroFilled);
}

std::string OptionText(const std::optional<std::int32_t>& option) {
    return option ? std::to_string(*option) : "-";
}

Json OptionJson(const std::optional<std::int32_t>& option) {
    return option ? Json(*option) : Json();
}

Report ListCurrentOptions(const CurrentArguments& arguments) {
    const Library library;
    const std::uint32_t functions = RequireCatalogue(library);
    const bool loaded = library.TEVGetParam(&arguments.scheme);
    RequireIdle(UserSettings);
    if (!loaded)
        throw Error{"The scheme " + SchemeTitle(arguments.scheme) + " cannot be loaded."};
    Table table{{{"ID"}, {"AC"}, {"DC"}}};
    Json list = Json::array();
    for (std::uint32_t position = 0; position < functions; ++position) {
        FuncCurValue zeroFilled = {};
        FuncCurValue oneFilled = {~0U, ~0U, ~0U};
        if (!library.GetFuncCurValue(position, &zeroFilled) || !library.GetFuncCurValue(position, &oneFilled))
            continue;  // the library has no value for any function of the scheme
        const auto ac = Option(zeroFilled.ACValue, oneFilled.ACValue);
        const auto dc = Option(zeroFilled.DCValue, oneFilled.DCValue);
        table.Add({std::to_string(zeroFilled.FunctionId), OptionText(ac), OptionText(dc)});
        list.push_back({{"id", zeroFilled.FunctionId}, {"ac", OptionJson(ac)}, {"dc", OptionJson(dc)}});
    }
    return {"Scheme: " + SchemeTitle(arguments.scheme) + "\n\n" + table.Text(),
            {{"scheme", SchemeGuid(arguments.scheme)}, {"options", list}}};
}

// Throws if the function is in neither the catalogue nor the user's settings: the id is probably mistyped.
void RequireFunction(const Library& library, const SetParameterArguments& arguments) {
    if (Collect(library.GetParameterDefault, arguments.scheme).contains(arguments.functionId) ||
        Collect(library.GetParameter, arguments.scheme).contains(arguments.functionId))
        return;
    throw Error{"The catalogue " + Utf8(PathOf(Defaults)) + " has no function " +
                std::to_string(arguments.functionId) + "."};
}

// The library omits these two if the display does not support one of their refresh rates.
bool MayBeHidden(std::int32_t functionId) noexcept {
    return functionId == 7 || functionId == 8;
}

// Returns whether the function is hidden, so that its value cannot be verified. Throws if the value was not
// stored, because the library does not report it.
bool VerifyStored(const Library& library, const SetParameterArguments& arguments) {
    const Params params = Collect(library.GetParameter, arguments.scheme);
    RequireSaved(UserSettings);
    const auto found = params.find(arguments.functionId);
    if (found == params.end() && MayBeHidden(arguments.functionId))
        return true;
    if (found == params.end() || found->second != arguments.value)
        throw Error{"The value could not be stored in the " + TitleOf(UserSettings) + "."};
    return false;
}

Report Store(const Library& library, const SetParameterArguments& arguments) {
    const auto& [scheme, functionId, value] = arguments;
    library.SetParameter(&scheme, ParamHolder{{{functionId, value}}}.get());
    const bool hidden = VerifyStored(library, arguments);
    Json json = {{"scheme", SchemeGuid(scheme)}};
    json.update(ParamJson(functionId, value));
    json["hidden"] = hidden;
    std::string text = "Stored in " + SchemeTitle(scheme) + ":\n\n" + ParamsText({{functionId, value}});
    if (hidden)
        text += "\nFunction " + std::to_string(functionId) +
                " is hidden on this display, so \"params\" does not list it.\n";
    return {text, json};
}

Report SetParams(const SetParameterArguments& arguments) {
    const Library library;
    RequireCatalogue(library);
    RequireFunction(library, arguments);
    return Store(library, arguments);
}

// Sets one of the two indices of a function and keeps the other one.
template <std::int32_t ParamValue::*Index>
Report SetIndex(const SetIndexArguments& arguments) {
    SetParameterArguments all = {arguments.scheme, arguments.functionId, {}};
    const Library library;
    RequireCatalogue(library);
    RequireFunction(library, all);
    const Params params = Collect(library.GetParameter, arguments.scheme);
    RequireIdle(UserSettings);
    const auto found = params.find(arguments.functionId);
    if (found == params.end())
        throw Error{"Function " + std::to_string(arguments.functionId) +
                    " is hidden on this display: use \"set\" to set both indices."};
    all.value = found->second;
    all.value.*Index = arguments.index;
    return Store(library, all);
}

void DeclareSetIndex(CLI::App& command, SetIndexArguments& arguments) {
    AddArgument(command, "SCHEME", arguments.scheme, "The power scheme to change");
    AddArgument(command, "ID", arguments.functionId, "The id of the function");
    AddArgument(command, "INDEX", arguments.index, "The zero-based position of the option");
}

Report Reset() {
    const Library library;
    // The library resets the settings that this process last read, so they must be read first.
    Text any = {};
    library.GetCommonSetting(L"any", any);
    const bool reset = library.ResetDefault();
    if (reset)
        RequireSaved(UserSettings);
    else
        RequireIdle(UserSettings);
    return {reset ? "The user settings are reset to the defaults.\n" : "There is nothing to reset.\n",
            {{"reset", reset}}};
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
    commands.Add<CurrentArguments>(
        "current", "List the options that a power scheme selects; \"-\" if a value selects none",
        {"current balanced"},
        [](CLI::App& command, CurrentArguments& arguments) {
            AddArgument(command, "SCHEME", arguments.scheme, "The power scheme to list");
        },
        ListCurrentOptions);
    commands.Add<SetParameterArguments>(
        "set", "Set a function in a power scheme", {"set balanced 1 0 4"},
        [](CLI::App& command, SetParameterArguments& arguments) {
            AddArgument(command, "SCHEME", arguments.scheme, "The power scheme to change");
            AddArgument(command, "ID", arguments.functionId, "The id of the function");
            AddArgument(command, "AC", arguments.value.ACParamIndex,
                        "The zero-based position of the option when plugged in");
            AddArgument(command, "DC", arguments.value.DCParamIndex,
                        "The zero-based position of the option on battery");
        },
        SetParams);
    commands.Add<SetIndexArguments>("setacvalueindex", "Set the AC value of a function and keep its DC value",
                                    {"setacvalueindex SCHEME_BALANCED 1 0"}, DeclareSetIndex,
                                    SetIndex<&ParamValue::ACParamIndex>);
    commands.Add<SetIndexArguments>("setdcvalueindex", "Set the DC value of a function and keep its AC value",
                                    {"setdcvalueindex SCHEME_BALANCED 1 4"}, DeclareSetIndex,
                                    SetIndex<&ParamValue::DCParamIndex>);
    commands.Add("reset", "Reset all user settings to the defaults", {"reset"}, Reset);
}

}  // namespace ZOTDam::Client
