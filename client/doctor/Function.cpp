#include "doctor/Function.h"

#include <array>

namespace ZOTDam::Client {

namespace {

std::size_t CheckOptions(const Element* list, const When& when, Findings& findings) {
    if (list == nullptr)
        return 0;
    CheckContent(*list, {}, {}, {L"DisplayItem"}, findings);
    WorkingRecord working;
    const auto items = list->ChildrenNamed(L"DisplayItem");
    for (const Element* const item : items) {
        CheckContent(*item, {L"Label", L"Option"}, {}, {}, findings);
        working.Text(*item, L"Label", "text-too-long", when + CatalogueNotLoaded, findings);
        working.Number(*item, L"Option", findings);
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
    for (const Element* const item : defaults.ChildrenNamed(L"DefaultItem")) {
        CheckContent(*item, {L"GUID", L"ACParamIndex", L"DCParamIndex"}, {}, {}, findings);
        CheckParameters(
            *item, &options,
            when + "in its scheme, this function and the following ones have no default parameters",
            findings);
        const std::wstring* const guid = item->FindAttribute(L"GUID");
        if (guid == nullptr)
            findings.Add(*item, "missing-guid", "\"GUID\" is missing",
                         when +
                             "in all schemes without an earlier item, this function and the following ones "
                             "have no default parameters");
        else if (CheckGuid(*item, L"GUID", *guid, findings))
            guids.Check(*item, *guid, findings);
    }
}

}  // namespace

OptionCounts CheckDisplay(const Element& function, const When& when, Findings& findings) {
    const Element* const display = function.ChildNamed(L"Display");
    if (display == nullptr) {
        findings.Add(function, "missing-display", "\"Display\" is missing", when + CatalogueNotLoaded);
        return {};
    }
    CheckContent(*display, {}, {L"AC", L"DC"}, {}, findings);
    return {CheckOptions(display->ChildNamed(L"AC"), when, findings),
            CheckOptions(display->ChildNamed(L"DC"), when, findings)};
}

void CheckDefault(const Element& function, const OptionCounts& options, const When& when,
                  Findings& findings) {
    const Element* const defaults = function.ChildNamed(L"Default");
    if (defaults == nullptr) {
        findings.Add(function, "missing-default", "\"Default\" is missing",
                     when + "this function and the following ones have no default parameters");
        return;
    }
    CheckContent(*defaults, {L"ACParamIndex", L"DCParamIndex"}, {}, {L"DefaultItem"}, findings);
    CheckParameters(*defaults, &options,
                    when +
                        "in all schemes without an item, this function and the following ones have no "
                        "default parameters",
                    findings);
    CheckDefaultItems(*defaults, options, when, findings);
}

void CheckParameters(const Element& element, const OptionCounts* options, const std::string& consequence,
                     Findings& findings) {
    for (const wchar_t* const attribute : {L"ACParamIndex", L"DCParamIndex"}) {
        const bool isAc = attribute[0] == L'A';
        if (element.FindAttribute(attribute) == nullptr)
            findings.Add(element, "missing-parameter", Quoted(attribute) + " is missing", consequence);
        else if (options != nullptr)
            CheckParameter(element, attribute, isAc ? options->ac : options->dc, findings);
    }
}

void CheckCommand(const Element& command, WorkingRecord& working, const char* longTextKind,
                  const std::string& longTextConsequence, Findings& findings) {
    CheckContent(command, {L"ID", L"Event", L"Flag", L"State", L"ParamIndex1", L"ParamIndex2", L"SpecInfo1"},
                 {}, {}, findings);
    for (const wchar_t* const attribute : {L"ID", L"Event", L"Flag", L"State"})
        working.Number(command, attribute, findings);
    for (const wchar_t* const attribute : {L"ParamIndex1", L"ParamIndex2"}) {
        const std::int32_t source = working.Number(command, attribute, findings);
        if (command.FindAttribute(attribute) != nullptr && source != 0 && source != 1)
            findings.Add(command, "invalid-power-source",
                         Quoted(attribute) + " is " + std::to_string(source) +
                             "; it must be 0 (plugged in) or 1 (on battery)",
                         "the command uses the option on battery");
    }
    working.Text(command, L"SpecInfo1", longTextKind, longTextConsequence, findings);
}

}  // namespace ZOTDam::Client
