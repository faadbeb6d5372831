// Reading of the "Functions" section of the defaults. A function inherits a missing attribute, except its id,
// from the previous function. An item inherits a missing attribute from the previous item of its list.
// Compatibility: C20.
//
// Only LoadFunctionTable catches exceptions.
#pragma once

#include <cstdint>
#include <vector>

#include "catalogue/FunctionTable.h"
#include "xml/Com.h"

namespace ZOTDam {

// Replaces the content of the table with the functions of the section. Fails when the id of a function is
// missing or negative, or when its "Commands" element is missing. On failure, returns false and leaves the
// table empty, so that a partial catalogue is never used. Compatibility: C21.
bool LoadFunctionTable(IXMLDOMElement* functions, CFunctionTable& table) noexcept;

// Reads a function without its commands into `record`. Returns its id, or -1 when the id is missing or
// `function` is null.
std::int32_t ReadFunctionElement(IXMLDOMElement* function, FunctionRecord& record);

// Appends the items to `list`. Returns false when `listElement` is null.
bool ReadDisplayItems(IXMLDOMElement* listElement, List<DisplayItem>& list);

// Appends the items to `list`. Returns false when `commands` is null.
bool ReadCommandItems(IXMLDOMElement* commands, std::vector<CommandItem>& list);

}  // namespace ZOTDam
