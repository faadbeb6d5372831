#pragma once

#include "xml/DataFileElements.h"
#include "xml/Profile.h"

namespace ZOTDam {

// The base catalogue: all functions of the suite. It is read once and never written.
class CXmlZOTBase : public CZOTProfile {
public:
    CXmlZOTBase();

    // Only searches: nothing is ever created in the base catalogue.
    IXMLDOMElementPtr GetChildNode(IXMLDOMNode* parent, const CXmlName& name) override;

    IXMLDOMElementPtr CommonSettings() { return GetChildNode(FindRoot(), Elements::CommonSettings); }
    IXMLDOMElementPtr Functions() { return GetChildNode(FindRoot(), Elements::Functions); }
    IXMLDOMElementPtr SpecSchemes() { return GetChildNode(FindRoot(), Elements::SpecSchemes); }
};

}  // namespace ZOTDam
