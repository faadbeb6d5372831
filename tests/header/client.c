/* A client in C that uses each kind of declaration in ZOTDam.h. It is compiled, but not run. */
#include "ZOTDam.h"

struct Sum {
    IGetFunctionInfoCallback callback;
    int32_t options;
};

static void AddOptions(IGetFunctionInfoCallback* self, uint32_t functionId, const FunctionRecord* record) {
    const ListLinks* const end = record->acDisplayItems.head;
    (void)functionId;
    for (const ListLinks* links = end->next; links != end; links = links->next)
        ((struct Sum*)self)->options += ZOTDAM_RECORD(const DisplayItem, links)->option;
}

static void Ignore(IGetParameterCallback* self, int32_t functionId, const ParamValue* value) {
    (void)self;
    (void)functionId;
    (void)value;
}

static int32_t SumOptions(void) {
    static const IGetFunctionInfoCallbackTable table = {AddOptions};
    struct Sum sum = {{&table}, 0};
    return GetFunctionInfo(&sum.callback) ? sum.options : -1;
}

static bool CallOthers(const GUID* scheme, IGetFunctionBaseCallback* bases, IGetCommandInfoCallback* commands,
                       IGetSpecSchemeCallback* specSchemes) {
    static const IGetParameterCallbackTable table = {Ignore};
    IGetParameterDefaultCallback params = {&table};
    ListLinks sentinel = {&sentinel, &sentinel};
    const FunctionBaseHolder functions = {NULL, {&sentinel, 0}};
    ParamTreeNode nil = {&nil, &nil, &nil, 0, 1, 0, {0, 0}};
    const ParamMapHolder map = {NULL, {&nil, 0}};
    FuncCurValue value = {0, 0, 0};
    wchar_t names[ZOTDAM_TEXT_CAPACITY];
    wchar_t values[ZOTDAM_TEXT_CAPACITY];
    return GetFunctionBase(bases) && GetFunctionBaseUnSupported(bases) && AddFunctionDefault(&functions) &&
           GetParameter(scheme, &params) && GetParameterDefault(scheme, &params) &&
           SetParameter(scheme, &map) && TEVGetParam(scheme) && GetFuncCurValue(0, &value) &&
           GetCommandInfo(scheme, commands) && GetDiffFuncList(scheme, scheme, 1, names, values) &&
           GetSpecScheme(specSchemes) && GetCommonSetting(L"Beep", values) &&
           SetCommonSetting(L"Beep", L"loud") && InitCommonSetting() && ResetDefault() && ZOTDamExit();
}

int main(void) {
    static const GUID scheme = {0x381b4222, 0xf694, 0x41f0, {0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e}};
    if (GetFuncCount() == ZOTDAM_CATALOGUE_UNAVAILABLE || SumOptions() < 0)
        return 1;
    return CallOthers(&scheme, NULL, NULL, NULL) ? 0 : 1;
}
