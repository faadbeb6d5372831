#pragma once

#include <cstdint>
#include <map>

#include "ZOTDam.h"

namespace ZOTDam {

// The parameters of one power scheme, in ascending order of the function ids. Readers that add to a map keep
// its entries: the first value that is read for an id counts (Compatibility: C23). Most files have ascending
// ids, so readers use the end of the map as the insertion hint.
using ParamMap = std::map<std::int32_t, ParamValue>;

}  // namespace ZOTDam
