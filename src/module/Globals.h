// The global objects of the library. They are created in this order when the DLL is loaded, without reading a
// file. The unload of the DLL releases the objects that ZOTDamExit has not released.
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

// The parameters that TEVGetParam has loaded. ReleaseGlobals does not remove them (Compatibility: C8). Null
// when the allocation at load failed.
extern ParamMap* const CurrentParamCache;

// Deletes the first three objects. Further calls have no effect.
void ReleaseGlobals() noexcept;

}  // namespace ZOTDam
