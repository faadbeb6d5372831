// The module's own objects, created in this order when the library is loaded and released at the latest when
// it is unloaded. No file is read before an export needs it.
#pragma once

#include "catalogue/FunctionTable.h"
#include "params/ParamMap.h"
#include "settings/CommonSettingStore.h"
#include "spec_schemes/SpecSchemeReader.h"

namespace ZOTDam {

// Null after ReleaseGlobals (Compatibility: C7), or when the allocation at load failed.
extern CSpecSchemeReader* SpecSchemeReader;
extern CCommonSettingStore* CommonSettingStore;
extern CFunctionTable* FunctionTable;

// Filled by TEVGetParam. ReleaseGlobals does not empty it. Compatibility: C8.
extern ParamMap& CurrentParamCache;

// Releases the three objects above. Further calls have no effect.
void ReleaseGlobals() noexcept;

}  // namespace ZOTDam
