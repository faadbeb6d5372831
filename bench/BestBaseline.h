// The second baseline of each export: the best MSXML code that a programmer can write for the same task. It
// keeps its documents, loads bytes, walks from sibling to sibling, reads attributes by name and looks up
// texts in an index.
#pragma once

#include <string>
#include <unordered_map>

#include "Msxml.h"

namespace ZOTDam::Bench::Best {

// The lengths of the texts of a string table, by key in lower case.
using TextLengths = std::unordered_map<std::wstring, long>;

TextLengths IndexTexts(const PlainDocument& stringTable);

long ReadCatalogue(PlainDocument& defaults, const std::filesystem::path& defaultsFile);
long ReadBase(const PlainDocument& base);
long ReadSpecSchemes(const PlainDocument& base);
long ReadDefaultParameters(const PlainDocument& defaults);
long ReadScheme(PlainDocument& settings, const std::filesystem::path& userFile, const wchar_t* scheme);
long ReadSetting(PlainDocument& settings, const std::filesystem::path& userFile);

// Looks up each key of each function.
long TranslateFunctions(const PlainDocument& defaults, const TextLengths& texts);

// Compares two schemes of one document and looks up the keys of all functions.
long CompareSchemes(PlainDocument& settings, const std::filesystem::path& userFile, const wchar_t* schemeA,
                    const wchar_t* schemeB, const PlainDocument& defaults, const TextLengths& texts);

void WriteScheme(PlainDocument& settings, const std::filesystem::path& userFile, const wchar_t* scheme);
void WriteSetting(PlainDocument& settings, const std::filesystem::path& userFile);

}  // namespace ZOTDam::Bench::Best
