#include "CClient.h"

#include <stdarg.h>
#include <stdio.h>
#include <string.h>

typedef void (*AnyFunction)(void);

/* ---- Bytes -------------------------------------------------------------------------------------------- */

static const char* At(const void* record, size_t offset) {
    return (const char*)record + offset;
}

static int32_t IntAt(const void* record, size_t offset) {
    int32_t value;
    memcpy(&value, At(record, offset), sizeof value);
    return value;
}

static uint64_t CountAt(const void* record, size_t offset) {
    uint64_t value;
    memcpy(&value, At(record, offset), sizeof value);
    return value;
}

static const void* PointerAt(const void* record, size_t offset) {
    const void* value;
    memcpy(&value, At(record, offset), sizeof value);
    return value;
}

static void PutByte(void* record, size_t offset, char value) {
    ((char*)record)[offset] = value;
}

static void PutInt(void* record, size_t offset, int32_t value) {
    memcpy((char*)record + offset, &value, sizeof value);
}

static void PutCount(void* record, size_t offset, uint64_t value) {
    memcpy((char*)record + offset, &value, sizeof value);
}

static void PutPointer(void* record, size_t offset, const void* value) {
    memcpy((char*)record + offset, &value, sizeof value);
}

static void PutEmptyText(void* record, size_t offset) {
    memset((char*)record + offset, 0, sizeof(uint16_t));
}

/* ---- Output ------------------------------------------------------------------------------------------- */

static void Print(struct CClientOutput* output, const char* format, ...) {
    const size_t space = sizeof output->text - output->length;
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(output->text + output->length, space, format, arguments);
    va_end(arguments);
    if (length > 0 && (size_t)length < space)
        output->length += (size_t)length;
}

static void PrintText(struct CClientOutput* output, const void* record, size_t offset) {
    Print(output, " \"%ls\"", (const wchar_t*)At(record, offset));
}

static void PrintGuid(struct CClientOutput* output, const void* record, size_t offset) {
    GUID guid;
    memcpy(&guid, At(record, offset), sizeof guid);
    Print(output, " %08lx-%04x", guid.Data1, guid.Data2);
}

/* Prints values other than 0 and 1, which are invalid results, as numbers. */
static void PrintResult(struct CClientOutput* output, uint8_t result) {
    Print(output, result == 1 ? "true\n" : result == 0 ? "false\n" : "%u\n", result);
}

/* ---- Lists -------------------------------------------------------------------------------------------- */

typedef void (*Visit)(const void* record, struct CClientOutput* output);

/* Visits the records of a list and checks its backward links and its count. */
static void Walk(const void* list, Visit visit, struct CClientOutput* output) {
    const void* const head = PointerAt(list, 0);
    const void* previous = head;
    const void* node;
    uint64_t count = 0;
    for (node = PointerAt(head, 0); node != head; node = PointerAt(node, 0)) {
        if (PointerAt(node, 8) != previous)
            Print(output, " [wrong link]");
        visit(At(node, 16), output);
        previous = node;
        ++count;
    }
    if (PointerAt(head, 8) != previous || CountAt(list, 8) != count)
        Print(output, " [wrong end]");
}

static void PutEmptyList(void* record, size_t offset, void* sentinel) {
    PutPointer(sentinel, 0, sentinel);
    PutPointer(sentinel, 8, sentinel);
    PutPointer(record, offset, sentinel);
    PutCount(record, offset + 8, 0);
}

static void Append(void* list, void* node) {
    void* const head = (void*)PointerAt(list, 0);
    void* const last = (void*)PointerAt(head, 8);
    PutPointer(node, 0, head);
    PutPointer(node, 8, last);
    PutPointer(last, 0, node);
    PutPointer(head, 8, node);
    PutCount(list, 8, CountAt(list, 8) + 1);
}

/* ---- Callbacks ---------------------------------------------------------------------------------------- */

struct Callback {
    const AnyFunction* table;
    struct CClientOutput* output;
};

static void PrintDisplayItem(const void* item, struct CClientOutput* output) {
    Print(output, " (%d", IntAt(item, 0));
    PrintText(output, item, 4);
    Print(output, ")");
}

static void OnFunction(struct Callback* callback, uint32_t id, const void* record) {
    struct CClientOutput* const output = callback->output;
    Print(output, "%u: %d %d", id, IntAt(record, 0), IntAt(record, 4));
    PrintText(output, record, 8);
    PrintText(output, record, 528);
    Print(output, " AC");
    Walk(At(record, 1048), PrintDisplayItem, output);
    Print(output, " DC");
    Walk(At(record, 1064), PrintDisplayItem, output);
    Print(output, "\n");
}

