// The locations of the suite's data files, and checks whether the writable ones can be written.
#pragma once

#include <filesystem>
#include <string>

#include "platform/DataFiles.h"

namespace ZOTDam::Client {

struct DataFile {
    const char* title;
    DataFileLocation location;
};

inline constexpr DataFile BaseCatalogue = {"base catalogue", BaseCatalogueLocation};
inline constexpr DataFile Defaults = {"defaults file", DefaultsLocation};
inline constexpr DataFile UserSettings = {"user settings file", UserSettingsLocation};

// For its scope, redirects this process to the files in another folder. `variable` is L"ProgramFiles" or
// L"ProgramData". The library uses the folder that it finds when it first uses a file.
class FolderRedirection {
public:
    FolderRedirection(const wchar_t* folderVariable, const std::filesystem::path& folder);
    FolderRedirection(const FolderRedirection&) = delete;
    FolderRedirection& operator=(const FolderRedirection&) = delete;
    ~FolderRedirection();

private:
    const wchar_t* variable;
    std::filesystem::path before;
};

// Replaces the environment variables in a text.
std::filesystem::path Expand(const wchar_t* text);

std::filesystem::path PathOf(const DataFile& file);

// Returns the title and the path: "defaults file C:\...".
std::string TitleOf(const DataFile& file);

std::filesystem::path NeutralStringTable();

// Returns the path of a language's copy of the string table; the file may not exist. Throws UsageError if the
// argument is not a valid language name.
std::filesystem::path StringTableFor(const std::string& language);

// Returns whether another program holds the busy marker of a file.
bool IsBusy(const DataFile& file) noexcept;

// The library does not wait for a file, and it does not report that a load was skipped or that a save had no
// effect. RequireIdle and RequireSaved throw an Error if another program is using the file. RequireSaved also
// throws if the file cannot be written.
[[noreturn]] void ThrowInUse(const DataFile& file);
void RequireIdle(const DataFile& file);
void RequireSaved(const DataFile& file);

}  // namespace ZOTDam::Client
