#include <stdio.h>

#include "examples.h"

/* [begin GetParameter] */
static void PrintParameter(struct ZdParameterCallback* self, int32_t id, const struct ZdParamValue* value) {
    (void)self;
    printf("%d: position %d plugged in, %d on battery\n", id, value->acParamIndex, value->dcParamIndex);
}

void ListParameters(const struct ZdExports* zd, const GUID* scheme) {
    static const struct ZdParameterTable table = {PrintParameter};
    struct ZdParameterCallback callback = {&table};
    zd->GetParameter(scheme, &callback);
}
/* [end GetParameter] */

/* [begin GetParameterDefault] */
static void PrintDefault(struct ZdParameterCallback* self, int32_t id, const struct ZdParamValue* value) {
    (void)self;
    printf("%d: by default %d and %d\n", id, value->acParamIndex, value->dcParamIndex);
}

void ListDefaults(const struct ZdExports* zd, const GUID* scheme) {
    static const struct ZdParameterTable table = {PrintDefault};
    struct ZdParameterCallback callback = {&table};
    zd->GetParameterDefault(scheme, &callback);
}
/* [end GetParameterDefault] */

/* [begin SetParameter] */
static void PrintChanged(struct ZdParameterCallback* self, int32_t id, const struct ZdParamValue* value) {
    (void)self;
    if (id == 1 || id == 2)
        printf("%d is now %d and %d\n", id, value->acParamIndex, value->dcParamIndex);
}

void ChangeParameters(const struct ZdExports* zd, const GUID* scheme) {
    static const struct ZdParameterTable table = {PrintChanged};
    struct ZdParameterCallback callback = {&table};
    struct ZdParamTreeNode nil, first, second;
    const struct ZdParamMapHolder holder = {NULL, {&nil, 2}};
    /* The first node is the root. The second node has a larger id, so it is the right child. */
    first = (struct ZdParamTreeNode){&nil, &nil, &second, 1, 0, 1, {0, 2}};
    second = (struct ZdParamTreeNode){&nil, &first, &nil, 1, 0, 2, {5, 5}};
    nil = (struct ZdParamTreeNode){&first, &first, &second, 1, 1, 0, {0, 0}};
    printf("accepted: %s\n", YesOrNo(zd->SetParameter(scheme, &holder)));
    /* True does not mean that the file was written. To verify it, read the values again. */
    zd->GetParameter(scheme, &callback);
}
/* [end SetParameter] */

/* [begin TEVGetParam] */
void LoadCurrentValues(const struct ZdExports* zd, const GUID* scheme) {
    printf("scheme loaded: %s\n", YesOrNo(zd->TEVGetParam(scheme)));
}
/* [end TEVGetParam] */

/* [begin GetFuncCurValue] */
void ListCurrentValues(const struct ZdExports* zd) {
    /* Initialise before each call: a field is unchanged if its parameter selects no option. */
    static const struct ZdFuncCurValue none = {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF};
    struct ZdFuncCurValue value = none;
    for (uint32_t position = 0; zd->GetFuncCurValue(position, &value); ++position) {
        printf("function %u: option %u plugged in, %u on battery\n", value.functionId, value.acValue,
               value.dcValue);
        value = none;
    }
}
/* [end GetFuncCurValue] */

/* [begin ResetDefault] */
void ForgetEverything(const struct ZdExports* zd) {
    /* ResetDefault uses the settings that this process last read. Reading a setting reads the file. */
    ZdText ignored;
    zd->GetCommonSetting(L"any", ignored);
    printf("reset: %s\n", YesOrNo(zd->ResetDefault()));
    printf("reset again: %s\n", YesOrNo(zd->ResetDefault())); /* there are no schemes left */
}
/* [end ResetDefault] */
