#pragma once

#include "xml/Com.h"
#include "ZOTDam.h"

namespace ZOTDam {

// Makes the records the only functions of the defaults file, and saves it. A record without commands is left
// out. False when a record could not be written; those before it are, and are saved. A skipped or failed save
// is not reported.
bool ReplaceFunctionDefaults(const List<FunctionBaseRecord>& records) noexcept;

// Appends the records to the section, with copies of the elements to which they point.
bool WriteFunctionDefaults(IXMLDOMElement* functions, const List<FunctionBaseRecord>& records) noexcept;

}  // namespace ZOTDam