/* Prints the six numbers and the string that both kinds of commands have. */
static void PrintCommand(const void* item, struct CClientOutput* output) {
    Print(output, " (%d %d %d %d %d %d", IntAt(item, 0), IntAt(item, 4), IntAt(item, 8), IntAt(item, 12),
          IntAt(item, 16), IntAt(item, 20));
    PrintText(output, item, 24);
    Print(output, ")");
}

static void PrintCheck(const void* item, struct CClientOutput* output) {
    Print(output, " check (%d", IntAt(item, 0));
    PrintText(output, item, 4);
    PrintText(output, item, 524);
    PrintText(output, item, 1044);
    PrintText(output, item, 1564);
    Print(output, ")");
}

static void PrintFamily(const void* family, struct CClientOutput* output) {
    Print(output, " family");
    Walk(At(family, 0), PrintCommand, output);
    Walk(At(family, 16), PrintCheck, output);
}

static void OnBaseFunction(struct Callback* callback, const void* record) {
    struct CClientOutput* const output = callback->output;
    Print(output, "%d: %d %d", IntAt(record, 0), IntAt(record, 4), IntAt(record, 8));
    PrintText(output, record, 12);
    PrintText(output, record, 532);
    Print(output, "%s%s", PointerAt(record, 1056) ? " Display" : "",
          PointerAt(record, 1064) ? " Default" : "");
    Walk(At(record, 1072), PrintFamily, output);
    Print(output, "\n");
}

static void OnParameter(struct Callback* callback, int32_t id, const void* value) {
    Print(callback->output, "%d: %d %d\n", id, IntAt(value, 0), IntAt(value, 4));
}

static void OnCommand(struct Callback* callback, const void* record) {
    PrintCommand(record, callback->output);
    Print(callback->output, "\n");
}

static void PrintPowerSetting(const void* setting, struct CClientOutput* output) {
    PrintGuid(output, setting, 8);
    Print(output, " = %d %d", IntAt(setting, 0), IntAt(setting, 4));
}

static void PrintSubGroup(const void* subGroup, struct CClientOutput* output) {
    PrintGuid(output, subGroup, 0);
    Print(output, " {");
    Walk(At(subGroup, 16), PrintPowerSetting, output);
    Print(output, " }");
}

static void OnSpecScheme(struct Callback* callback, const void* record) {
    static const char zeros[1592 - 16];
    PrintGuid(callback->output, record, 0);
    if (memcmp(At(record, 16), zeros, sizeof zeros) != 0)
        Print(callback->output, " [not zero]");
    Walk(At(record, 1592), PrintSubGroup, callback->output);
    Print(callback->output, "\n");
}

/* ---- Maps --------------------------------------------------------------------------------------------- */

enum { WordsOfTreeNode = 40 / 8 };

typedef uint64_t TreeNode[WordsOfTreeNode];

struct Tree {
    TreeNode nodes[CClientMostParams];
    TreeNode nil;
    const struct CClientInput* input;
};

static size_t RootOf(size_t first, size_t end, enum CClientShape shape) {
    if (shape == CClientAscending)
        return first;
    return shape == CClientDescending ? end - 1 : first + (end - first) / 2;
}

static void* Grow(struct Tree* tree, size_t first, size_t end, void* parent) {
    if (first == end)
        return tree->nil;
    const size_t root = RootOf(first, end, tree->input->shape);
    const struct CClientParam* const param = &tree->input->params[root];
    void* const node = tree->nodes[root];
    PutPointer(node, 0, Grow(tree, first, root, node));
    PutPointer(node, 8, parent);
    PutPointer(node, 16, Grow(tree, root + 1, end, node));
    PutByte(node, 25, 0);
    PutInt(node, 28, param->id);
    PutInt(node, 32, param->ac);
    PutInt(node, 36, param->dc);
    return node;
}

static void PutTree(void* holder, struct Tree* tree, const struct CClientInput* input) {
    const size_t count = input->paramCount;
    /* The DLL must not depend on the nodes' colours or on padding, so fill them with arbitrary bytes. */
    memset(tree, 0xdb, sizeof *tree);
    tree->input = input;
    PutPointer(tree->nil, 0, count > 0 ? tree->nodes[0] : tree->nil);
    PutPointer(tree->nil, 8, Grow(tree, 0, count, tree->nil));
    PutPointer(tree->nil, 16, count > 0 ? tree->nodes[count - 1] : tree->nil);
    PutByte(tree->nil, 25, 1);
    PutPointer(holder, 8, tree->nil);
    PutCount(holder, 16, count);
}

/* ---- Records for AddFunctionDefault ------------------------------------------------------------------- */

enum { Functions = 2, Families = 4, Commands = 4 };

