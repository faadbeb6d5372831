// The bytes of the data files that the library writes.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "DataFiles.h"
#include "Report.h"

namespace ZOTDam::Client {

// The contents of a file and of its redo file, with which the library completes an interrupted save.
struct FileContents {
    std::optional<std::string> file;
    std::optional<std::string> redoFile;

    bool Exist() const noexcept { return file || redoFile; }
};

inline constexpr wchar_t RedoExtension[] = L".redo";

// Reads a file while no other process changes it. Throws an Error that names the file if it is in use or
// cannot be read.
FileContents ReadDataFile(const DataFile& file);

// Replaces the content as the library does. Throws an Error that names the file if it is in use or cannot be
// written.
void ReplaceDataFile(const DataFile& file, const std::string& content);

// Copies a file to `target`, or to a new file in the same folder whose name contains the time. Returns the
// path of the copy, or nothing if there is no file.
std::optional<std::filesystem::path> BackUp(const DataFile& file,
                                            const std::optional<std::filesystem::path>& target = {});

// A backup of a data file that a command is about to change. It is deleted if the command fails before it has
// changed the file.
class Backup {
public:
    explicit Backup(const DataFile& dataFile) : file{PathOf(dataFile)}, path{BackUp(dataFile)} {}
    Backup(const Backup&) = delete;
    Backup& operator=(const Backup&) = delete;
    ~Backup();

    void Keep() noexcept { isKept = true; }

    // Return the path, or null and an empty string if there was no file.
    Json ToJson() const;
    std::string Text() const;

private:
    std::filesystem::path file;
    std::optional<std::filesystem::path> path;
    bool isKept = false;
};

// Read and write a file that the user has named. Throw an Error that names the file. A data file of the suite
// is not written.
std::string ReadNamedFile(const std::filesystem::path& path);
void WriteNamedFile(const std::filesystem::path& path, const std::string& content);

}  // namespace ZOTDam::Client
