#define COBJMACROS
#include <msxml2.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "examples.h"

/* [begin GetFuncCount] */
void CountFunctions(const struct Exports* zd) {
    const uint32_t count = zd->GetFuncCount();
    if (count == ZOTDAM_CATALOGUE_UNAVAILABLE)
        puts("The catalogue cannot be loaded.");
    else
        printf("%u functions\n", count);
}
/* [end GetFuncCount] */

/* [begin GetFunctionInfo] */
static void PrintFunction(IGetFunctionInfoCallback* self, uint32_t id, const FunctionRecord* record) {
    const ListLinks* const end = record->acDisplayItems.head;
    const ListLinks* node;
    (void)self;
    printf("%u: %s, %s\n", id, ToUtf8(record->group), ToUtf8(record->name));
    for (node = end->next; node != end; node = node->next) {
        const DisplayItem* const item = ZOTDAM_RECORD(const DisplayItem, node);
        printf("    %s (%d)\n", ToUtf8(item->label), item->option);
    }
}

void ListFunctions(const struct Exports* zd) {
    static const IGetFunctionInfoCallbackTable table = {PrintFunction};
    IGetFunctionInfoCallback callback = {&table};
    zd->GetFunctionInfo(&callback);
}
/* [end GetFunctionInfo] */

/* [begin GetFunctionBase] */
static void PrintFamily(const CommandFamily* family) {
    const ListLinks* const end = family->checkExistItems.head;
    const ListLinks* node;
    printf("    %u commands\n", (unsigned int)family->commandItems.count);
    for (node = end->next; node != end; node = node->next) {
        const CheckExistItem* const check = ZOTDAM_RECORD(const CheckExistItem, node);
        printf("    check %d: %s\n", check->checkFlag, ToUtf8(check->param1));
    }
}

static void PrintBase(IGetFunctionBaseCallback* self, const FunctionBaseRecord* record) {
    const ListLinks* const end = record->commandFamilies.head;
    const ListLinks* node;
    (void)self;
    printf("%d: %s\n", record->id, ToUtf8(record->name));
    for (node = end->next; node != end; node = node->next)
        PrintFamily(ZOTDAM_RECORD(const CommandFamily, node));
}

void ListBase(const struct Exports* zd) {
    static const IGetFunctionBaseCallbackTable table = {PrintBase};
    IGetFunctionBaseCallback callback = {&table};
    zd->GetFunctionBase(&callback);
}
/* [end GetFunctionBase] */

/* [begin GetFunctionBaseUnSupported] */
static void PrintUnsupported(IGetFunctionBaseCallback* self, const FunctionBaseRecord* record) {
    (void)self;
    printf("not in use: %d, %s\n", record->id, ToUtf8(record->name));
}

void ListUnsupported(const struct Exports* zd) {
    static const IGetFunctionBaseCallbackTable table = {PrintUnsupported};
    IGetFunctionBaseCallback callback = {&table};
    zd->GetFunctionBaseUnSupported(&callback);
}
/* [end GetFunctionBaseUnSupported] */

/* [begin CopyLists] */
/* A node consists of its links, followed by the record. */
static void* Allocate(size_t size) {
    void* const memory = malloc(size);
    if (memory == NULL)
        abort();
    return memory;
}

static void MakeEmpty(ZOTDamList* list) {
    list->head = Allocate(sizeof *list->head);
    list->head->next = list->head->prev = list->head;
    list->count = 0;
}

/* Appends a copy of a record and returns the copy. */
static void* Append(ZOTDamList* list, const void* record, size_t size) {
    ListLinks* const node = Allocate(sizeof *node + size);
    node->next = list->head;
    node->prev = list->head->prev;
    node->prev->next = node;
    list->head->prev = node;
    ++list->count;
    return memcpy(node + 1, record, size);
}

static void CopyList(ZOTDamList* copy, const ZOTDamList* list, size_t recordSize) {
    const ListLinks* node;
    MakeEmpty(copy);
    for (node = list->head->next; node != list->head; node = node->next)
        Append(copy, node + 1, recordSize);
}

static void FreeList(ZOTDamList* list) {
    ListLinks* node = list->head->next;
    while (node != list->head) {
        ListLinks* const next = node->next;
        free(node);
        node = next;
    }
    free(list->head);
}
/* [end CopyLists] */

/* [begin CopyFunctionBase] */
/* Copies a record with its lists, and adds a reference to each node. */
static void AppendFunction(ZOTDamList* functions, const FunctionBaseRecord* record) {
    FunctionBaseRecord* const copy = Append(functions, record, sizeof *record);
    ListLinks* node;
    if (copy->displayNode != NULL)
        IXMLDOMNode_AddRef(copy->displayNode);
    if (copy->defaultNode != NULL)
        IXMLDOMNode_AddRef(copy->defaultNode);
    CopyList(&copy->commandFamilies, &record->commandFamilies, sizeof(CommandFamily));
    for (node = copy->commandFamilies.head->next; node != copy->commandFamilies.head; node = node->next) {
        CommandFamily* const family = ZOTDAM_RECORD(CommandFamily, node);
        const CommandFamily original = *family;
        CopyList(&family->commandItems, &original.commandItems, sizeof(BaseCommandItem));
        CopyList(&family->checkExistItems, &original.checkExistItems, sizeof(CheckExistItem));
    }
}

static void FreeFunctions(ZOTDamList* functions) {
    ListLinks* function;
    ListLinks* node;
    for (function = functions->head->next; function != functions->head; function = function->next) {
        FunctionBaseRecord* const record = ZOTDAM_RECORD(FunctionBaseRecord, function);
        ZOTDamList* const families = &record->commandFamilies;
        if (record->displayNode != NULL)
            IXMLDOMNode_Release(record->displayNode);
        if (record->defaultNode != NULL)
            IXMLDOMNode_Release(record->defaultNode);
        for (node = families->head->next; node != families->head; node = node->next) {
            FreeList(&(ZOTDAM_RECORD(CommandFamily, node))->commandItems);
            FreeList(&(ZOTDAM_RECORD(CommandFamily, node))->checkExistItems);
        }
        FreeList(families);
    }
    FreeList(functions);
}
/* [end CopyFunctionBase] */

/* [begin AddFunctionDefault] */
/* The data of a callback follows the pointer to its table. */
struct Keeper {
    IGetFunctionBaseCallback callback;
    ZOTDamList* functions;
};

static void Keep(IGetFunctionBaseCallback* self, const FunctionBaseRecord* record) {
    /* A real program performs each record's checks and keeps only the supported functions. */
    AppendFunction(((struct Keeper*)self)->functions, record);
}

void AdoptAll(const struct Exports* zd) {
    static const IGetFunctionBaseCallbackTable table = {Keep};
    FunctionBaseHolder holder = {NULL, {NULL, 0}};
    struct Keeper keeper = {{&table}, &holder.records};
    MakeEmpty(&holder.records);
    zd->GetFunctionBase(&keeper.callback);
    printf("%u functions adopted: %s\n", (unsigned int)holder.records.count,
           YesOrNo(zd->AddFunctionDefault(&holder)));
    FreeFunctions(&holder.records);
}
/* [end AddFunctionDefault] */
