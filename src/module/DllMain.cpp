#include <windows.h>

#include "platform/ModuleUnload.h"

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID processShutdown) {
    if (reason == DLL_PROCESS_DETACH && processShutdown != nullptr)
        ZOTDam::isProcessShuttingDown = true;
    return TRUE;
}
