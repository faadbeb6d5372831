// The names of power schemes.
#pragma once

#include <guiddef.h>

#include <string>
#include <string_view>

namespace ZOTDam::Client {

inline constexpr GUID Balanced = {
    0x381b4222, 0xf694, 0x41f0, {0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e}};

// From a GUID, with or without braces, or the name of one of the schemes of Windows. Throws UsageError.
GUID ParseScheme(std::string_view text);

// 36 characters in lower case.
std::string SchemeGuid(const GUID& scheme);

// For people: the GUID, with the name before it when the scheme has one.
std::string SchemeTitle(const GUID& scheme);

// All the names that ParseScheme knows: "balanced, high-performance or power-saver".
std::string SchemeNames();

}  // namespace ZOTDam::Client
