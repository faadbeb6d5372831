// Examines the data files for problems that the library does not report.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "doctor/Finding.h"
#include "Report.h"

namespace ZOTDam::Client {

// The findings of all four files, in the order of examination.
using Diagnosis = std::vector<Findings>;

Diagnosis ExamineDataFiles(const std::filesystem::path& stringTable);

// Returns the first problem that prevents the library from loading the catalogue from this file, or an empty
// string if the file has none. Like a finding's problem, it is a clause without a full stop.
std::string FindCatalogueProblem(const std::filesystem::path& file);

// The exit code is 0 if there are no findings, 2 if a file could not be examined, and 1 otherwise.
Report ReportOf(const Diagnosis& diagnosis);

}  // namespace ZOTDam::Client
