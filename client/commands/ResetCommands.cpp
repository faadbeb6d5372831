// reset, forget.
#include "commands/Commands.h"
#include "Error.h"
#include "Scheme.h"
#include "SettingsSnapshot.h"

namespace ZOTDam::Client {

namespace {

bool ResetUserSettings() {
    const Library library;
    // The library resets the settings that this process last read, so they must be read first.
    Text any = {};
    library.GetCommonSetting(L"any", any);
    const bool reset = library.ResetDefault();
    if (reset)
        RequireSaved(UserSettings);
    else
        RequireIdle(UserSettings);
    return reset;
}

Report Reset() {
    Backup backup{UserSettings};
    if (!ResetUserSettings())
        return {"There is nothing to reset.\n", {{"reset", false}, {"backup", nullptr}}};
    backup.Keep();
    return {"The user settings are reset to the defaults.\n" + backup.Text(),
            {{"reset", true}, {"backup", backup.ToJson()}}};
}

bool IsStored(const GUID& scheme) {
    const SettingsSnapshot settings;
    return settings.Stored().Find(scheme) != nullptr;
}

void Remove(const GUID& scheme) {
    const ComScope com;
    RemoveStoredScheme(scheme);
    RequireSaved(UserSettings);
    if (IsStored(scheme))
        throw Error{ErrorKind::NotStored,
                    "The scheme could not be removed from the " + TitleOf(UserSettings) + ".",
                    PathOf(UserSettings)};
}

Report Forget(const GUID& scheme) {
    Json json = {{"scheme", SchemeGuid(scheme)}, {"schemeName", SchemeNameJson(scheme)}};
    if (!IsStored(scheme)) {
        json.update({{"forgotten", false}, {"backup", nullptr}});
        return {"The scheme " + SchemeTitle(scheme) + " is not stored.\n", json};
    }
    Backup backup{UserSettings};
    Remove(scheme);
    backup.Keep();
    json.update({{"forgotten", true}, {"backup", backup.ToJson()}});
    return {"The scheme " + SchemeTitle(scheme) + " is no longer stored.\n" + backup.Text(), json};
}

}  // namespace

void AddResetCommands(CommandSet& commands) {
    commands.Add("reset", "Reset all user settings to the defaults, and keep a backup", {"reset"}, Reset);
    commands.Add("forget", "Remove the stored values of one power scheme, so that the defaults apply",
                 {"forget balanced", "forget 0a1b2c3d-1111-2222-3333-444455556666"}, Forget);
}

}  // namespace ZOTDam::Client
