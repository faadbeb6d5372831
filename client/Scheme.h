// The names of power schemes.
#pragma once

#include <guiddef.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "Report.h"

namespace ZOTDam::Client {

inline constexpr GUID Balanced = {
    0x381b4222, 0xf694, 0x41f0, {0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e}};

struct NamedScheme {
    std::string_view name;
    std::string_view alias;  // the name in powercfg
    GUID scheme;
};

inline constexpr std::array WindowsSchemes = {
    NamedScheme{"balanced", "SCHEME_BALANCED", Balanced},
    NamedScheme{"high-performance",
                "SCHEME_MIN",
                {0x8c5e7fda, 0xe8bf, 0x4a96, {0x9a, 0x85, 0xa6, 0xe2, 0x3a, 0x8c, 0x63, 0x5c}}},
    NamedScheme{"power-saver",
                "SCHEME_MAX",
                {0xa1841308, 0x3541, 0x4fab, {0xbc, 0x81, 0xf7, 0x15, 0x56, 0xf2, 0x0b, 0x4a}}},
};

// The alias of powercfg for the scheme that is active now.
inline constexpr std::string_view ActiveSchemeAlias = "SCHEME_CURRENT";

// Parses a GUID, with or without braces, or the name or alias of a Windows power scheme in any case. Throws
// UsageError, or Error if the active scheme is unknown.
GUID ParseScheme(std::string_view text);

// Returns the words that ParseScheme accepts instead of a GUID.
std::vector<std::string> SchemeWords();

// Returns the GUID as 36 characters in lower case, without braces.
std::string SchemeGuid(const GUID& scheme);

// Returns the display text of a scheme: "name (GUID)", or the GUID alone if the scheme has no name.
std::string SchemeTitle(const GUID& scheme);

// Returns the name of a scheme, or its GUID if it has no name.
std::string SchemeLabel(const GUID& scheme);

// Describe a scheme and the source of its values.
std::string SchemeHeading(const GUID& scheme, const std::string& source);
Json SchemeJson(const GUID& scheme, const char* source);

// Returns the name of a scheme, or null if it has none.
Json SchemeNameJson(const GUID& scheme);

// Returns the names of the Windows power schemes: "balanced, high-performance or power-saver".
std::string SchemeNames();

}  // namespace ZOTDam::Client
