#include <algorithm>

#include "doctor/Files.h"
#include "xml/DataFileElements.h"

namespace ZOTDam::Client {

namespace {

constexpr char ReadingStops[] =
    "the library reads neither this function nor the following ones, and lists no unsupported functions";

// Checks the functions with the working records that the library reads them into.
class BaseFunctions {
public:
    explicit BaseFunctions(Findings& fileFindings) : findings{fileFindings} {}

    void Check(const Element& function) {
        CheckContent(
            function,
            {Attributes::ID, Attributes::Flag, Attributes::Type, Attributes::Name, Attributes::Group},
            {Elements::Display, Elements::Default, Elements::Commands}, {}, findings);
        CheckAttributes(function);
        CheckDefault(function, CheckDisplay(function, IfAdopted, findings), IfAdopted, findings);
        const Element* const commands = function.ChildNamed(Elements::Commands);
        if (commands == nullptr)
            findings.Add(function, "missing-commands", "\"Commands\" is missing", ReadingStops);
        else
            CheckFamilies(*commands);
    }

private:
    void CheckAttributes(const Element& function) {
        const std::int32_t id = working.Number(function, Attributes::ID, findings);
        if (id < 0)
            findings.Add(function, "negative-id", "the id " + std::to_string(id) + " is negative",
                         When{IfAdopted} + CatalogueNotLoaded);
        if (function.FindAttribute(Attributes::ID) != nullptr)
            ids.Check(function, id, "the library lists both; if both are adopted, it drops this one",
                      findings);
        for (const wchar_t* const attribute : {Attributes::Group, Attributes::Name})
            working.Text(function, attribute, "text-too-long", ReadingStops, findings);
        for (const wchar_t* const attribute : {Attributes::Flag, Attributes::Type})
            working.Number(function, attribute, findings);
    }

    void CheckFamilies(const Element& commands) {
        CheckContent(commands, {}, {}, {Elements::CommandFamily}, findings);
        const auto families = commands.ChildrenNamed(Elements::CommandFamily);
        for (const Element* const family : families)
            CheckFamily(*family);
        if (std::ranges::all_of(families, [](const Element* family) {
                return family->ChildNamed(Elements::CommandItem) == nullptr;
            }))
            findings.Add(commands, "empty-commands", R"(no "CommandFamily" has a "CommandItem")",
                         "if the function is adopted, the library skips it");
    }

    void CheckFamily(const Element& family) {
        CheckContent(family, {}, {}, {Elements::CommandItem, Elements::CheckExistItem}, findings);
        for (const Element* const item : family.ChildrenNamed(Elements::CommandItem))
            CheckCommand(*item, command, "text-too-long", ReadingStops, findings);
        for (const Element* const item : family.ChildrenNamed(Elements::CheckExistItem)) {
            CheckContent(*item,
                         {Attributes::CheckFlag, Attributes::Param1, Attributes::Param2, Attributes::Param3,
                          Attributes::Param4},
                         {}, {}, findings);
            existCheck.Number(*item, Attributes::CheckFlag, findings);
            for (const wchar_t* const attribute :
                 {Attributes::Param1, Attributes::Param2, Attributes::Param3, Attributes::Param4})
                existCheck.Text(*item, attribute, "text-too-long", ReadingStops, findings);
        }
    }

    Findings& findings;
    WorkingRecord working;
    WorkingRecord command;
    WorkingRecord existCheck;
    UniqueIds ids;
};

// Returns null and reports a finding if the section is missing.
const Element* RequireSection(const Element& root, std::wstring_view name, const std::string& consequence,
                              Findings& findings) {
    const Element* const section = root.ChildNamed(name);
    if (section == nullptr)
        findings.Add(root, "missing-section", Quoted(name) + " is missing", consequence);
    return section;
}

}  // namespace

void CheckBase(const Element& root, Findings& findings) {
    CheckContent(root, {}, {Elements::CommonSettings, Elements::Functions, Elements::SpecSchemes}, {},
                 findings);
    if (RequireSection(root, Elements::CommonSettings, "the library cannot initialise the common settings",
                       findings) != nullptr)
        CheckCommonSettings(root, "the library does not find the setting", findings);
    if (const Element* const functions =
            RequireSection(root, Elements::Functions, "the library has no base functions", findings)) {
        CheckContent(*functions, {}, {}, {Elements::Function}, findings);
        BaseFunctions functionsRead{findings};
        for (const Element* const function : functions->ChildrenNamed(Elements::Function))
            functionsRead.Check(*function);
    }
    if (const Element* const specSchemes =
            RequireSection(root, Elements::SpecSchemes, "the library has no spec schemes", findings))
        CheckSpecSchemes(*specSchemes, findings);
}

}  // namespace ZOTDam::Client
