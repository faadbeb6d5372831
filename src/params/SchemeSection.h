// How schemes and parameters stand in the data files, for their readers and their writer.
#pragma once

#include "platform/GuidText.h"
#include "xml/Dom.h"

namespace ZOTDam {

// Finds the first of the named child elements that has this GUID; `found` stays as it is when none has. False
// when an element without a GUID ended the search: it hides the elements behind it.
bool FindByGuid(IXMLDOMNode* parent, const CName& name, const CGuidText& guid, IXMLDOMElementPtr& found);

// The stored scheme that readers and the writer take for this GUID, or null.
IXMLDOMElementPtr FindScheme(IXMLDOMElement* powerSchemes, const CGuidText& guid);

// Reads both parameters. False when the element lacks one.
bool ReadParamValue(IXMLDOMElement* element, ParamValue& value);

}  // namespace ZOTDam
