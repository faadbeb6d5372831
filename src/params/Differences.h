#pragma once

#include "catalogue/FunctionTable.h"

namespace ZOTDam {

// Writes the names of the functions that scheme B sets differently from scheme A, and the labels of the
// options that scheme B selects, into two buffers of TextCapacity UTF-16 code units. A null buffer is
// skipped. The mode selects the power source: 1 is AC, 2 is DC. Returns false and writes nothing for another
// mode, when the schemes do not differ, or when a scheme cannot be loaded.
//
// The listed functions keep their translated names in the table from then on. Compatibility: C46.
bool BuildDifferenceTexts(CFunctionTable& table, const GUID& schemeA, const GUID& schemeB, std::uint32_t mode,
                          wchar_t* names, wchar_t* values) noexcept;

}  // namespace ZOTDam
