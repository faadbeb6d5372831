// Reading of the base catalogue, which contains all functions of the suite and the checks that tell the
// client whether this machine supports them.
#pragma once

#include "catalogue/FunctionTable.h"

namespace ZOTDam {

// Appends a record for every function of the base catalogue. A missing attribute inherits the value of the
// previous element with the same name, even of another function. Returns false when a function cannot be
// read; the records before it stay in `output`. Compatibility: C22.
bool ReadFunctionBase(List<FunctionBaseRecord>& output) noexcept;

// Replaces the content of `output` with the functions of the base catalogue that are not in the table. On
// failure, returns false and leaves `output` empty.
bool SelectUnsupportedFunctions(CFunctionTable& table, List<FunctionBaseRecord>& output) noexcept;

}  // namespace ZOTDam
