/* A client of the DLL in plain C that uses none of the DLL's headers. It reads and writes records as bytes at
   the documented offsets. */
#ifndef ZOTDAM_TESTS_CCLIENT_H
#define ZOTDAM_TESTS_CCLIENT_H

#include <guiddef.h>
#include <stddef.h> /* NOLINT(modernize-deprecated-headers): C has no other */
#include <stdint.h> /* NOLINT(modernize-deprecated-headers) */
#include <windows.h>

#ifdef __cplusplus
extern "C" {
#endif

struct CClientParam {
    int32_t id;
    int32_t ac;
    int32_t dc;
};

/* The shape of a map's tree. */
enum CClientShape { CClientBalanced, CClientAscending, CClientDescending };

/* The arguments of the exports. Each export uses some of the fields. */
struct CClientInput {
    GUID scheme;
    GUID otherScheme;
    uint32_t number; /* a position or a mode */
    const wchar_t* name;
    const wchar_t* value;
    const struct CClientParam* params; /* in ascending order of ids, at most CClientMostParams */
    size_t paramCount;
    enum CClientShape shape;
    size_t recordCount; /* number of records for AddFunctionDefault, at most two */
    void* displayNode;  /* of the first record */
    void* defaultNode;
};

enum { CClientMostParams = 64 };

/* The output of the exports as text. */
struct CClientOutput {
    char text[16384];
    size_t length;
};

/* Calls the given export. Appends each item that it enumerates or returns to the output, one per line, and
   then its result. */
void CClientCall(HMODULE dll, const char* exportName, const struct CClientInput* input,
                 struct CClientOutput* output);

#ifdef __cplusplus
}
#endif

#endif
