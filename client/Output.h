// Reports as text for people and as JSON for programs.
#pragma once

#include <iosfwd>

#include "Commands.h"

namespace ZOTDam::Client {

void WriteText(std::ostream& out, const Report& report);
void WriteJson(std::ostream& out, const Report& report);

}  // namespace ZOTDam::Client
