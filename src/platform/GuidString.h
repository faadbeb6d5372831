#pragma once

#include <guiddef.h>

#include <array>

namespace ZOTDam {

// A GUID in the format of the data files: 36 characters, lower case, no braces.
class CGuidString {
public:
    explicit CGuidString(const GUID& guid);

    const wchar_t* c_str() const noexcept { return text.data(); }

    // Returns whether another string is equal to this one. The comparison is case-insensitive.
    bool Matches(const wchar_t* other) const noexcept;

private:
    std::array<wchar_t, 37> text{};
};

// Parses a GUID of 36 characters without braces, in upper or lower case. Returns false for any other string.
bool ParseGuid(const wchar_t* text, GUID& guid) noexcept;

}  // namespace ZOTDam
