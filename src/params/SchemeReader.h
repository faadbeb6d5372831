#pragma once

#include "catalogue/FunctionTable.h"
#include "params/ParamMap.h"
#include "xml/Com.h"

namespace ZOTDam {

// Adds the effective parameters of a scheme to `out`: the user's values, completed from the defaults. A
// scheme or function that the user settings lack is written into them. Functions whose refresh rates the
// display lacks are left out. After a failure, what is in `out` stays.
bool LoadSchemeParameters(CFunctionTable& table, const GUID& scheme, ParamMap& out) noexcept;

// Adds what the user settings hold for a scheme to `out`. False when they do not hold the scheme.
bool ReadUserSchemeParameters(const GUID& scheme, IXMLDOMElement* powerSchemes, ParamMap& out);

}  // namespace ZOTDam
