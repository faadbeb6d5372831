#pragma once

#include "params/ParamMap.h"
#include "xml/Com.h"

namespace ZOTDam {

// Reads the user settings from disk again, writes the parameters of a scheme into them and saves them.
// Returns false, without saving, when the parameters cannot be written completely. A skipped or failed save
// is not reported. Compatibility: C2.
bool SaveSchemeParameters(const GUID& scheme, const ParamMap& params) noexcept;

// Saves the parameters of a client's map in the same way.
bool SaveSchemeParameters(const GUID& scheme, const ParamTree& params) noexcept;

// Writes parameters into the element of a scheme (see WriteFunctionParameters), and creates the element if it
// is missing.
bool WriteSchemeParameters(const GUID& scheme, IXMLDOMElement* powerSchemes, const ParamMap& params);

// Updates the functions of a scheme's element that are in `params`, and appends those that the element does
// not contain. Removes no function. Returns false when an element without an id ended the update. All
// functions that were not updated are then appended. Compatibility: C35.
bool WriteFunctionParameters(IXMLDOMElement* schemeElement, const ParamMap& params);

// Removes all schemes and common settings from the user settings, without reading the file again, and saves
// the result. Returns false and saves nothing when the user settings contain no schemes.
bool ResetUserSettings() noexcept;

}  // namespace ZOTDam
