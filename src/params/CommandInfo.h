#pragma once

#include "catalogue/FunctionTable.h"

namespace ZOTDam {

// Appends every command with the options that the scheme selects for it. Nothing resolves commands yet.
inline bool CollectCommandInfo(CFunctionTable&, const GUID&, List<CommandInfoRecord>&) noexcept {
    return false;
}

}  // namespace ZOTDam
