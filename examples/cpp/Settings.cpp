#include <cstdio>

#include "Examples.h"

namespace Examples {

// [begin GetSpecScheme]
void ListSpecSchemes(const ZOTDam::Library& library) {
    auto print =
        ZOTDam::MakeCallback<ZOTDam::IGetSpecSchemeCallback>([](const ZOTDam::SpecSchemeRecord* record) {
            std::printf("scheme %08lx\n", static_cast<unsigned long>(record->scheme.Data1));
            for (const ZOTDam::SpecSubGroupRecord& subGroup : record->subGroups)
                for (const ZOTDam::SpecPowerSettingRecord& setting : subGroup.powerSettings)
                    std::printf("    %08lx/%08lx: %d plugged in, %d on battery\n",
                                static_cast<unsigned long>(subGroup.subGroup.Data1),
                                static_cast<unsigned long>(setting.powerSetting.Data1), setting.acValue,
                                setting.dcValue);
        });
    library.GetSpecScheme(&print);
}
// [end GetSpecScheme]

// [begin GetCommonSetting]
void ReadSetting(const ZOTDam::Library& library) {
    wchar_t value[ZOTDam::TextCapacity];
    if (library.GetCommonSetting(L"LowBatteryWarning", value))
        std::printf("LowBatteryWarning is \"%s\"\n", ToUtf8(value).c_str());
    else
        std::puts("LowBatteryWarning is not set anywhere");
}
// [end GetCommonSetting]

// [begin SetCommonSetting]
void ChangeSetting(const ZOTDam::Library& library) {
    std::printf("stored: %s\n", library.SetCommonSetting(L"LowBatteryWarning", L"20") ? "yes" : "no");
    // A name that is not valid for an XML attribute is rejected.
    std::printf("stored: %s\n", library.SetCommonSetting(L"low battery", L"20") ? "yes" : "no");
}
// [end SetCommonSetting]

// [begin InitCommonSetting]
void InitialiseSettings(const ZOTDam::Library& library) {
    std::printf("defaults taken from the base catalogue: %s\n", library.InitCommonSetting() ? "yes" : "no");
}
// [end InitCommonSetting]

}  // namespace Examples
