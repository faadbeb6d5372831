// The base catalogue: every function that the suite knows, with the checks by which the client finds out
// whether this machine supports it.
#pragma once

#include "catalogue/FunctionTable.h"

namespace ZOTDam {

// Appends a record of every function of the base catalogue. An attribute that an element lacks keeps the
// value of the element before it, across functions and families. False when a function cannot be read; those
// before it stay in `output`.
bool ReadFunctionBase(List<FunctionBaseRecord>& output) noexcept;

// Makes `output` the records of the functions that the table lacks. On failure it is empty.
bool SelectUnsupportedFunctions(CFunctionTable& table, List<FunctionBaseRecord>& output) noexcept;

}  // namespace ZOTDam
