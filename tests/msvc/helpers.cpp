// Uses each class of ZOTDamClient.h, so that the compiler checks its templates.
#include "ZOTDamClient.h"

std::uint32_t UseEachHelper(const std::map<std::int32_t, ZOTDam::ParamValue>& params, const GUID& scheme) {
    const ZOTDam::Library library;
    const ZOTDam::ParamHolder holder{params};
    std::uint32_t count = 0;
    auto counter = ZOTDam::MakeCallback<ZOTDam::IGetFunctionInfoCallback>(
        [&count](std::uint32_t, const ZOTDam::FunctionRecord*) { ++count; });
    return library.SetParameter(&scheme, holder.get()) && library.GetFunctionInfo(&counter) ? count : 0;
}
