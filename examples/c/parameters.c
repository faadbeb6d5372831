#include <stdio.h>

#include "examples.h"

/* [begin GetParameter] */
static void PrintParameter(IGetParameterCallback* self, int32_t id, const ParamValue* value) {
    (void)self;
    printf("%d: position %d plugged in, %d on battery\n", id, value->ACParamIndex, value->DCParamIndex);
}

void ListParameters(const struct Exports* zd, const GUID* scheme) {
    static const IGetParameterCallbackTable table = {PrintParameter};
    IGetParameterCallback callback = {&table};
    zd->GetParameter(scheme, &callback);
}
/* [end GetParameter] */

/* [begin GetParameterDefault] */
static void PrintDefault(IGetParameterCallback* self, int32_t id, const ParamValue* value) {
    (void)self;
    printf("%d: by default %d and %d\n", id, value->ACParamIndex, value->DCParamIndex);
}

void ListDefaults(const struct Exports* zd, const GUID* scheme) {
    static const IGetParameterCallbackTable table = {PrintDefault};
    IGetParameterCallback callback = {&table};
    zd->GetParameterDefault(scheme, &callback);
}
/* [end GetParameterDefault] */

/* [begin SetParameter] */
static void PrintChanged(IGetParameterCallback* self, int32_t id, const ParamValue* value) {
    (void)self;
    if (id == 1 || id == 2)
        printf("%d is now %d and %d\n", id, value->ACParamIndex, value->DCParamIndex);
}

void ChangeParameters(const struct Exports* zd, const GUID* scheme) {
    static const IGetParameterCallbackTable table = {PrintChanged};
    IGetParameterCallback callback = {&table};
    ParamTreeNode nil;
    ParamTreeNode first;
    ParamTreeNode second;
    const ParamMapHolder holder = {NULL, {&nil, 2}};
    /* The first node is the root. The second node has a larger id, so it is the right child. */
    first = (ParamTreeNode){&nil, &nil, &second, 1, 0, 1, {0, 2}};
    second = (ParamTreeNode){&nil, &first, &nil, 1, 0, 2, {5, 5}};
    nil = (ParamTreeNode){&first, &first, &second, 1, 1, 0, {0, 0}};
    printf("accepted: %s\n", YesOrNo(zd->SetParameter(scheme, &holder)));
    /* True does not mean that the file was written. To verify it, read the values again. */
    zd->GetParameter(scheme, &callback);
}
/* [end SetParameter] */

/* [begin TEVGetParam] */
void LoadCurrentValues(const struct Exports* zd, const GUID* scheme) {
    printf("scheme loaded: %s\n", YesOrNo(zd->TEVGetParam(scheme)));
}
/* [end TEVGetParam] */

/* [begin GetFuncCurValue] */
void ListCurrentValues(const struct Exports* zd) {
    /* Initialise before each call: a field is unchanged if its parameter selects no option. */
    static const FuncCurValue none = {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF};
    FuncCurValue value = none;
    for (uint32_t position = 0; zd->GetFuncCurValue(position, &value); ++position) {
        printf("function %u: option %u plugged in, %u on battery\n", value.FunctionId, value.ACValue,
               value.DCValue);
        value = none;
    }
}
/* [end GetFuncCurValue] */

/* [begin ResetDefault] */
void ForgetEverything(const struct Exports* zd) {
    /* ResetDefault uses the settings that this process last read. Reading a setting reads the file. */
    wchar_t ignored[ZOTDAM_TEXT_CAPACITY];
    zd->GetCommonSetting(L"any", ignored);
    printf("reset: %s\n", YesOrNo(zd->ResetDefault()));
    printf("reset again: %s\n", YesOrNo(zd->ResetDefault())); /* there are no schemes left */
}
/* [end ResetDefault] */
