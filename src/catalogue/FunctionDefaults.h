#pragma once

#include "xml/Com.h"
#include "ZOTDam.h"

namespace ZOTDam {

// Replaces the functions of the defaults with the records and saves the defaults. Skips a record without
// commands. Returns false when a record cannot be written; the records before it are saved. A skipped or
// failed save is not reported. Compatibility: C2, C24.
bool ReplaceFunctionDefaults(const List<FunctionBaseRecord>& records) noexcept;

// Appends the records to the "Functions" section, with copies of their "Display" and "Default" elements.
// Returns false when a record cannot be written.
bool WriteFunctionDefaults(IXMLDOMElement* functions, const List<FunctionBaseRecord>& records) noexcept;

}  // namespace ZOTDam
