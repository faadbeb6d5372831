#pragma once

#include <string>
#include <utility>
#include <vector>

namespace ZOTDam::Client {

// Returns the name of the machine and the versions of the system, the library and the client, each with a
// heading.
std::vector<std::pair<std::string, std::string>> DescribeMachine();

}  // namespace ZOTDam::Client
