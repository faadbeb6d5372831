#include "params/SchemeSection.h"

#include "xml/DataFileElements.h"

namespace ZOTDam {

bool FindByGuid(IXMLDOMNode* parent, const CXmlName& name, const CGuidString& guid,
                IXMLDOMElementPtr& found) {
    std::wstring text;
    for (const IXMLDOMElementPtr& element : SelectChildren(parent, name)) {
        if (!ReadAttribute(element, Attributes::GUID, text))
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
    FindByGuid(powerSchemes, Elements::PowerScheme, guid, scheme);
    return scheme;
}

bool ReadParamValue(IXMLDOMElement* element, ParamValue& value) {
    return ReadAttribute(element, Attributes::ACParamIndex, value.ACParamIndex) &&
           ReadAttribute(element, Attributes::DCParamIndex, value.DCParamIndex);
}

}  // namespace ZOTDam
