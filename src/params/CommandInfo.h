#pragma once

#include "catalogue/FunctionTable.h"
#include "params/ParamMap.h"

namespace ZOTDam {

// Appends every command of the catalogue with the options that a scheme selects for it. False, and nothing
// appended, when the catalogue or the scheme cannot be loaded.
bool CollectCommandInfo(CFunctionTable& table, const GUID& scheme, List<CommandInfoRecord>& output) noexcept;

// The same for parameters that are loaded already. Where there are none, the first function with commands
// gets its first options, and an entry in `params`, and the functions behind it give no commands.
void ResolveCommands(CFunctionTable& table, ParamMap& params, List<CommandInfoRecord>& output);

}  // namespace ZOTDam
