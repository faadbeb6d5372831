/* A client of the DLL that is written in C and knows the interface from its description alone. */
#ifndef ZOTDAM_TESTS_CCLIENT_H
#define ZOTDAM_TESTS_CCLIENT_H

#include <guiddef.h>
#include <stddef.h>
#include <stdint.h>
#include <windows.h>

#ifdef __cplusplus
extern "C" {
#endif

struct CClientParam {
    int32_t id;
    int32_t ac;
    int32_t dc;
};

/* Lets an enumerating export (GetParameter, GetParameterDefault) fill `params`. Gives the number of items,
   which may be more than fit, or -1 when the export gives false. */
int CClientRead(HMODULE dll, const char* exportName, const GUID* scheme, struct CClientParam* params,
                size_t capacity);

/* Stores the values 0..6 for the functions 0..6, from a balanced tree. */
int CClientStoreSevenFunctions(HMODULE dll, const GUID* scheme);

/* Stores nothing, from the empty tree. */
int CClientStoreNothing(HMODULE dll, const GUID* scheme);

/* What a C client keeps of a function of the base catalogue. */
struct CClientFunction {
    int32_t id;
    int32_t families;
    int32_t commandItems;
    int32_t checks;
    int32_t lastCommandId;
    int32_t lastCheckFlag;
    uint16_t lastSpecInfo1; /* of the last texts, the first unit */
    uint16_t lastCheckParam4;
    uint8_t hasDisplay;
    uint8_t hasDefault;
};

/* Lets GetFunctionBase fill `functions`; results as CClientRead. */
int CClientReadBase(HMODULE dll, struct CClientFunction* functions, size_t capacity);

/* Makes two functions the catalogue, from lists that it links itself: function 1 with the nodes and the
   commands 11, 12 and 13 in two families, the first with a check, and function 2 with an empty family and
   command 21. */
int CClientReplaceFunctions(HMODULE dll, void* displayNode, void* defaultNode);

/* Makes nothing the catalogue, from the empty list. */
int CClientReplaceByNothing(HMODULE dll);

/* Sizes of the records, in the order of the interface's description, ended by 0. */
extern const size_t CClientRecordSizes[];

#ifdef __cplusplus
}
#endif

#endif
