// export, import, backup, restore.
#include <map>

#include "commands/Commands.h"
#include "Error.h"
#include "Parameters.h"
#include "Scheme.h"
#include "SettingsExport.h"
#include "SettingsSnapshot.h"
#include "Text.h"

namespace ZOTDam::Client {

namespace {

struct ExportArguments {
    std::string file;
};

struct ImportArguments {
    std::string file;
    bool dryRun;
    bool force;
};

struct BackupArguments {
    std::optional<std::string> file;
};

struct RestoreArguments {
    std::string file;
};

std::filesystem::path AbsolutePath(const std::string& name) {
    return std::filesystem::absolute(ToUtf16(name));
}

// ---- export ----

std::string CountText(std::size_t count, const char* noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

Report Export(const ExportArguments& arguments) {
    const std::filesystem::path path = AbsolutePath(arguments.file);
    const SettingsSnapshot settings;
    const Json exported = ExportJson(settings.Stored(), ReadCatalogue(settings.Dll()));
    constexpr bool asciiOnly = true;
    WriteNamedFile(path, exported.dump(2, ' ', asciiOnly) + '\n');
    const std::size_t schemes = exported["schemes"].size();
    const std::size_t commonSettings = exported["commonSettings"].size();
    return {"Exported to " + Utf8(path) + ": " + CountText(schemes, "scheme") + ", " +
                CountText(commonSettings, "common setting") + "\n",
            {{"file", Utf8(path)}, {"schemeCount", schemes}, {"settingCount", commonSettings}}};
}

// ---- import ----

struct ParamChange {
    std::int32_t id;
    std::optional<ParamValue> before;
    ParamValue after;
};

struct SchemeChanges {
    GUID scheme;
    std::vector<ParamChange> params;
};

struct SettingChange {
    std::string name;
    std::optional<std::string> before;
    std::string after;
};

// The differences between an export and what is stored.
struct Changes {
    FunctionCatalogue catalogue;
    std::vector<SchemeChanges> schemes;
    std::vector<SettingChange> commonSettings;

    bool IsEmpty() const noexcept { return schemes.empty() && commonSettings.empty(); }
};

std::vector<ParamChange> CompareParams(const Params* stored, const Params& imported) {
    std::vector<ParamChange> changes;
    for (const auto& [id, after] : imported) {
        std::optional<ParamValue> before;
        if (stored != nullptr && stored->contains(id))
            before = stored->at(id);
        if (before != after)
            changes.push_back({id, before, after});
    }
    return changes;
}

std::vector<SettingChange> CompareSettings(const CommonSettings& stored, const CommonSettings& imported) {
    const std::map<std::string, std::string> storedValues{stored.begin(), stored.end()};
    std::vector<SettingChange> changes;
    for (const auto& [name, after] : imported) {
        const auto found = storedValues.find(name);
        if (found == storedValues.end())
            changes.push_back({name, {}, after});
        else if (found->second != after)
            changes.push_back({name, found->second, after});
    }
    return changes;
}

// Throws if a position selects no option on this machine, or another one than on the machine of the export.
void RequireSameCatalogue(const SettingsExport& exported, const FunctionCatalogue& catalogue) {
    if (exported.fingerprint != FingerprintOf(catalogue))
        throw Error{ErrorKind::InvalidValue,
                    "The export is from a machine with another catalogue than " + Utf8(PathOf(Defaults)) +
                        ", where positions can select other options. --force imports them unchanged.",
                    PathOf(Defaults)};
}

Changes FindChanges(const SettingsExport& exported, bool force) {
    const SettingsSnapshot settings;
    Changes changes{ReadCatalogue(settings.Dll()), {}, {}};
    if (!force)
        RequireSameCatalogue(exported, changes.catalogue);
    for (const auto& [scheme, params] : exported.settings.schemes) {
        std::vector<ParamChange> changed = CompareParams(settings.Stored().Find(scheme), params);
        if (!changed.empty())
            changes.schemes.push_back({scheme, std::move(changed)});
    }
    changes.commonSettings =
        CompareSettings(settings.Stored().commonSettings, exported.settings.commonSettings);
    return changes;
}

void Apply(const Changes& changes) {
    const Library library;
    for (const auto& [scheme, params] : changes.schemes) {
        Params values;
        for (const ParamChange& change : params)
            values.emplace(change.id, change.after);
        library.SetParameter(&scheme, ParamHolder{values}.get());
    }
    for (const SettingChange& change : changes.commonSettings)
        library.SetCommonSetting(ToUtf16(change.name).c_str(), ToUtf16(change.after).c_str());
    RequireSaved(UserSettings);
}

std::string ValueText(const FunctionCatalogue& catalogue, std::int32_t id,
                      const std::optional<ParamValue>& value) {
    if (!value)
        return "(not stored)";
    const CatalogueFunction& function = FindFunction(catalogue, id);
    return IndexText(function.acOptions, value->ACParamIndex) + " / " +
           IndexText(function.dcOptions, value->DCParamIndex);
}

std::string ChangesText(const Changes& changes) {
    if (changes.IsEmpty())
        return "There is nothing to change.\n";
    Table table{{{"Scheme", Align::Left},
                 {"ID"},
                 {"Function", Align::Left},
                 {"Stored: plugged in / on battery", Align::Left},
                 {"New", Align::Left}}};
    for (const auto& [scheme, params] : changes.schemes)
        for (const auto& [id, before, after] : params)
            table.Add({SchemeLabel(scheme), std::to_string(id), FunctionNameText(changes.catalogue, id),
                       ValueText(changes.catalogue, id, before), ValueText(changes.catalogue, id, after)});
    Table settings{{{"Setting", Align::Left}, {"Stored", Align::Left}, {"New", Align::Left}}};
    for (const auto& [name, before, after] : changes.commonSettings)
        settings.Add({name, before.value_or("(not stored)"), after});
    return (changes.schemes.empty() ? "" : table.Text()) +
           (changes.schemes.empty() || changes.commonSettings.empty() ? "" : "\n") +
           (changes.commonSettings.empty() ? "" : settings.Text());
}

Json ValueJson(const FunctionCatalogue& catalogue, std::int32_t id, const std::optional<ParamValue>& value) {
    if (!value)
        return {};
    Json json = ParamJson(id, *value, catalogue);
    json.erase("id");
    json.erase("name");
    return json;
}

Json ChangesJson(const Changes& changes) {
    Json params = Json::array();
    for (const auto& [scheme, list] : changes.schemes)
        for (const auto& [id, before, after] : list)
            params.push_back({{"scheme", SchemeGuid(scheme)},
                              {"schemeName", SchemeNameJson(scheme)},
                              {"id", id},
                              {"name", FunctionNameJson(changes.catalogue, id)},
                              {"before", ValueJson(changes.catalogue, id, before)},
                              {"after", ValueJson(changes.catalogue, id, after)}});
    Json settings = Json::array();
    for (const auto& [name, before, after] : changes.commonSettings)
        settings.push_back(
            {{"name", name}, {"valueBefore", before ? Json(*before) : Json()}, {"valueAfter", after}});
    return {{"parameterChanges", params}, {"settingChanges", settings}};
}

Report Import(const ImportArguments& arguments) {
    const std::filesystem::path path = AbsolutePath(arguments.file);
    const SettingsExport exported = ParseExport(ReadNamedFile(path), path);
    const Changes changes = FindChanges(exported, arguments.force);
    Report report{ChangesText(changes), {{"file", Utf8(path)}, {"dryRun", arguments.dryRun}}};
    report.json.update(ChangesJson(changes));
    report.json["backup"] = nullptr;
    if (arguments.dryRun || changes.IsEmpty()) {
        report.text += changes.IsEmpty() ? "" : "\nNothing was stored, because this is a dry run.\n";
        return report;
    }
    Backup backup{UserSettings};
    Apply(changes);
    backup.Keep();
    if (!FindChanges(exported, true).IsEmpty())
        throw Error{ErrorKind::NotStored,
                    "Not all values could be stored in the " + TitleOf(UserSettings) + ".",
                    PathOf(UserSettings)};
    report.text += "\nStored.\n" + backup.Text();
    report.json["backup"] = backup.ToJson();
    return report;
}

// ---- backup, restore ----

Report MakeBackup(const BackupArguments& arguments) {
    std::optional<std::filesystem::path> target;
    if (arguments.file)
        target = AbsolutePath(*arguments.file);
    const auto path = BackUp(UserSettings, target);
    if (!path)
        throw Error{ErrorKind::MissingFile, "The " + TitleOf(UserSettings) + " does not exist.",
                    PathOf(UserSettings)};
    return {"Backup: " + Utf8(*path) + "\n", {{"backup", Utf8(*path)}}};
}

// Returns the data file that a backup belongs to.
const DataFile& DataFileOf(const std::filesystem::path& backup) {
    const ComScope com;
    const std::string root = ReadRootName(backup);
    if (root == "OrloPowerCfg")
        return UserSettings;
    if (root == "ZOTDefault")
        return Defaults;
    throw Error{ErrorKind::UnreadableFile,
                "The file " + Utf8(backup) + " is neither a user settings file nor a defaults file.", backup};
}

Report Restore(const RestoreArguments& arguments) {
    const std::filesystem::path path = AbsolutePath(arguments.file);
    const std::string content = ReadNamedFile(path);
    const DataFile& file = DataFileOf(path);
    Backup backup{file};
    ReplaceDataFile(file, content);
    backup.Keep();
    return {"The " + TitleOf(file) + " is restored.\n" + backup.Text(),
            {{"file", Utf8(PathOf(file))}, {"backup", backup.ToJson()}}};
}

}  // namespace

void AddTransferCommands(CommandSet& commands) {
    commands.Add<ExportArguments>(
        "export", "Write the stored schemes and common settings to a JSON file for another machine",
        {"export settings.json"},
        [](CLI::App& command, ExportArguments& arguments) {
            AddArgument(command, "FILE", arguments.file, "The file to write; it is replaced if it exists");
        },
        Export);
    commands.Add<ImportArguments>(
        "import", "Store the schemes and common settings of an export, and keep a backup",
        {"import settings.json --dry-run", "import settings.json"},
        [](CLI::App& command, ImportArguments& arguments) {
            AddArgument(command, "FILE", arguments.file, "The file that \"export\" has written");
            AddFlag(command, "--dry-run", arguments.dryRun, "Show what would change, and store nothing");
            AddFlag(command, "--force", arguments.force,
                    "Import positions also if the catalogue of the other machine differs");
        },
        Import);
    commands.Add<BackupArguments>(
        "backup", "Copy the user settings file", {"backup", "backup D:\\ZOTPowercfg.xml"},
        [](CLI::App& command, BackupArguments& arguments) {
            AddArgument(command, "FILE", arguments.file,
                        "The file to write, which is replaced if it exists; by default, a new file in the "
                        "same folder with the time in its name");
        },
        MakeBackup);
    commands.Add<RestoreArguments>(
        "restore", "Replace the user settings file or the defaults file with a backup, and keep a backup",
        {"restore D:\\ZOTPowercfg.xml"},
        [](CLI::App& command, RestoreArguments& arguments) {
            AddArgument(command, "FILE", arguments.file, "The backup");
        },
        Restore);
}

}  // namespace ZOTDam::Client
