// count, functions.
#include "Catalogue.h"
#include "commands/Commands.h"
#include "DisplayOptions.h"
#include "LanguagePreview.h"

namespace ZOTDam::Client {

namespace {

struct FunctionsArguments {
    std::set<std::int32_t> ids;
    std::optional<std::string> language;
};

Report CountFunctions() {
    const Library library;
    const std::uint32_t functions = RequireCatalogue(library);
    return {std::to_string(functions) + (functions == 1 ? " function\n" : " functions\n"),
            {{"count", functions}}};
}

std::string FunctionText(std::int32_t id, const CatalogueFunction& function) {
    return std::to_string(id) + "  " + function.name + "\n" +             //
           "    Group       " + function.group + "\n" +                   //
           "    Plugged in  " + OptionsText(function.acOptions) + "\n" +  //
           "    On battery  " + OptionsText(function.dcOptions) + "\n";
}

Json FunctionJson(std::int32_t id, const CatalogueFunction& function) {
    return {{"id", id},
            {"name", function.name},
            {"group", function.group},
            {"type", function.type},
            {"flag", function.flag},
            {"acOptions", OptionsJson(function.acOptions)},
            {"dcOptions", OptionsJson(function.dcOptions)}};
}

// Returns the functions with these ids, or all if there are no ids.
FunctionCatalogue Select(const FunctionCatalogue& catalogue, const std::set<std::int32_t>& ids,
                         const std::filesystem::path& file) {
    if (ids.empty())
        return catalogue;
    FunctionCatalogue selected;
    for (const std::int32_t id : ids)
        selected.emplace(id, RequireFunction(catalogue, id, file));
    return selected;
}

Report ListFunctions(const FunctionsArguments& arguments) {
    const std::filesystem::path file = PathOf(Defaults);
    std::optional<LanguagePreview> preview;
    if (arguments.language)
        preview.emplace(*arguments.language);
    const Library library;
    Report report{{}, {{"functions", Json::array()}}};
    for (const auto& [id, function] : Select(ReadCatalogue(library, file), arguments.ids, file)) {
        report.text += (report.text.empty() ? "" : "\n") + FunctionText(id, function);
        report.json["functions"].push_back(FunctionJson(id, function));
    }
    if (report.text.empty())
        report.text = "The catalogue has no functions.\n";
    return report;
}

}  // namespace

void AddCatalogueCommands(CommandSet& commands) {
    commands.Add("count", "Count the functions of the catalogue", {"count", "count --program-files D:\\Copy"},
                 CountFunctions);
    commands.Add<FunctionsArguments>(
        "functions", "List the functions of the catalogue with their options",
        {"functions", "functions 1 2", "functions --language de-DE"},
        [](CLI::App& command, FunctionsArguments& arguments) {
            AddArgument(command, "ID", arguments.ids, "The ids of the functions to list; all without ids");
            AddOption(command, "--language", "TAG", arguments.language,
                      "Show the texts in this language, such as de-DE, instead of the user's");
        },
        ListFunctions);
}

}  // namespace ZOTDam::Client
