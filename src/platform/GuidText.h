#pragma once

#include <guiddef.h>

#include <array>

namespace ZOTDam {

// A GUID as the data files write it: 36 characters, lower case, no braces.
class CGuidText {
public:
    explicit CGuidText(const GUID& guid);

    const wchar_t* c_str() const noexcept { return text.data(); }

    // Whether another text is this GUID; the case of its letters does not matter.
    bool Matches(const wchar_t* other) const noexcept;

private:
    std::array<wchar_t, 37> text{};
};

// Only that form is taken, in any case.
bool ParseGuid(const wchar_t* text, GUID& guid) noexcept;

}  // namespace ZOTDam
