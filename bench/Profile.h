#pragma once

#include <map>
#include <string>

#include "Measurement.h"

namespace ZOTDam::Bench {

// Returns the percentage of a call's time that is spent in each module. A second thread samples the call
// about a thousand times per second, except while it is prepared.
std::map<std::string, double> Profile(const Run& call, double seconds);

}  // namespace ZOTDam::Bench
