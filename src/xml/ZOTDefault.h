#pragma once

#include "xml/DataFileElements.h"
#include "xml/GuardedProfile.h"

namespace ZOTDam {

// The defaults: the functions in use on this machine with their default parameters. The file is read only
// when the object is created. Compatibility: C11.
class CXmlZOTDefault : public CGuardedProfile {
public:
    CXmlZOTDefault();

    IXMLDOMElementPtr CommonSettings() { return Section(Elements::CommonSettings); }
    IXMLDOMElementPtr Functions() { return Section(Elements::Functions); }

    // For readers: without a catalogue they must fail instead of finding a section that they have just
    // created.
    IXMLDOMElementPtr FindFunctions() const { return FindSection(Elements::Functions); }

private:
    void OpenWithoutFile() override { Root(); }
};

}  // namespace ZOTDam
