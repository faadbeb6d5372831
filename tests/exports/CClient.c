#include "CClient.h"

#include <string.h>

/* ---- The records, as the description gives them ---------------------------------------------------------
 */

typedef uint16_t Text[260];

struct List {
    struct Node* head;
    uint64_t count;
};

struct DisplayItem {
    int32_t option;
    Text label;
};

struct FunctionRecord {
    int32_t type;
    int32_t flag;
    Text name;
    Text group;
    struct List acDisplayItems;
    struct List dcDisplayItems;
};

struct FunctionBaseRecord {
    int32_t id;
    int32_t type;
    int32_t flag;
    Text name;
    Text group;
    void* displayNode;
    void* defaultNode;
    struct List commandFamilies;
};

struct CommandFamily {
    struct List commandItems;
    struct List checkExistItems;
};

struct BaseCommandItem {
    int32_t id;
    int32_t event;
    int32_t state;
    int32_t paramIndex1;
    int32_t paramIndex2;
    int32_t flag;
    Text specInfo1;
};

struct CheckExistItem {
    int32_t checkFlag;
    Text param1;
    Text param2;
    Text param3;
    Text param4;
};

struct ParamValue {
    int32_t acParamIndex;
    int32_t dcParamIndex;
};

struct FuncCurValue {
    uint32_t functionId;
    uint32_t acValue;
    uint32_t dcValue;
};

struct SpecPowerSettingRecord {
    int32_t acValue;
    int32_t dcValue;
    GUID powerSetting;
};

struct SpecSubGroupRecord {
    GUID subGroup;
    struct List powerSettings;
};

struct SpecSchemeRecord {
    GUID scheme;
    uint8_t reserved[16];
    Text unused[3];
    struct List subGroups;
};

struct TreeNode {
    struct TreeNode* left;
    struct TreeNode* parent;
    struct TreeNode* right;
    char color;
    char isNil;
    int32_t key;
    struct ParamValue value;
};

struct ParamMapHolder {
    uint64_t word;
    struct TreeNode* head;
    uint64_t count;
};

struct FunctionBaseHolder {
    uint64_t word;
    struct List records;
};

const size_t CClientRecordSizes[] = {sizeof(struct DisplayItem),
                                     sizeof(struct FunctionRecord),
                                     sizeof(struct FunctionBaseRecord),
                                     sizeof(struct CommandFamily),
                                     sizeof(struct BaseCommandItem),
                                     sizeof(struct CheckExistItem),
                                     sizeof(struct ParamValue),
                                     sizeof(struct FuncCurValue),
                                     sizeof(struct SpecPowerSettingRecord),
                                     sizeof(struct SpecSubGroupRecord),
                                     sizeof(struct SpecSchemeRecord),
                                     sizeof(struct TreeNode),
                                     sizeof(struct ParamMapHolder),
                                     sizeof(struct FunctionBaseHolder),
                                     0};

/* ---- Calls -----------------------------------------------------------------------------------------------
 */

struct Collector {
    const struct CollectorTable* table;
    struct CClientParam* params;
    size_t capacity;
    size_t count;
};

struct CollectorTable {
    void (*OnItem)(struct Collector* collector, int32_t id, const struct ParamValue* value);
};

static void Collect(struct Collector* collector, int32_t id, const struct ParamValue* value) {
    const struct CClientParam param = {id, value->acParamIndex, value->dcParamIndex};
    if (collector->count < collector->capacity)
        collector->params[collector->count] = param;
    ++collector->count;
}

static const struct CollectorTable collectorTable = {Collect};

typedef uint8_t (*Enumerate)(const GUID* scheme, struct Collector* collector);
typedef uint8_t (*SetParameter)(const GUID* scheme, const struct ParamMapHolder* holder);

static void (*Export(HMODULE dll, const char* name))(void) {
    return (void (*)(void))GetProcAddress(dll, name);
}

