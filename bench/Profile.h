#pragma once

#include <functional>
#include <map>
#include <string>

namespace ZOTDam::Bench {

// Returns the percentage of a call's time that is spent in each module. A second thread samples the call
// about a thousand times per second.
std::map<std::string, double> Profile(const std::function<void()>& call, double seconds);

}  // namespace ZOTDam::Bench
