#pragma once

#include "catalogue/FunctionTable.h"

namespace ZOTDam {

// Compares two schemes on one power source: AC for mode 1, DC for mode 2. Writes the names of the functions
// whose parameters differ to `names`, and the labels of the options that scheme B selects to `values`. Both
// buffers have TextCapacity UTF-16 code units. A null buffer is skipped. Returns false and writes nothing for
// any other mode, when the schemes do not differ, or when one of them cannot be loaded.
//
// Replaces the names of the listed functions in the table with the localised names. Compatibility: C46.
bool BuildDifferenceTexts(CFunctionTable& table, const GUID& schemeA, const GUID& schemeB, std::uint32_t mode,
                          wchar_t* names, wchar_t* values) noexcept;

}  // namespace ZOTDam