int CClientRead(HMODULE dll, const char* exportName, const GUID* scheme, struct CClientParam* params,
                size_t capacity) {
    struct Collector collector = {&collectorTable, params, capacity, 0};
    const Enumerate enumerate = (Enumerate)Export(dll, exportName);
    return enumerate(scheme, &collector) == 1 ? (int)collector.count : -1;
}

static void Link(struct TreeNode* parent, struct TreeNode* left, struct TreeNode* right) {
    parent->left = left;
    parent->right = right;
    left->parent = parent;
    right->parent = parent;
}

int CClientStoreSevenFunctions(HMODULE dll, const GUID* scheme) {
    struct TreeNode nodes[7];
    struct TreeNode nil;
    const struct ParamMapHolder holder = {0x1badbadbadbadbad, &nil, 7};
    const SetParameter setParameter = (SetParameter)Export(dll, "SetParameter");
    /* Colours, and what fills the gaps of the layout, are no business of the DLL. */
    memset(nodes, 0xdb, sizeof nodes);
    memset(&nil, 0xdb, sizeof nil);
    for (int32_t key = 0; key < 7; ++key) {
        nodes[key].left = nodes[key].right = &nil;
        nodes[key].isNil = 0;
        nodes[key].key = key;
        nodes[key].value.acParamIndex = key;
        nodes[key].value.dcParamIndex = -key;
    }
    Link(&nodes[3], &nodes[1], &nodes[5]);
    Link(&nodes[1], &nodes[0], &nodes[2]);
    Link(&nodes[5], &nodes[4], &nodes[6]);
    nodes[3].parent = &nil;
    nil.left = &nodes[0];
    nil.parent = &nodes[3];
    nil.right = &nodes[6];
    nil.isNil = 1;
    return setParameter(scheme, &holder);
}

int CClientStoreNothing(HMODULE dll, const GUID* scheme) {
    struct TreeNode nil = {&nil, &nil, &nil, 1, 1, 0, {0, 0}};
    const struct ParamMapHolder holder = {0, &nil, 0};
    const SetParameter setParameter = (SetParameter)Export(dll, "SetParameter");
    return setParameter(scheme, &holder);
}

/* ---- Lists -----------------------------------------------------------------------------------------------
 */

/* What each node begins with, and all that a sentinel has. */
struct Node {
    struct Node* next;
    struct Node* prev;
};

struct FunctionNode {
    struct Node links;
    struct FunctionBaseRecord record;
};

struct FamilyNode {
    struct Node links;
    struct CommandFamily record;
};

struct CommandNode {
    struct Node links;
    struct BaseCommandItem record;
};

struct CheckNode {
    struct Node links;
    struct CheckExistItem record;
};

struct FunctionCollector {
    const struct FunctionCollectorTable* table;
    struct CClientFunction* functions;
    size_t capacity;
    size_t count;
};

struct FunctionCollectorTable {
    void (*OnItem)(struct FunctionCollector* collector, const struct FunctionBaseRecord* record);
};

static void ReadFamily(const struct CommandFamily* family, struct CClientFunction* function) {
    const struct Node* node;
    for (node = family->commandItems.head->next; node != family->commandItems.head; node = node->next) {
        const struct BaseCommandItem* const item = &((const struct CommandNode*)node)->record;
        ++function->commandItems;
        function->lastCommandId = item->id;
        function->lastSpecInfo1 = item->specInfo1[0];
    }
    for (node = family->checkExistItems.head->next; node != family->checkExistItems.head; node = node->next) {
        const struct CheckExistItem* const item = &((const struct CheckNode*)node)->record;
        ++function->checks;
        function->lastCheckFlag = item->checkFlag;
        function->lastCheckParam4 = item->param4[0];
    }
}

static void CollectFunction(struct FunctionCollector* collector, const struct FunctionBaseRecord* record) {
    struct CClientFunction function = {0};
    const struct Node* node;
    function.id = record->id;
    function.hasDisplay = record->displayNode != NULL;
    function.hasDefault = record->defaultNode != NULL;
    for (node = record->commandFamilies.head->next; node != record->commandFamilies.head; node = node->next) {
        ++function.families;
        ReadFamily(&((const struct FamilyNode*)node)->record, &function);
    }
    if (collector->count < collector->capacity)
        collector->functions[collector->count] = function;
    ++collector->count;
}

