// set, setacvalueindex, setdcvalueindex.
#include "commands/Commands.h"
#include "Error.h"
#include "Parameters.h"
#include "Scheme.h"
#include "SettingsSnapshot.h"
#include "Text.h"

namespace ZOTDam::Client {

namespace {

struct SetArguments {
    GUID scheme;
    std::vector<std::string> values;
    bool force;
};

struct SetIndexArguments {
    GUID scheme;
    std::int32_t functionId;
    std::string value;
    bool force;
};

// A value as the user has specified it: a position or a label. An empty string keeps the old value.
struct NewValue {
    std::string ac;
    std::string dc;
};

struct Assignment {
    std::int32_t functionId;
    std::vector<NewValue> values;  // more than one if a label may contain a comma
};

// ---- The arguments ----

Assignment ParseAssignment(const std::string& text) {
    const auto equals = text.find('=');
    if (equals == std::string::npos)
        throw UsageError{"\"" + text + "\" is not a value: specify ID=AC,DC."};
    Assignment assignment{ParseNumber("ID", text.substr(0, equals)), {}};
    const std::string value = text.substr(equals + 1);
    for (auto comma = value.find(','); comma != std::string::npos; comma = value.find(',', comma + 1))
        assignment.values.push_back({value.substr(0, comma), value.substr(comma + 1)});
    if (assignment.values.empty() || value == ",")
        throw UsageError{"\"" + text + "\" is not a value: specify ID=AC,DC."};
    return assignment;
}

// The form with three arguments: ID AC DC.
Assignment ParseSingle(const std::vector<std::string>& values) {
    constexpr const char* names[] = {"ID", "AC", "DC"};
    if (values.size() < std::size(names))
        throw UsageError{std::string{names[values.size()]} + " is required."};
    if (values.size() > std::size(names))
        throw UsageError{"The following argument was not expected: " + values[std::size(names)] + "."};
    return {ParseNumber("ID", values[0]), {{values[1], values[2]}}};
}

std::vector<Assignment> ParseAssignments(const std::vector<std::string>& values) {
    if (values.empty() || values.front().find('=') == std::string::npos)
        return {ParseSingle(values)};
    std::vector<Assignment> assignments;
    assignments.reserve(values.size());
    for (const std::string& text : values)
        assignments.push_back(ParseAssignment(text));
    return assignments;
}

// ---- The positions of options ----

// Returns the position that a text selects: a position, or a label in any case.
std::optional<std::int32_t> FindIndex(const Options& options, const std::string& text) {
    const auto number = TryParseNumber(text);
    if (number && SelectOption(options, *number) != nullptr)
        return number;
    for (std::size_t index = 0; index < options.size(); ++index)
        if (IsSameIgnoringCase(options[index].label, text))
            return static_cast<std::int32_t>(index);
    return {};
}

std::string FunctionTitle(const FunctionCatalogue& catalogue, std::int32_t id) {
    const std::string& name = FindFunction(catalogue, id).name;
    return "Function " + std::to_string(id) + (name.empty() ? "" : " (" + name + ")");
}

// Converts the values of the assignments to parameters.
class Resolver {
public:
    Resolver(const SettingsSnapshot& snapshot, const GUID& scheme, bool acceptAll)
        : catalogue{ReadCatalogue(snapshot.Dll())},
          stored{snapshot.Stored().Find(scheme)},
          visible{CollectParams(snapshot.Dll().GetParameter, scheme)},
          force{acceptAll} {}

    Params Resolve(const std::vector<Assignment>& assignments) const {
        Params params;
        for (const Assignment& assignment : assignments) {
            RequireKnown(assignment.functionId);
            if (!params.emplace(assignment.functionId, Resolve(assignment)).second)
                throw UsageError{"Function " + std::to_string(assignment.functionId) +
                                 " is specified more than once."};
        }
        return params;
    }

    const FunctionCatalogue& Functions() const { return catalogue; }

private:
    // An id in neither the catalogue nor the user's settings is probably mistyped.
    void RequireKnown(std::int32_t id) const {
        if (!force && (stored == nullptr || !stored->contains(id)))
            RequireFunction(catalogue, id);
    }

    ParamValue Resolve(const Assignment& assignment) const {
        const CatalogueFunction& function = FindFunction(catalogue, assignment.functionId);
        for (const NewValue& value : assignment.values)
            if (IsResolvable(function.acOptions, value.ac) && IsResolvable(function.dcOptions, value.dc))
                return Resolve(assignment.functionId, value);
        return Resolve(assignment.functionId, assignment.values.front());
    }

    static bool IsResolvable(const Options& options, const std::string& text) {
        return text.empty() || FindIndex(options, text);
    }

    ParamValue Resolve(std::int32_t id, const NewValue& value) const {
        const CatalogueFunction& function = FindFunction(catalogue, id);
        ParamValue params = value.ac.empty() || value.dc.empty() ? OldValue(id) : ParamValue{};
        if (!value.ac.empty())
            params.ACParamIndex = Resolve(id, function.acOptions, value.ac, "AC", "when plugged in");
        if (!value.dc.empty())
            params.DCParamIndex = Resolve(id, function.dcOptions, value.dc, "DC", "on battery");
        return params;
    }

