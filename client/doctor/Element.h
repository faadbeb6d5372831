// A data file as a tree, in which each element knows where it stands.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Dom.h"

namespace ZOTDam::Client {

struct Element {
    std::wstring name;  // with its prefix
    bool hasNamespace = false;
    std::vector<Attribute> attributes;
    std::vector<Element> children;
    std::wstring text;       // of a string table's "value" alone: no other text is ever read
    std::string path;        // from the root, with positions among elements of the same name
    std::size_t number = 0;  // in the order of the file

    // The library finds elements by their exact name, and only those without a namespace.
    bool IsNamed(std::wstring_view sought) const { return !hasNamespace && name == sought; }

    std::vector<const Element*> ChildrenNamed(std::wstring_view sought) const;

    // The first one, or null.
    const Element* ChildNamed(std::wstring_view sought) const;

    // The value, or null.
    const std::wstring* FindAttribute(std::wstring_view sought) const;
};

Element BuildElement(IXMLDOMNode* root);

}  // namespace ZOTDam::Client
