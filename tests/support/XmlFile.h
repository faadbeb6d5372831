// Whether a file is XML, as the DOM that the library uses judges it.
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

inline bool IsXml(const std::filesystem::path& file) {
    constexpr CLSID DomDocument60 = {
        0x88d96a05, 0xf192, 0x11d4, {0xa6, 0x5f, 0x00, 0x40, 0x96, 0x32, 0x51, 0xe5}};
    constexpr IID DomDocument = {
        0x2933bf81, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};
    const ComScope com;
    void* created = nullptr;
    if (FAILED(CoCreateInstance(DomDocument60, nullptr, CLSCTX_ALL, DomDocument, &created)))
        throw std::runtime_error{"there is no DOM"};
    const std::unique_ptr<IXMLDOMDocument, ReleaseInterface> document{static_cast<IXMLDOMDocument*>(created)};
    const std::unique_ptr<OLECHAR, FreeBstr> path{SysAllocString(file.c_str())};
    VARIANT source;
    V_VT(&source) = VT_BSTR;
    V_BSTR(&source) = path.get();
    VARIANT_BOOL loaded = VARIANT_FALSE;
    document->put_async(VARIANT_FALSE);
    return document->load(source, &loaded) == S_OK && loaded == VARIANT_TRUE;
}

}  // namespace ZOTDam::Test
