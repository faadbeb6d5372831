#pragma once

#include "DataFiles.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

// Returns the number of functions. Throws an Error that names the file and the reason if the catalogue cannot
// be loaded.
std::uint32_t RequireCatalogue(const Library& library, const std::filesystem::path& file = PathOf(Defaults));

}  // namespace ZOTDam::Client
