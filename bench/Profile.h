#pragma once

#include <functional>
#include <map>
#include <string>

namespace ZOTDam::Bench {

// In which modules a call spends its time, in percent: a thousand times a second somebody looks where it is.
std::map<std::string, double> Profile(const std::function<void()>& call, double seconds);

}  // namespace ZOTDam::Bench
