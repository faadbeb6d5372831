// Examines the installation for problems that the library does not report.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "doctor/Finding.h"
#include "Report.h"

namespace ZOTDam::Client {

// The findings of each file, in the order of examination.
using Diagnosis = std::vector<Findings>;

// Examines the library and its files. Without a language, examines the string tables of all languages.
Diagnosis ExamineInstallation(const std::optional<std::string>& language);

// Examines the content of one data file in any folder. The name of the file, or else its root element,
// determines the kind of file.
Diagnosis ExamineFile(const std::filesystem::path& file);

// A problem that prevents the library from loading the catalogue.
struct CatalogueProblem {
    std::string kind;  // of the finding
    std::string text;  // like a finding's problem, a clause without a full stop
};

// Returns the first such problem of a file, or nothing if the file has none.
std::optional<CatalogueProblem> FindCatalogueProblem(const std::filesystem::path& file);

// The exit code is 0 if there are no findings, 2 if a file could not be examined, and 1 otherwise.
Report ReportOf(const Diagnosis& diagnosis);

}  // namespace ZOTDam::Client
