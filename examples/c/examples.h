/* The C examples of docs/clients.md. Each prints the same results as the C++ example. */
#ifndef ZOTDAM_EXAMPLES_H
#define ZOTDAM_EXAMPLES_H

#include "zotdam_layouts.h"

struct Library {
    HMODULE dll;
    struct ZdExports exports;
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
void CountFunctions(const struct ZdExports* zd);
void ListFunctions(const struct ZdExports* zd);
void ListBase(const struct ZdExports* zd);
void ListUnsupported(const struct ZdExports* zd);
void AdoptAll(const struct ZdExports* zd);

/* parameters.c */
void ListParameters(const struct ZdExports* zd, const GUID* scheme);
void ListDefaults(const struct ZdExports* zd, const GUID* scheme);
void ChangeParameters(const struct ZdExports* zd, const GUID* scheme);
void LoadCurrentValues(const struct ZdExports* zd, const GUID* scheme);
void ListCurrentValues(const struct ZdExports* zd);
void ForgetEverything(const struct ZdExports* zd);

/* commands.c */
void ListCommands(const struct ZdExports* zd, const GUID* scheme);
void ListDifferences(const struct ZdExports* zd, const GUID* schemeA, const GUID* schemeB);

/* settings.c */
void ListSpecSchemes(const struct ZdExports* zd);
void ReadSetting(const struct ZdExports* zd);
void ChangeSetting(const struct ZdExports* zd);
void InitialiseSettings(const struct ZdExports* zd);

#endif
