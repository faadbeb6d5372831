#include "doctor/Files.h"
#include "xml/DataFileElements.h"

namespace ZOTDam::Client {

namespace {

// Builds the catalogue as the library does, function by function.
class Catalogue {
public:
    explicit Catalogue(Findings& fileFindings) : findings{fileFindings} {}

    void Check(const Element& function) {
        CheckContent(
            function,
            {Attributes::ID, Attributes::Flag, Attributes::Type, Attributes::Name, Attributes::Group},
            {Elements::Display, Elements::Default, Elements::Commands}, {}, findings);
        const std::optional<std::int32_t> id = CheckId(function);
        for (const wchar_t* const attribute : {Attributes::Flag, Attributes::Type})
            working.Number(function, attribute, findings);
        for (const wchar_t* const attribute : {Attributes::Name, Attributes::Group})
            working.Text(function, attribute, "text-too-long", CatalogueNotLoaded, findings);
        const OptionCounts counts = CheckDisplay(function, {}, findings);
        CheckDefault(function, counts, {}, findings);
        CheckCommands(function);
        if (id)
            options.emplace(*id, counts);
    }

    CatalogueOptions Options() && { return std::move(options); }

private:
    // Returns the id of the function in the catalogue, or nothing if the function is not added.
    std::optional<std::int32_t> CheckId(const Element& function) {
        const std::wstring* const text = function.FindAttribute(Attributes::ID);
        if (text == nullptr) {
            findings.Add(function, "missing-id", "\"ID\" is missing", CatalogueNotLoaded);
            return {};
        }
        const std::int32_t id = NumberFrom(function, Attributes::ID, *text, findings);
        if (id < 0) {
            findings.Add(function, "negative-id", "the id " + std::to_string(id) + " is negative",
                         CatalogueNotLoaded);
            return {};
        }
        return ids.Check(function, id, "the library drops this function", findings) ? std::optional{id}
                                                                                    : std::nullopt;
    }

    void CheckCommands(const Element& function) {
        const Element* const commands = function.ChildNamed(Elements::Commands);
        if (commands == nullptr) {
            findings.Add(function, "missing-commands", "\"Commands\" is missing", CatalogueNotLoaded);
            return;
        }
        CheckContent(*commands, {}, {}, {Elements::CommandItem}, findings);
        WorkingRecord command;
        for (const Element* const item : commands->ChildrenNamed(Elements::CommandItem))
            CheckCommand(*item, command, "truncated-text", "the library truncates it in the command",
                         findings);
    }

    Findings& findings;
    WorkingRecord working;
    UniqueIds ids;
    CatalogueOptions options;
};

}  // namespace

std::optional<CatalogueOptions> CheckDefaults(const Element& root, Findings& findings) {
    CheckContent(root, {}, {Elements::CommonSettings, Elements::Functions}, {}, findings);
    CheckCommonSettings(root, "the library uses the setting of the base catalogue", findings);
    const Element* const functions = root.ChildNamed(Elements::Functions);
    if (functions == nullptr) {
        findings.Add(root, "missing-section", "\"Functions\" is missing", CatalogueNotLoaded);
        return {};
    }
    CheckContent(*functions, {}, {}, {Elements::Function}, findings);
    Catalogue catalogue{findings};
    for (const Element* const function : functions->ChildrenNamed(Elements::Function))
        catalogue.Check(*function);
    if (findings.HasConsequence(CatalogueNotLoaded))
        return {};
    return std::move(catalogue).Options();
}

}  // namespace ZOTDam::Client
