#pragma once

#include "catalogue/FunctionTable.h"

namespace ZOTDam {

// Adds a copy of every function of the table with its texts in the user's language. Nothing translates yet.
inline bool CollectFunctionInfo(CFunctionTable&, std::map<std::int32_t, FunctionRecord>&) noexcept {
    return false;
}

}  // namespace ZOTDam
