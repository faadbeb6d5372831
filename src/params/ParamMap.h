#pragma once

#include <cstdint>
#include <map>

#include "ZOTDam.h"

namespace ZOTDam {

// The parameters of one power scheme, by ascending function id. Code that fills a map keeps existing entries:
// the first value read for an id counts (Compatibility: C23). Most files have ascending ids, so the end of
// the map is used as the insertion hint.
using ParamMap = std::map<std::int32_t, ParamValue>;

}  // namespace ZOTDam
