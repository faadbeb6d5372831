#pragma once

#include "xml/Com.h"
#include "ZOTDam.h"

namespace ZOTDam {

// Reads the Windows power settings that the base catalogue prescribes. Has no state.
//
// On each of the three levels, an element with a malformed GUID is left out without further effect. An
// element with a missing attribute is also left out, and reading its level fails. A failure on one level
// leaves out the parent element on the level above and makes that level fail as well. Compatibility: C49.
class CSpecSchemeReader {
public:
    // Replaces the content of `schemes` with the schemes of the section. Returns false when reading a level
    // failed. An exception leaves `schemes` empty.
    bool ReadSchemes(List<SpecSchemeRecord>& schemes) const noexcept;

private:
    static bool ReadSubGroups(IXMLDOMElement* scheme, List<SpecSubGroupRecord>& subGroups) noexcept;
    static bool ReadPowerSettings(IXMLDOMElement* subGroup,
                                  List<SpecPowerSettingRecord>& powerSettings) noexcept;
};

}  // namespace ZOTDam
