/* Adopts all functions of the base catalogue, lists them, changes parameters of a scheme, and reads them
   again. The program links ZOTDam.lib. FOLDER must contain the folders "Program Files" and "ProgramData" of
   an installation: quickstart_c FOLDER */
#define COBJMACROS
#include <windows.h>

#include <msxml2.h>
#include <objbase.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "ZOTDam.h"

static const GUID Balanced = {0x381b4222, 0xf694, 0x41f0, {0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e}};

static const char* YesOrNo(bool answer) {
    return answer ? "yes" : "no";
}

/* ---- Lists: a node consists of its links, followed by the record ----------------------------------------
 */

static ListLinks* NewNode(size_t recordSize) {
    ListLinks* const node = malloc(sizeof *node + recordSize);
    if (node == NULL)
        abort();
    return node;
}

static ZOTDamList EmptyList(void) {
    ListLinks* const sentinel = NewNode(0);
    sentinel->next = sentinel->prev = sentinel;
    return (ZOTDamList){sentinel, 0};
}

static ListLinks* Append(ZOTDamList* list, const void* record, size_t recordSize) {
    ListLinks* const node = NewNode(recordSize);
    memcpy(node + 1, record, recordSize);
    *node = (ListLinks){list->head, list->head->prev};
    node->prev->next = node->next->prev = node;
    ++list->count;
    return node;
}

static ZOTDamList CopyList(const ZOTDamList* list, size_t recordSize) {
    ZOTDamList copy = EmptyList();
    for (const ListLinks* node = list->head->next; node != list->head; node = node->next)
        Append(&copy, node + 1, recordSize);
    return copy;
}

static void FreeList(ZOTDamList* list) {
    for (ListLinks* node = list->head->next; node != list->head;) {
        ListLinks* const next = node->next;
        free(node);
        node = next;
    }
    free(list->head);
}

/* ---- Adopting functions ---------------------------------------------------------------------------------
 */

/* Replaces the lists of a record, which belong to the library, with copies, and adds a reference to its
 * nodes. */
static void OwnContent(FunctionBaseRecord* record) {
    record->commandFamilies = CopyList(&record->commandFamilies, sizeof(CommandFamily));
    const ListLinks* const end = record->commandFamilies.head;
    for (ListLinks* node = end->next; node != end; node = node->next) {
        CommandFamily* const family = ZOTDAM_RECORD(CommandFamily, node);
        family->commandItems = CopyList(&family->commandItems, sizeof(BaseCommandItem));
        family->checkExistItems = CopyList(&family->checkExistItems, sizeof(CheckExistItem));
    }
    if (record->displayNode != NULL)
        IXMLDOMNode_AddRef(record->displayNode);
    if (record->defaultNode != NULL)
        IXMLDOMNode_AddRef(record->defaultNode);
}

static void FreeContent(FunctionBaseRecord* record) {
    const ListLinks* const end = record->commandFamilies.head;
    for (ListLinks* node = end->next; node != end; node = node->next) {
        FreeList(&ZOTDAM_RECORD(CommandFamily, node)->commandItems);
        FreeList(&ZOTDAM_RECORD(CommandFamily, node)->checkExistItems);
    }
    FreeList(&record->commandFamilies);
    if (record->displayNode != NULL)
        IXMLDOMNode_Release(record->displayNode);
    if (record->defaultNode != NULL)
        IXMLDOMNode_Release(record->defaultNode);
}

/* The data of a callback follows the callback itself. */
struct Keeper {
    IGetFunctionBaseCallback callback;
    ZOTDamList records;
};

/* A real program performs the checks of the record and keeps only the supported functions. */
static void Keep(IGetFunctionBaseCallback* self, const FunctionBaseRecord* record) {
    ListLinks* const node = Append(&((struct Keeper*)self)->records, record, sizeof *record);
    OwnContent(ZOTDAM_RECORD(FunctionBaseRecord, node));
}

static void AdoptAll(void) {
    static const IGetFunctionBaseCallbackTable table = {Keep};
    struct Keeper keeper = {{&table}, EmptyList()};
    GetFunctionBase(&keeper.callback);
    const FunctionBaseHolder holder = {NULL, keeper.records};
    const bool accepted = AddFunctionDefault(&holder);
    printf("%u functions adopted: %s\n", (unsigned)holder.records.count, YesOrNo(accepted));
    for (ListLinks* node = holder.records.head->next; node != holder.records.head; node = node->next)
        FreeContent(ZOTDAM_RECORD(FunctionBaseRecord, node));
    FreeList(&keeper.records);
}

/* ---- Listing functions ----------------------------------------------------------------------------------
 */

static void PrintFunction(IGetFunctionInfoCallback* self, uint32_t id, const FunctionRecord* record) {
    (void)self;
    char name[3 * ZOTDAM_TEXT_CAPACITY] = "";
    WideCharToMultiByte(CP_UTF8, 0, record->name, -1, name, sizeof name, NULL, NULL);
    printf("%u: %s, options: %u and %u\n", id, name, (unsigned)record->acDisplayItems.count,
           (unsigned)record->dcDisplayItems.count);
}

static void ListFunctions(void) {
    static const IGetFunctionInfoCallbackTable table = {PrintFunction};
    IGetFunctionInfoCallback callback = {&table};
    GetFunctionInfo(&callback);
}

/* ---- Parameters -----------------------------------------------------------------------------------------
 */

static void PrintParameter(IGetParameterCallback* self, int32_t id, const ParamValue* value) {
    (void)self;
    printf("%d: position %d plugged in, %d on battery\n", id, value->ACParamIndex, value->DCParamIndex);
}

static void ListParameters(void) {
    static const IGetParameterCallbackTable table = {PrintParameter};
    IGetParameterCallback callback = {&table};
    GetParameter(&Balanced, &callback);
}

/* Changes functions 1 and 2. The tree consists of the root, its right child, and the nil node. */
static void ChangeParameters(void) {
    ParamTreeNode nil;
    ParamTreeNode root;
    ParamTreeNode right;
    root = (ParamTreeNode){&nil, &nil, &right, 0, 0, 1, {0, 2}};
    right = (ParamTreeNode){&nil, &root, &nil, 0, 0, 2, {5, 5}};
    nil = (ParamTreeNode){&root, &root, &right, 0, 1, 0, {0, 0}};
    const ParamMapHolder holder = {NULL, {&nil, 2}};
    printf("changes accepted: %s\n", YesOrNo(SetParameter(&Balanced, &holder)));
}

/* ---- The program ----------------------------------------------------------------------------------------
 */

/* These two environment variables of the process determine the folders of the library's files. A program that
   works on the files of the machine does not change them. */
static void WorkOn(const char* folder) {
    char path[MAX_PATH];
    snprintf(path, sizeof path, "%s\\Program Files", folder);
    SetEnvironmentVariableA("ProgramFiles", path);
    snprintf(path, sizeof path, "%s\\ProgramData", folder);
    SetEnvironmentVariableA("ProgramData", path);
}

int main(int argc, char** argv) {
    if (argc != 2 || FAILED(CoInitializeEx(NULL, COINIT_APARTMENTTHREADED)))
        return 2;
    WorkOn(argv[1]);
    AdoptAll();
    printf("%u functions in the catalogue\n", GetFuncCount());
    ListFunctions();
    ListParameters();
    ChangeParameters();
    ListParameters();
    ZOTDamExit();
    CoUninitialize();
    return 0;
}
