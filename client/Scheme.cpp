#include "Scheme.h"

#include <objbase.h>
#include <windows.h>

#include <algorithm>
#include <iterator>

#include "Error.h"

namespace ZOTDam::Client {

namespace {

constexpr std::size_t GuidLength = 36;

bool IsSameIgnoringCase(std::string_view text, std::string_view alias) {
    return std::ranges::equal(text, alias,
                              [](char a, char b) { return (a >= 'a' && a <= 'z' ? a - 'a' + 'A' : a) == b; });
}

// Widens each byte to one character. This is sufficient, because a GUID has only ASCII characters.
bool ParseGuid(std::string_view text, GUID& guid) {
    const bool braces = text.starts_with('{') && text.ends_with('}');
    std::wstring braced{text.begin(), text.end()};
    if (!braces)
        braced = L'{' + braced + L'}';
    return braced.size() == GuidLength + 2 && SUCCEEDED(IIDFromString(braced.c_str(), &guid));
}

}  // namespace

GUID ParseScheme(std::string_view text) {
    for (const NamedScheme& named : WindowsSchemes)
        if (text == named.name || IsSameIgnoringCase(text, named.alias))
            return named.scheme;
    GUID scheme = {};
    // The library does not accept the all-zero GUID as a scheme.
    if (!ParseGuid(text, scheme) || scheme == GUID{})
        throw UsageError{"\"" + std::string{text} + "\" is not a power scheme: specify its GUID, or " +
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
    std::string guid = SchemeGuid(scheme);
    for (const NamedScheme& named : WindowsSchemes)
        if (named.scheme == scheme)
            return std::string{named.name} + " (" + guid + ")";
    return guid;
}

std::string SchemeNames() {
    std::string names{WindowsSchemes.front().name};
    for (std::size_t i = 1; i < WindowsSchemes.size(); ++i)
        names.append(i + 1 == WindowsSchemes.size() ? " or " : ", ").append(WindowsSchemes[i].name);
    return names;
}

}  // namespace ZOTDam::Client
