// Where the suite keeps its files, and whether the one that the library writes can be written now.
#pragma once

#include <filesystem>

namespace ZOTDam::Client {

// Let this process work with the files below another folder. Only before the library is loaded.
void RedirectProgramFiles(const std::filesystem::path& folder);
void RedirectProgramData(const std::filesystem::path& folder);

std::filesystem::path CatalogueFile();
std::filesystem::path UserSettingsFile();

// The library neither waits for the user settings file nor tells that a load was skipped or a save had no
// effect. These throw an Error when another program is using the file, or when it cannot be written.
void RequireUserSettingsIdle();
void RequireUserSettingsSaved();

}  // namespace ZOTDam::Client
