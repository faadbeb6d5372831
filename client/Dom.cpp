#include "Dom.h"

#include <utility>

#include "Error.h"
#include "xml/Bstr.h"

namespace ZOTDam::Client {

namespace {

using NodeList = OwnedInterface<IXMLDOMNodeList>;
using NodeMap = OwnedInterface<IXMLDOMNamedNodeMap>;

void Check(HRESULT result) {
    if (FAILED(result))
        throw Error{"A data file cannot be read."};
}

using TextGetter = HRESULT (STDMETHODCALLTYPE IXMLDOMNode::*)(BSTR*);

std::wstring Get(IXMLDOMNode* node, TextGetter getter) {
    BSTR text = nullptr;
    Check((node->*getter)(&text));
    const OwnedBstr owner{text};
    return {text, SysStringLen(text)};
}

bool IsElement(IXMLDOMNode* node) {
    DOMNodeType type = NODE_INVALID;
    Check(node->get_nodeType(&type));
    return type == NODE_ELEMENT;
}

std::wstring NamespaceOf(IXMLDOMNode* node) {
    return Get(node, &IXMLDOMNode::get_namespaceURI);
}

NodeMap AttributesOf(IXMLDOMNode* element) {
    IXMLDOMNamedNodeMap* attributes = nullptr;
    Check(element->get_attributes(&attributes));
    return NodeMap{attributes};
}

}  // namespace

std::vector<Node> SelectChildren(IXMLDOMNode* parent, const wchar_t* name) {
    std::vector<Node> children;
    if (parent == nullptr)
        return children;
    IXMLDOMNodeList* selected = nullptr;
    Check(parent->selectNodes(CBstr{name}.AsBstr(), &selected));
    const NodeList list{selected};
    for (IXMLDOMNode* child = nullptr; list->nextNode(&child) == S_OK;)
        children.emplace_back(child);
    return children;
}

std::vector<Node> ChildElements(IXMLDOMNode* parent) {
    std::vector<Node> elements;
    IXMLDOMNode* child = nullptr;
    Check(parent->get_firstChild(&child));
    for (Node node{child}; node;) {
        IXMLDOMNode* sibling = nullptr;
        Check(node->get_nextSibling(&sibling));
        Node next{sibling};
        if (IsElement(node.get()))
            elements.push_back(std::move(node));
        node = std::move(next);
    }
    return elements;
}

std::optional<std::wstring> ReadAttribute(IXMLDOMNode* element, const wchar_t* name) {
    const NodeMap map = AttributesOf(element);
    IXMLDOMNode* found = nullptr;
    Check(map->getNamedItem(CBstr{name}.AsBstr(), &found));
    const Node attribute{found};
    if (!attribute)
        return {};
    return TextOf(attribute.get());
}

std::vector<Attribute> ReadAttributes(IXMLDOMNode* element) {
    constexpr wchar_t schemaInstance[] = L"http://www.w3.org/2001/XMLSchema-instance";
    std::vector<Attribute> attributes;
    const NodeMap map = AttributesOf(element);
    IXMLDOMNode* found = nullptr;
    for (long i = 0; map->get_item(i, &found) == S_OK; ++i) {
        const Node attribute{found};
        if (NamespaceOf(attribute.get()) == schemaInstance)
            continue;
        attributes.push_back({NameOf(attribute.get()), TextOf(attribute.get())});
    }
    return attributes;
}

std::wstring NameOf(IXMLDOMNode* node) {
    return Get(node, &IXMLDOMNode::get_nodeName);
}

std::wstring TextOf(IXMLDOMNode* node) {
    return Get(node, &IXMLDOMNode::get_text);
}

bool HasNamespace(IXMLDOMNode* node) {
    return !NamespaceOf(node).empty();
}

}  // namespace ZOTDam::Client
