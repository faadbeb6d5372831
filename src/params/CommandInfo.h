#pragma once

#include "catalogue/FunctionTable.h"
#include "params/ParamMap.h"

namespace ZOTDam {

// Appends the commands of every function that a scheme sets, with the options that the scheme selects.
// Returns false and appends nothing when the catalogue or the scheme cannot be loaded.
bool CollectCommandInfo(CFunctionTable& table, const GUID& scheme, List<CommandInfoRecord>& output) noexcept;

// The same for parameters that are already loaded. If `params` is empty, only the commands of the first
// function that has any are appended, with the function's first options, and the function is added to
// `params`.
void ResolveCommands(CFunctionTable& table, ParamMap& params, List<CommandInfoRecord>& output);

}  // namespace ZOTDam
