#pragma once

#include "catalogue/FunctionTable.h"

namespace ZOTDam {

// Appends a record of every function of the base catalogue. Nothing reads the base catalogue yet.
inline bool ReadFunctionBase(List<FunctionBaseRecord>&) noexcept {
    return false;
}

// The same for the functions alone that the table lacks.
inline bool SelectUnsupportedFunctions(CFunctionTable&, List<FunctionBaseRecord>&) noexcept {
    return false;
}

}  // namespace ZOTDam
