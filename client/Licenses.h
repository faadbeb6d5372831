#pragma once

#include <string>

namespace ZOTDam::Client {

// Returns the licence of the program and the licences of the third-party code in it, without the last line
// break.
std::string Licenses();

}  // namespace ZOTDam::Client
