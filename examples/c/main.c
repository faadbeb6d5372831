/* Runs all examples on a copy of an installation. FOLDER must contain the folders "Program Files" and
   "ProgramData": examples_c FOLDER */
#include <objbase.h>

#include <stdio.h>

#include "examples.h"

static const GUID Balanced = {0x381b4222, 0xf694, 0x41f0, {0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e}};
static const GUID PowerSaver = {0xa1841308, 0x3541, 0x4fab, {0xbc, 0x81, 0xf7, 0x15, 0x56, 0xf2, 0x0b, 0x4a}};

/* [begin DataFolders] */
/* "ProgramFiles" and "ProgramData" in the environment determine the folders of the library's files. */
static bool Redirect(const char* variable, const char* folder, const char* subfolder) {
    char absolute[MAX_PATH];
    char path[MAX_PATH];
    const DWORD length = GetFullPathNameA(folder, sizeof absolute, absolute, NULL);
    if (length == 0 || length >= sizeof absolute)
        return false;
    const int written = snprintf(path, sizeof path, "%s\\%s", absolute, subfolder);
    return written > 0 && (size_t)written < sizeof path && SetEnvironmentVariableA(variable, path) != FALSE;
}
/* [end DataFolders] */

static bool RunInOneLibrary(void) {
    struct Library library;
    const struct Exports* const zd = &library.exports;
    if (!Load(&library))
        return false;
    CountFunctions(zd);
    ListFunctions(zd);
    ListBase(zd);
    ListUnsupported(zd);
    ListParameters(zd, &Balanced);
    ListDefaults(zd, &Balanced);
    ChangeParameters(zd, &Balanced);
    LoadCurrentValues(zd, &Balanced);
    ListCurrentValues(zd);
    ListCommands(zd, &Balanced);
    ListDifferences(zd, &Balanced, &PowerSaver);
    ListSpecSchemes(zd);
    ReadSetting(zd);
    ChangeSetting(zd);
    ReadSetting(zd);
    InitialiseSettings(zd);
    ForgetEverything(zd);
    ReadSetting(zd);
    Unload(&library);
    return true;
}

int main(int argc, char** argv) {
    if (argc != 2) {
        fputs("Usage: examples_c FOLDER, a copy of an installation, which is changed\n", stderr);
        return 2;
    }
    SetConsoleOutputCP(CP_UTF8);
    if (!Redirect("ProgramFiles", argv[1], "Program Files") ||
        !Redirect("ProgramData", argv[1], "ProgramData") || !LoadAndUnload() ||
        FAILED(CoInitializeEx(NULL, COINIT_APARTMENTTHREADED))) {
        fputs("The examples cannot be started.\n", stderr);
        return 1;
    }
    const bool complete = RunInOneLibrary() && ReplaceCatalogueAndReload() && LoadByHand();
    CoUninitialize();
    return complete ? 0 : 1;
}
