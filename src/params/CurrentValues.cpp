#include "params/CurrentValues.h"

#include <iterator>

#include "params/DefaultReader.h"
#include "params/PowerSource.h"
#include "params/SchemeReader.h"
#include "platform/FalseOnException.h"

namespace ZOTDam {

namespace {

using Positions = decltype(CFunctionTable::positions);

Positions::const_iterator FindPosition(const Positions& positions, std::uint32_t position) noexcept {
    // A negative position means the first function if the table has several. Compatibility: C39.
    if (static_cast<std::int32_t>(position) < 0)
        return positions.size() > 1 ? positions.begin() : positions.end();
    return position < positions.size() ? std::next(positions.begin(), position) : positions.end();
}

// The two refresh-rate functions are reported with the same id. Compatibility: C40.
std::uint32_t ReportedId(std::int32_t functionId) noexcept {
    return static_cast<std::uint32_t>(functionId == 8 ? 7 : functionId);
}

void ReadOption(const DisplayItem* selected, std::uint32_t& field) noexcept {
    if (selected != nullptr)
        field = static_cast<std::uint32_t>(selected->option);
}

}  // namespace

bool ReloadCurrentValues(CFunctionTable& table, const GUID& scheme, ParamMap& cache) noexcept {
    cache.clear();
    return LoadSchemeParameters(table, scheme, cache) || ReadDefaultSchemeParameters(scheme, cache);
}

bool ReadCurrentValue(const CFunctionTable& table, ParamMap& cache, std::uint32_t position,
                      FuncCurValue& value) noexcept {
    return FalseOnException([&] {
        const auto found = FindPosition(table.positions, position);
        if (found == table.positions.end())
            return false;
        const auto& [functionId, function] = **found;
        const ParamValue& param = cache[functionId];
        value.FunctionId = ReportedId(functionId);
        ReadOption(SelectDisplayItem(function, param, AC), value.ACValue);
        ReadOption(SelectDisplayItem(function, param, DC), value.DCValue);
        return true;
    });
}

}  // namespace ZOTDam
