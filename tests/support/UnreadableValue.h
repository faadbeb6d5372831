// Makes the DOM fail to read every attribute that has a certain value, for a scope.
#pragma once

#include <cwchar>
#include <string>
#include <utility>

#include "support/DomMethods.h"

namespace ZOTDam::Test {

class UnreadableValue {
public:
    explicit UnreadableValue(std::wstring unreadable)
        : value{std::move(unreadable)}, patch{DomMethod::GetAttribute, &Read} {
        current = this;
    }
    UnreadableValue(const UnreadableValue&) = delete;
    UnreadableValue& operator=(const UnreadableValue&) = delete;

private:
    static HRESULT WINAPI Read(IXMLDOMElement* element, BSTR name, VARIANT* attribute) {
        const HRESULT result = current->patch.Original<decltype(Read)>()(element, name, attribute);
        if (result != S_OK || current->value != V_BSTR(attribute))
            return result;
        VariantClear(attribute);
        return E_OUTOFMEMORY;
    }

    inline static UnreadableValue* current = nullptr;
    std::wstring value;
    DomMethodPatch patch;
};

}  // namespace ZOTDam::Test
