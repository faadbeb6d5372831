// Examines the data files, and finds what the library does not tell.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "doctor/Finding.h"
#include "Report.h"

namespace ZOTDam::Client {

// All four files, in the order in which they are examined.
using Diagnosis = std::vector<Findings>;

Diagnosis ExamineDataFiles(const std::filesystem::path& stringTable);

// The exit status is 0 without findings, 2 when a file could not be examined, else 1.
Report ReportOf(const Diagnosis& diagnosis);

}  // namespace ZOTDam::Client
