#include "Scheme.h"

#include <objbase.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "Error.h"

namespace ZOTDam::Client {

namespace {

struct NamedScheme {
    std::string_view name;
    GUID scheme;
};

constexpr std::array WindowsSchemes = {
    NamedScheme{"balanced", Balanced},
    NamedScheme{"high-performance",
                {0x8c5e7fda, 0xe8bf, 0x4a96, {0x9a, 0x85, 0xa6, 0xe2, 0x3a, 0x8c, 0x63, 0x5c}}},
    NamedScheme{"power-saver",
                {0xa1841308, 0x3541, 0x4fab, {0xbc, 0x81, 0xf7, 0x15, 0x56, 0xf2, 0x0b, 0x4a}}},
};

constexpr std::size_t GuidLength = 36;

// The text has one wide character per byte: what is not ASCII is no GUID anyway.
bool ParseGuid(std::string_view text, GUID& guid) {
    const bool braces = text.starts_with('{') && text.ends_with('}');
    std::wstring braced{text.begin(), text.end()};
    if (!braces)
        braced = L'{' + braced + L'}';
    return braced.size() == GuidLength + 2 && SUCCEEDED(IIDFromString(braced.c_str(), &guid));
}

}  // namespace

GUID ParseScheme(std::string_view text) {
    const auto* const named = std::ranges::find(WindowsSchemes, text, &NamedScheme::name);
    if (named != WindowsSchemes.end())
        return named->scheme;
    GUID scheme = {};
    // The library treats the GUID of all zeros as no scheme.
    if (!ParseGuid(text, scheme) || scheme == GUID{})
        throw UsageError{"\"" + std::string{text} + "\" is no power scheme: give its GUID, or " +
                         SchemeNames() + "."};
    return scheme;
}

std::string SchemeGuid(const GUID& scheme) {
    wchar_t braced[GuidLength + 3] = {};
    StringFromGUID2(scheme, braced, static_cast<int>(std::size(braced)));
    std::string text;
    for (const wchar_t c : std::wstring_view{braced + 1, GuidLength})
        text += static_cast<char>(c >= L'A' && c <= L'F' ? c - L'A' + L'a' : c);
    return text;
}

std::string SchemeTitle(const GUID& scheme) {
    const auto* const named = std::ranges::find(WindowsSchemes, scheme, &NamedScheme::scheme);
    if (named == WindowsSchemes.end())
        return SchemeGuid(scheme);
    return std::string{named->name} + " (" + SchemeGuid(scheme) + ")";
}

std::string SchemeNames() {
    std::string names{WindowsSchemes.front().name};
    for (std::size_t i = 1; i < WindowsSchemes.size(); ++i)
        names.append(i + 1 == WindowsSchemes.size() ? " or " : ", ").append(WindowsSchemes[i].name);
    return names;
}

}  // namespace ZOTDam::Client
