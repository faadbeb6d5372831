#include <objbase.h>

#include <stdio.h>
#include <wchar.h>

#include "examples.h"

/* [begin Load] */
/* Loads the DLL from the folder of the program. */
static HMODULE LoadDll(void) {
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(NULL, path, MAX_PATH);
    wchar_t* const fileName = length < MAX_PATH ? wcsrchr(path, L'\\') : NULL;
    if (fileName == NULL || fileName + wcslen(L"\\ZOTDam.dll") >= path + MAX_PATH)
        return NULL;
    wmemcpy(fileName, L"\\ZOTDam.dll", wcslen(L"\\ZOTDam.dll") + 1);
    return LoadLibraryExW(path, NULL, LOAD_WITH_ALTERED_SEARCH_PATH);
}

/* Initialise COM on this thread before calling this. */
bool Load(struct Library* library) {
    library->dll = LoadDll();
    if (library->dll == NULL)
        return false;
    bool complete = true;
    /* Function pointers of any type can be converted by way of void (*)(void). */
#define LOAD_EXPORT(result, name, arguments)                                                          \
    library->exports.name = (result(*) arguments)(void (*)(void))GetProcAddress(library->dll, #name); \
    complete = complete && library->exports.name != NULL;
    EXPORTS(LOAD_EXPORT)
#undef LOAD_EXPORT
    if (!complete)
        FreeLibrary(library->dll);
    return complete;
}

/* Call CoUninitialize only after this. */
void Unload(struct Library* library) {
    library->exports.ZOTDamExit();
    FreeLibrary(library->dll);
}
/* [end Load] */

/* [begin LoadAndUnload] */
bool LoadAndUnload(void) {
    struct Library library;
    if (FAILED(CoInitializeEx(NULL, COINIT_APARTMENTTHREADED)))
        return false;
    const bool loaded = Load(&library);
    if (loaded) {
        printf("loaded: %u functions\n", library.exports.GetFuncCount());
        Unload(&library);
    }
    CoUninitialize();
    return loaded;
}
/* [end LoadAndUnload] */

/* [begin ZOTDamExit] */
bool LoadByHand(void) {
    struct Library library;
    if (!Load(&library))
        return false;
    const uint32_t before = library.exports.GetFuncCount();
    library.exports.ZOTDamExit();
    library.exports.ZOTDamExit(); /* has no further effect and returns true again */
    const bool unavailable = library.exports.GetFuncCount() == ZOTDAM_CATALOGUE_UNAVAILABLE;
    printf("before ZOTDamExit: %u functions, after it: %s\n", before, unavailable ? "none" : "some");
    FreeLibrary(library.dll);
    return true;
}
/* [end ZOTDamExit] */

/* [begin Reload] */
bool ReplaceCatalogueAndReload(void) {
    struct Library library;
    if (!Load(&library))
        return false;
    const uint32_t before = library.exports.GetFuncCount();
    AdoptAll(&library.exports);
    printf("before: %u functions, still: %u\n", before, library.exports.GetFuncCount());
    Unload(&library);
    if (!Load(&library))
        return false;
    printf("loaded again: %u functions\n", library.exports.GetFuncCount());
    Unload(&library);
    return true;
}
/* [end Reload] */
