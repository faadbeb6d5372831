// The catalogue as the library reports it, with the texts in the user's language.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

#include "DataFiles.h"
#include "DisplayOptions.h"
#include "Library.h"

namespace ZOTDam::Client {

struct CatalogueFunction {
    std::string name;
    std::string group;
    std::int32_t type = 0;
    std::int32_t flag = 0;
    Options acOptions;
    Options dcOptions;
};

using FunctionCatalogue = std::map<std::int32_t, CatalogueFunction>;

// Both throw an Error that names the file and the reason if the catalogue cannot be loaded. RequireCatalogue
// returns the number of functions.
std::uint32_t RequireCatalogue(const Library& library, const std::filesystem::path& file = PathOf(Defaults));
FunctionCatalogue ReadCatalogue(const Library& library, const std::filesystem::path& file = PathOf(Defaults));

// Returns the function. Throws an Error that names the file if the catalogue does not contain it.
const CatalogueFunction& RequireFunction(const FunctionCatalogue& catalogue, std::int32_t id,
                                         const std::filesystem::path& file = PathOf(Defaults));

// Returns the function, or a function without name and options if the catalogue does not contain it.
const CatalogueFunction& FindFunction(const FunctionCatalogue& catalogue, std::int32_t id);

}  // namespace ZOTDam::Client
