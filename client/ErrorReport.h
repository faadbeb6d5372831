#pragma once

#include <exception>

#include "Report.h"

namespace ZOTDam::Client {

// Returns the JSON of a failed command: an object "error" with "kind", "message" and "file".
Json ErrorJson(const std::exception& error);

}  // namespace ZOTDam::Client
