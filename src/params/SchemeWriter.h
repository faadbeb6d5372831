#pragma once

#include "params/ParamMap.h"
#include "xml/Com.h"

namespace ZOTDam {

// Reads the user settings from disk again, writes a scheme's parameters into them and saves them. A skipped
// or failed save is not reported. Compatibility: C2.
bool SaveSchemeParameters(const GUID& scheme, const ParamMap& params) noexcept;

// The same for a client's map.
bool SaveSchemeParameters(const GUID& scheme, const ParamTree& params) noexcept;

// Writes the parameters into the scheme's element, which is created when it is missing.
bool WriteSchemeParameters(const GUID& scheme, IXMLDOMElement* powerSchemes, const ParamMap& params);

// Updates the functions in the scheme's element and appends those that are missing; removes no function.
// Returns false when a function without an id ended the update; the functions that were not updated are still
// appended. Compatibility: C35.
bool WriteFunctionParameters(IXMLDOMElement* schemeElement, const ParamMap& params);

// Removes all schemes and common settings from the user settings as this process last read them, and saves
// them. Returns false and saves nothing when they contain no schemes.
bool ResetUserSettings() noexcept;

}  // namespace ZOTDam
