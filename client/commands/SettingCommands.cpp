// setting get, setting set, setting init.
#include "commands/Commands.h"
#include "DataFiles.h"
#include "Error.h"
#include "Text.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

namespace {

struct GetSettingArguments {
    std::string name;
};

struct SetSettingArguments {
    std::string name;
    std::string value;
};

Report GetSetting(const GetSettingArguments& arguments) {
    const Library library;
    ZOTDam::Text value = {};
    const bool found = library.GetCommonSetting(ToUtf16(arguments.name).c_str(), value);
    // The library skips a file in use and returns the value of the next file.
    RequireIdle(UserSettings);
    RequireIdle(Defaults);
    if (!found)
        throw Error{"There is no common setting \"" + arguments.name + "\"."};
    return {ToUtf8(value) + "\n", {{"name", arguments.name}, {"value", ToUtf8(value)}}};
}

Report SetSetting(const SetSettingArguments& arguments) {
    const std::wstring value = ToUtf16(arguments.value);
    if (value.size() >= TextCapacity)
        throw UsageError{"The value is too long: a setting can have at most " +
                         std::to_string(TextCapacity - 1) + " characters."};
    const Library library;
    if (!library.SetCommonSetting(ToUtf16(arguments.name).c_str(), value.c_str()))
        throw Error{"The setting could not be stored: \"" + arguments.name +
                    "\" is not a valid name, the value contains characters that XML does not allow, or the " +
                    TitleOf(UserSettings) + " cannot be written."};
    RequireSaved(UserSettings);
    return {arguments.name + " is now \"" + arguments.value + "\".\n",
            {{"name", arguments.name}, {"value", arguments.value}}};
}

Report InitSettings() {
    const Library library;
    if (!library.InitCommonSetting())
        throw Error{"The common settings could not be initialised: the " + TitleOf(BaseCatalogue) +
                    " contains none, or the " + TitleOf(Defaults) + " cannot be written."};
    RequireSaved(Defaults);
    return {"The default settings were replaced with those of the base catalogue.\n",
            {{"initialised", true}}};
}

}  // namespace

void AddSettingCommands(CommandSet& commands) {
    CommandSet setting = commands.AddSet("setting", "Read, change or initialise common settings");
    setting.Add<GetSettingArguments>(
        "get", "Read a setting of the user, otherwise the default, otherwise that of the base catalogue",
        {"setting get LowBatteryWarning"},
        [](CLI::App& command, GetSettingArguments& arguments) {
            AddArgument(command, "NAME", arguments.name, "The name of the setting");
        },
        GetSetting);
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
