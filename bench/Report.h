#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Measurement.h"

namespace ZOTDam::Bench {

// Everything that one run measured.
struct Report {
    std::string commit;
    std::string date;
    std::uintmax_t dllSize = 0;
    std::vector<Result> results;
};

// Print the report on the terminal, each row as soon as it is measured.
void PrintHead(const Report& report);
void PrintRow(const Result& result);
void PrintTargets(const Report& report);

// Writes the reports whose file name is not empty.
void WriteReports(const Report& report, const std::string& json, const std::string& markdown,
                  const std::string& chart);

}  // namespace ZOTDam::Bench
