// setting get, setting list, setting set, setting init.
#include "commands/Commands.h"
#include "EffectiveSettings.h"
#include "Error.h"
#include "Library.h"
#include "Suggestion.h"
#include "Text.h"
#include "xml/XmlCharacters.h"

namespace ZOTDam::Client {

namespace {

struct GetSettingArguments {
    std::string name;
};

struct SetSettingArguments {
    std::string name;
    std::string value;
};

std::vector<std::string> NamesOf(const EffectiveSettings& settings) {
    std::vector<std::string> names;
    for (const auto& [name, setting] : settings)
        names.push_back(name);
    return names;
}

Report GetSetting(const GetSettingArguments& arguments) {
    const SettingsSnapshot snapshot;
    const EffectiveSettings settings = ReadEffectiveSettings(snapshot);
    ZOTDam::Text value = {};
    const auto found = settings.find(arguments.name);
    if (found == settings.end() || !snapshot.Dll().GetCommonSetting(ToUtf16(arguments.name).c_str(), value))
        throw Error{ErrorKind::UnknownSetting, "There is no common setting \"" + arguments.name + "\"" +
                                                   SuggestionFor(arguments.name, NamesOf(settings))};
    return {ToUtf8(value) + "\n",
            {{"name", arguments.name}, {"value", ToUtf8(value)}, {"source", found->second.source}}};
}

Report ListSettings() {
    const SettingsSnapshot snapshot;
    Table table{{{"Name", Align::Left}, {"Value", Align::Left}, {"Source", Align::Left}}};
    Json list = Json::array();
    for (const auto& [name, setting] : ReadEffectiveSettings(snapshot)) {
        table.Add({name, setting.value, setting.source});
        list.push_back({{"name", name}, {"value", setting.value}, {"source", setting.source}});
    }
    return {table.Text() + ProblemNotice(snapshot), {{"settings", list}}};
}

// Throws if the library would reject the setting.
void CheckSetting(const std::string& name, std::wstring_view value) {
    if (value.size() >= TextCapacity)
        throw UsageError{"The value is too long: a setting can have at most " +
                         std::to_string(TextCapacity - 1) + " characters."};
    if (name == "xmlns")
        throw Error{ErrorKind::InvalidValue, "The name \"xmlns\" is reserved by XML."};
    if (!IsNcName(ToUtf16(name)))
        throw Error{ErrorKind::InvalidValue,
                    "\"" + name +
                        "\" is not a valid name: a name begins with a letter or \"_\", and has only letters, "
                        "digits, \".\", \"-\" and \"_\"."};
    if (!IsXmlText(value))
        throw Error{ErrorKind::InvalidValue, "The value contains a character that XML does not allow."};
}

Report SetSetting(const SetSettingArguments& arguments) {
    const std::wstring value = ToUtf16(arguments.value);
    CheckSetting(arguments.name, value);
    const Library library;
    const bool isStored = library.SetCommonSetting(ToUtf16(arguments.name).c_str(), value.c_str());
    RequireSaved(UserSettings);
    if (!isStored)
        throw Error{ErrorKind::NotStored,
                    "The setting could not be stored in the " + TitleOf(UserSettings) + ".",
                    PathOf(UserSettings)};
    return {arguments.name + " is now \"" + arguments.value + "\".\n",
            {{"name", arguments.name}, {"value", arguments.value}}};
}

Report InitSettings() {
    const Library library;
    if (!library.InitCommonSetting())
        throw Error{ErrorKind::NotStored,
                    "The common settings could not be initialised: the " + TitleOf(BaseCatalogue) +
                        " contains none, or the " + TitleOf(Defaults) + " cannot be written.",
                    PathOf(Defaults)};
    RequireSaved(Defaults);
    return {"The default settings were replaced with those of the base catalogue.\n",
            {{"initialised", true}}};
}

}  // namespace

void AddSettingCommands(CommandSet& commands) {
    CommandSet setting = commands.AddSet("setting", "Read, list, change or initialise common settings");
    setting.Add<GetSettingArguments>(
        "get", "Read a setting of the user, otherwise the default, otherwise that of the base catalogue",
        {"setting get LowBatteryWarning"},
        [](CLI::App& command, GetSettingArguments& arguments) {
            AddArgument(command, "NAME", arguments.name, "The name of the setting");
        },
        GetSetting);
    setting.Add("list", "List all settings with the file that each value comes from", {"setting list"},
                ListSettings);
    setting.Add<SetSettingArguments>(
        "set", "Change a setting of the user", {"setting set LowBatteryWarning 20"},
        [](CLI::App& command, SetSettingArguments& arguments) {
            AddArgument(command, "NAME", arguments.name, "The name of the setting");
            AddArgument(command, "VALUE", arguments.value, "The value of the setting");
        },
        SetSetting);
    setting.Add("init", "Replace the default settings with those of the base catalogue", {"setting init"},
                InitSettings);
}

}  // namespace ZOTDam::Client
