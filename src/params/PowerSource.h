#pragma once

#include "ZOTDam.h"

namespace ZOTDam {

// A power source: AC (plugged in) or DC (on battery). A ParamValue has one position and a FunctionRecord has
// one list of display items for each of the two.
struct PowerSource {
    std::int32_t ParamValue::*paramIndex;
    List<DisplayItem> FunctionRecord::*displayItems;
};

inline constexpr PowerSource AC{&ParamValue::ACParamIndex, &FunctionRecord::acDisplayItems};
inline constexpr PowerSource DC{&ParamValue::DCParamIndex, &FunctionRecord::dcDisplayItems};

// Returns the display item that a parameter selects on a power source. Returns null when the function has no
// item at this position.
const DisplayItem* SelectDisplayItem(const FunctionRecord& function, const ParamValue& param,
                                     const PowerSource& source) noexcept;

}  // namespace ZOTDam
