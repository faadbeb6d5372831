#pragma once

#include "catalogue/FunctionTable.h"
#include "params/ParamMap.h"

namespace ZOTDam {

// Appends the commands of every function for which the scheme has parameters, with the options that these
// parameters select. Returns false and leaves `output` empty when the catalogue or the scheme cannot be
// loaded, or when memory is exhausted.
bool CollectCommandInfo(CFunctionTable& table, const GUID& scheme, List<CommandInfoRecord>& output) noexcept;

// Appends the commands for parameters that are already loaded. If `params` is empty, appends only the
// commands of the first function that has any, with the function's first options, and adds this function to
// `params`. Compatibility: C43.
void ResolveCommands(CFunctionTable& table, ParamMap& params, List<CommandInfoRecord>& output);

}  // namespace ZOTDam