/* A node consists of two links and a record, a sentinel of two links. */
struct Catalogue {
    uint64_t sentinels[1 + Functions + 2 * Families][2];
    uint64_t functions[Functions][(16 + 1088) / 8];
    uint64_t families[Families][(16 + 32) / 8];
    uint64_t commands[Commands][(16 + 544) / 8];
    uint64_t check[(16 + 2088) / 8];
};

static void* RecordOf(void* node) {
    return (char*)node + 16;
}

static void PutFunction(struct Catalogue* catalogue, int index, const void* display, const void* defaults) {
    void* const record = RecordOf(catalogue->functions[index]);
    PutInt(record, 0, index + 1);
    PutInt(record, 4, 0);
    PutInt(record, 8, 0);
    PutEmptyText(record, 12);
    PutEmptyText(record, 532);
    PutPointer(record, 1056, display);
    PutPointer(record, 1064, defaults);
    PutEmptyList(record, 1072, catalogue->sentinels[1 + index]);
}

static void PutFamily(struct Catalogue* catalogue, int index) {
    void* const record = RecordOf(catalogue->families[index]);
    PutEmptyList(record, 0, catalogue->sentinels[1 + Functions + index]);
    PutEmptyList(record, 16, catalogue->sentinels[1 + Functions + Families + index]);
}

static void PutCommand(struct Catalogue* catalogue, int index, int32_t id) {
    void* const record = RecordOf(catalogue->commands[index]);
    size_t offset;
    PutInt(record, 0, id);
    for (offset = 4; offset < 24; offset += 4)
        PutInt(record, offset, 0);
    PutEmptyText(record, 24);
}

static void PutCheck(struct Catalogue* catalogue) {
    void* const record = RecordOf(catalogue->check);
    size_t offset;
    PutInt(record, 0, 0);
    for (offset = 4; offset < 2084; offset += 520)
        PutEmptyText(record, offset);
}

/* Function 1 has the commands 11, 12 and 13 in two families; the first family has a check. Function 2 has an
   empty family and a family with the command 21. */
static void PutCatalogue(void* holder, struct Catalogue* catalogue, const struct CClientInput* input) {
    static const int32_t commandIds[Commands] = {11, 12, 13, 21};
    static const int familyOfCommand[Commands] = {0, 0, 1, 3};
    /* The DLL must not depend on padding or on bytes after a terminating null, so fill them. */
    memset(catalogue, 0xdb, sizeof *catalogue);
    PutEmptyList(holder, 8, catalogue->sentinels[0]);
    PutFunction(catalogue, 0, input->displayNode, input->defaultNode);
    PutFunction(catalogue, 1, NULL, NULL);
    for (size_t i = 0; i < input->recordCount; ++i)
        Append((char*)holder + 8, catalogue->functions[i]);
    for (int i = 0; i < Families; ++i) {
        PutFamily(catalogue, i);
        Append((char*)RecordOf(catalogue->functions[i / 2]) + 1072, catalogue->families[i]);
    }
    for (int i = 0; i < Commands; ++i) {
        PutCommand(catalogue, i, commandIds[i]);
        Append(RecordOf(catalogue->families[familyOfCommand[i]]), catalogue->commands[i]);
    }
    PutCheck(catalogue);
    Append((char*)RecordOf(catalogue->families[0]) + 16, catalogue->check);
}

/* ---- Calls -------------------------------------------------------------------------------------------- */

static uint8_t Enumerate(AnyFunction called, AnyFunction onItem, struct CClientOutput* output) {
    struct Callback callback = {&onItem, output};
    return ((uint8_t(*)(struct Callback*))called)(&callback);
}

static uint8_t EnumerateScheme(AnyFunction called, const GUID* scheme, AnyFunction onItem,
                               struct CClientOutput* output) {
    struct Callback callback = {&onItem, output};
    return ((uint8_t(*)(const GUID*, struct Callback*))called)(scheme, &callback);
}

typedef void (*Caller)(AnyFunction called, const struct CClientInput* input, struct CClientOutput* output);

static void CallWithoutArguments(AnyFunction called, const struct CClientInput* input,
                                 struct CClientOutput* output) {
    (void)input;
    PrintResult(output, ((uint8_t(*)(void))called)());
}

static void CallGetFuncCount(AnyFunction called, const struct CClientInput* input,
                             struct CClientOutput* output) {
    (void)input;
    Print(output, "%u\n", ((uint32_t(*)(void))called)());
}

static void CallGetFunctionBase(AnyFunction called, const struct CClientInput* input,
                                struct CClientOutput* output) {
    (void)input;
    PrintResult(output, Enumerate(called, (AnyFunction)OnBaseFunction, output));
}

static void CallGetFunctionInfo(AnyFunction called, const struct CClientInput* input,
                                struct CClientOutput* output) {
    (void)input;
    PrintResult(output, Enumerate(called, (AnyFunction)OnFunction, output));
}

