// The C++ examples of docs/clients.md. Each prints its results.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

#include "ZOTDamClient.h"

namespace Examples {

inline constexpr GUID Balanced = {
    0x381b4222, 0xf694, 0x41f0, {0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e}};
inline constexpr GUID PowerSaver = {
    0xa1841308, 0x3541, 0x4fab, {0xbc, 0x81, 0xf7, 0x15, 0x56, 0xf2, 0x0b, 0x4a}};

// Converts a string to UTF-8 for the console.
std::string ToUtf8(const wchar_t* text);

// Lifetime.cpp
void LoadAndUnload();
void LoadByHand();
void ReplaceCatalogueAndReload();

// Catalogue.cpp
void CountFunctions(const ZOTDam::Library& library);
void ListFunctions(const ZOTDam::Library& library);
void ListBase(const ZOTDam::Library& library);
void ListUnsupported(const ZOTDam::Library& library);
void AdoptAll(const ZOTDam::Library& library);

// Parameters.cpp
void ListParameters(const ZOTDam::Library& library, const GUID& scheme);
void ListDefaults(const ZOTDam::Library& library, const GUID& scheme);
void ChangeParameters(const ZOTDam::Library& library, const GUID& scheme);
void LoadCurrentValues(const ZOTDam::Library& library, const GUID& scheme);
void ListCurrentValues(const ZOTDam::Library& library);
void ForgetEverything(const ZOTDam::Library& library);

// Commands.cpp
void ListCommands(const ZOTDam::Library& library, const GUID& scheme);
void ListDifferences(const ZOTDam::Library& library, const GUID& schemeA, const GUID& schemeB);

// Settings.cpp
void ListSpecSchemes(const ZOTDam::Library& library);
void ReadSetting(const ZOTDam::Library& library);
void ChangeSetting(const ZOTDam::Library& library);
void InitialiseSettings(const ZOTDam::Library& library);

}  // namespace Examples
