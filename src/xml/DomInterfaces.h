// The interfaces of the DOM and the CLSID of its documents, for all supported compilers.
#pragma once

#include <windows.h>

#ifdef _MSC_VER
#include <msxml6.h>
#else
#include <msxml2.h>  // mingw-w64 before version 12 has no msxml6.h; in version 12 it is not valid C++.
#endif

#ifndef __IXMLDOMDocument3_INTERFACE_DEFINED__
// mingw-w64 up to version 10 declares the interfaces of the DOM without their IIDs. These differ only in
// their first field.
#define ZOTDAM_DOM_INTERFACE(Interface, number) \
    __CRT_UUID_DECL(Interface, number, 0x7b36, 0x11d2, 0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60)
ZOTDAM_DOM_INTERFACE(IXMLDOMNode, 0x2933bf80)
ZOTDAM_DOM_INTERFACE(IXMLDOMDocument, 0x2933bf81)
ZOTDAM_DOM_INTERFACE(IXMLDOMNodeList, 0x2933bf82)
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

// The CLSID of MSXML 6 documents.
inline constexpr CLSID DomDocument60 = {
    0x88d96a05, 0xf192, 0x11d4, {0xa6, 0x5f, 0x00, 0x40, 0x96, 0x32, 0x51, 0xe5}};

}  // namespace ZOTDam
