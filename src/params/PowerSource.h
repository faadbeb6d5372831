#pragma once

#include "ZOTDam.h"

namespace ZOTDam {

// Mains power or battery: a parameter has a value for each, and a function has options for each.
struct PowerSource {
    std::int32_t ParamValue::*paramIndex;
    List<DisplayItem> FunctionRecord::*displayItems;
};

inline constexpr PowerSource Mains{&ParamValue::ACParamIndex, &FunctionRecord::acDisplayItems};
inline constexpr PowerSource Battery{&ParamValue::DCParamIndex, &FunctionRecord::dcDisplayItems};

// The display item that a parameter selects on a power source, or null when the function has none at that
// position.
const DisplayItem* SelectDisplayItem(const FunctionRecord& function, const ParamValue& param,
                                     const PowerSource& source) noexcept;

}  // namespace ZOTDam
