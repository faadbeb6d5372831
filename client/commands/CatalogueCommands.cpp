// count, functions.
#include "Catalogue.h"
#include "commands/Commands.h"
#include "DisplayOptions.h"
#include "LanguagePreview.h"
#include "Text.h"

namespace ZOTDam::Client {

namespace {

struct FunctionsArguments {
    std::optional<std::string> language;
};

Report CountFunctions() {
    const Library library;
    const std::uint32_t functions = RequireCatalogue(library);
    return {std::to_string(functions) + (functions == 1 ? " function\n" : " functions\n"),
            {{"count", functions}}};
}

std::string FunctionText(std::uint32_t id, const FunctionRecord& function) {
    return std::to_string(id) + "  " + ToUtf8(function.name) + "\n" +                     //
           "    Group       " + ToUtf8(function.group) + "\n" +                           //
           "    Plugged in  " + OptionsText(OptionsOf(function.acDisplayItems)) + "\n" +  //
           "    On battery  " + OptionsText(OptionsOf(function.dcDisplayItems)) + "\n";
}

Json FunctionJson(std::uint32_t id, const FunctionRecord& function) {
    return {{"id", id},
            {"name", ToUtf8(function.name)},
            {"group", ToUtf8(function.group)},
            {"type", function.type},
            {"flag", function.flag},
            {"ac", OptionsJson(OptionsOf(function.acDisplayItems))},
            {"dc", OptionsJson(OptionsOf(function.dcDisplayItems))}};
}

Report ListFunctions(const FunctionsArguments& arguments) {
    const std::filesystem::path catalogue = PathOf(Defaults);
    std::optional<LanguagePreview> preview;
    if (arguments.language)
        preview.emplace(*arguments.language);
    const Library library;
    RequireCatalogue(library, catalogue);
    Report report{{}, {{"functions", Json::array()}}};
    auto add = MakeCallback<IGetFunctionInfoCallback>([&](std::uint32_t id, const FunctionRecord* function) {
        report.text += (report.text.empty() ? "" : "\n") + FunctionText(id, *function);
        report.json["functions"].push_back(FunctionJson(id, *function));
    });
    library.GetFunctionInfo(&add);
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
        {"functions", "functions --language de-DE"},
        [](CLI::App& command, FunctionsArguments& arguments) {
            AddOption(command, "--language", "TAG", arguments.language,
                      "Show the texts in this language, such as de-DE, instead of the user's");
        },
        ListFunctions);
}

}  // namespace ZOTDam::Client
