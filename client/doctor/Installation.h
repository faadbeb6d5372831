// The checks of the parts of an installation other than the content of the data files.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "DataFiles.h"
#include "doctor/Finding.h"

namespace ZOTDam::Client {

// Returns the version in the resources of a file, or an empty string.
std::string VersionOf(const std::filesystem::path& file);

// Examines the ZOTDam.dll in the folder of this program, and MSXML 6.
Findings ExamineLibrary();

// Reports another program that holds the busy marker of a file.
void CheckBusyMarker(const DataFile& file, Findings& findings);

// Reports why the library cannot save the user settings for this user, or not atomically.
void CheckStorage(Findings& findings);

// Returns a finding for each file that an interrupted save of this file has left.
std::vector<Findings> FindLeftOverFiles(const DataFile& file);

}  // namespace ZOTDam::Client
