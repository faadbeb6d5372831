#include "doctor/Files.h"
#include "xml/DataFileElements.h"

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
    CheckContent(setting, {Attributes::PowerSettingGUID, Attributes::ACValue, Attributes::DCValue}, {}, {},
                 findings);
    CheckGuidOf(setting, Attributes::PowerSettingGUID, findings);
    for (const wchar_t* const attribute : {Attributes::ACValue, Attributes::DCValue})
        if (const std::wstring* const value = setting.FindAttribute(attribute))
            NumberFrom(setting, attribute, *value, findings);
        else
            findings.Add(setting, "missing-value", Quoted(attribute) + " is missing", SchemeSkipped);
}

void CheckSubGroup(const Element& subGroup, Findings& findings) {
    CheckContent(subGroup, {Attributes::SubGroupGUID}, {}, {Elements::PowerSetting}, findings);
    CheckGuidOf(subGroup, Attributes::SubGroupGUID, findings);
    for (const Element* const setting : subGroup.ChildrenNamed(Elements::PowerSetting))
        CheckPowerSetting(*setting, findings);
}

}  // namespace

void CheckSpecSchemes(const Element& specSchemes, Findings& findings) {
    CheckContent(specSchemes, {}, {}, {Elements::SchemeItem}, findings);
    for (const Element* const scheme : specSchemes.ChildrenNamed(Elements::SchemeItem)) {
        CheckContent(*scheme, {Attributes::SchemeGUID}, {}, {Elements::SubGroup}, findings);
        CheckGuidOf(*scheme, Attributes::SchemeGUID, findings);
        for (const Element* const subGroup : scheme->ChildrenNamed(Elements::SubGroup))
            CheckSubGroup(*subGroup, findings);
    }
}

}  // namespace ZOTDam::Client
