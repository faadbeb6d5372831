#pragma once

#include <string>
#include <vector>

#include "Measurement.h"

namespace ZOTDam::Bench {

// Prints one row of the table on the terminal.
void PrintRow(const Result& result);

// Writes the reports whose file name is not empty.
void WriteReports(const std::vector<Result>& results, const std::string& json, const std::string& markdown,
                  const std::string& chart);

}  // namespace ZOTDam::Bench
