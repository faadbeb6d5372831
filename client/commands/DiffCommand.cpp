// diff.
#include <algorithm>

#include "commands/Commands.h"
#include "Error.h"
#include "FunctionTable.h"
#include "Parameters.h"
#include "Scheme.h"
#include "SettingsExport.h"
#include "SettingsSnapshot.h"
#include "Text.h"

namespace ZOTDam::Client {

namespace {

struct DiffArguments {
    GUID schemeA;
    std::optional<GUID> other;
    std::optional<std::string> with;
    bool ac;
    bool dc;
};

struct PowerSource {
    const char* title;
    const char* key;
    std::int32_t ParamValue::*index;
    Options CatalogueFunction::*options;
};

constexpr PowerSource PluggedIn = {"Plugged in", "acDifferences", &ParamValue::ACParamIndex,
                                   &CatalogueFunction::acOptions};
constexpr PowerSource OnBattery = {"On battery", "dcDifferences", &ParamValue::DCParamIndex,
                                   &CatalogueFunction::dcOptions};

// What is compared.
struct Comparison {
    FunctionCatalogue catalogue;
    std::set<std::int32_t> leadingFunctions;
    Params paramsA;
    Params paramsB;
    std::string titleA;
    std::string titleB;
};

struct Difference {
    std::int32_t id;
    std::int32_t indexA;
    std::int32_t indexB;
};

// Returns the differences that GetDiffFuncList lists, in the same order. The strings of that export have at
// most 259 characters, so they would be incomplete.
std::vector<Difference> Compare(const Comparison& comparison, const PowerSource& source) {
    std::vector<Difference> differences;
    for (const auto& [id, valueB] : comparison.paramsB) {
        const auto entryA = comparison.paramsA.find(id);
        if (entryA == comparison.paramsA.end() || !comparison.catalogue.contains(id))
            continue;
        const std::int32_t indexA = entryA->second.*source.index;
        if (indexA != valueB.*source.index)
            differences.push_back({id, indexA, valueB.*source.index});
    }
    // Not std::ranges::stable_partition, which clang 14 does not compile with the library of g++ 12.
    std::stable_partition(differences.begin(), differences.end(), [&](const Difference& difference) {
        return comparison.leadingFunctions.contains(difference.id);
    });
    return differences;
}

std::string DifferencesText(const Comparison& comparison, const PowerSource& source,
                            const std::vector<Difference>& differences) {
    const std::string text = "\n" + std::string{source.title} + ":";
    if (differences.empty())
        return text + " no differences\n";
    Table table{{{"ID"},
                 {"Function", Align::Left},
                 {comparison.titleA, Align::Left},
                 {comparison.titleB, Align::Left}}};
    for (const auto& [id, indexA, indexB] : differences) {
        const CatalogueFunction& function = FindFunction(comparison.catalogue, id);
        table.Add({std::to_string(id), function.name, IndexText(function.*source.options, indexA),
                   IndexText(function.*source.options, indexB)});
    }
    return text + "\n\n" + table.Text();
}

Json DifferencesJson(const Comparison& comparison, const PowerSource& source,
                     const std::vector<Difference>& differences) {
    Json list = Json::array();
    for (const auto& [id, indexA, indexB] : differences) {
        const CatalogueFunction& function = FindFunction(comparison.catalogue, id);
        const Option* const from = SelectOption(function.*source.options, indexA);
        const Option* const to = SelectOption(function.*source.options, indexB);
        list.push_back({{"id", id},
                        {"name", function.name},
                        {"fromIndex", indexA},
                        {"fromOption", NumberJson(from)},
                        {"fromLabel", LabelJson(from)},
                        {"toIndex", indexB},
                        {"toOption", NumberJson(to)},
                        {"toLabel", LabelJson(to)}});
    }
    return list;
}

// Returns the user settings file of a folder: a copy of the suite's folder, of %ProgramData%, or of the
// drive.
std::filesystem::path FindUserSettings(const std::filesystem::path& folder) {
    const std::filesystem::path inProgramData =
        std::filesystem::path{L"Orlo Corporation"} / L"QUEN Power Management" / UserSettingsLocation.fileName;
    for (const std::filesystem::path& file : {folder / UserSettingsLocation.fileName, folder / inProgramData,
                                              folder / L"ProgramData" / inProgramData})
        if (exists(file))
            return file;
    throw Error{ErrorKind::MissingFile,
                "The folder " + Utf8(folder) + " contains no " + ToUtf8(UserSettingsLocation.fileName) + ".",
                folder};
}

// Returns the user settings of another machine: a user settings file, or an export.
FileContents ReadOtherSettings(std::filesystem::path path) {
    if (is_directory(path))
        path = FindUserSettings(path);
    std::string content = ReadNamedFile(path);
    if (content.starts_with('{'))
        return {XmlOf(ParseExport(content, path).settings), {}};
    return {content, {}};
}

Params CollectOther(const std::filesystem::path& path, const GUID& scheme) {
    const SettingsSnapshot settings{ReadOtherSettings(path)};
    if (!settings.Problem().empty())
        throw Error{ErrorKind::UnreadableFile, "The user settings in " + Utf8(path) + " are not well-formed.",
                    path};
    return CollectParams(settings.Dll().GetParameter, scheme);
}

Comparison ReadComparison(const DiffArguments& arguments, const GUID& schemeB) {
    Comparison comparison;
    {
        const SettingsSnapshot settings;
        FunctionCatalogue catalogue = ReadCatalogue(settings.Dll());
        std::set<std::int32_t> leadingFunctions = LeadingFunctions(ReadFunctionTable(catalogue));
        comparison = {std::move(catalogue),
                      std::move(leadingFunctions),
                      CollectParams(settings.Dll().GetParameter, arguments.schemeA),
                      CollectParams(settings.Dll().GetParameter, schemeB),
                      SchemeLabel(arguments.schemeA),
                      SchemeLabel(schemeB)};
    }
    if (arguments.with) {
        comparison.paramsB = CollectOther(std::filesystem::absolute(ToUtf16(*arguments.with)), schemeB);
        comparison.titleA += " (this machine)";
        comparison.titleB += " (other machine)";
    }
    return comparison;
}

Report ListDifferences(const DiffArguments& arguments) {
    if (!arguments.other && !arguments.with)
        throw UsageError{"OTHER is required."};
    const GUID schemeB = arguments.other.value_or(arguments.schemeA);
    const bool both = !arguments.ac && !arguments.dc;
    const Comparison comparison = ReadComparison(arguments, schemeB);
    const std::string with = arguments.with ? " in " + *arguments.with : "";
    Report report{"Values of " + SchemeTitle(schemeB) + with + "\nthat differ from those of " +
                      SchemeTitle(arguments.schemeA) + "\n",
                  {{"fromScheme", SchemeGuid(arguments.schemeA)},
                   {"fromSchemeName", SchemeNameJson(arguments.schemeA)},
                   {"toScheme", SchemeGuid(schemeB)},
                   {"toSchemeName", SchemeNameJson(schemeB)},
                   {"with", arguments.with ? Json(*arguments.with) : Json()}}};
    const auto add = [&](const PowerSource& source) {
        const std::vector<Difference> differences = Compare(comparison, source);
        report.text += DifferencesText(comparison, source, differences);
        report.json[source.key] = DifferencesJson(comparison, source, differences);
    };
    if (arguments.ac || both)
        add(PluggedIn);
    if (arguments.dc || both)
        add(OnBattery);
    return report;
}

}  // namespace

void AddDiffCommand(CommandSet& commands) {
    commands.Add<DiffArguments>(
        "diff", "List the values of a power scheme that differ from those of another one",
        {"diff balanced power-saver", "diff balanced high-performance --ac",
         "diff balanced --with D:\\Copy\\ProgramData"},
        [](CLI::App& command, DiffArguments& arguments) {
            AddArgument(command, "SCHEME", arguments.schemeA, "The power scheme to compare with");
            AddArgument(command, "OTHER", arguments.other,
                        "The power scheme whose values to list; with --with, by default the same one");
            AddOption(
                command, "--with", "PATH", arguments.with,
                "List the values of another machine: its ZOTPowercfg.xml, a folder that contains it, or "
                "a file of \"export\". The options and defaults are those of this machine");
            AddFlag(command, "--ac", arguments.ac, "Compare only the values when plugged in");
            AddFlag(command, "--dc", arguments.dc, "Compare only the values on battery");
        },
        ListDifferences);
}

}  // namespace ZOTDam::Client
