#pragma once

#include "xml/Com.h"
#include "ZOTDam.h"

namespace ZOTDam {

// Reads the spec schemes: the Windows power settings that the base catalogue prescribes for power schemes.
// The class has no state.
//
// The elements form three levels: schemes, subgroups and power settings. An element with a malformed GUID is
// skipped. An element with a missing attribute is skipped too, together with the elements that contain it,
// and the read fails. Compatibility: C49.
class CSpecSchemeReader {
public:
    // Replaces the content of `schemes` with the schemes that were not skipped. Returns false when the read
    // failed. After an exception, also leaves `schemes` empty.
    bool ReadSchemes(List<SpecSchemeRecord>& schemes) const noexcept;

private:
    static bool ReadSubGroups(IXMLDOMElement* scheme, List<SpecSubGroupRecord>& subGroups) noexcept;
    static bool ReadPowerSettings(IXMLDOMElement* subGroup,
                                  List<SpecPowerSettingRecord>& powerSettings) noexcept;
};

}  // namespace ZOTDam
