#include "Catalogue.h"

#include "doctor/Doctor.h"
#include "Error.h"

namespace ZOTDam::Client {

std::uint32_t RequireCatalogue(const Library& library, const std::filesystem::path& file) {
    const std::uint32_t functions = library.GetFuncCount();
    if (functions != CatalogueUnavailable)
        return functions;
    const std::string problem = FindCatalogueProblem(file);
    // The library also skips a file without problems, if another program holds its busy marker.
    throw Error{"The catalogue cannot be loaded from " + Utf8(file) + ": " +
                (problem.empty() ? "the file is in use by another program" : problem) + "."};
}

}  // namespace ZOTDam::Client
