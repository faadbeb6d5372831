#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "DataFileContent.h"
#include "Library.h"
#include "StoredSettings.h"
#include "TemporaryFolder.h"

namespace ZOTDam::Client {

// The loaded library with a private copy of the user settings. The library stores a scheme when it reads it,
// and it replaces a file that is not well-formed. Here, it changes only the copy. Only one object can exist,
// because all objects use the same DLL.
class SettingsSnapshot {
public:
    // Copies the user settings of this machine. Throws an Error that names the file if it is in use or cannot
    // be read.
    SettingsSnapshot();

    // Uses the content of another user settings file.
    explicit SettingsSnapshot(const FileContents& contents);

    SettingsSnapshot(const SettingsSnapshot&) = delete;
    SettingsSnapshot& operator=(const SettingsSnapshot&) = delete;
    ~SettingsSnapshot();

    const Library& Dll() const noexcept { return *library; }

    // The content of the file when it was copied.
    const StoredSettings& Stored() const noexcept { return stored; }

    // Returns why nothing is stored: "the user settings file ... does not exist". Returns an empty string if
    // the file exists and is well-formed.
    const std::string& Problem() const noexcept { return problem; }

private:
    TemporaryFolder folder;
    std::filesystem::path copy;
    std::optional<Library> library;
    StoredSettings stored;
    std::string problem;
};

// Returns a paragraph that states why there are no user settings, or an empty string if there are some.
std::string ProblemNotice(const SettingsSnapshot& settings);

// Describe a scheme and the source of its values: the user settings, or the defaults because the scheme is
// not stored.
std::string SourceHeading(const SettingsSnapshot& settings, const GUID& scheme);
Json SourceJson(const SettingsSnapshot& settings, const GUID& scheme);

}  // namespace ZOTDam::Client
