#pragma once

#include <ostream>
#include <vector>

#include "Measurement.h"

namespace ZOTDam::Bench {

// Draws an SVG chart with one panel for each export. A panel shows cost over size on logarithmic scales: a
// solid line for the library, a dashed line for the baseline.
void WriteChart(const std::vector<Result>& results, std::ostream& out);

}  // namespace ZOTDam::Bench
