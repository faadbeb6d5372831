// A document of the test itself, and the description of a node's content for comparison with other nodes.
#pragma once

#include <iterator>
#include <string>
#include <utility>

#include "support/XmlFile.h"

namespace ZOTDam::Test {

using Node = CountedPointer<IXMLDOMNode>;

class XmlTree {
public:
    static XmlTree OfText(const std::wstring& xml) {
        XmlTree tree;
        const OwnedBstr text{SysAllocString(xml.c_str())};
        VARIANT_BOOL loaded = VARIANT_FALSE;
        if (tree.document->loadXML(text.get(), &loaded) != S_OK)
            throw std::invalid_argument{"not well-formed"};
        return tree;
    }

    static XmlTree OfFile(const std::filesystem::path& file) {
        XmlTree tree;
        if (!Load(*tree.document, file))
            throw std::invalid_argument{"not a well-formed file"};
        return tree;
    }

    // Returns the first node that the XPath expression selects, or null if it selects no node.
    Node Find(const std::wstring& path) const {
        const OwnedBstr query{SysAllocString(path.c_str())};
        IXMLDOMNode* found = nullptr;
        if (document->selectSingleNode(query.get(), &found) != S_OK)
            return {};
        return Node{OwnedInterface<IXMLDOMNode>{found}.get()};
    }

    Node Root() const { return Find(L"/*"); }

private:
    OwnedInterface<IXMLDOMDocument> document = NewDocument();
};

inline std::wstring NameOf(IXMLDOMNode& node) {
    BSTR name = nullptr;
    BSTR uri = nullptr;
    node.get_nodeName(&name);
    node.get_namespaceURI(&uri);
    const OwnedBstr ownedName{name};
    const OwnedBstr ownedUri{uri};
    return std::wstring{name} + L"{" + (uri != nullptr ? uri : L"") + L"}";
}

inline std::wstring ValueOf(IXMLDOMNode& node) {
    VARIANT value;
    VariantInit(&value);
    std::wstring text;
    if (node.get_nodeValue(&value) == S_OK && V_VT(&value) == VT_BSTR)
        text.assign(V_BSTR(&value), SysStringLen(V_BSTR(&value)));
    VariantClear(&value);
    return text;
}

// Omits namespace declarations, because the names include the namespaces.
inline std::wstring DescribeAttributes(IXMLDOMNode& node) {
    IXMLDOMNamedNodeMap* map = nullptr;
    if (node.get_attributes(&map) != S_OK)
        return {};
    const OwnedInterface<IXMLDOMNamedNodeMap> attributes{map};
    std::wstring description;
    IXMLDOMNode* attribute = nullptr;
    while (attributes->nextNode(&attribute) == S_OK) {
        const OwnedInterface<IXMLDOMNode> owned{attribute};
        const std::wstring name = NameOf(*attribute);
        if (!name.starts_with(L"xmlns"))
            description += L" " + name + L"=\"" + ValueOf(*attribute) + L"\"";
    }
    return description;
}

// Describes a node and its descendants, one node per line, with kind, name, attributes and value. The node
// may be null.
inline std::wstring Describe(IXMLDOMNode* node, std::size_t depth = 0) {
    if (node == nullptr)
        return L"nothing";
    DOMNodeType type = NODE_INVALID;
    node->get_nodeType(&type);
    std::wstring description = std::wstring(depth, L' ') + std::to_wstring(type) + L" " + NameOf(*node) +
                               DescribeAttributes(*node) + L" " + ValueOf(*node) + L"\n";
    IXMLDOMNode* child = nullptr;
    node->get_firstChild(&child);
    while (child != nullptr) {
        const OwnedInterface<IXMLDOMNode> owned{std::exchange(child, nullptr)};
        description += Describe(owned.get(), depth + 1);
        owned->get_nextSibling(&child);
    }
    return description;
}

}  // namespace ZOTDam::Test
