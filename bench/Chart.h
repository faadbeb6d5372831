#pragma once

#include <ostream>
#include <vector>

#include "Measurement.h"

namespace ZOTDam::Bench {

// Draws an SVG: one panel for each export, cost over size, both on logarithmic scales; the library as a line,
// its floor as a dashed one.
void WriteChart(const std::vector<Result>& results, std::ostream& out);

}  // namespace ZOTDam::Bench
