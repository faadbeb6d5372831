#include "Catalogue.h"

#include "Error.h"

namespace ZOTDam::Client {

std::uint32_t RequireCatalogue(const Library& library, const std::filesystem::path& file) {
    const std::uint32_t functions = library.GetFuncCount();
    if (functions != CatalogueUnavailable)
        return functions;
    throw Error{"The catalogue cannot be loaded: the file " + Utf8(file) +
                (exists(file) ? " holds no valid one or is in use by another program." : " does not exist.")};
}

}  // namespace ZOTDam::Client
