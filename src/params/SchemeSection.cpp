#include "params/SchemeSection.h"

namespace ZOTDam {

bool FindByGuid(IXMLDOMNode* parent, const CXmlName& name, const CGuidString& guid,
                IXMLDOMElementPtr& found) {
    std::wstring text;
    for (const IXMLDOMElementPtr& element : SelectChildren(parent, name)) {
        if (!ReadAttribute(element, L"GUID", text))
            return false;
        if (guid.Matches(text.c_str())) {
            found = element;
            return true;
        }
    }
    return true;
}

IXMLDOMElementPtr FindScheme(IXMLDOMElement* powerSchemes, const CGuidString& guid) {
    IXMLDOMElementPtr scheme;
    FindByGuid(powerSchemes, L"PowerScheme", guid, scheme);
    return scheme;
}

bool ReadParamValue(IXMLDOMElement* element, ParamValue& value) {
    return ReadAttribute(element, L"ACParamIndex", value.ACParamIndex) &&
           ReadAttribute(element, L"DCParamIndex", value.DCParamIndex);
}

}  // namespace ZOTDam
