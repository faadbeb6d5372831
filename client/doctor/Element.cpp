#include "doctor/Element.h"

#include <algorithm>
#include <map>
#include <stack>
#include <utility>

#include "Text.h"
#include "xml/DataFileElements.h"

namespace ZOTDam::Client {

namespace {

Element ElementOf(IXMLDOMNode* node, std::string path, std::size_t number,
                  const std::vector<Position>& positions) {
    Element element;
    element.name = NameOf(node);
    element.hasNamespace = HasNamespace(node);
    element.attributes = ReadAttributes(node);
    element.path = std::move(path);
    element.number = number;
    if (number < positions.size())
        element.position = positions[number];
    if (element.name == Elements::TextValue)
        element.text = TextOf(node);
    return element;
}

// An element to which children are still being added.
class OpenElement {
public:
    OpenElement(IXMLDOMNode* node, Element elementOfNode)
        : element{std::move(elementOfNode)}, nodes{ChildElements(node)} {
        for (const Node& child : nodes)
            ++totals[NameOf(child.get())];
    }

    bool HasMoreChildren() const noexcept { return next < nodes.size(); }

    OpenElement OpenNextChild(std::size_t number, const std::vector<Position>& positionsOfTags) {
        IXMLDOMNode* const child = nodes[next++].get();
        const std::wstring name = NameOf(child);
        std::string path = element.path + "/" + ToUtf8(name);
        if (totals[name] > 1)
            path += "[" + std::to_string(++positions[name]) + "]";
        return {child, ElementOf(child, std::move(path), number, positionsOfTags)};
    }

    void Add(Element child) { element.children.push_back(std::move(child)); }

    Element Close() && { return std::move(element); }

private:
    Element element;
    std::vector<Node> nodes;
    std::size_t next = 0;
    std::map<std::wstring, std::size_t> totals;  // number of children by name
    std::map<std::wstring, std::size_t> positions;
};

}  // namespace

std::vector<const Element*> Element::ChildrenNamed(std::wstring_view sought) const {
    std::vector<const Element*> found;
    for (const Element& child : children)
        if (child.IsNamed(sought))
            found.push_back(&child);
    return found;
}

const Element* Element::ChildNamed(std::wstring_view sought) const {
    const auto found =
        std::ranges::find_if(children, [sought](const Element& child) { return child.IsNamed(sought); });
    return found != children.end() ? &*found : nullptr;
}

const std::wstring* Element::FindAttribute(std::wstring_view sought) const {
    const auto found = std::ranges::find(attributes, sought, &Attribute::name);
    return found != attributes.end() ? &found->value : nullptr;
}

Element BuildElement(IXMLDOMNode* root, const std::vector<Position>& positions) {
    std::size_t elements = 0;
    // Not a vector, which moves its items: with some compilers, moving a map can throw.
    std::stack<OpenElement> open;
    open.emplace(root, ElementOf(root, "/" + ToUtf8(NameOf(root)), elements, positions));
    while (true) {
        if (open.top().HasMoreChildren() && open.size() < MaxDepth) {
            open.push(open.top().OpenNextChild(++elements, positions));
            continue;
        }
        Element closed = std::move(open.top()).Close();
        open.pop();
        if (open.empty())
            return closed;
        open.top().Add(std::move(closed));
    }
}

}  // namespace ZOTDam::Client
