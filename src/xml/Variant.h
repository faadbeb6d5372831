#pragma once

#include "xml/Com.h"

namespace ZOTDam {

// Gives a variant the value that a text stands for. The type that the variant has decides the conversion;
// text without digits is 0, and a type without a conversion clears the variant.
void FillFromText(_variant_t& value, BSTR text);

}  // namespace ZOTDam
