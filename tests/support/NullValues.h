// Makes the DOM return Null as the typed value of an element or attribute without content, for a scope. COM
// must be initialised.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include "support/DomMethods.h"

namespace ZOTDam::Test {

class NullValues {
public:
    NullValues()
        : elements{DomMethod::GetElementTypedValue, &Read<&NullValues::elements>},
          attributes{DomMethod::GetAttributeTypedValue, &Read<&NullValues::attributes>} {
        current = this;
    }
    NullValues(const NullValues&) = delete;
    NullValues& operator=(const NullValues&) = delete;

private:
    using Method = HRESULT WINAPI(IXMLDOMNode*, VARIANT*);

    template <DomMethodPatch NullValues::*Patch>
    static HRESULT WINAPI Read(IXMLDOMNode* node, VARIANT* value) {
        const HRESULT result = (current->*Patch).Original<Method>()(node, value);
        if (result == S_OK && V_VT(value) == VT_BSTR && SysStringLen(V_BSTR(value)) == 0) {
            VariantClear(value);
            V_VT(value) = VT_NULL;
        }
        return result;
    }

    inline static NullValues* current = nullptr;
    DomMethodPatch elements;
    DomMethodPatch attributes;
};

}  // namespace ZOTDam::Test
