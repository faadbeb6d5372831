#include "module/Globals.h"

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

#include "platform/ModuleUnload.h"

namespace ZOTDam {

namespace {

// Raw storage, because a static destructor of the cache would also run at process shutdown, when nothing may
// be accessed.
alignas(ParamMap) std::byte cacheStorage[sizeof(ParamMap)];

// Creates an object on the heap, or in the storage if there is one. Returns null when the construction fails.
// The maps of some standard libraries allocate memory in their default constructors, which
// `new (std::nothrow)` would let fail with an exception.
template <class Object>
Object* Create(void* storage = nullptr) noexcept {
    try {
        return storage != nullptr ? new (storage) Object : new Object;
    } catch (...) {
        return nullptr;
    }
}

template <class Object>
void Delete(Object*& global) noexcept {
    delete std::exchange(global, nullptr);
}

}  // namespace

CSpecSchemeReader* SpecSchemeReader = Create<CSpecSchemeReader>();
CCommonSettingStore* CommonSettingStore = Create<CCommonSettingStore>();
CFunctionTable* FunctionTable = Create<CFunctionTable>();
ParamMap* const CurrentParamCache = Create<ParamMap>(cacheStorage);

void ReleaseGlobals() noexcept {
    Delete(FunctionTable);
    Delete(CommonSettingStore);
    Delete(SpecSchemeReader);
}

namespace {

const CUnloadGuard ReleaseGuard{[]() noexcept {
    ReleaseGlobals();
    if (CurrentParamCache != nullptr)
        std::destroy_at(CurrentParamCache);
}};

}  // namespace

}  // namespace ZOTDam
