// Functions that read the "Functions" section of the defaults file. An element with a missing attribute
// inherits the previous element's value: the working records are deliberately not reset in between.
#pragma once

#include <cstdint>
#include <vector>

#include "catalogue/FunctionTable.h"
#include "xml/Com.h"

namespace ZOTDam {

// Rebuilds both maps of the table. On failure, returns false and leaves both empty, so that a partial
// catalogue is never used.
bool LoadFunctionTable(IXMLDOMElement* functions, CFunctionTable& table) noexcept;

// Returns the function's id, or -1 when the id is missing or the element cannot be read.
std::int32_t ReadFunctionElement(IXMLDOMElement* function, FunctionRecord& record) noexcept;

// Appends the items to `list`. Returns false when `listElement` is null.
bool ReadDisplayItems(IXMLDOMElement* listElement, List<DisplayItem>& list);

// Appends the items to `list`. Returns false when `commands` is null or cannot be read.
bool ReadCommandItems(IXMLDOMElement* commands, std::vector<CommandItem>& list) noexcept;

}  // namespace ZOTDam
