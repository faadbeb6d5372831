#pragma once

#include <cstddef>
#include <optional>

#include "DataFiles.h"
#include "doctor/Finding.h"

namespace ZOTDam::Client {

// What becomes of the library's work when it cannot have one of the files.
struct Loss {
    const char* missing;     // null for a file that need not be there
    const char* unreadable;  // when the file cannot be opened
    const char* noXml;
};

struct FileToExamine {
    std::size_t folderCapacity;  // the units that the library has for the folder's name, with a zero
    Loss loss;
};

// Reads a file as the library does, and reports what keeps it from that. Nothing where there is no document.
std::optional<Element> ReadXmlFile(const FileToExamine& file, Findings& findings);

}  // namespace ZOTDam::Client
