// The COM types of the DOM and the handling of their failures.
#pragma once

#include <comdef.h>
#ifdef _MSC_VER
#include <msxml6.h>
#else
#include <msxml2.h>  // mingw-w64 before version 12 has no msxml6.h; in version 12 it is not valid C++.
#endif

#ifndef __IXMLDOMDocument3_INTERFACE_DEFINED__
// mingw-w64 up to version 10 declares the interfaces of the DOM without their identifiers. The identifiers
// differ only in their first number.
#define ZOTDAM_DOM_INTERFACE(Interface, number) \
    __CRT_UUID_DECL(Interface, number, 0x7b36, 0x11d2, 0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60)
ZOTDAM_DOM_INTERFACE(IXMLDOMNode, 0x2933bf80)
ZOTDAM_DOM_INTERFACE(IXMLDOMDocument, 0x2933bf81)
ZOTDAM_DOM_INTERFACE(IXMLDOMNamedNodeMap, 0x2933bf83)
ZOTDAM_DOM_INTERFACE(IXMLDOMElement, 0x2933bf86)
ZOTDAM_DOM_INTERFACE(IXMLDOMProcessingInstruction, 0x2933bf89)
ZOTDAM_DOM_INTERFACE(IXMLDOMDocument2, 0x2933bf95)

// mingw-w64 up to version 10 does not declare this interface at all.
struct IXMLDOMDocument3 : IXMLDOMDocument2 {
    virtual HRESULT WINAPI validateNode(IXMLDOMNode* node, IXMLDOMParseError** error) = 0;
    virtual HRESULT WINAPI importNode(IXMLDOMNode* node, VARIANT_BOOL deep, IXMLDOMNode** copy) = 0;
};
ZOTDAM_DOM_INTERFACE(IXMLDOMDocument3, 0x2933bf96)
#undef ZOTDAM_DOM_INTERFACE
#endif

namespace ZOTDam {

_COM_SMARTPTR_TYPEDEF(IXMLDOMNode, __uuidof(IXMLDOMNode));
_COM_SMARTPTR_TYPEDEF(IXMLDOMDocument, __uuidof(IXMLDOMDocument));
_COM_SMARTPTR_TYPEDEF(IXMLDOMNamedNodeMap, __uuidof(IXMLDOMNamedNodeMap));
_COM_SMARTPTR_TYPEDEF(IXMLDOMElement, __uuidof(IXMLDOMElement));
_COM_SMARTPTR_TYPEDEF(IXMLDOMProcessingInstruction, __uuidof(IXMLDOMProcessingInstruction));
_COM_SMARTPTR_TYPEDEF(IXMLDOMDocument2, __uuidof(IXMLDOMDocument2));
_COM_SMARTPTR_TYPEDEF(IXMLDOMDocument3, __uuidof(IXMLDOMDocument3));

// Throws a failed result of a call to `source` as a _com_error, with the callee's error information.
[[noreturn]] void ThrowComError(HRESULT failure, IUnknown* source, REFIID calledInterface);

// Returns a successful result and throws a failed one.
template <class Interface>
HRESULT Check(HRESULT result, Interface* source) {
    if (FAILED(result))
        ThrowComError(result, source, __uuidof(Interface));
    return result;
}

}  // namespace ZOTDam
