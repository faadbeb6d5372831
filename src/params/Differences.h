#pragma once

#include "catalogue/FunctionTable.h"

namespace ZOTDam {

// Writes the names of the functions that scheme B sets differently from scheme A, and what it sets them to,
// into two buffers of TextCapacity units; a null buffer is left out. The mode says which power source counts:
// 1 is mains, 2 is battery. False, and nothing written, when there is no difference or a scheme cannot be
// loaded.
//
// Deliberate: the functions that are listed keep their translated names in the table from then on.
bool BuildDifferenceTexts(CFunctionTable& table, const GUID& schemeA, const GUID& schemeB, std::uint32_t mode,
                          wchar_t* names, wchar_t* values) noexcept;

}  // namespace ZOTDam
