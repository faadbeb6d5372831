#pragma once

#include "catalogue/FunctionTable.h"

namespace ZOTDam {

// Writes the texts that tell how scheme B differs from scheme A. Nothing compares schemes yet.
inline bool BuildDifferenceTexts(CFunctionTable&, const GUID&, const GUID&, std::uint32_t, wchar_t*,
                                 wchar_t*) noexcept {
    return false;
}

}  // namespace ZOTDam
