// A DOM document of a test, made from text, for the tests that link the DOM layer.
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
            throw std::invalid_argument{"no XML"};
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

// The XML of a node. A DOM may put line breaks and tabs between the tags to show it; they are left out.
inline std::wstring XmlOf(IXMLDOMNode* node) {
    BSTR xml = nullptr;
    node->get_xml(&xml);
    const _bstr_t owner{xml, false};
    std::wstring text{xml, SysStringLen(xml)};
    std::erase_if(text, [](wchar_t unit) { return unit == L'\r' || unit == L'\n' || unit == L'\t'; });
    return text;
}

// The failure that an action throws as a _com_error; S_OK when it throws none.
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
