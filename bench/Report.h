#pragma once

#include <string>
#include <vector>

#include "Measurement.h"

namespace ZOTDam::Bench {

// A line of the table on the terminal.
void PrintRow(const Result& result);

// Writes those for which there is a file name.
void WriteReports(const std::vector<Result>& results, const std::string& json, const std::string& markdown,
                  const std::string& chart);

}  // namespace ZOTDam::Bench
