#pragma once

#include "xml/Profile.h"

namespace ZOTDam {

// The base catalogue: all functions of the suite. It is read once and never written.
class CXmlZOTBase : public CZOTProfile {
public:
    CXmlZOTBase();

    // Only searches: nothing is ever created in the base catalogue.
    IXMLDOMElementPtr GetChildNode(IXMLDOMNode* parent, const CXmlName& name) override;

    IXMLDOMElementPtr CommonSettings() { return GetChildNode(FindRoot(), L"CommonSettings"); }
    IXMLDOMElementPtr Functions() { return GetChildNode(FindRoot(), L"Functions"); }
    IXMLDOMElementPtr SpecSchemes() { return GetChildNode(FindRoot(), L"SpecSchemes"); }
};

}  // namespace ZOTDam
