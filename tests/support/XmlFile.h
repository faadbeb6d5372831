// XML files as the DOM that the library uses reads them.
#pragma once

#include <objbase.h>

#include <filesystem>
#include <stdexcept>

#include "xml/ComOwners.h"
#include "xml/DomInterfaces.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Test {

inline OwnedInterface<IXMLDOMDocument> NewDocument() {
    void* created = nullptr;
    if (FAILED(CoCreateInstance(DomDocument60, nullptr, CLSCTX_ALL, __uuidof(IXMLDOMDocument), &created)))
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

inline bool IsWellFormed(const std::filesystem::path& file) {
    const ComScope com;
    return Load(*NewDocument(), file);
}

}  // namespace ZOTDam::Test
