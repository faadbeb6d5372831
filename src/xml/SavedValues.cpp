#include "xml/SavedValues.h"

#include <string>
#include <utility>
#include <vector>

#include "xml/Com.h"
#include "xml/Dom.h"
#include "xml/Prolog.h"

namespace ZOTDam {

namespace {

bool hasCriticalValues = false;

using Neighbour = HRESULT (STDMETHODCALLTYPE IXMLDOMNode::*)(IXMLDOMNode**);

IXMLDOMNodePtr GetNeighbour(IXMLDOMNode* node, Neighbour neighbour) {
    IXMLDOMNodePtr found;
    Check((node->*neighbour)(&found), node);
    return found;
}

// Returns the node that follows in document order, or null.
IXMLDOMNodePtr NextNode(IXMLDOMNodePtr node) {
    if (const IXMLDOMNodePtr child = GetNeighbour(node, &IXMLDOMNode::get_firstChild))
        return child;
    while (node) {
        if (const IXMLDOMNodePtr sibling = GetNeighbour(node, &IXMLDOMNode::get_nextSibling))
            return sibling;
        node = GetNeighbour(node, &IXMLDOMNode::get_parentNode);
    }
    return {};
}

IXMLDOMElementPtr NextElement(IXMLDOMNodePtr node) {
    while ((node = NextNode(node)))
        if (const IXMLDOMElementPtr element = node)
            return element;
    return {};
}

std::wstring ValueOf(IXMLDOMNode* attribute) {
    _variant_t value;
    Check(attribute->get_nodeValue(&value), attribute);
    value.ChangeType(VT_BSTR);
    return {V_BSTR(&value), SysStringLen(V_BSTR(&value))};
}

// Returns the names and values of the attributes, without namespace declarations: a save adds those that a
// copied element needs.
std::vector<std::pair<std::wstring, std::wstring>> AttributesOf(IXMLDOMElement* element) {
    std::vector<std::pair<std::wstring, std::wstring>> attributes;
    for (NamedAttribute& attribute : SelectAttributes(element))
        attributes.emplace_back(std::move(attribute.name), ValueOf(attribute.node));
    return attributes;
}

}  // namespace

void NoteWrittenValue(std::wstring_view value) noexcept {
    hasCriticalValues = hasCriticalValues || value.find_first_of(L"\t\n\r") != std::wstring_view::npos;
}

// In a file in UTF-8, only a character reference puts a tab or a line break into an attribute. Files in other
// encodings are not searched.
void NoteLoadedContent(std::string_view bytes) {
    hasCriticalValues = hasCriticalValues || bytes.find("&#") != std::string_view::npos || !IsUtf8(bytes);
}

bool HasCriticalValues() noexcept {
    return hasCriticalValues;
}

bool HaveEqualAttributes(IXMLDOMNode* left, IXMLDOMNode* right) {
    IXMLDOMElementPtr leftElement = NextElement(left);
    IXMLDOMElementPtr rightElement = NextElement(right);
    while (leftElement && rightElement) {
        if (AttributesOf(leftElement) != AttributesOf(rightElement))
            return false;
        leftElement = NextElement(leftElement);
        rightElement = NextElement(rightElement);
    }
    return !leftElement && !rightElement;
}

}  // namespace ZOTDam
