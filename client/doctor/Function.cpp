#include "doctor/Function.h"

#include <array>

#include "xml/DataFileElements.h"

namespace ZOTDam::Client {

namespace {

std::size_t CheckOptions(const Element* list, const When& when, Findings& findings) {
    if (list == nullptr)
        return 0;
    CheckContent(*list, {}, {}, {Elements::DisplayItem}, findings);
    WorkingRecord working;
    const auto items = list->ChildrenNamed(Elements::DisplayItem);
    for (const Element* const item : items) {
        CheckContent(*item, {Attributes::Label, Attributes::Option}, {}, {}, findings);
        working.Text(*item, Attributes::Label, "text-too-long", when + CatalogueNotLoaded, findings);
        working.Number(*item, Attributes::Option, findings);
    }
    return items.size();
}

void CheckParameter(const Element& element, const wchar_t* attribute, std::size_t options,
                    Findings& findings) {
    const std::wstring& text = *element.FindAttribute(attribute);
    const std::int32_t index = NumberFrom(element, attribute, text, findings);
    // 0 is the only possible parameter of a function without options.
    if (index == 0 && options == 0)
        return;
    if (index < 0 || static_cast<std::size_t>(index) >= options)
        findings.Add(element, "index-out-of-range",
                     Quoted(attribute) + " is " + std::to_string(index) + ", but the function has " +
                         std::to_string(options) + (options == 1 ? " option" : " options"),
                     "it selects no option, and commands use 0");
}

void CheckDefaultItems(const Element& defaults, const OptionCounts& options, const When& when,
                       Findings& findings) {
    UniqueGuids guids;
    for (const Element* const item : defaults.ChildrenNamed(Elements::DefaultItem)) {
        CheckContent(*item, {Attributes::GUID, Attributes::ACParamIndex, Attributes::DCParamIndex}, {}, {},
                     findings);
        CheckParameters(
            *item, &options,
            when + "in its scheme, this function and the following ones have no default parameters",
            findings);
        const std::wstring* const guid = item->FindAttribute(Attributes::GUID);
        if (guid == nullptr)
            findings.Add(*item, "missing-guid", "\"GUID\" is missing",
                         when +
                             "in all schemes without an earlier item, this function and the following ones "
                             "have no default parameters");
        else if (CheckGuid(*item, Attributes::GUID, *guid, findings))
            guids.Check(*item, *guid, findings);
    }
}

}  // namespace

OptionCounts CheckDisplay(const Element& function, const When& when, Findings& findings) {
    const Element* const display = function.ChildNamed(Elements::Display);
    if (display == nullptr) {
        findings.Add(function, "missing-display", "\"Display\" is missing", when + CatalogueNotLoaded);
        return {};
    }
    CheckContent(*display, {}, {Elements::AC, Elements::DC}, {}, findings);
    return {CheckOptions(display->ChildNamed(Elements::AC), when, findings),
            CheckOptions(display->ChildNamed(Elements::DC), when, findings)};
}

void CheckDefault(const Element& function, const OptionCounts& options, const When& when,
                  Findings& findings) {
    const Element* const defaults = function.ChildNamed(Elements::Default);
    if (defaults == nullptr) {
        findings.Add(function, "missing-default", "\"Default\" is missing",
                     when + "this function and the following ones have no default parameters");
        return;
    }
    CheckContent(*defaults, {Attributes::ACParamIndex, Attributes::DCParamIndex}, {}, {Elements::DefaultItem},
                 findings);
    CheckParameters(*defaults, &options,
                    when +
                        "in all schemes without an item, this function and the following ones have no "
                        "default parameters",
                    findings);
    CheckDefaultItems(*defaults, options, when, findings);
}

void CheckParameters(const Element& element, const OptionCounts* options, const std::string& consequence,
                     Findings& findings) {
    for (const wchar_t* const attribute : {Attributes::ACParamIndex, Attributes::DCParamIndex}) {
        const bool isAc = attribute[0] == L'A';
        if (element.FindAttribute(attribute) == nullptr)
            findings.Add(element, "missing-parameter", Quoted(attribute) + " is missing", consequence);
        else if (options != nullptr)
            CheckParameter(element, attribute, isAc ? options->ac : options->dc, findings);
    }
}

void CheckCommand(const Element& command, WorkingRecord& working, const char* longTextKind,
                  const std::string& longTextConsequence, Findings& findings) {
    CheckContent(command,
                 {Attributes::ID, Attributes::Event, Attributes::Flag, Attributes::State,
                  Attributes::ParamIndex1, Attributes::ParamIndex2, Attributes::SpecInfo1},
                 {}, {}, findings);
    for (const wchar_t* const attribute :
         {Attributes::ID, Attributes::Event, Attributes::Flag, Attributes::State})
        working.Number(command, attribute, findings);
    for (const wchar_t* const attribute : {Attributes::ParamIndex1, Attributes::ParamIndex2}) {
        const std::int32_t source = working.Number(command, attribute, findings);
        if (command.FindAttribute(attribute) != nullptr && source != 0 && source != 1)
            findings.Add(command, "invalid-power-source",
                         Quoted(attribute) + " is " + std::to_string(source) +
                             "; it must be 0 (plugged in) or 1 (on battery)",
                         "the command uses the option on battery");
    }
    working.Text(command, Attributes::SpecInfo1, longTextKind, longTextConsequence, findings);
}

}  // namespace ZOTDam::Client
