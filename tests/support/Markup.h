// A DOM document that a test creates from a string, for tests that link the DOM layer.
#pragma once

#include <stdexcept>
#include <string>

#include "xml/Com.h"

namespace ZOTDam::Test {

class Markup {
public:
    explicit Markup(const std::wstring& xml) {
        VARIANT_BOOL loaded = VARIANT_FALSE;
        if (FAILED(document.CreateInstance(L"Msxml2.DOMDocument.6.0")) ||
            FAILED(document->put_async(VARIANT_FALSE)) ||
            document->loadXML(_bstr_t{xml.c_str()}, &loaded) != S_OK)
            throw std::invalid_argument{"not well-formed"};
    }

    IXMLDOMDocument2* Document() const noexcept { return document; }

    IXMLDOMElementPtr Root() const {
        IXMLDOMElementPtr root;
        document->get_documentElement(&root);
        return root;
    }

private:
    IXMLDOMDocument2Ptr document;
};

// Returns the XML of a node without line breaks and tabs, which a DOM may insert between tags.
inline std::wstring XmlOf(IXMLDOMNode* node) {
    BSTR xml = nullptr;
    node->get_xml(&xml);
    const _bstr_t owner{xml, false};
    std::wstring text{xml, SysStringLen(xml)};
    std::erase_if(text, [](wchar_t unit) { return unit == L'\r' || unit == L'\n' || unit == L'\t'; });
    return text;
}

// Returns the error code of the _com_error that an action throws, or S_OK if it does not throw one.
template <class Action>
HRESULT ThrownBy(Action&& action) {
    try {
        action();
        return S_OK;
    } catch (const _com_error& error) {
        return error.Error();
    }
}

}  // namespace ZOTDam::Test
