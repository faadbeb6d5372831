// Reads the "Functions" section of the defaults file. An attribute that an element lacks keeps the value of
// the element before it: the working records are deliberately not reset in between.
#pragma once

#include <cstdint>
#include <vector>

#include "catalogue/FunctionTable.h"
#include "xml/Com.h"

namespace ZOTDam {

// Rebuilds both maps of the table. On failure both are empty: there is no partial catalogue.
bool LoadFunctionTable(IXMLDOMElement* functions, CFunctionTable& table) noexcept;

// Gives the function's id, or -1 when the element cannot be read.
std::int32_t ReadFunctionElement(IXMLDOMElement* function, FunctionRecord& record) noexcept;

// Appends the items to `list`. False when there is no list element.
bool ReadDisplayItems(IXMLDOMElement* listElement, List<DisplayItem>& list);

// Appends the items to `list`. False when there is no "Commands" element or it cannot be read.
bool ReadCommandItems(IXMLDOMElement* commands, std::vector<CommandItem>& list) noexcept;

}  // namespace ZOTDam
