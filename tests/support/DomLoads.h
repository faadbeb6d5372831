// Records the loads of DOM documents while an object of this class exists. COM must be initialised.
#pragma once

#include <vector>

#include "support/DomMethods.h"

namespace ZOTDam::Test {

class DomLoads {
public:
    DomLoads() : patch{DomMethod::Load, &Load} {
        current = this;
        original = patch.Original<Method>();
    }

    // The type of the source that was passed to each load.
    std::vector<VARTYPE> sources;

private:
    using Method = HRESULT WINAPI(IXMLDOMDocument*, VARIANT, VARIANT_BOOL*);

    static HRESULT WINAPI Load(IXMLDOMDocument* document, VARIANT source, VARIANT_BOOL* loaded) {
        current->sources.push_back(V_VT(&source));
        return original(document, source, loaded);
    }

    inline static DomLoads* current = nullptr;
    inline static Method* original = nullptr;
    DomMethodPatch patch;
};

}  // namespace ZOTDam::Test
