#include "xml/Dom.h"

#include <cstdlib>
#include <cwchar>

#include "platform/FixedText.h"
#include "xml/Bstr.h"
#include "xml/Characters.h"
#include "xml/Variant.h"

namespace ZOTDam {

namespace {

template <class Interface>
Interface* Required(Interface* node) {
    if (node == nullptr)
        _com_issue_error(E_POINTER);
    return node;
}

IXMLDOMNodePtr FirstChild(IXMLDOMNode* parent) {
    IXMLDOMNodePtr child;
    Check(Required(parent)->get_firstChild(&child), parent);
    return child;
}

IXMLDOMNodePtr NextSibling(IXMLDOMNode* node) {
    IXMLDOMNodePtr sibling;
    Check(node->get_nextSibling(&sibling), node);
    return sibling;
}

bool HasNamespace(IXMLDOMNode* node) {
    CBstr uri;
    Check(node->get_namespaceURI(uri.Receive()), node);
    return !uri.View().empty();
}

bool IsNamed(IXMLDOMElement* element, const CName& name) {
    CBstr tag;
    Check(element->get_tagName(tag.Receive()), element);
    return tag.View() == name.View() && !HasNamespace(element);
}

// Returns the first element with this name among a node and its following siblings, or null.
IXMLDOMElementPtr FirstNamed(IXMLDOMNodePtr node, const CName& name) {
    while (node) {
        const IXMLDOMElementPtr element = node;
        if (element && IsNamed(element, name))
            return element;
        node = NextSibling(node);
    }
    return {};
}

bool ReadAttributeText(IXMLDOMElement* element, const CName& name, _variant_t& text) {
    if (Check(Required(element)->getAttribute(name.AsBstr(), &text), element) != S_OK)
        return false;
    text.ChangeType(VT_BSTR);
    return true;
}

_variant_t ReadTypedValue(IXMLDOMNode* node) {
    _variant_t value;
    Check(node->get_nodeTypedValue(&value), node);
    value.ChangeType(VT_BSTR);
    return value;
}

std::wstring_view View(const _variant_t& text) noexcept {
    return {V_BSTR(&text), SysStringLen(V_BSTR(&text))};
}

void SetAttribute(IXMLDOMElement* element, BSTR name, const wchar_t* value) {
    if (!IsXmlText(value))
        _com_issue_error(E_INVALIDARG);
    Check(Required(element)->setAttribute(name, _variant_t{value}), element);
}

IXMLDOMDocumentPtr OwnerDocument(IXMLDOMNode* node) {
    IXMLDOMDocumentPtr document;
    Check(Required(node)->get_ownerDocument(&document), node);
    return document;
}

bool HasDocumentType(IXMLDOMDocument* document) {
    IXMLDOMDocumentType* type = nullptr;
    Check(document->get_doctype(&type), document);
    if (type != nullptr)
        type->Release();
    return type != nullptr;
}

IXMLDOMElementPtr EmptyElement(IXMLDOMDocument* document, const CName& name) {
    IXMLDOMElementPtr element;
    Check(Required(document)->createElement(name.AsBstr(), &element), document);
    return element;
}

}  // namespace

CSelection::CSelection(IXMLDOMNode* parent, const CName& childName)
    : firstChild{FirstChild(parent)}, name{childName} {}

CSelection::Iterator::Iterator(const IXMLDOMNodePtr& first, const CName& childName)
    : element{FirstNamed(first, childName)}, name{childName} {}

CSelection::Iterator& CSelection::Iterator::operator++() {
    element = FirstNamed(NextSibling(element), name);
    return *this;
}

IXMLDOMElementPtr SelectChild(IXMLDOMNode* parent, const CName& name) {
    return FirstNamed(FirstChild(parent), name);
}

bool ReadAttribute(IXMLDOMElement* element, const CName& name, std::int32_t& field) {
    _variant_t text;
    if (!ReadAttributeText(element, name, text))
        return false;
    _variant_t number{0L};
    FillFromText(number, V_BSTR(&text));
    field = V_I4(&number);
    return true;
}

bool ReadAttribute(IXMLDOMElement* element, const CName& name, Text& field) {
    _variant_t text;
    if (!ReadAttributeText(element, name, text))
        return false;
    if (View(text).size() >= TextCapacity)
        _com_issue_error(E_INVALIDARG);
    CopyTruncated(View(text), field);
    return true;
}

bool ReadAttribute(IXMLDOMElement* element, const CName& name, std::wstring& field) {
    _variant_t text;
    if (!ReadAttributeText(element, name, text))
        return false;
    field = View(text);
    return true;
}

void ReadElementText(IXMLDOMElement* element, Text& field) {
    CopyTruncated(View(ReadTypedValue(Required(element))), field);
}

void WriteAttribute(IXMLDOMElement* element, const CName& name, std::int32_t value) {
    wchar_t digits[12];
    _itow_s(value, digits, std::size(digits), 10);
    WriteAttribute(element, name, digits);
}

void WriteAttribute(IXMLDOMElement* element, const CName& name, const wchar_t* value) {
    SetAttribute(element, name.AsBstr(), value);
}

bool ReadNamedAttribute(IXMLDOMElement* element, const wchar_t* name, std::wstring& value) {
    IXMLDOMNamedNodeMapPtr attributes;
    Check(Required(element)->get_attributes(&attributes), element);
    IXMLDOMNodePtr attribute;
    Check(attributes->getNamedItem(CBstr{name}.AsBstr(), &attribute), attributes.GetInterfacePtr());
    if (!attribute)
        return false;
    value = View(ReadTypedValue(attribute));
    return true;
}

void WriteNamedAttribute(IXMLDOMElement* element, const wchar_t* name, const wchar_t* value) {
    if (!IsNcName(name) || name == std::wstring_view{L"xmlns"})
        _com_issue_error(E_INVALIDARG);
    SetAttribute(element, CBstr{name}.AsBstr(), value);
}

IXMLDOMElementPtr AppendElement(IXMLDOMDocument* document, IXMLDOMNode* parent, const CName& name) {
    IXMLDOMElementPtr element = EmptyElement(document, name);
    AppendChild(parent, element);
    return element;
}

IXMLDOMElementPtr CreateElement(IXMLDOMNode* parent, const CName& name, const _variant_t& value) {
    IXMLDOMElementPtr element = EmptyElement(OwnerDocument(parent), name);
    // Deliberate: the line feed and the tab place a later child on its own, indented line.
    if (V_VT(&value) == VT_EMPTY)
        Check(element->put_text(CName{L"\n\t"}.AsBstr()), element.GetInterfacePtr());
    else
        Check(element->put_nodeTypedValue(value), element.GetInterfacePtr());
    return element;
}

IXMLDOMElementPtr CreateChild(IXMLDOMNode* parent, const CName& name, const _variant_t& value) {
    IXMLDOMElementPtr element = CreateElement(parent, name, value);
    AppendChild(parent, element);
    return element;
}

IXMLDOMNodePtr ImportNode(IXMLDOMNode* parent, IXMLDOMNode* node) {
    // A copy could reference entities that only the other document's DTD declares; the saved file could then
    // never be loaded again.
    if (HasDocumentType(OwnerDocument(node)))
        _com_issue_error(E_INVALIDARG);
    IXMLDOMNodePtr copy;
    const IXMLDOMDocument3Ptr document = OwnerDocument(parent);
    const HRESULT imported = document->importNode(node, VARIANT_TRUE, &copy);
    // Some DOMs do not implement importNode, but accept nodes of other documents.
    if (imported == E_NOTIMPL)
        Check(node->cloneNode(VARIANT_TRUE, &copy), node);
    else
        Check(imported, document.GetInterfacePtr());
    return copy;
}

void AppendChild(IXMLDOMNode* parent, IXMLDOMNode* child) {
    IXMLDOMNodePtr appended;
    Check(Required(parent)->appendChild(child, &appended), parent);
}

void RemoveChild(IXMLDOMNode* parent, IXMLDOMNode* child) {
    IXMLDOMNodePtr removed;
    Check(Required(parent)->removeChild(child, &removed), parent);
}

bool RemoveChildren(IXMLDOMNode* parent) {
    bool removed = false;
    while (const IXMLDOMNodePtr child = FirstChild(parent)) {
        RemoveChild(parent, child);
        removed = true;
    }
    return removed;
}

void RemoveAttributes(IXMLDOMNode* element) {
    IXMLDOMNamedNodeMapPtr attributes;
    Check(Required(element)->get_attributes(&attributes), element);
    long count = 0;
    Check(attributes->get_length(&count), attributes.GetInterfacePtr());
    for (long i = count - 1; i >= 0; --i) {
        IXMLDOMNodePtr attribute;
        CBstr name;
        Check(attributes->get_item(i, &attribute), attributes.GetInterfacePtr());
        Check(attribute->get_nodeName(name.Receive()), attribute.GetInterfacePtr());
        IXMLDOMNodePtr removed;
        Check(attributes->removeNamedItem(*name.Receive(), &removed), attributes.GetInterfacePtr());
    }
}

}  // namespace ZOTDam
