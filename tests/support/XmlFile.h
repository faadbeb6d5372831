// XML files as the DOM that the library uses reads them.
#pragma once

#include <objbase.h>
#include <windows.h>

#include <msxml2.h>
#include <oleauto.h>

#include <filesystem>
#include <memory>
#include <stdexcept>

#include "ZOTDamClient.h"

namespace ZOTDam::Test {

struct ReleaseInterface {
    void operator()(IUnknown* counted) const noexcept { counted->Release(); }
};

struct FreeBstr {
    void operator()(BSTR text) const noexcept { SysFreeString(text); }
};

template <class Interface>
using OwnedInterface = std::unique_ptr<Interface, ReleaseInterface>;

using OwnedBstr = std::unique_ptr<OLECHAR, FreeBstr>;

inline OwnedInterface<IXMLDOMDocument> NewDocument() {
    constexpr CLSID DomDocument60 = {
        0x88d96a05, 0xf192, 0x11d4, {0xa6, 0x5f, 0x00, 0x40, 0x96, 0x32, 0x51, 0xe5}};
    constexpr IID DomDocument = {
        0x2933bf81, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};
    void* created = nullptr;
    if (FAILED(CoCreateInstance(DomDocument60, nullptr, CLSCTX_ALL, DomDocument, &created)))
        throw std::runtime_error{"there is no DOM"};
    OwnedInterface<IXMLDOMDocument> document{static_cast<IXMLDOMDocument*>(created)};
    document->put_async(VARIANT_FALSE);
    return document;
}

inline bool Load(IXMLDOMDocument& document, const std::filesystem::path& file) {
    const OwnedBstr path{SysAllocString(file.c_str())};
    VARIANT source;
    V_VT(&source) = VT_BSTR;
    V_BSTR(&source) = path.get();
    VARIANT_BOOL loaded = VARIANT_FALSE;
    return document.load(source, &loaded) == S_OK && loaded == VARIANT_TRUE;
}

inline bool IsXml(const std::filesystem::path& file) {
    const ComScope com;
    return Load(*NewDocument(), file);
}

}  // namespace ZOTDam::Test
