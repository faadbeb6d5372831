// base, adopt, spec-schemes.
#include <set>

#include "BaseFunction.h"
#include "Catalogue.h"
#include "commands/Commands.h"
#include "DataFileContent.h"
#include "Error.h"
#include "PowerSettingNames.h"
#include "Scheme.h"

namespace ZOTDam::Client {

namespace {

using Ids = std::set<std::int32_t>;

struct BaseArguments {
    bool unsupported;
};

struct AdoptArguments {
    Ids ids;
    bool all;
};

// The library enumerates no functions if the base catalogue cannot be read, and reports no error.
void RequireBaseCatalogue() {
    if (!exists(PathOf(BaseCatalogue)))
        throw Error{ErrorKind::MissingFile, "The " + TitleOf(BaseCatalogue) + " does not exist.",
                    PathOf(BaseCatalogue)};
}

Report ListBaseFunctions(const BaseArguments& arguments) {
    RequireBaseCatalogue();
    const Library library;
    if (arguments.unsupported)
        RequireCatalogue(library);
    Report report{{}, {{"functions", Json::array()}}};
    auto add = MakeCallback<IGetFunctionBaseCallback>([&](const FunctionBaseRecord* record) {
        const BaseFunction function{*record};
        report.text += (report.text.empty() ? "" : "\n") + function.Text();
        report.json["functions"].push_back(function.ToJson());
    });
    (arguments.unsupported ? library.GetFunctionBaseUnSupported : library.GetFunctionBase)(&add);
    if (report.text.empty())
        report.text = "There are no such functions.\n";
    return report;
}

// Returns copies of the selected functions' records, which remain valid after the enumeration.
List<FunctionBaseRecord> CollectBaseFunctions(const Library& library, const AdoptArguments& arguments) {
    List<FunctionBaseRecord> records;
    Ids missing = arguments.ids;
    auto collect = MakeCallback<IGetFunctionBaseCallback>([&](const FunctionBaseRecord* record) {
        missing.erase(record->id);
        if (arguments.all || arguments.ids.contains(record->id))
            records.push_back(*record);
    });
    library.GetFunctionBase(&collect);
    if (!missing.empty())
        throw Error{
            ErrorKind::UnknownFunction,
            "The " + TitleOf(BaseCatalogue) + " has no function " + std::to_string(*missing.begin()) + ".",
            PathOf(BaseCatalogue)};
    if (records.empty())
        throw Error{ErrorKind::UnknownFunction, "The " + TitleOf(BaseCatalogue) + " has no functions.",
                    PathOf(BaseCatalogue)};
    return records;
}

Ids CatalogueIds(const Library& library) {
    Ids ids;
    auto collect = MakeCallback<IGetFunctionInfoCallback>(
        [&](std::uint32_t id, const FunctionRecord*) { ids.insert(static_cast<std::int32_t>(id)); });
    library.GetFunctionInfo(&collect);
    return ids;
}

std::string IdsText(const Ids& ids) {
    std::string text;
    for (const std::int32_t id : ids)
        text += (text.empty() ? "" : ", ") + std::to_string(id);
    return text;
}

Report Adopt(const AdoptArguments& arguments) {
    if (arguments.all != arguments.ids.empty())
        throw UsageError{"Specify either the ids of the functions to adopt or --all."};
    RequireBaseCatalogue();
    const Library library;
    const FunctionBaseHolder holder{nullptr, CollectBaseFunctions(library, arguments)};
    Backup backup{Defaults};
    library.AddFunctionDefault(&holder);
    RequireSaved(Defaults);
    RequireCatalogue(library);
    backup.Keep();
    const Ids adopted = CatalogueIds(library);
    Ids skipped;
    for (const FunctionBaseRecord& record : holder.records)
        if (!adopted.contains(record.id))
            skipped.insert(record.id);
    std::string text = "The catalogue now consists of these functions: " + IdsText(adopted) + "\n";
    if (!skipped.empty())
        text += "Skipped because they have no commands: " + IdsText(skipped) + "\n";
    return {text + backup.Text(),
            {{"functions", adopted}, {"skipped", skipped}, {"backup", backup.ToJson()}}};
}

// Returns null for a setting that is not part of Windows.
Json PowerSettingNameJson(const GUID& setting) {
    const std::string_view name = PowerSettingName(setting);
    return name.empty() ? Json() : Json(name);
}

// Returns the display text "name (GUID)", or the GUID alone.
std::string PowerSettingTitle(const GUID& setting) {
    const std::string name{PowerSettingName(setting)};
    return name.empty() ? SchemeGuid(setting) : name + " (" + SchemeGuid(setting) + ")";
}

Json PowerSettingJson(const SpecPowerSettingRecord& setting) {
    return {{"powerSetting", SchemeGuid(setting.powerSetting)},
            {"name", PowerSettingNameJson(setting.powerSetting)},
            {"acValue", setting.acValue},
            {"dcValue", setting.dcValue}};
}

Json SubGroupJson(const SpecSubGroupRecord& subGroup) {
    Json settings = Json::array();
    for (const SpecPowerSettingRecord& setting : subGroup.powerSettings)
        settings.push_back(PowerSettingJson(setting));
    return {{"subGroup", SchemeGuid(subGroup.subGroup)},
            {"name", PowerSettingNameJson(subGroup.subGroup)},
            {"powerSettings", settings}};
}

Json SpecSchemeJson(const SpecSchemeRecord& scheme) {
    Json subGroups = Json::array();
    for (const SpecSubGroupRecord& subGroup : scheme.subGroups)
        subGroups.push_back(SubGroupJson(subGroup));
    return {{"scheme", SchemeGuid(scheme.scheme)},
            {"schemeName", SchemeNameJson(scheme.scheme)},
            {"subGroups", subGroups}};
}

std::string SpecSchemeText(const SpecSchemeRecord& scheme) {
    std::string text = SchemeTitle(scheme.scheme) + "\n";
    for (const SpecSubGroupRecord& subGroup : scheme.subGroups) {
        text += "    " + PowerSettingTitle(subGroup.subGroup) + "\n";
        for (const auto& [ac, dc, powerSetting] : subGroup.powerSettings)
            text += "        " + PowerSettingTitle(powerSetting) + ": " + std::to_string(ac) +
                    " plugged in, " + std::to_string(dc) + " on battery\n";
    }
    return text;
}

Report ListSpecSchemes() {
    RequireBaseCatalogue();
    const Library library;
    Report report{{}, {{"schemes", Json::array()}}};
    auto add = MakeCallback<IGetSpecSchemeCallback>([&](const SpecSchemeRecord* scheme) {
        report.text += (report.text.empty() ? "" : "\n") + SpecSchemeText(*scheme);
        report.json["schemes"].push_back(SpecSchemeJson(*scheme));
    });
    library.GetSpecScheme(&add);
    if (report.text.empty())
        report.text = "There are no spec schemes.\n";
    return report;
}

}  // namespace

void AddBaseCommands(CommandSet& commands) {
    commands.Add<BaseArguments>(
        "base", "List the functions of the base catalogue with their options, defaults and commands",
        {"base", "base --unsupported --json"},
        [](CLI::App& command, BaseArguments& arguments) {
            AddFlag(command, "--unsupported", arguments.unsupported,
                    "List only the functions that are not in the catalogue of this machine");
        },
        ListBaseFunctions);
    commands.Add<AdoptArguments>(
        "adopt", "Replace the catalogue of this machine with functions of the base catalogue",
        {"adopt 1 2 9", "adopt --all"},
        [](CLI::App& command, AdoptArguments& arguments) {
            AddArgument(command, "ID", arguments.ids, "The ids of the functions");
            AddFlag(command, "--all", arguments.all, "Adopt all functions");
        },
        Adopt);
    commands.Add("spec-schemes", "List the Windows power settings that the base catalogue prescribes",
                 {"spec-schemes", "spec-schemes --json"}, ListSpecSchemes);
}

}  // namespace ZOTDam::Client
