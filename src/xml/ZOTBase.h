#pragma once

#include "xml/Profile.h"

namespace ZOTDam {

// The base catalogue: every function that the suite knows. It is read once and never written.
class CXmlZOTBase : public CZOTProfile {
public:
    CXmlZOTBase();

    // Only finds: nothing is ever created in the base catalogue.
    IXMLDOMElementPtr GetChildNode(IXMLDOMNode* parent, const CName& name) override;

    IXMLDOMElementPtr CommonSettings() { return GetChildNode(FindRoot(), L"CommonSettings"); }
    IXMLDOMElementPtr Functions() { return GetChildNode(FindRoot(), L"Functions"); }
    IXMLDOMElementPtr SpecSchemes() { return GetChildNode(FindRoot(), L"SpecSchemes"); }
};

}  // namespace ZOTDam
