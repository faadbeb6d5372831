// Access to the schemes and parameters in the data files, for their readers and their writer.
#pragma once

#include "platform/GuidString.h"
#include "xml/Dom.h"

namespace ZOTDam {

// Finds the first child element with this name and GUID. Returns true and leaves `found` unchanged when no
// element matches. Returns false when an element without a GUID ended the search before a match.
// Compatibility: C33.
bool FindByGuid(IXMLDOMNode* parent, const CXmlName& name, const CGuidString& guid, IXMLDOMElementPtr& found);

// Returns the element of the scheme with this GUID, or null when the search does not find it.
IXMLDOMElementPtr FindScheme(IXMLDOMElement* powerSchemes, const CGuidString& guid);

// Reads the AC and the DC parameter. Returns false when one of the attributes is missing.
bool ReadParamValue(IXMLDOMElement* element, ParamValue& value);

}  // namespace ZOTDam
