/* A client of the DLL in plain C. It shares no header with the DLL: it knows the offsets of the interface's
   description, and reads and writes records byte by byte. */
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

/* How the tree of a map is grown. */
enum CClientShape { CClientBalanced, CClientAscending, CClientDescending };

/* What the exports take; each takes its own part. */
struct CClientInput {
    GUID scheme;
    GUID otherScheme;
    uint32_t number; /* a position, or a mode */
    const wchar_t* name;
    const wchar_t* value;
    const struct CClientParam* params; /* by ascending id, at most CClientMostParams */
    size_t paramCount;
    enum CClientShape shape;
    size_t recordCount; /* of the records of two functions, how many AddFunctionDefault gets */
    void* displayNode;  /* of the first record */
    void* defaultNode;
};

enum { CClientMostParams = 64 };

/* What the exports give, as a text. */
struct CClientOutput {
    char text[16384];
    size_t length;
};

/* Calls the export of that name. All that it hands out is appended to the output, each item on a line of its
   own, and then its result. */
void CClientCall(HMODULE dll, const char* exportName, const struct CClientInput* input,
                 struct CClientOutput* output);

#ifdef __cplusplus
}
#endif

#endif
