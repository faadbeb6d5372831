/* The records, lists, maps and callbacks of ZOTDam.dll for C (C11, x86-64), as include/ZOTDam.h declares them
   for C++. Every number is an offset or a size of the binary interface, checked at compile time. */
#ifndef ZOTDAM_LAYOUTS_H
#define ZOTDAM_LAYOUTS_H

#include <windows.h>

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#define ZD_TEXT_CAPACITY 260
#define ZD_CATALOGUE_UNAVAILABLE 0xFFFFFFFFu

#define ZD_SIZE(type, size) _Static_assert(sizeof(struct type) == (size), #type " has another size")
#define ZD_AT(type, field, offset) \
    _Static_assert(offsetof(struct type, field) == (offset), #type "." #field " lies elsewhere")

typedef wchar_t ZdText[ZD_TEXT_CAPACITY];

_Static_assert(sizeof(ZdText) == 520, "wchar_t is a UTF-16 unit");
_Static_assert(sizeof(bool) == 1 && sizeof(void*) == 8, "the interface of a 64-bit DLL");

/* ---- Lists: each node begins with the links, the sentinel consists of them -------------------------------
 */

struct ZdLinks {
    struct ZdLinks* next;
    struct ZdLinks* prev;
};
ZD_SIZE(ZdLinks, 16);

struct ZdList {
    struct ZdLinks*
        head;       /* the sentinel: next is the first node, prev the last; itself if the list is empty */
    uint64_t count; /* if 0, the list is empty, regardless of the links */
};
ZD_SIZE(ZdList, 16);
ZD_AT(ZdList, count, 8);

/* Returns the record of a node, which follows the links. */
#define ZD_RECORD(type, links) ((const struct type*)((const struct ZdLinks*)(links) + 1))

/* ---- Functions of the catalogue -------------------------------------------------------------------------
 */

struct ZdDisplayItem {
    int32_t option;
    ZdText label;
};
ZD_SIZE(ZdDisplayItem, 524);
ZD_AT(ZdDisplayItem, label, 4);

struct ZdFunctionRecord {
    int32_t type;
    int32_t flag;
    ZdText name;
    ZdText group;
    struct ZdList acDisplayItems; /* of ZdDisplayItem */
    struct ZdList dcDisplayItems;
};
ZD_SIZE(ZdFunctionRecord, 1080);
ZD_AT(ZdFunctionRecord, flag, 4);
ZD_AT(ZdFunctionRecord, name, 8);
ZD_AT(ZdFunctionRecord, group, 528);
ZD_AT(ZdFunctionRecord, acDisplayItems, 1048);
ZD_AT(ZdFunctionRecord, dcDisplayItems, 1064);

/* ---- Functions of the base catalogue --------------------------------------------------------------------
 */

struct ZdBaseCommandItem {
    int32_t id;
    int32_t event;
    int32_t state;
    int32_t paramIndex1;
    int32_t paramIndex2;
    int32_t flag;
    ZdText specInfo1;
};
ZD_SIZE(ZdBaseCommandItem, 544);
ZD_AT(ZdBaseCommandItem, event, 4);
ZD_AT(ZdBaseCommandItem, state, 8);
ZD_AT(ZdBaseCommandItem, paramIndex1, 12);
ZD_AT(ZdBaseCommandItem, paramIndex2, 16);
ZD_AT(ZdBaseCommandItem, flag, 20);
ZD_AT(ZdBaseCommandItem, specInfo1, 24);

struct ZdCheckExistItem {
    int32_t checkFlag;
    ZdText param1;
    ZdText param2;
    ZdText param3;
    ZdText param4;
};
ZD_SIZE(ZdCheckExistItem, 2084);
ZD_AT(ZdCheckExistItem, param1, 4);
ZD_AT(ZdCheckExistItem, param2, 524);
ZD_AT(ZdCheckExistItem, param3, 1044);
ZD_AT(ZdCheckExistItem, param4, 1564);

struct ZdCommandFamily {
    struct ZdList commandItems;    /* of ZdBaseCommandItem */
    struct ZdList checkExistItems; /* of ZdCheckExistItem */
};
ZD_SIZE(ZdCommandFamily, 32);
ZD_AT(ZdCommandFamily, checkExistItems, 16);

struct IXMLDOMNode;

struct ZdFunctionBaseRecord {
    int32_t id;
    int32_t type;
    int32_t flag;
    ZdText name;
    ZdText group;
    struct IXMLDOMNode* displayNode; /* owns one reference, or null */
    struct IXMLDOMNode* defaultNode;
    struct ZdList commandFamilies; /* of ZdCommandFamily */
};
ZD_SIZE(ZdFunctionBaseRecord, 1088);
ZD_AT(ZdFunctionBaseRecord, type, 4);
ZD_AT(ZdFunctionBaseRecord, flag, 8);
ZD_AT(ZdFunctionBaseRecord, name, 12);
ZD_AT(ZdFunctionBaseRecord, group, 532);
ZD_AT(ZdFunctionBaseRecord, displayNode, 1056);
ZD_AT(ZdFunctionBaseRecord, defaultNode, 1064);
ZD_AT(ZdFunctionBaseRecord, commandFamilies, 1072);

struct ZdFunctionBaseHolder {
    void* clientWord;
    struct ZdList records; /* of ZdFunctionBaseRecord */
};
ZD_SIZE(ZdFunctionBaseHolder, 24);
ZD_AT(ZdFunctionBaseHolder, records, 8);

/* ---- Parameters of a power scheme -----------------------------------------------------------------------
 */

struct ZdParamValue {
    int32_t acParamIndex;
    int32_t dcParamIndex;
};
ZD_SIZE(ZdParamValue, 8);
ZD_AT(ZdParamValue, dcParamIndex, 4);

struct ZdParamTreeNode {
    struct ZdParamTreeNode* left;
    struct ZdParamTreeNode* parent;
    struct ZdParamTreeNode* right;
    char color; /* for the client */
    char isNil; /* 1 for the nil node, 0 for all others */
    int32_t functionId;
    struct ZdParamValue value;
};
ZD_SIZE(ZdParamTreeNode, 40);
ZD_AT(ZdParamTreeNode, parent, 8);
ZD_AT(ZdParamTreeNode, right, 16);
ZD_AT(ZdParamTreeNode, color, 24);
ZD_AT(ZdParamTreeNode, isNil, 25);
ZD_AT(ZdParamTreeNode, functionId, 28);
ZD_AT(ZdParamTreeNode, value, 32);

struct ZdParamTree {
    struct ZdParamTreeNode*
        head; /* the nil node: left is the smallest node, parent the root, right the largest */
    uint64_t count;
};
ZD_SIZE(ZdParamTree, 16);
ZD_AT(ZdParamTree, count, 8);

struct ZdParamMapHolder {
    void* clientWord;
    struct ZdParamTree params;
};
ZD_SIZE(ZdParamMapHolder, 24);
ZD_AT(ZdParamMapHolder, params, 8);

struct ZdFuncCurValue {
    uint32_t functionId;
    uint32_t acValue;
    uint32_t dcValue;
};
ZD_SIZE(ZdFuncCurValue, 12);
ZD_AT(ZdFuncCurValue, acValue, 4);
ZD_AT(ZdFuncCurValue, dcValue, 8);

struct ZdCommandInfoRecord {
    int32_t id;
    int32_t event;
    int32_t state;
    int32_t option1;
    int32_t option2;
    int32_t flag;
    ZdText specInfo1;
};
ZD_SIZE(ZdCommandInfoRecord, 544);
ZD_AT(ZdCommandInfoRecord, event, 4);
ZD_AT(ZdCommandInfoRecord, state, 8);
ZD_AT(ZdCommandInfoRecord, option1, 12);
ZD_AT(ZdCommandInfoRecord, option2, 16);
ZD_AT(ZdCommandInfoRecord, flag, 20);
ZD_AT(ZdCommandInfoRecord, specInfo1, 24);

/* ---- Spec schemes ---------------------------------------------------------------------------------------
 */

struct ZdSpecPowerSettingRecord {
    int32_t acValue;
    int32_t dcValue;
    GUID powerSetting;
};
ZD_SIZE(ZdSpecPowerSettingRecord, 24);
ZD_AT(ZdSpecPowerSettingRecord, dcValue, 4);
ZD_AT(ZdSpecPowerSettingRecord, powerSetting, 8);

struct ZdSpecSubGroupRecord {
    GUID subGroup;
    struct ZdList powerSettings; /* of ZdSpecPowerSettingRecord */
};
ZD_SIZE(ZdSpecSubGroupRecord, 32);
ZD_AT(ZdSpecSubGroupRecord, powerSettings, 16);

struct ZdSpecSchemeRecord {
    GUID scheme;
    uint8_t reserved[16];
    ZdText unused1;
    ZdText unused2;
    ZdText unused3;
    struct ZdList subGroups; /* of ZdSpecSubGroupRecord */
};
ZD_SIZE(ZdSpecSchemeRecord, 1608);
ZD_AT(ZdSpecSchemeRecord, reserved, 16);
ZD_AT(ZdSpecSchemeRecord, unused1, 32);
ZD_AT(ZdSpecSchemeRecord, unused2, 552);
ZD_AT(ZdSpecSchemeRecord, unused3, 1072);
ZD_AT(ZdSpecSchemeRecord, subGroups, 1592);

/* ---- Callbacks: an object begins with a pointer to a table, whose first entry is OnItem ------------------
 */

struct ZdFunctionBaseCallback {
    const struct ZdFunctionBaseTable* table;
};
struct ZdFunctionBaseTable {
    void (*OnItem)(struct ZdFunctionBaseCallback* self, const struct ZdFunctionBaseRecord* record);
};

struct ZdFunctionInfoCallback {
    const struct ZdFunctionInfoTable* table;
};
struct ZdFunctionInfoTable {
    void (*OnItem)(struct ZdFunctionInfoCallback* self, uint32_t functionId,
                   const struct ZdFunctionRecord* record);
};

/* For GetParameter and GetParameterDefault. */
struct ZdParameterCallback {
    const struct ZdParameterTable* table;
};
struct ZdParameterTable {
    void (*OnItem)(struct ZdParameterCallback* self, int32_t functionId, const struct ZdParamValue* value);
};

struct ZdCommandInfoCallback {
    const struct ZdCommandInfoTable* table;
};
struct ZdCommandInfoTable {
    void (*OnItem)(struct ZdCommandInfoCallback* self, const struct ZdCommandInfoRecord* record);
};

struct ZdSpecSchemeCallback {
    const struct ZdSpecSchemeTable* table;
};
struct ZdSpecSchemeTable {
    void (*OnItem)(struct ZdSpecSchemeCallback* self, const struct ZdSpecSchemeRecord* record);
};

/* ---- Exports: ZD_EXPORTS(X) names each as X(result, name, (arguments)) -----------------------------------
 */

/* clang-format off */
#define ZD_EXPORTS(X)                                                                                         \
    X(uint32_t, GetFuncCount, (void))                                                                         \
    X(bool, GetFunctionBase, (struct ZdFunctionBaseCallback* callback))                                       \
    X(bool, GetFunctionBaseUnSupported, (struct ZdFunctionBaseCallback* callback))                            \
    X(bool, GetFunctionInfo, (struct ZdFunctionInfoCallback* callback))                                       \
    X(bool, AddFunctionDefault, (const struct ZdFunctionBaseHolder* holder))                                  \
    X(bool, GetParameter, (const GUID* scheme, struct ZdParameterCallback* callback))                         \
    X(bool, GetParameterDefault, (const GUID* scheme, struct ZdParameterCallback* callback))                  \
    X(bool, SetParameter, (const GUID* scheme, const struct ZdParamMapHolder* holder))                        \
    X(bool, ResetDefault, (void))                                                                             \
    X(bool, TEVGetParam, (const GUID* scheme))                                                                \
    X(bool, GetFuncCurValue, (uint32_t position, struct ZdFuncCurValue* value))                               \
    X(bool, GetCommandInfo, (const GUID* scheme, struct ZdCommandInfoCallback* callback))                     \
    X(bool, GetDiffFuncList, (const GUID* schemeA, const GUID* schemeB, uint32_t mode, wchar_t* names,        \
                              wchar_t* values))                                                               \
    X(bool, GetSpecScheme, (struct ZdSpecSchemeCallback* callback))                                           \
    X(bool, GetCommonSetting, (const wchar_t* name, wchar_t* value))                                          \
    X(bool, SetCommonSetting, (const wchar_t* name, const wchar_t* value))                                    \
    X(bool, InitCommonSetting, (void))                                                                        \
    X(bool, ZOTDamExit, (void))
/* clang-format on */

#define ZD_POINTER(result, name, arguments) result(*name) arguments;

struct ZdExports {
    ZD_EXPORTS(ZD_POINTER)
};

#undef ZD_POINTER

#endif
