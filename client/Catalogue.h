#pragma once

#include "DataFiles.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

// The number of functions. Throws an Error, which names the file, when the catalogue cannot be loaded.
std::uint32_t RequireCatalogue(const Library& library, const std::filesystem::path& file = PathOf(Defaults));

}  // namespace ZOTDam::Client
