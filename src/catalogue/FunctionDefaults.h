#pragma once

#include "ZOTDam.h"

namespace ZOTDam {

// Makes the records the only functions of the defaults file. Nothing writes functions yet.
inline bool ReplaceFunctionDefaults(const List<FunctionBaseRecord>&) noexcept {
    return false;
}

}  // namespace ZOTDam