    ParamValue OldValue(std::int32_t id) const {
        const auto found = visible.find(id);
        if (found == visible.end())
            throw Error{ErrorKind::InvalidValue, FunctionTitle(catalogue, id) +
                                                     " is hidden on this display: use \"set\" to set both "
                                                     "indices."};
        return found->second;
    }

    std::int32_t Resolve(std::int32_t id, const Options& options, const std::string& text, const char* name,
                         const char* when) const {
        if (const auto index = FindIndex(options, text))
            return *index;
        if (force)
            return ParseNumber(name, text);
        throw Error{ErrorKind::InvalidValue, FunctionTitle(catalogue, id) + " has no option \"" + text +
                                                 "\" " + when + ". Its options are: " + OptionsText(options) +
                                                 ". --force stores any index."};
    }

    FunctionCatalogue catalogue;
    const Params* stored;
    Params visible;
    bool force;
};

// ---- Storing ----

// Throws if the values were not stored, because the library does not report it.
void RequireStored(const StoredSettings& settings, const GUID& scheme, const Params& params) {
    const Params* const stored = settings.Find(scheme);
    for (const auto& [id, value] : params)
        if (stored == nullptr || !stored->contains(id) || stored->at(id) != value)
            throw Error{ErrorKind::NotStored,
                        "The value could not be stored in the " + TitleOf(UserSettings) + ".",
                        PathOf(UserSettings)};
}

void Write(const GUID& scheme, const Params& params) {
    const Library library;
    library.SetParameter(&scheme, ParamHolder{params}.get());
    RequireSaved(UserSettings);
}

Report Store(const GUID& scheme, const Params& params, const FunctionCatalogue& catalogue) {
    Write(scheme, params);
    const SettingsSnapshot settings;
    RequireStored(settings.Stored(), scheme, params);
    const Params visible = CollectParams(settings.Dll().GetParameter, scheme);
    Table table = ParamTable();
    Json list = Json::array();
    std::string notices;
    for (const auto& [id, value] : params) {
        const bool isHidden = !visible.contains(id);
        table.Add(ParamCells(id, value, catalogue));
        list.push_back(ParamJson(id, value, catalogue));
        list.back()["hidden"] = isHidden;
        if (isHidden)
            notices += "\nFunction " + std::to_string(id) +
                       " is hidden on this display, so \"params\" does not list it.\n";
    }
    return {"Stored in " + SchemeTitle(scheme) + ":\n\n" + table.Text() + notices,
            {{"scheme", SchemeGuid(scheme)}, {"schemeName", SchemeNameJson(scheme)}, {"parameters", list}}};
}

Report SetAll(const GUID& scheme, const std::vector<Assignment>& assignments, bool force) {
    Params params;
    FunctionCatalogue catalogue;
    {
        // Ends before the library writes: only one instance of the library can be loaded.
        const SettingsSnapshot settings;
        const Resolver resolver{settings, scheme, force};
        params = resolver.Resolve(assignments);
        catalogue = resolver.Functions();
    }
    return Store(scheme, params, catalogue);
}

Report SetParams(const SetArguments& arguments) {
    return SetAll(arguments.scheme, ParseAssignments(arguments.values), arguments.force);
}

Report SetAcIndex(const SetIndexArguments& arguments) {
    return SetAll(arguments.scheme, {{arguments.functionId, {{arguments.value, {}}}}}, arguments.force);
}

Report SetDcIndex(const SetIndexArguments& arguments) {
    return SetAll(arguments.scheme, {{arguments.functionId, {{{}, arguments.value}}}}, arguments.force);
}

constexpr char ForceHelp[] =
    "Store an index that selects no option, or a function that is not in the catalogue";

void DeclareSetIndex(CLI::App& command, SetIndexArguments& arguments) {
    AddArgument(command, "SCHEME", arguments.scheme, "The power scheme to change");
    AddArgument(command, "ID", arguments.functionId, "The id of the function");
    AddArgument(command, "INDEX", arguments.value, "The zero-based position of the option, or its label");
    AddFlag(command, "--force", arguments.force, ForceHelp);
}

}  // namespace

void AddSetCommands(CommandSet& commands) {
    commands.Add<SetArguments>(
        "set", "Set functions in a power scheme",
        {"set balanced 1 0 4", "set balanced 1=0,3 2=1,1", "set balanced \"1=100%,40%\"",
         "set balanced 1=0,"},
        [](CLI::App& command, SetArguments& arguments) {
            AddArgument(command, "SCHEME", arguments.scheme, "The power scheme to change");
            AddArgument(command, "VALUES", arguments.values,
                        "ID=AC,DC for each function, or ID AC DC for one: its id, and the zero-based "
                        "positions or the labels of its options when plugged in and on battery. ID=AC, and "
                        "ID=,DC keep the other value");
            AddFlag(command, "--force", arguments.force, ForceHelp);
        },
        SetParams);
    commands.Add<SetIndexArguments>("setacvalueindex", "Set the AC value of a function and keep its DC value",
                                    {"setacvalueindex SCHEME_BALANCED 1 0"}, DeclareSetIndex, SetAcIndex);
    commands.Add<SetIndexArguments>("setdcvalueindex", "Set the DC value of a function and keep its AC value",
                                    {"setdcvalueindex SCHEME_BALANCED 1 4"}, DeclareSetIndex, SetDcIndex);
}

}  // namespace ZOTDam::Client
