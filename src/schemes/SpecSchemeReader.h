#pragma once

#include "ZOTDam.h"

namespace ZOTDam {

// Reads spec schemes from the base catalogue. It holds no state, and reads nothing yet.
class CSpecSchemeReader {
public:
    bool ReadSchemes(List<SpecSchemeRecord>&) const noexcept { return false; }
};

}  // namespace ZOTDam
