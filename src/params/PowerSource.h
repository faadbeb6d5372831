#pragma once

#include "ZOTDam.h"

namespace ZOTDam {

// AC (plugged in) or DC (on battery). A parameter has one value and a function has one list of options for
// each.
struct PowerSource {
    std::int32_t ParamValue::*paramIndex;
    List<DisplayItem> FunctionRecord::*displayItems;
};

inline constexpr PowerSource AC{&ParamValue::ACParamIndex, &FunctionRecord::acDisplayItems};
inline constexpr PowerSource DC{&ParamValue::DCParamIndex, &FunctionRecord::dcDisplayItems};

// Returns the display item that a parameter selects on a power source, or null when the function has no item
// at that position.
const DisplayItem* SelectDisplayItem(const FunctionRecord& function, const ParamValue& param,
                                     const PowerSource& source) noexcept;

}  // namespace ZOTDam
