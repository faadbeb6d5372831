// What a program without the library would write for each of its exports: straight-line MSXML code that makes
// the same loads, selections, reads, writes and saves, and the same queries of the display, and nothing else.
#pragma once

#include <vector>

#include "Msxml.h"

namespace ZOTDam::Bench {

// How a writing program brings its document to the disk.
using SaveDocument = void (PlainDocument::*)(const std::filesystem::path& file) const;

// The nodes of a base function that a client hands over.
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

// The same with the calls that a DOM carries out fastest: from sibling to sibling, and each attribute by its
// name.
long WalkDefaultParameters(const PlainDocument& defaults);

long ReadScheme(const std::filesystem::path& userFile, const wchar_t* scheme);
long ReadSetting(const std::filesystem::path& userFile);

// Looks for each key of each function at all entries of the table, one after the other, until it is found.
long TranslateFunctions(const PlainDocument& defaults, const PlainDocument& stringTable);

// The same for the keys of a difference in every function.
long TranslateDifferences(const PlainDocument& defaults, const PlainDocument& stringTable);

void WriteScheme(const std::filesystem::path& userFile, const wchar_t* scheme, SaveDocument save);
void WriteSetting(const std::filesystem::path& userFile, SaveDocument save);
void ReplaceFunctions(const PlainDocument& defaults, const std::vector<PlainFunction>& functions,
                      const std::filesystem::path& file, SaveDocument save);
void ReplaceSettings(const PlainDocument& defaults, const PlainDocument& base,
                     const std::filesystem::path& file, SaveDocument save);
void ResetSettings(const PlainDocument& settings, const std::filesystem::path& file, SaveDocument save);

}  // namespace ZOTDam::Bench
