/* The C examples of docs/clients.md. Each prints the same results as the C++ example. */
#ifndef ZOTDAM_EXAMPLES_H
#define ZOTDAM_EXAMPLES_H

#include <windows.h>

#include "exports.h"

struct Library {
    HMODULE dll;
    struct Exports exports;
};

/* text.c: converts a string to UTF-8 for the console. Only the last four results are valid. */
const char* ToUtf8(const wchar_t* text);
const char* YesOrNo(bool answer);

/* lifetime.c */
bool Load(struct Library* library);
void Unload(struct Library* library);
bool LoadAndUnload(void);
bool LoadByHand(void);
bool ReplaceCatalogueAndReload(void);

/* catalogue.c */
void CountFunctions(const struct Exports* zd);
void ListFunctions(const struct Exports* zd);
void ListBase(const struct Exports* zd);
void ListUnsupported(const struct Exports* zd);
void AdoptAll(const struct Exports* zd);

/* parameters.c */
void ListParameters(const struct Exports* zd, const GUID* scheme);
void ListDefaults(const struct Exports* zd, const GUID* scheme);
void ChangeParameters(const struct Exports* zd, const GUID* scheme);
void LoadCurrentValues(const struct Exports* zd, const GUID* scheme);
void ListCurrentValues(const struct Exports* zd);
void ForgetEverything(const struct Exports* zd);

/* commands.c */
void ListCommands(const struct Exports* zd, const GUID* scheme);
void ListDifferences(const struct Exports* zd, const GUID* schemeA, const GUID* schemeB);

/* settings.c */
void ListSpecSchemes(const struct Exports* zd);
void ReadSetting(const struct Exports* zd);
void ChangeSetting(const struct Exports* zd);
void InitialiseSettings(const struct Exports* zd);

#endif
