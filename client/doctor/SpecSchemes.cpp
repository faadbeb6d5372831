#include "doctor/Files.h"

namespace ZOTDam::Client {

namespace {

constexpr char SchemeSkipped[] = "the library skips the whole spec scheme";

void CheckGuidOf(const Element& element, std::wstring_view attribute, Findings& findings) {
    if (const std::wstring* const guid = element.FindAttribute(attribute))
        CheckGuid(element, attribute, *guid, findings);
    else
        findings.Add(element, "missing-guid", Quoted(attribute) + " is missing", SchemeSkipped);
}

void CheckPowerSetting(const Element& setting, Findings& findings) {
    CheckContent(setting, {L"PowerSettingGUID", L"ACValue", L"DCValue"}, {}, {}, findings);
    CheckGuidOf(setting, L"PowerSettingGUID", findings);
    for (const wchar_t* const attribute : {L"ACValue", L"DCValue"})
        if (const std::wstring* const value = setting.FindAttribute(attribute))
            NumberFrom(setting, attribute, *value, findings);
        else
            findings.Add(setting, "missing-value", Quoted(attribute) + " is missing", SchemeSkipped);
}

void CheckSubGroup(const Element& subGroup, Findings& findings) {
    CheckContent(subGroup, {L"SubGroupGUID"}, {}, {L"PowerSetting"}, findings);
    CheckGuidOf(subGroup, L"SubGroupGUID", findings);
    for (const Element* const setting : subGroup.ChildrenNamed(L"PowerSetting"))
        CheckPowerSetting(*setting, findings);
}

}  // namespace

void CheckSpecSchemes(const Element& specSchemes, Findings& findings) {
    CheckContent(specSchemes, {}, {}, {L"SchemeItem"}, findings);
    for (const Element* const scheme : specSchemes.ChildrenNamed(L"SchemeItem")) {
        CheckContent(*scheme, {L"SchemeGUID"}, {}, {L"SubGroup"}, findings);
        CheckGuidOf(*scheme, L"SchemeGUID", findings);
        for (const Element* const subGroup : scheme->ChildrenNamed(L"SubGroup"))
            CheckSubGroup(*subGroup, findings);
    }
}

}  // namespace ZOTDam::Client
