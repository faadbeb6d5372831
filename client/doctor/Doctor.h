// Examines the data files for problems that the library does not report.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "doctor/Finding.h"
#include "Report.h"

namespace ZOTDam::Client {

// The findings of all four files, in the order of examination.
using Diagnosis = std::vector<Findings>;

Diagnosis ExamineDataFiles(const std::filesystem::path& stringTable);

// The exit code is 0 if there are no findings, 2 if a file could not be examined, and 1 otherwise.
Report ReportOf(const Diagnosis& diagnosis);

}  // namespace ZOTDam::Client
