#include "SettingsSnapshot.h"

#include <windows.h>

#include <algorithm>
#include <fstream>

#include "DataFiles.h"
#include "Error.h"
#include "platform/FileInFolder.h"
#include "Scheme.h"
#include "Text.h"

namespace ZOTDam::Client {

namespace {

constexpr wchar_t UnreadableExtension[] = L".unreadable";

// A common setting that is stored in the copy to find out whether the library has loaded the copy.
constexpr wchar_t Probe[] = L"zotdamctl.snapshot";

void WriteContent(const std::filesystem::path& path, const std::optional<std::string>& content) {
    if (content)
        std::ofstream{path, std::ios::binary}.write(content->data(),
                                                    static_cast<std::streamsize>(content->size()));
}

// Writes the copy to the folder to which this process is redirected. Returns its path. Without a file, the
// folder does not exist, so the library does not spend time on saves.
std::filesystem::path PrepareCopy(const FileContents& contents) {
    std::filesystem::path copy = ZOTDam::PathOf(UserSettingsLocation);
    if (copy.empty())
        throw Error{"The path of the temporary folder is too long."};
    if (contents.Exist())
        create_directories(copy.parent_path());
    WriteContent(copy, contents.file);
    WriteContent(copy.native() + RedoExtension, contents.redoFile);
    return copy;
}

bool RemoveProbe(StoredSettings& settings) {
    return std::erase_if(settings.commonSettings,
                         [](const auto& setting) { return setting.first == ToUtf8(Probe); }) > 0;
}

// Lets the library load the copy. The library skips a load or a save while another process holds the busy
// marker, and does not report it. Only after it has loaded the copy does it save the probe there.
bool LoadCopy(const Library& library, const std::filesystem::path& copy, StoredSettings& settings) {
    constexpr ULONGLONG timeout = 1000;  // ms
    const ULONGLONG start = GetTickCount64();
    do {
        if (library.SetCommonSetting(Probe, L"") && TryReadStoredSettings(copy, settings) &&
            RemoveProbe(settings))
            return true;
        Sleep(1);
    } while (GetTickCount64() - start < timeout);
    return false;
}

}  // namespace

SettingsSnapshot::SettingsSnapshot() : SettingsSnapshot{ReadDataFile(UserSettings)} {}

SettingsSnapshot::SettingsSnapshot(const FileContents& contents) {
    bool isLoaded = true;
    bool isWellFormed = true;
    {
        const FolderRedirection redirection{L"ProgramData", folder.Path()};
        copy = PrepareCopy(contents);
        library.emplace();
        ZOTDam::Text ignored = {};
        library->GetCommonSetting(Probe, ignored);  // from now on, the library uses the copy
        if (contents.Exist()) {
            isLoaded = LoadCopy(*library, copy, stored);
            isWellFormed = !exists(std::filesystem::path{copy.native() + UnreadableExtension});
            // The library need not save the copy again.
            if (isLoaded)
                SetFileAttributesW(copy.c_str(), FILE_ATTRIBUTE_READONLY);
        }
    }
    if (!isLoaded)
        ThrowInUse(UserSettings);
    if (!contents.Exist())
        problem = "the " + TitleOf(UserSettings) + " does not exist";
    else if (!isWellFormed)
        problem = "the " + TitleOf(UserSettings) + " is not well-formed";
}

SettingsSnapshot::~SettingsSnapshot() {
    SetFileAttributesW(copy.c_str(), FILE_ATTRIBUTE_NORMAL);
}

std::string ProblemNotice(const SettingsSnapshot& settings) {
    return settings.Problem().empty() ? "" : "\nThere are no user settings: " + settings.Problem() + ".\n";
}

std::string SourceHeading(const SettingsSnapshot& settings, const GUID& scheme) {
    std::string source = "user settings";
    if (settings.Stored().Find(scheme) == nullptr)
        source = "not stored: defaults" + (settings.Problem().empty() ? "" : " (" + settings.Problem() + ")");
    return SchemeHeading(scheme, source);
}

Json SourceJson(const SettingsSnapshot& settings, const GUID& scheme) {
    return SchemeJson(scheme, settings.Stored().Find(scheme) == nullptr ? "default" : "user");
}

}  // namespace ZOTDam::Client
