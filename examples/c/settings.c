#include <stdio.h>

#include "examples.h"

/* [begin GetSpecScheme] */
static void PrintSubGroup(const struct ZdSpecSubGroupRecord* subGroup) {
    const struct ZdLinks* const end = subGroup->powerSettings.head;
    const struct ZdLinks* node;
    for (node = end->next; node != end; node = node->next) {
        const struct ZdSpecPowerSettingRecord* const setting = ZD_RECORD(ZdSpecPowerSettingRecord, node);
        printf("    %08lx/%08lx: %d plugged in, %d on battery\n", (unsigned long)subGroup->subGroup.Data1,
               (unsigned long)setting->powerSetting.Data1, setting->acValue, setting->dcValue);
    }
}

static void PrintScheme(struct ZdSpecSchemeCallback* self, const struct ZdSpecSchemeRecord* record) {
    const struct ZdLinks* const end = record->subGroups.head;
    const struct ZdLinks* node;
    (void)self;
    printf("scheme %08lx\n", (unsigned long)record->scheme.Data1);
    for (node = end->next; node != end; node = node->next)
        PrintSubGroup(ZD_RECORD(ZdSpecSubGroupRecord, node));
}

void ListSpecSchemes(const struct ZdExports* zd) {
    static const struct ZdSpecSchemeTable table = {PrintScheme};
    struct ZdSpecSchemeCallback callback = {&table};
    zd->GetSpecScheme(&callback);
}
/* [end GetSpecScheme] */

/* [begin GetCommonSetting] */
void ReadSetting(const struct ZdExports* zd) {
    ZdText value;
    if (zd->GetCommonSetting(L"LowBatteryWarning", value))
        printf("LowBatteryWarning is \"%s\"\n", ToUtf8(value));
    else
        puts("LowBatteryWarning is not set anywhere");
}
/* [end GetCommonSetting] */

/* [begin SetCommonSetting] */
void ChangeSetting(const struct ZdExports* zd) {
    printf("stored: %s\n", YesOrNo(zd->SetCommonSetting(L"LowBatteryWarning", L"20")));
    /* A name that is not valid for an XML attribute is rejected. */
    printf("stored: %s\n", YesOrNo(zd->SetCommonSetting(L"low battery", L"20")));
}
/* [end SetCommonSetting] */

/* [begin InitCommonSetting] */
void InitialiseSettings(const struct ZdExports* zd) {
    printf("defaults taken from the base catalogue: %s\n", YesOrNo(zd->InitCommonSetting()));
}
/* [end InitCommonSetting] */
