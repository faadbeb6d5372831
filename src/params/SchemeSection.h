// The format of schemes and parameters in the data files, shared by their readers and their writer.
#pragma once

#include "platform/GuidString.h"
#include "xml/Dom.h"

namespace ZOTDam {

// Finds the first child element with this name and GUID; leaves `found` unchanged when no element matches.
// Returns false when an element without a GUID ended the search; the elements after it are not examined.
// Compatibility: C33.
bool FindByGuid(IXMLDOMNode* parent, const CXmlName& name, const CGuidString& guid, IXMLDOMElementPtr& found);

// Returns the stored scheme that readers and the writer use for this GUID, or null.
IXMLDOMElementPtr FindScheme(IXMLDOMElement* powerSchemes, const CGuidString& guid);

// Reads both parameters. Returns false when one of the attributes is missing.
bool ReadParamValue(IXMLDOMElement* element, ParamValue& value);

}  // namespace ZOTDam
