// The element tree of a data file. Each element stores its path and its position.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "doctor/Position.h"
#include "Dom.h"

namespace ZOTDam::Client {

struct Element {
    std::wstring name;  // with its prefix
    bool hasNamespace = false;
    std::vector<Attribute> attributes;
    std::vector<Element> children;
    std::wstring text;       // only of "value" in a string table: no other text is read
    std::string path;        // from the root, with positions if siblings have the same name
    std::size_t number = 0;  // in the order of the file
    Position position;       // of the start tag

    // The library finds elements by their exact name, and only those without a namespace.
    bool IsNamed(std::wstring_view sought) const { return !hasNamespace && name == sought; }

    std::vector<const Element*> ChildrenNamed(std::wstring_view sought) const;

    // Returns the first child with this name, or null.
    const Element* ChildNamed(std::wstring_view sought) const;

    // Returns the value, or null.
    const std::wstring* FindAttribute(std::wstring_view sought) const;
};

// The library reads no element below this depth, so deeper ones are not examined. The root has the depth 1.
inline constexpr std::size_t MaxDepth = 8;

// `positions` are those of the start tags, in the order of the file.
Element BuildElement(IXMLDOMNode* root, const std::vector<Position>& positions);

}  // namespace ZOTDam::Client
