#pragma once

#include "ZOTDam.h"

namespace ZOTDam {

// Reads the spec schemes of the base catalogue. It holds no state, and reads nothing yet.
class CSpecSchemeReader {
public:
    bool ReadSchemes(List<SpecSchemeRecord>&) const noexcept { return false; }
};

}  // namespace ZOTDam
