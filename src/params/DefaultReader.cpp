#include "params/DefaultReader.h"

#include "params/SchemeSection.h"
#include "platform/FalseOnException.h"
#include "xml/DataFileElements.h"
#include "xml/Documents.h"

namespace ZOTDam {

namespace {

bool ReadDefault(IXMLDOMElement* defaultElement, const CGuidString& guid, ParamValue& value) {
    IXMLDOMElementPtr source = defaultElement;
    return FindByGuid(defaultElement, Elements::DefaultItem, guid, source) && ReadParamValue(source, value);
}

}  // namespace

bool ReadDefaultSchemeParameters(const GUID& scheme, ParamMap& out) noexcept {
    return FalseOnException([&] {
        const CXmlZOTDefault* defaults = DefaultsDocument.Get();
        if (defaults == nullptr)
            return false;
        const IXMLDOMElementPtr functions = defaults->FindFunctions();
        if (!functions)
            return false;
        const CGuidString guid{scheme};
        for (const IXMLDOMElementPtr& function : SelectChildren(functions, Elements::Function)) {
            std::int32_t id = 0;
            ParamValue value;
            if (!ReadAttribute(function, Attributes::ID, id) ||
                !ReadDefault(SelectChild(function, Elements::Default), guid, value))
                return false;
            out.try_emplace(out.end(), id, value);
        }
        return true;
    });
}

}  // namespace ZOTDam
