#pragma once

#include <wtypes.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ZOTDam {

// The name of an element or attribute, or another short literal, that can be passed to the DOM as a BSTR. As
// in every BSTR, the length in bytes directly precedes the string. Passing a name allocates no memory.
class CXmlName {
public:
    template <std::size_t Size>
    constexpr CXmlName(
        const wchar_t (&literal)[Size]) noexcept  // implicit, so that callers can pass literals
        : byteLength{(Size - 1) * sizeof(wchar_t)} {
        static_assert(Size <= Capacity);
        std::copy_n(literal, Size, text);
    }

    // DOM methods take their BSTR arguments without const, but do not change them.
    BSTR AsBstr() const noexcept { return const_cast<BSTR>(text); }
    std::wstring_view View() const noexcept { return {text, byteLength / sizeof(wchar_t)}; }

private:
    static constexpr std::size_t Capacity = 20;

    std::uint32_t byteLength;
    wchar_t text[Capacity] = {};
};

}  // namespace ZOTDam
