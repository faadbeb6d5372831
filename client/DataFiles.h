// Where the suite keeps its files, and whether those that the library writes can be written now.
#pragma once

#include <filesystem>
#include <string>

namespace ZOTDam::Client {

struct DataFile {
    const char* title;
    const wchar_t* location;    // with environment variables
    const wchar_t* busyMarker;  // the mutex of a program that loads or saves the file; null where none saves
};

inline constexpr DataFile BaseCatalogue = {
    "base catalogue", LR"(%ProgramFiles%\Orlo\QUEN Power Management\data\ZOTBase.xml)", nullptr};
inline constexpr DataFile Defaults = {
    "defaults file", LR"(%ProgramFiles%\Orlo\QUEN Power Management\ZOTDefault.xml)", L"XmlZOTDefaultMutex"};
inline constexpr DataFile UserSettings = {
    "user settings file", LR"(%ProgramData%\Orlo Corporation\QUEN Power Management\ZOTPowercfg.xml)",
    L"XmlZOTPowercfgMutex"};

// Let this process work with the files below another folder. Only before the library is loaded.
void RedirectProgramFiles(const std::filesystem::path& folder);
void RedirectProgramData(const std::filesystem::path& folder);

std::filesystem::path PathOf(const DataFile& file);

// For sentences: "defaults file C:\...".
std::string TitleOf(const DataFile& file);

// The copy of the string table for a language, which may not exist. Throws UsageError for what is no name of
// a language.
std::filesystem::path StringTableFor(const std::string& language);

// The string table that the library reads for this user.
std::filesystem::path StringTableOfUser();

// The library neither waits for a file nor tells that a load was skipped or a save had no effect. These throw
// an Error when another program is using the file, or when it cannot be written.
void RequireIdle(const DataFile& file);
void RequireSaved(const DataFile& file);

}  // namespace ZOTDam::Client
