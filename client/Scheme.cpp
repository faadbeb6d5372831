#include "Scheme.h"

#include <objbase.h>
#include <windows.h>

#include <iterator>

#include "Error.h"
#include "Suggestion.h"
#include "Text.h"
#include "WindowsSchemes.h"

namespace ZOTDam::Client {

namespace {

constexpr std::size_t GuidLength = 36;

// Widens each byte to one character. This is sufficient, because a GUID has only ASCII characters.
bool ParseGuid(std::string_view text, GUID& guid) {
    const bool braces = text.starts_with('{') && text.ends_with('}');
    std::wstring braced{text.begin(), text.end()};
    if (!braces)
        braced = L'{' + braced + L'}';
    return braced.size() == GuidLength + 2 && SUCCEEDED(IIDFromString(braced.c_str(), &guid));
}

GUID RequireActiveScheme() {
    const std::optional<GUID> active = FindActiveScheme();
    if (!active)
        throw Error{"Windows does not report the active power scheme."};
    return *active;
}

// Returns the first known scheme that the condition selects, or null.
template <class Condition>
const NamedScheme* FindNamedScheme(Condition isSelected) {
    for (const NamedScheme& named : WindowsSchemes)
        if (isSelected(named))
            return &named;
    return nullptr;
}

const NamedScheme* FindNamedScheme(const GUID& scheme) {
    return FindNamedScheme([&](const NamedScheme& named) { return named.scheme == scheme; });
}

}  // namespace

GUID ParseScheme(std::string_view text) {
    const NamedScheme* const named = FindNamedScheme([&](const NamedScheme& candidate) {
        return IsSameIgnoringCase(text, candidate.name) || IsSameIgnoringCase(text, candidate.alias);
    });
    if (named != nullptr)
        return named->scheme;
    if (IsSameIgnoringCase(text, ActiveSchemeAlias))
        return RequireActiveScheme();
    GUID scheme = {};
    // For the all-zero GUID, four exports do nothing and report no error. Compatibility: C5.
    if (!ParseGuid(text, scheme) || scheme == GUID{})
        throw UsageError{"\"" + std::string{text} + "\" is not a power scheme: specify its GUID, or " +
                         SchemeNames() + SuggestionFor(text, SchemeWords())};
    return scheme;
}

std::vector<std::string> SchemeWords() {
    std::vector<std::string> words;
    words.reserve(2 * std::size(WindowsSchemes) + 1);
    for (const NamedScheme& named : WindowsSchemes)
        words.emplace_back(named.name);
    for (const NamedScheme& named : WindowsSchemes)
        words.emplace_back(named.alias);
    words.emplace_back(ActiveSchemeAlias);
    return words;
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
    const NamedScheme* const named = FindNamedScheme(scheme);
    return named == nullptr ? SchemeGuid(scheme) : std::string{named->name} + " (" + SchemeGuid(scheme) + ")";
}

std::string SchemeLabel(const GUID& scheme) {
    const NamedScheme* const named = FindNamedScheme(scheme);
    return named == nullptr ? SchemeGuid(scheme) : std::string{named->name};
}

std::string SchemeHeading(const GUID& scheme, const std::string& source) {
    return "Scheme: " + SchemeTitle(scheme) + "\nSource: " + source + "\n\n";
}

Json SchemeJson(const GUID& scheme, const char* source) {
    return {{"scheme", SchemeGuid(scheme)}, {"schemeName", SchemeNameJson(scheme)}, {"source", source}};
}

Json SchemeNameJson(const GUID& scheme) {
    const NamedScheme* const named = FindNamedScheme(scheme);
    return named == nullptr ? Json() : Json(named->name);
}

std::string SchemeNames() {
    std::string names{WindowsSchemes.front().name};
    for (std::size_t i = 1; i < WindowsSchemes.size(); ++i)
        names.append(i + 1 == WindowsSchemes.size() ? " or " : ", ").append(WindowsSchemes[i].name);
    return names;
}

}  // namespace ZOTDam::Client
