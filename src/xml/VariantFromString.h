#pragma once

#include "xml/Com.h"

namespace ZOTDam {

// Converts a string to the current type of the variant and stores the result in it. A string without digits
// is converted to 0. A type without a conversion clears the variant.
void FillFromString(_variant_t& value, BSTR text);

}  // namespace ZOTDam
