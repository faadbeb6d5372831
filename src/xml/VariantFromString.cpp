#include "xml/VariantFromString.h"

#include <cstdlib>
#include <cwchar>

namespace ZOTDam {

namespace {

// A null BSTR is an empty string, but the conversions of the C runtime do not accept a null pointer.
const wchar_t* OrEmpty(const wchar_t* text) noexcept {
    return text != nullptr ? text : L"";
}

// Not _wtoi or _wtol: in some C runtimes, they wrap around instead of saturating.
long ToLong(BSTR text) noexcept {
    return std::wcstol(OrEmpty(text), nullptr, 10);
}

}  // namespace

void FillFromString(_variant_t& value, BSTR text) {
    switch (V_VT(&value)) {
        case VT_I2:
        case VT_BOOL:
            V_I2(&value) = static_cast<SHORT>(ToLong(text));
            break;
        case VT_I4:
            V_I4(&value) = ToLong(text);
            break;
        case VT_R4:
            V_R4(&value) = static_cast<float>(_wtof(OrEmpty(text)));
            break;
        case VT_R8:
            V_R8(&value) = _wtof(OrEmpty(text));
            break;
        case VT_BSTR:
            value = _variant_t{_bstr_t{text, true}};
            break;
        default:
            value.Clear();
    }
}

}  // namespace ZOTDam
