#define COBJMACROS
#include <msxml2.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "examples.h"

/* [begin GetFuncCount] */
void CountFunctions(const struct ZdExports* zd) {
    const uint32_t count = zd->GetFuncCount();
    if (count == ZD_CATALOGUE_UNAVAILABLE)
        puts("The catalogue cannot be loaded.");
    else
        printf("%u functions\n", count);
}
/* [end GetFuncCount] */

/* [begin GetFunctionInfo] */
static void PrintFunction(struct ZdFunctionInfoCallback* self, uint32_t id,
                          const struct ZdFunctionRecord* record) {
    const struct ZdLinks* const end = record->acDisplayItems.head;
    const struct ZdLinks* node;
    (void)self;
    printf("%u: %s, %s\n", id, ToUtf8(record->group), ToUtf8(record->name));
    for (node = end->next; node != end; node = node->next) {
        const struct ZdDisplayItem* const item = ZD_RECORD(ZdDisplayItem, node);
        printf("    %s (%d)\n", ToUtf8(item->label), item->option);
    }
}

void ListFunctions(const struct ZdExports* zd) {
    static const struct ZdFunctionInfoTable table = {PrintFunction};
    struct ZdFunctionInfoCallback callback = {&table};
    zd->GetFunctionInfo(&callback);
}
/* [end GetFunctionInfo] */

/* [begin GetFunctionBase] */
static void PrintFamily(const struct ZdCommandFamily* family) {
    const struct ZdLinks* const end = family->checkExistItems.head;
    const struct ZdLinks* node;
    printf("    %u commands\n", (unsigned int)family->commandItems.count);
    for (node = end->next; node != end; node = node->next) {
        const struct ZdCheckExistItem* const check = ZD_RECORD(ZdCheckExistItem, node);
        printf("    check %d: %s\n", check->checkFlag, ToUtf8(check->param1));
    }
}

static void PrintBase(struct ZdFunctionBaseCallback* self, const struct ZdFunctionBaseRecord* record) {
    const struct ZdLinks* const end = record->commandFamilies.head;
    const struct ZdLinks* node;
    (void)self;
    printf("%d: %s\n", record->id, ToUtf8(record->name));
    for (node = end->next; node != end; node = node->next)
        PrintFamily(ZD_RECORD(ZdCommandFamily, node));
}

void ListBase(const struct ZdExports* zd) {
    static const struct ZdFunctionBaseTable table = {PrintBase};
    struct ZdFunctionBaseCallback callback = {&table};
    zd->GetFunctionBase(&callback);
}
/* [end GetFunctionBase] */

/* [begin GetFunctionBaseUnSupported] */
static void PrintUnsupported(struct ZdFunctionBaseCallback* self, const struct ZdFunctionBaseRecord* record) {
    (void)self;
    printf("not in use: %d, %s\n", record->id, ToUtf8(record->name));
}

void ListUnsupported(const struct ZdExports* zd) {
    static const struct ZdFunctionBaseTable table = {PrintUnsupported};
    struct ZdFunctionBaseCallback callback = {&table};
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

static void MakeEmpty(struct ZdList* list) {
    list->head = Allocate(sizeof *list->head);
    list->head->next = list->head->prev = list->head;
    list->count = 0;
}

/* Appends a copy of a record and returns the copy. */
static void* Append(struct ZdList* list, const void* record, size_t size) {
    struct ZdLinks* const node = Allocate(sizeof *node + size);
    node->next = list->head;
    node->prev = list->head->prev;
    node->prev->next = node;
    list->head->prev = node;
    ++list->count;
    return memcpy(node + 1, record, size);
}

static void CopyList(struct ZdList* copy, const struct ZdList* list, size_t recordSize) {
    const struct ZdLinks* node;
    MakeEmpty(copy);
    for (node = list->head->next; node != list->head; node = node->next)
        Append(copy, node + 1, recordSize);
}

static void FreeList(struct ZdList* list) {
    struct ZdLinks* node = list->head->next;
    while (node != list->head) {
        struct ZdLinks* const next = node->next;
        free(node);
        node = next;
    }
    free(list->head);
}
/* [end CopyLists] */

/* [begin CopyFunctionBase] */
/* Copies a record with its lists, and adds a reference to each node. */
static void AppendFunction(struct ZdList* functions, const struct ZdFunctionBaseRecord* record) {
    struct ZdFunctionBaseRecord* const copy = Append(functions, record, sizeof *record);
    struct ZdLinks* node;
    if (copy->displayNode != NULL)
        IXMLDOMNode_AddRef(copy->displayNode);
    if (copy->defaultNode != NULL)
        IXMLDOMNode_AddRef(copy->defaultNode);
    CopyList(&copy->commandFamilies, &record->commandFamilies, sizeof(struct ZdCommandFamily));
    for (node = copy->commandFamilies.head->next; node != copy->commandFamilies.head; node = node->next) {
        struct ZdCommandFamily* const family = (struct ZdCommandFamily*)(node + 1);
        const struct ZdCommandFamily original = *family;
        CopyList(&family->commandItems, &original.commandItems, sizeof(struct ZdBaseCommandItem));
        CopyList(&family->checkExistItems, &original.checkExistItems, sizeof(struct ZdCheckExistItem));
    }
}

static void FreeFunctions(struct ZdList* functions) {
    struct ZdLinks *function, *node;
    for (function = functions->head->next; function != functions->head; function = function->next) {
        struct ZdFunctionBaseRecord* const record = (struct ZdFunctionBaseRecord*)(function + 1);
        struct ZdList* const families = &record->commandFamilies;
        if (record->displayNode != NULL)
            IXMLDOMNode_Release(record->displayNode);
        if (record->defaultNode != NULL)
            IXMLDOMNode_Release(record->defaultNode);
        for (node = families->head->next; node != families->head; node = node->next) {
            FreeList(&((struct ZdCommandFamily*)(node + 1))->commandItems);
            FreeList(&((struct ZdCommandFamily*)(node + 1))->checkExistItems);
        }
        FreeList(families);
    }
    FreeList(functions);
}
/* [end CopyFunctionBase] */

/* [begin AddFunctionDefault] */
/* The data of a callback follows the pointer to its table. */
struct Keeper {
    struct ZdFunctionBaseCallback callback;
    struct ZdList* functions;
};

static void Keep(struct ZdFunctionBaseCallback* self, const struct ZdFunctionBaseRecord* record) {
    /* A real program performs each record's checks and keeps only the supported functions. */
    AppendFunction(((struct Keeper*)self)->functions, record);
}

void AdoptAll(const struct ZdExports* zd) {
    static const struct ZdFunctionBaseTable table = {Keep};
    struct ZdFunctionBaseHolder holder = {NULL, {NULL, 0}};
    struct Keeper keeper = {{&table}, &holder.records};
    MakeEmpty(&holder.records);
    zd->GetFunctionBase(&keeper.callback);
    printf("%u functions adopted: %s\n", (unsigned int)holder.records.count,
           YesOrNo(zd->AddFunctionDefault(&holder)));
    FreeFunctions(&holder.records);
}
/* [end AddFunctionDefault] */
