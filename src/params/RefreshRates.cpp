#include "params/RefreshRates.h"

#include <windows.h>

namespace ZOTDam {

namespace {

bool IsRefreshRateFunction(std::int32_t functionId) noexcept {
    return functionId == 7 || functionId == 8;
}

// Displays report 59 Hz for 59.94 Hz, so rates that differ by one are equal. The subtraction wraps around.
// Compatibility: C38.
bool IsSameRate(std::int32_t rate, DWORD frequency) noexcept {
    const auto difference = static_cast<std::int32_t>(static_cast<std::uint32_t>(rate) - frequency);
    return difference >= -1 && difference <= 1;
}

bool DisplaySupportsBoth(std::int32_t rateA, std::int32_t rateB) noexcept {
    // The structure has dmSize 0 and is not reset between the modes. Compatibility: C37.
    DEVMODEW mode = {};
    bool supportsA = false;
    bool supportsB = false;
    for (DWORD number = 0; EnumDisplaySettingsW(nullptr, number, &mode) != FALSE; ++number) {
        supportsA = supportsA || IsSameRate(rateA, mode.dmDisplayFrequency);
        supportsB = supportsB || IsSameRate(rateB, mode.dmDisplayFrequency);
        if (supportsA && supportsB)
            return true;
    }
    return false;
}

}  // namespace

bool HasUnsupportedRefreshRate(std::int32_t functionId, const FunctionRecord& function) noexcept {
    const List<DisplayItem>& rates = function.acDisplayItems;
    if (!IsRefreshRateFunction(functionId) || rates.size() < 2)
        return false;
    auto rate = rates.begin();
    const std::int32_t rateA = rate->option;
    ++rate;
    return !DisplaySupportsBoth(rateA, rate->option);
}

}  // namespace ZOTDam
