#pragma once

#include "params/ParamMap.h"
#include "xml/Com.h"

namespace ZOTDam {

// Writes a scheme's parameters into the user settings as they are on disk, and saves them. A skipped or
// failed save is not reported.
bool SaveSchemeParameters(const GUID& scheme, const ParamMap& params) noexcept;

// The same for the map that a client hands over.
bool SaveSchemeParameters(const GUID& scheme, const ParamTree& params) noexcept;

// Writes into the scheme's element, which is created when missing.
bool WriteSchemeParameters(const GUID& scheme, IXMLDOMElement* powerSchemes, const ParamMap& params);

// Updates the functions that the scheme's element has, appends those that it lacks and removes none. False
// when a function without an id kept the ones behind it from being updated; the appending goes on all the
// same.
bool WriteFunctionParameters(IXMLDOMElement* schemeElement, const ParamMap& params);

// Removes all schemes and common settings from the user settings as this process last read them, and saves.
// False, and nothing is saved, when there was no scheme.
bool ResetUserSettings() noexcept;

}  // namespace ZOTDam
