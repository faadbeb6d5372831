#pragma once

#include "catalogue/FunctionTable.h"
#include "params/ParamMap.h"
#include "xml/Com.h"

namespace ZOTDam {

// Adds the effective parameters of a scheme to `out`: those of the user settings, completed with the
// defaults. Adds a scheme or function that is missing from the user settings to them (Compatibility: C30).
// Removes functions from `out` whose refresh rates the display does not support. On failure, returns false;
// `out` may then be partially filled (Compatibility: C36).
bool LoadSchemeParameters(CFunctionTable& table, const GUID& scheme, ParamMap& out) noexcept;

// Adds the parameters that the user settings contain for a scheme to `out`. Returns false when they do not
// contain the scheme.
bool ReadUserSchemeParameters(const GUID& scheme, IXMLDOMElement* powerSchemes, ParamMap& out);

}  // namespace ZOTDam
