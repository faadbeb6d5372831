#include "Catalogue.h"

#include "doctor/Doctor.h"
#include "Error.h"
#include "Text.h"

namespace ZOTDam::Client {

namespace {

// The library also skips a file without problems, if another program holds its busy marker or has it open.
Error CatalogueError(const std::filesystem::path& file) {
    const CatalogueProblem problem = FindCatalogueProblem(file).value_or(
        CatalogueProblem{"file-in-use", "the file is in use by another program"});
    const ErrorKind kind = problem.kind == "file-in-use"    ? ErrorKind::InUse
                           : problem.kind == "missing-file" ? ErrorKind::MissingFile
                                                            : ErrorKind::UnreadableFile;
    return {kind, "The catalogue cannot be loaded from " + Utf8(file) + ": " + problem.text + ".", file};
}

}  // namespace

std::uint32_t RequireCatalogue(const Library& library, const std::filesystem::path& file) {
    const std::uint32_t functions = library.GetFuncCount();
    if (functions == CatalogueUnavailable)
        throw CatalogueError(file);
    return functions;
}

FunctionCatalogue ReadCatalogue(const Library& library, const std::filesystem::path& file) {
    RequireCatalogue(library, file);
    FunctionCatalogue catalogue;
    auto add = MakeCallback<IGetFunctionInfoCallback>([&](std::uint32_t id, const FunctionRecord* function) {
        catalogue[static_cast<std::int32_t>(id)] = {ToUtf8(function->name),
                                                    ToUtf8(function->group),
                                                    function->type,
                                                    function->flag,
                                                    OptionsOf(function->acDisplayItems),
                                                    OptionsOf(function->dcDisplayItems)};
    });
    library.GetFunctionInfo(&add);
    return catalogue;
}

const CatalogueFunction& RequireFunction(const FunctionCatalogue& catalogue, std::int32_t id,
                                         const std::filesystem::path& file) {
    const auto found = catalogue.find(id);
    if (found == catalogue.end())
        throw Error{ErrorKind::UnknownFunction,
                    "The catalogue " + Utf8(file) + " has no function " + std::to_string(id) + ".", file};
    return found->second;
}

const CatalogueFunction& FindFunction(const FunctionCatalogue& catalogue, std::int32_t id) {
    static const CatalogueFunction unknown;
    const auto found = catalogue.find(id);
    return found == catalogue.end() ? unknown : found->second;
}

}  // namespace ZOTDam::Client
