#include <windows.h>

#include "platform/AtUnload.h"

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID processEnds) {
    if (reason == DLL_PROCESS_DETACH && processEnds != nullptr)
        ZOTDam::processIsEnding = true;
    return TRUE;
}
