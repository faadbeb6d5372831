#pragma once

#include <cstddef>
#include <optional>

#include "DataFiles.h"
#include "doctor/Finding.h"

namespace ZOTDam::Client {

// The consequences if the library cannot load a file.
struct LoadFailure {
    const char* missing;     // null for an optional file
    const char* unreadable;  // the file cannot be opened
    const char* notWellFormed;
};

struct FileToExamine {
    std::size_t folderCapacity;  // code units of the library's buffer for the folder, with the null
    LoadFailure failure;
};

// Reads a file as the library does, and reports any problem that prevents it. Returns nothing if there is no
// document.
std::optional<Element> ReadXmlFile(const FileToExamine& file, Findings& findings);

}  // namespace ZOTDam::Client
