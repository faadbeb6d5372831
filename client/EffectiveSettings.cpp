#include "EffectiveSettings.h"

#include "Text.h"

namespace ZOTDam::Client {

namespace {

// The library ignores values that do not fit into the caller's buffer.
void AddSettings(EffectiveSettings& all, const CommonSettings& settings, const char* source,
                 const DataFile& file) {
    for (const auto& [name, value] : settings)
        if (ToUtf16(value).size() < TextCapacity)
            all.try_emplace(name, EffectiveSetting{value, source, file.title});
}

}  // namespace

// The library skips a file in use and returns the value of the next file.
EffectiveSettings ReadEffectiveSettings(const SettingsSnapshot& snapshot) {
    RequireIdle(Defaults);
    EffectiveSettings settings;
    AddSettings(settings, snapshot.Stored().commonSettings, "user", UserSettings);
    AddSettings(settings, ReadCommonSettings(PathOf(Defaults)), "default", Defaults);
    AddSettings(settings, ReadCommonSettings(PathOf(BaseCatalogue)), "base", BaseCatalogue);
    return settings;
}

}  // namespace ZOTDam::Client
