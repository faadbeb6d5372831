#pragma once

#include "catalogue/FunctionTable.h"
#include "params/ParamMap.h"
#include "xml/Com.h"

namespace ZOTDam {

// Adds the effective parameters of a scheme to `out`: the user's values, completed with the defaults. A
// scheme or function that is missing from the user settings is added to them (Compatibility: C30). Functions
// whose refresh rates the display does not support are left out. On failure, returns false; `out` may then be
// partially filled (Compatibility: C36).
bool LoadSchemeParameters(CFunctionTable& table, const GUID& scheme, ParamMap& out) noexcept;

// Adds the parameters of a scheme in the user settings to `out`. Returns false when the scheme is not there.
bool ReadUserSchemeParameters(const GUID& scheme, IXMLDOMElement* powerSchemes, ParamMap& out);

}  // namespace ZOTDam
