#pragma once

#include "xml/DataFileElements.h"
#include "xml/Profile.h"

namespace ZOTDam {

// The base catalogue (ZOTBase.xml): all functions of the suite. It is read once and never written.
class CXmlZOTBase : public CZOTProfile {
public:
    CXmlZOTBase();

    // Returns the first child element with this name, or null. Creates nothing.
    IXMLDOMElementPtr GetChildNode(IXMLDOMNode* parent, const CXmlName& name) override;

    IXMLDOMElementPtr CommonSettings() { return GetChildNode(FindRoot(), Elements::CommonSettings); }
    IXMLDOMElementPtr Functions() { return GetChildNode(FindRoot(), Elements::Functions); }
    IXMLDOMElementPtr SpecSchemes() { return GetChildNode(FindRoot(), Elements::SpecSchemes); }
};

}  // namespace ZOTDam
