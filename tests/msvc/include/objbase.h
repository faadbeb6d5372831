// The functions of COM that the headers of the library need.
#pragma once

#include <windows.h>

#define COINIT_APARTMENTTHREADED 0x2

extern "C" {

HRESULT __stdcall CoInitializeEx(void* reserved, DWORD model);
void __stdcall CoUninitialize();

}  // extern "C"
