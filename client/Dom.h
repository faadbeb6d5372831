// Reads XML elements: those that the library returns as DOM nodes, and those of the data files.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "xml/ComOwners.h"
#include "xml/DomInterfaces.h"

namespace ZOTDam::Client {

using Node = OwnedInterface<IXMLDOMNode>;

// Returns the children with this name, in document order; none for a null parent.
std::vector<Node> SelectChildren(IXMLDOMNode* parent, const wchar_t* name);

std::vector<Node> ChildElements(IXMLDOMNode* parent);

std::optional<std::wstring> ReadAttribute(IXMLDOMNode* element, const wchar_t* name);

struct Attribute {
    std::wstring name;
    std::wstring value;
};

// Omits the attributes with which a document names its schema.
std::vector<Attribute> ReadAttributes(IXMLDOMNode* element);

// Returns the qualified name, with its prefix.
std::wstring NameOf(IXMLDOMNode* node);

std::wstring TextOf(IXMLDOMNode* node);

bool HasNamespace(IXMLDOMNode* node);

}  // namespace ZOTDam::Client
