#pragma once

#include "xml/Com.h"

namespace ZOTDam {

// Converts a string to the type that the variant has and stores the result in the variant. For a numeric
// type, a string without a number becomes 0. For an unsupported type, the variant becomes empty.
void FillFromString(_variant_t& value, BSTR text);

}  // namespace ZOTDam
