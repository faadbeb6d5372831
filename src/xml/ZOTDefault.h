#pragma once

#include "xml/DataFileElements.h"
#include "xml/GuardedProfile.h"

namespace ZOTDam {

// The defaults (ZOTDefault.xml): the functions in use on this machine, with their default parameters. The
// file is read only when the object is created. Compatibility: C11.
class CXmlZOTDefault : public CGuardedProfile {
public:
    CXmlZOTDefault();

    IXMLDOMElementPtr CommonSettings() { return Section(Elements::CommonSettings); }
    IXMLDOMElementPtr Functions() { return Section(Elements::Functions); }

    // Returns the section of the functions, or null. Creates nothing, so that readers can distinguish a
    // missing catalogue from an empty one. Compatibility: C14.
    IXMLDOMElementPtr FindFunctions() const { return FindSection(Elements::Functions); }

private:
    void OpenWithoutFile() override { Root(); }
};

}  // namespace ZOTDam