static void CallAddFunctionDefault(AnyFunction called, const struct CClientInput* input,
                                   struct CClientOutput* output) {
    uint64_t holder[3] = {0x1badbadbadbadbad};
    struct Catalogue catalogue;
    PutCatalogue(holder, &catalogue, input);
    PrintResult(output, ((uint8_t(*)(const void*))called)(holder));
}

static void CallGetParameter(AnyFunction called, const struct CClientInput* input,
                             struct CClientOutput* output) {
    PrintResult(output, EnumerateScheme(called, &input->scheme, (AnyFunction)OnParameter, output));
}

static void CallSetParameter(AnyFunction called, const struct CClientInput* input,
                             struct CClientOutput* output) {
    uint64_t holder[3] = {0x1badbadbadbadbad};
    struct Tree tree;
    PutTree(holder, &tree, input);
    PrintResult(output, ((uint8_t(*)(const GUID*, const void*))called)(&input->scheme, holder));
}

static void CallTEVGetParam(AnyFunction called, const struct CClientInput* input,
                            struct CClientOutput* output) {
    PrintResult(output, ((uint8_t(*)(const GUID*))called)(&input->scheme));
}

static void CallGetFuncCurValue(AnyFunction called, const struct CClientInput* input,
                                struct CClientOutput* output) {
    int32_t value[3] = {-1, -1, -1};
    const uint8_t result = ((uint8_t(*)(uint32_t, void*))called)(input->number, value);
    Print(output, "%d: %d %d\n", value[0], value[1], value[2]);
    PrintResult(output, result);
}

static void CallGetCommandInfo(AnyFunction called, const struct CClientInput* input,
                               struct CClientOutput* output) {
    PrintResult(output, EnumerateScheme(called, &input->scheme, (AnyFunction)OnCommand, output));
}

static void CallGetDiffFuncList(AnyFunction called, const struct CClientInput* input,
                                struct CClientOutput* output) {
    uint16_t names[260] = {0};
    uint16_t values[260] = {0};
    const uint8_t result = ((uint8_t(*)(const GUID*, const GUID*, uint32_t, uint16_t*, uint16_t*))called)(
        &input->scheme, &input->otherScheme, input->number, names, values);
    PrintText(output, names, 0);
    PrintText(output, values, 0);
    Print(output, "\n");
    PrintResult(output, result);
}

static void CallGetSpecScheme(AnyFunction called, const struct CClientInput* input,
                              struct CClientOutput* output) {
    (void)input;
    PrintResult(output, Enumerate(called, (AnyFunction)OnSpecScheme, output));
}

static void CallGetCommonSetting(AnyFunction called, const struct CClientInput* input,
                                 struct CClientOutput* output) {
    uint16_t value[260] = {0};
    const uint8_t result = ((uint8_t(*)(const wchar_t*, uint16_t*))called)(input->name, value);
    PrintText(output, value, 0);
    Print(output, "\n");
    PrintResult(output, result);
}

static void CallSetCommonSetting(AnyFunction called, const struct CClientInput* input,
                                 struct CClientOutput* output) {
    PrintResult(output, ((uint8_t(*)(const wchar_t*, const wchar_t*))called)(input->name, input->value));
}

static const struct {
    const char* exportName;
    Caller caller;
} Callers[] = {
    {"GetFuncCount", CallGetFuncCount},
    {"GetFunctionBase", CallGetFunctionBase},
    {"GetFunctionBaseUnSupported", CallGetFunctionBase},
    {"GetFunctionInfo", CallGetFunctionInfo},
    {"AddFunctionDefault", CallAddFunctionDefault},
    {"GetParameter", CallGetParameter},
    {"GetParameterDefault", CallGetParameter},
    {"SetParameter", CallSetParameter},
    {"ResetDefault", CallWithoutArguments},
    {"TEVGetParam", CallTEVGetParam},
    {"GetFuncCurValue", CallGetFuncCurValue},
    {"GetCommandInfo", CallGetCommandInfo},
    {"GetDiffFuncList", CallGetDiffFuncList},
    {"GetSpecScheme", CallGetSpecScheme},
    {"GetCommonSetting", CallGetCommonSetting},
    {"SetCommonSetting", CallSetCommonSetting},
    {"InitCommonSetting", CallWithoutArguments},
    {"ZOTDamExit", CallWithoutArguments},
};

void CClientCall(HMODULE dll, const char* exportName, const struct CClientInput* input,
                 struct CClientOutput* output) {
    size_t i;
    for (i = 0; i < sizeof Callers / sizeof *Callers; ++i)
        if (strcmp(Callers[i].exportName, exportName) == 0)
            Callers[i].caller((AnyFunction)GetProcAddress(dll, exportName), input, output);
}
