#include "Dom.h"

#include <oleauto.h>

#include <new>

#include "Error.h"

namespace ZOTDam::Client {

namespace {

using NodeList = std::unique_ptr<IXMLDOMNodeList, ReleaseInterface>;
using NodeMap = std::unique_ptr<IXMLDOMNamedNodeMap, ReleaseInterface>;

struct FreeBstr {
    void operator()(BSTR text) const noexcept { SysFreeString(text); }
};

using Bstr = std::unique_ptr<OLECHAR, FreeBstr>;

Bstr MakeBstr(const wchar_t* text) {
    Bstr copy{SysAllocString(text)};
    if (!copy)
        throw std::bad_alloc{};
    return copy;
}

void Check(HRESULT result) {
    if (FAILED(result))
        throw Error{"The base catalogue cannot be read."};
}

}  // namespace

std::vector<Node> SelectChildren(IXMLDOMNode* parent, const wchar_t* name) {
    std::vector<Node> children;
    if (parent == nullptr)
        return children;
    IXMLDOMNodeList* selected = nullptr;
    Check(parent->selectNodes(MakeBstr(name).get(), &selected));
    const NodeList list{selected};
    for (IXMLDOMNode* child = nullptr; list->nextNode(&child) == S_OK;)
        children.emplace_back(child);
    return children;
}

std::optional<std::wstring> ReadAttribute(IXMLDOMNode* element, const wchar_t* name) {
    IXMLDOMNamedNodeMap* attributes = nullptr;
    Check(element->get_attributes(&attributes));
    const NodeMap map{attributes};
    IXMLDOMNode* found = nullptr;
    Check(map->getNamedItem(MakeBstr(name).get(), &found));
    const Node attribute{found};
    if (!attribute)
        return {};
    BSTR text = nullptr;
    Check(attribute->get_text(&text));
    const Bstr owner{text};
    return std::wstring{text, SysStringLen(text)};
}

}  // namespace ZOTDam::Client
