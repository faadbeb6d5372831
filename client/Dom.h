// Reads the elements of the base catalogue that the library hands out as DOM nodes.
#pragma once

#include <windows.h>

#include <msxml2.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ZOTDam::Client {

struct ReleaseInterface {
    void operator()(IUnknown* counted) const noexcept { counted->Release(); }
};

using Node = std::unique_ptr<IXMLDOMNode, ReleaseInterface>;

// The children of that name, in their order; none for a null parent.
std::vector<Node> SelectChildren(IXMLDOMNode* parent, const wchar_t* name);

std::optional<std::wstring> ReadAttribute(IXMLDOMNode* element, const wchar_t* name);

}  // namespace ZOTDam::Client