static const struct FunctionCollectorTable functionCollectorTable = {CollectFunction};

typedef uint8_t (*GetFunctionBase)(struct FunctionCollector* collector);
typedef uint8_t (*AddFunctionDefault)(const struct FunctionBaseHolder* holder);

int CClientReadBase(HMODULE dll, struct CClientFunction* functions, size_t capacity) {
    struct FunctionCollector collector = {&functionCollectorTable, functions, capacity, 0};
    const GetFunctionBase getFunctionBase = (GetFunctionBase)Export(dll, "GetFunctionBase");
    return getFunctionBase(&collector) == 1 ? (int)collector.count : -1;
}

static void MakeEmpty(struct List* list, struct Node* sentinel) {
    sentinel->next = sentinel->prev = sentinel;
    list->head = sentinel;
    list->count = 0;
}

static void Append(struct List* list, struct Node* node) {
    node->next = list->head;
    node->prev = list->head->prev;
    node->prev->next = node;
    list->head->prev = node;
    ++list->count;
}

int CClientReplaceFunctions(HMODULE dll, void* displayNode, void* defaultNode) {
    static const int32_t commandIds[] = {11, 12, 13, 21};
    struct FunctionBaseHolder holder = {0x1badbadbadbadbad, {NULL, 0}};
    struct Node functionSentinel, familySentinels[2], commandSentinels[4], checkSentinels[4];
    struct FunctionNode functions[2];
    struct FamilyNode families[4];
    struct CommandNode commands[4];
    struct CheckNode check;
    const AddFunctionDefault addFunctionDefault = (AddFunctionDefault)Export(dll, "AddFunctionDefault");
    /* What fills the gaps, and what follows the end of a text, is no business of the DLL. */
    memset(functions, 0xdb, sizeof functions);
    memset(commands, 0xdb, sizeof commands);
    memset(&check, 0xdb, sizeof check);
    MakeEmpty(&holder.records, &functionSentinel);
    for (int i = 0; i < 2; ++i) {
        struct FunctionBaseRecord* const record = &functions[i].record;
        record->id = i + 1;
        record->type = record->flag = 0;
        record->name[0] = record->group[0] = 0;
        record->displayNode = i == 0 ? displayNode : NULL;
        record->defaultNode = i == 0 ? defaultNode : NULL;
        MakeEmpty(&record->commandFamilies, &familySentinels[i]);
        Append(&holder.records, &functions[i].links);
    }
    for (int i = 0; i < 4; ++i) {
        MakeEmpty(&families[i].record.commandItems, &commandSentinels[i]);
        MakeEmpty(&families[i].record.checkExistItems, &checkSentinels[i]);
        Append(&functions[i / 2].record.commandFamilies, &families[i].links);
    }
    for (int i = 0; i < 4; ++i) {
        struct BaseCommandItem* const item = &commands[i].record;
        item->id = commandIds[i];
        item->event = item->state = item->paramIndex1 = item->paramIndex2 = item->flag = 0;
        item->specInfo1[0] = 0;
    }
    Append(&families[0].record.commandItems, &commands[0].links);
    Append(&families[0].record.commandItems, &commands[1].links);
    Append(&families[1].record.commandItems, &commands[2].links);
    Append(&families[3].record.commandItems, &commands[3].links);
    check.record.param1[0] = check.record.param2[0] = check.record.param3[0] = check.record.param4[0] = 0;
    Append(&families[0].record.checkExistItems, &check.links);
    return addFunctionDefault(&holder);
}

int CClientReplaceByNothing(HMODULE dll) {
    struct Node sentinel = {&sentinel, &sentinel};
    const struct FunctionBaseHolder holder = {0, {&sentinel, 0}};
    const AddFunctionDefault addFunctionDefault = (AddFunctionDefault)Export(dll, "AddFunctionDefault");
    return addFunctionDefault(&holder);
}
