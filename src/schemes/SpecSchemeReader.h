#pragma once

#include "xml/Com.h"
#include "ZOTDam.h"

namespace ZOTDam {

// Reads the Windows power settings that the base catalogue prescribes. It holds no state.
//
// On each of the three levels an element with a malformed GUID is left out, and that is all. One that lacks
// an attribute, or whose own elements do not all have theirs, is left out too, and makes the level fail,
// which leaves out the element above it.
class CSpecSchemeReader {
public:
    // Makes `schemes` what the section holds; none of it where an exception ends the reading.
    bool ReadSchemes(List<SpecSchemeRecord>& schemes) const noexcept;

private:
    static bool ReadSubGroups(IXMLDOMElement* scheme, List<SpecSubGroupRecord>& subGroups) noexcept;
    static bool ReadPowerSettings(IXMLDOMElement* subGroup,
                                  List<SpecPowerSettingRecord>& powerSettings) noexcept;
};

}  // namespace ZOTDam
