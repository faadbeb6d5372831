// Smart pointers for the DOM interfaces, and the conversion of failed HRESULTs to exceptions.
#pragma once

#include <comdef.h>

#include "xml/DomInterfaces.h"

namespace ZOTDam {

_COM_SMARTPTR_TYPEDEF(IXMLDOMNode, __uuidof(IXMLDOMNode));
_COM_SMARTPTR_TYPEDEF(IXMLDOMDocument, __uuidof(IXMLDOMDocument));
_COM_SMARTPTR_TYPEDEF(IXMLDOMNodeList, __uuidof(IXMLDOMNodeList));
_COM_SMARTPTR_TYPEDEF(IXMLDOMNamedNodeMap, __uuidof(IXMLDOMNamedNodeMap));
_COM_SMARTPTR_TYPEDEF(IXMLDOMElement, __uuidof(IXMLDOMElement));
_COM_SMARTPTR_TYPEDEF(IXMLDOMProcessingInstruction, __uuidof(IXMLDOMProcessingInstruction));
_COM_SMARTPTR_TYPEDEF(IXMLDOMDocument2, __uuidof(IXMLDOMDocument2));
_COM_SMARTPTR_TYPEDEF(IXMLDOMDocument3, __uuidof(IXMLDOMDocument3));

// Throws a _com_error for a call to `source` that failed, with the error information of `source`.
[[noreturn]] void ThrowComError(HRESULT failure, IUnknown* source, REFIID calledInterface);

// Returns the result of a call to `source`. Throws a _com_error when the call failed.
template <class Interface>
HRESULT Check(HRESULT result, Interface* source) {
    if (FAILED(result))
        ThrowComError(result, source, __uuidof(Interface));
    return result;
}

}  // namespace ZOTDam
