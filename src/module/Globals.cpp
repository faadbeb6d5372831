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

template <class Object>
void Delete(Object*& global) noexcept {
    delete std::exchange(global, nullptr);
}

}  // namespace

CSpecSchemeReader* SpecSchemeReader = new (std::nothrow) CSpecSchemeReader;
CCommonSettingStore* CommonSettingStore = new (std::nothrow) CCommonSettingStore;
CFunctionTable* FunctionTable = new (std::nothrow) CFunctionTable;
ParamMap& CurrentParamCache = *new (cacheStorage) ParamMap;

void ReleaseGlobals() noexcept {
    Delete(FunctionTable);
    Delete(CommonSettingStore);
    Delete(SpecSchemeReader);
}

namespace {

const CUnloadGuard ReleaseGuard{[]() noexcept {
    ReleaseGlobals();
    std::destroy_at(&CurrentParamCache);
}};

}  // namespace

}  // namespace ZOTDam
