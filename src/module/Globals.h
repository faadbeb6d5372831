// The module's own objects: built in this order when the library is loaded, gone when it is unloaded. Nothing
// is read from disk before an export needs it.
#pragma once

#include "catalogue/FunctionTable.h"
#include "params/ParamMap.h"
#include "schemes/SpecSchemeReader.h"
#include "settings/CommonSettingStore.h"

namespace ZOTDam {

// Null after ReleaseGlobals, and where memory did not suffice at load.
extern CSpecSchemeReader* SpecSchemeReader;
extern CCommonSettingStore* CommonSettingStore;
extern CFunctionTable* FunctionTable;

// Outlives ReleaseGlobals, deliberately: it holds what TEVGetParam loaded until TEVGetParam runs again.
extern ParamMap& CurrentParamCache;

// Releases the three above; calling it again does nothing.
void ReleaseGlobals() noexcept;

}  // namespace ZOTDam
