// The baseline of each export: the straight-line MSXML code that a program would use without the library. It
// only makes the same loads, selections, reads, writes, saves and display queries.
#pragma once

#include <vector>

#include "Msxml.h"

namespace ZOTDam::Bench {

// The nodes of a base function that a client passes to the library.
struct PlainFunction {
    IXMLDOMNodePtr display;
    IXMLDOMNodePtr defaults;
    int commands;
};

std::vector<PlainFunction> CollectFunctions(const PlainDocument& base);

long ReadCatalogue(const PlainDocument& defaults);
long ReadBase(const PlainDocument& base);
long ReadSpecSchemes(const PlainDocument& base);
long ReadDefaultParameters(const PlainDocument& defaults);

long ReadScheme(const std::filesystem::path& userFile, const wchar_t* scheme);
long ReadSetting(const std::filesystem::path& userFile);

// Looks up each key of each function with a linear search of the table's entries.
long TranslateFunctions(const PlainDocument& defaults, const PlainDocument& stringTable);

// The same for the keys of a list of differences that contains every function.
long TranslateDifferences(const PlainDocument& defaults, const PlainDocument& stringTable);

void WriteScheme(const std::filesystem::path& userFile, const wchar_t* scheme, SaveDocument save);
void WriteSetting(const std::filesystem::path& userFile, SaveDocument save);
void ReplaceFunctions(const PlainDocument& defaults, const std::vector<PlainFunction>& functions,
                      const std::filesystem::path& file, SaveDocument save);
void ReplaceSettings(const PlainDocument& defaults, const PlainDocument& base,
                     const std::filesystem::path& file, SaveDocument save);
void ResetSettings(const PlainDocument& settings, const std::filesystem::path& file, SaveDocument save);

}  // namespace ZOTDam::Bench
