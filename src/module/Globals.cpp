#include "module/Globals.h"

#include <memory>
#include <new>
#include <utility>

#include "platform/AtUnload.h"

namespace ZOTDam {

namespace {

// A map that no static destructor takes apart: when the process ends, nothing may be touched.
union CCacheStorage {
    CCacheStorage() noexcept : cache{} {}
    ~CCacheStorage() {}

    ParamMap cache;
};

CCacheStorage cacheStorage;

template <class Object>
void Delete(Object*& global) noexcept {
    delete std::exchange(global, nullptr);
}

}  // namespace

CSpecSchemeReader* SpecSchemeReader = new (std::nothrow) CSpecSchemeReader;
CCommonSettingStore* CommonSettingStore = new (std::nothrow) CCommonSettingStore;
CFunctionTable* FunctionTable = new (std::nothrow) CFunctionTable;
ParamMap& CurrentParamCache = cacheStorage.cache;

void ReleaseGlobals() noexcept {
    Delete(FunctionTable);
    Delete(CommonSettingStore);
    Delete(SpecSchemeReader);
}

namespace {

const CAtUnload releaseAtUnload{[]() noexcept {
    ReleaseGlobals();
    std::destroy_at(&CurrentParamCache);
}};

}  // namespace

}  // namespace ZOTDam
