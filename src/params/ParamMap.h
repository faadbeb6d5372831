#pragma once

#include <cstdint>
#include <map>

#include "ZOTDam.h"

namespace ZOTDam {

// The parameters of one power scheme, by ascending function id. Whoever fills one leaves a value that is
// there already in place: the first value read for an id counts.
using ParamMap = std::map<std::int32_t, ParamValue>;

}  // namespace ZOTDam
