#include "xml/Dom.h"

#include <algorithm>
#include <cstdlib>
#include <cwchar>

#include "xml/Bstr.h"
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

// The first element of that name among a node and its following siblings.
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

std::wstring_view View(const _variant_t& text) noexcept {
    return {V_BSTR(&text), SysStringLen(V_BSTR(&text))};
}

void CopyText(std::wstring_view text, Text& field) noexcept {
    std::copy(text.begin(), text.end(), field);
    field[text.size()] = L'\0';
}

bool EndsInsideSurrogatePair(std::wstring_view text) noexcept {
    return !text.empty() && IS_HIGH_SURROGATE(text.back());
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
    CopyText(View(text), field);
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
    _variant_t text;
    Check(Required(element)->get_nodeTypedValue(&text), element);
    text.ChangeType(VT_BSTR);
    std::wstring_view shown = View(text);
    if (shown.size() >= TextCapacity) {
        shown = shown.substr(0, TextCapacity - 1);
        if (EndsInsideSurrogatePair(shown))
            shown.remove_suffix(1);
    }
    CopyText(shown, field);
}

void WriteAttribute(IXMLDOMElement* element, const CName& name, std::int32_t value) {
    wchar_t digits[12];
    _itow_s(value, digits, std::size(digits), 10);
    WriteAttribute(element, name, digits);
}

void WriteAttribute(IXMLDOMElement* element, const CName& name, const wchar_t* value) {
    Check(Required(element)->setAttribute(name.AsBstr(), _variant_t{value}), element);
}

IXMLDOMElementPtr AppendElement(IXMLDOMDocument* document, IXMLDOMNode* parent, const CName& name) {
    IXMLDOMElementPtr element;
    Check(Required(document)->createElement(name.AsBstr(), &element), document);
    IXMLDOMNodePtr appended;
    Check(Required(parent)->appendChild(element, &appended), parent);
    return element;
}

IXMLDOMElementPtr CreateChild(IXMLDOMNode* parent, const CName& name, const _variant_t& value) {
    IXMLDOMDocumentPtr document;
    Check(Required(parent)->get_ownerDocument(&document), parent);
    IXMLDOMElementPtr element = AppendElement(document, parent, name);
    // Deliberate: the line feed and the tab put a later child on a line of its own, indented.
    if (V_VT(&value) == VT_EMPTY)
        Check(element->put_text(CName{L"\n\t"}.AsBstr()), element.GetInterfacePtr());
    else
        Check(element->put_nodeTypedValue(value), element.GetInterfacePtr());
    return element;
}

bool RemoveChildren(IXMLDOMNode* parent) {
    bool removed = false;
    while (const IXMLDOMNodePtr child = FirstChild(parent)) {
        IXMLDOMNodePtr detached;
        Check(parent->removeChild(child, &detached), parent);
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
