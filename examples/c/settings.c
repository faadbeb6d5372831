#include <stdio.h>

#include "examples.h"

/* [begin GetSpecScheme] */
static void PrintSubGroup(const SpecSubGroupRecord* subGroup) {
    const ListLinks* const end = subGroup->powerSettings.head;
    const ListLinks* node;
    for (node = end->next; node != end; node = node->next) {
        const SpecPowerSettingRecord* const setting = ZOTDAM_RECORD(const SpecPowerSettingRecord, node);
        printf("    %08lx/%08lx: %d plugged in, %d on battery\n", (unsigned long)subGroup->subGroup.Data1,
               (unsigned long)setting->powerSetting.Data1, setting->acValue, setting->dcValue);
    }
}

static void PrintScheme(IGetSpecSchemeCallback* self, const SpecSchemeRecord* record) {
    const ListLinks* const end = record->subGroups.head;
    const ListLinks* node;
    (void)self;
    printf("scheme %08lx\n", (unsigned long)record->scheme.Data1);
    for (node = end->next; node != end; node = node->next)
        PrintSubGroup(ZOTDAM_RECORD(const SpecSubGroupRecord, node));
}

void ListSpecSchemes(const struct Exports* zd) {
    static const IGetSpecSchemeCallbackTable table = {PrintScheme};
    IGetSpecSchemeCallback callback = {&table};
    zd->GetSpecScheme(&callback);
}
/* [end GetSpecScheme] */

/* [begin GetCommonSetting] */
void ReadSetting(const struct Exports* zd) {
    wchar_t value[ZOTDAM_TEXT_CAPACITY];
    if (zd->GetCommonSetting(L"LowBatteryWarning", value))
        printf("LowBatteryWarning is \"%s\"\n", ToUtf8(value));
    else
        puts("LowBatteryWarning is not set anywhere");
}
/* [end GetCommonSetting] */

/* [begin SetCommonSetting] */
void ChangeSetting(const struct Exports* zd) {
    printf("stored: %s\n", YesOrNo(zd->SetCommonSetting(L"LowBatteryWarning", L"20")));
    /* A name that is not valid for an XML attribute is rejected. */
    printf("stored: %s\n", YesOrNo(zd->SetCommonSetting(L"low battery", L"20")));
}
/* [end SetCommonSetting] */

/* [begin InitCommonSetting] */
void InitialiseSettings(const struct Exports* zd) {
    printf("defaults taken from the base catalogue: %s\n", YesOrNo(zd->InitCommonSetting()));
}
/* [end InitCommonSetting] */
