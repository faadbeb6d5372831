// Functions that read the "Functions" section of the defaults file. An element with a missing attribute
// inherits the previous element's value: the working records are not reset in between. Compatibility: C20.
// Only LoadFunctionTable catches exceptions.
#pragma once

#include <cstdint>
#include <vector>

#include "catalogue/FunctionTable.h"
#include "xml/Com.h"

namespace ZOTDam {

// Rebuilds both maps of the table. On failure, returns false and leaves both empty, so that a partial
// catalogue is never used. Compatibility: C21.
bool LoadFunctionTable(IXMLDOMElement* functions, CFunctionTable& table) noexcept;

// Returns the function's id, or -1 when the id is missing or `function` is null.
std::int32_t ReadFunctionElement(IXMLDOMElement* function, FunctionRecord& record);

// Appends the items to `list`. Returns false when `listElement` is null.
bool ReadDisplayItems(IXMLDOMElement* listElement, List<DisplayItem>& list);

// Appends the items to `list`. Returns false when `commands` is null.
bool ReadCommandItems(IXMLDOMElement* commands, std::vector<CommandItem>& list);

}  // namespace ZOTDam
