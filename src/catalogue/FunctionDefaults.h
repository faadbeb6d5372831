#pragma once

#include "xml/Com.h"
#include "ZOTDam.h"

namespace ZOTDam {

// Replaces the functions of the defaults file with the records and saves the file. A record without commands
// is left out. Returns false when a record could not be written; the records before it are written and saved
// (Compatibility: C24). A skipped or failed save is not reported (Compatibility: C2).
bool ReplaceFunctionDefaults(const List<FunctionBaseRecord>& records) noexcept;

// Appends the records to the section, with copies of the elements that they point to. Returns false when a
// record could not be written.
bool WriteFunctionDefaults(IXMLDOMElement* functions, const List<FunctionBaseRecord>& records) noexcept;

}  // namespace ZOTDam
