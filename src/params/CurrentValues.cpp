#include "params/CurrentValues.h"

#include "params/DefaultReader.h"
#include "params/SchemeReader.h"

namespace ZOTDam {

bool ReloadCurrentValues(CFunctionTable& table, const GUID& scheme, ParamMap& cache) noexcept {
    cache.clear();
    return LoadSchemeParameters(table, scheme, cache) || ReadDefaultSchemeParameters(scheme, cache);
}

}  // namespace ZOTDam
