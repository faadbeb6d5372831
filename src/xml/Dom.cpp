#include "xml/Dom.h"

#include <cstdlib>
#include <cwchar>

#include "platform/FixedText.h"
#include "xml/Bstr.h"
#include "xml/SavedValues.h"
#include "xml/VariantFromString.h"
#include "xml/XmlCharacters.h"

namespace ZOTDam {

namespace {

std::uint32_t domChanges = 0;

template <class Interface>
Interface* RequireNode(Interface* node) {
    if (node == nullptr)
        _com_issue_error(E_POINTER);
    return node;
}

IXMLDOMNodePtr GetFirstChild(IXMLDOMNode* parent) {
    IXMLDOMNodePtr child;
    Check(RequireNode(parent)->get_firstChild(&child), parent);
    return child;
}

IXMLDOMNodePtr GetNextSibling(IXMLDOMNode* node) {
    IXMLDOMNodePtr sibling;
    Check(node->get_nextSibling(&sibling), node);
    return sibling;
}

bool HasNamespace(IXMLDOMNode* node) {
    CBstr uri;
    Check(node->get_namespaceURI(uri.Receive()), node);
    return !uri.View().empty();
}

bool IsNamed(IXMLDOMElement* element, const CXmlName& name) {
    CBstr tag;
    Check(element->get_tagName(tag.Receive()), element);
    return tag.View() == name.View() && !HasNamespace(element);
}

// Returns the first element with this name among a node and its following siblings, or null.
IXMLDOMElementPtr FindFirstNamed(IXMLDOMNodePtr node, const CXmlName& name) {
    while (node) {
        const IXMLDOMElementPtr element = node;
        if (element && IsNamed(element, name))
            return element;
        node = GetNextSibling(node);
    }
    return {};
}

// The DOM usually returns strings, and a conversion of a string to a string would copy it.
void ConvertToString(_variant_t& value) {
    if (V_VT(&value) != VT_BSTR)
        value.ChangeType(VT_BSTR);
}

bool ReadAttributeText(IXMLDOMElement* element, const CXmlName& name, _variant_t& text) {
    if (Check(RequireNode(element)->getAttribute(name.AsBstr(), &text), element) != S_OK)
        return false;
    ConvertToString(text);
    return true;
}

// Some DOMs represent an element without content by Null.
_variant_t GetTypedValue(IXMLDOMElement* element) {
    _variant_t value;
    Check(element->get_nodeTypedValue(&value), element);
    if (V_VT(&value) == VT_NULL)
        return _variant_t{L""};
    ConvertToString(value);
    return value;
}

std::wstring_view View(const _variant_t& text) noexcept {
    return {V_BSTR(&text), SysStringLen(V_BSTR(&text))};
}

void SetAttribute(IXMLDOMElement* element, BSTR name, const wchar_t* value) {
    if (!IsXmlText(value))
        _com_issue_error(E_INVALIDARG);
    NoteWrittenValue(value);
    ++domChanges;
    Check(RequireNode(element)->setAttribute(name, _variant_t{value}), element);
}

IXMLDOMDocumentPtr GetOwnerDocument(IXMLDOMNode* node) {
    IXMLDOMDocumentPtr document;
    Check(RequireNode(node)->get_ownerDocument(&document), node);
    return document;
}

IXMLDOMElementPtr CreateEmptyElement(IXMLDOMDocument* document, const CXmlName& name) {
    IXMLDOMElementPtr element;
    Check(RequireNode(document)->createElement(name.AsBstr(), &element), document);
    return element;
}

}  // namespace

CSelection::CSelection(IXMLDOMNode* parent, const CXmlName& name)
    : firstChild{GetFirstChild(parent)}, name{name} {}

CSelection::Iterator::Iterator(const IXMLDOMNodePtr& first, const CXmlName& name)
    : element{FindFirstNamed(first, name)}, name{name} {}

CSelection::Iterator& CSelection::Iterator::operator++() {
    element = FindFirstNamed(GetNextSibling(element), name);
    return *this;
}

IXMLDOMElementPtr SelectChild(IXMLDOMNode* parent, const CXmlName& name) {
    return FindFirstNamed(GetFirstChild(parent), name);
}

bool ReadAttribute(IXMLDOMElement* element, const CXmlName& name, std::int32_t& field) {
    _variant_t text;
    if (!ReadAttributeText(element, name, text))
        return false;
    _variant_t number{0L};
    FillFromString(number, V_BSTR(&text));
    field = V_I4(&number);
    return true;
}

bool ReadAttribute(IXMLDOMElement* element, const CXmlName& name, Text& field) {
    _variant_t text;
    if (!ReadAttributeText(element, name, text))
        return false;
    if (View(text).size() >= TextCapacity)
        _com_issue_error(E_INVALIDARG);
    CopyTruncated(View(text), field);
    return true;
}

bool ReadAttribute(IXMLDOMElement* element, const CXmlName& name, std::wstring& field) {
    _variant_t text;
    if (!ReadAttributeText(element, name, text))
        return false;
    field = View(text);
    return true;
}

void ReadElementText(IXMLDOMElement* element, Text& field) {
    CopyTruncated(View(GetTypedValue(RequireNode(element))), field);
}

void WriteAttribute(IXMLDOMElement* element, const CXmlName& name, std::int32_t value) {
    wchar_t digits[12];
    _itow_s(value, digits, std::size(digits), 10);
    WriteAttribute(element, name, digits);
}

void WriteAttribute(IXMLDOMElement* element, const CXmlName& name, const wchar_t* value) {
    SetAttribute(element, name.AsBstr(), value);
}

bool ReadNamedAttribute(IXMLDOMElement* element, const wchar_t* name, std::wstring& value) {
    IXMLDOMNamedNodeMapPtr attributes;
    Check(RequireNode(element)->get_attributes(&attributes), element);
    IXMLDOMNodePtr attribute;
    Check(attributes->getNamedItem(CBstr{name}.AsBstr(), &attribute), attributes.GetInterfacePtr());
    if (!attribute || IsNamespaceDeclaration(name))
        return false;
    // Not the typed value, which some DOMs represent by Null if it is empty.
    _variant_t text;
    Check(attribute->get_nodeValue(&text), attribute.GetInterfacePtr());
    ConvertToString(text);
    value = View(text);
    return true;
}

void WriteNamedAttribute(IXMLDOMElement* element, const wchar_t* name, const wchar_t* value) {
    if (!IsNcName(name) || name == std::wstring_view{L"xmlns"})
        _com_issue_error(E_INVALIDARG);
    SetAttribute(element, CBstr{name}.AsBstr(), value);
}

std::uint32_t CountOfDomChanges() noexcept {
    return domChanges;
}

IXMLDOMElementPtr AppendElement(IXMLDOMDocument* document, IXMLDOMNode* parent, const CXmlName& name) {
    IXMLDOMElementPtr element = CreateEmptyElement(document, name);
    AppendChild(parent, element);
    return element;
}

IXMLDOMElementPtr CreateElement(IXMLDOMNode* parent, const CXmlName& name, const _variant_t& value) {
    IXMLDOMElementPtr element = CreateEmptyElement(GetOwnerDocument(parent), name);
    // Places a later child on its own, indented line. Compatibility: C16.
    if (V_VT(&value) == VT_EMPTY)
        Check(element->put_text(CXmlName{L"\n\t"}.AsBstr()), element.GetInterfacePtr());
    else
        Check(element->put_nodeTypedValue(value), element.GetInterfacePtr());
    return element;
}

IXMLDOMElementPtr CreateChild(IXMLDOMNode* parent, const CXmlName& name, const _variant_t& value) {
    IXMLDOMElementPtr element = CreateElement(parent, name, value);
    AppendChild(parent, element);
    return element;
}

IXMLDOMNodePtr ImportNode(IXMLDOMNode* parent, IXMLDOMNode* node) {
    IXMLDOMNodePtr copy;
    const IXMLDOMDocument3Ptr document = GetOwnerDocument(parent);
    const HRESULT imported = document->importNode(RequireNode(node), VARIANT_TRUE, &copy);
    // Some DOMs do not implement importNode, but accept nodes of other documents.
    if (imported == E_NOTIMPL)
        Check(node->cloneNode(VARIANT_TRUE, &copy), node);
    else
        Check(imported, document.GetInterfacePtr());
    return copy;
}

void AppendChild(IXMLDOMNode* parent, IXMLDOMNode* child) {
    ++domChanges;
    IXMLDOMNodePtr appended;
    Check(RequireNode(parent)->appendChild(child, &appended), parent);
}

void RemoveChild(IXMLDOMNode* parent, IXMLDOMNode* child) {
    ++domChanges;
    IXMLDOMNodePtr removed;
    Check(RequireNode(parent)->removeChild(child, &removed), parent);
}

bool RemoveChildren(IXMLDOMNode* parent) {
    bool removed = false;
    while (const IXMLDOMNodePtr child = GetFirstChild(parent)) {
        RemoveChild(parent, child);
        removed = true;
    }
    return removed;
}

std::vector<NamedAttribute> SelectAttributes(IXMLDOMNode* element) {
    // The attribute map is not used: some DOMs count declarations in it that they do not return.
    IXMLDOMNodeListPtr selection;
    long length = 0;
    Check(RequireNode(element)->selectNodes(CXmlName{L"@*"}.AsBstr(), &selection), element);
    Check(selection->get_length(&length), selection.GetInterfacePtr());
    std::vector<NamedAttribute> attributes;
    for (long i = 0; i < length; ++i) {
        IXMLDOMNodePtr node;
        CBstr name;
        Check(selection->get_item(i, &node), selection.GetInterfacePtr());
        Check(node->get_nodeName(name.Receive()), node.GetInterfacePtr());
        if (!IsNamespaceDeclaration(name.View()))
            attributes.push_back({std::wstring{name.View()}, node});
    }
    return attributes;
}

void RemoveAttributes(IXMLDOMNode* element) {
    ++domChanges;
    IXMLDOMNamedNodeMapPtr map;
    Check(RequireNode(element)->get_attributes(&map), element);
    for (const NamedAttribute& attribute : SelectAttributes(element)) {
        IXMLDOMNodePtr removed;
        Check(map->removeNamedItem(CBstr{attribute.name.c_str()}.AsBstr(), &removed), map.GetInterfacePtr());
    }
}

}  // namespace ZOTDam
