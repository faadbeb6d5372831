// The part of the Windows API that the headers of the library and the client of these checks need.
#pragma once

#include <guiddef.h>
#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef unsigned long DWORD;
typedef long HRESULT;
typedef int(__stdcall* FARPROC)(void);
typedef struct HINSTANCE__* HMODULE;

#define MAX_PATH 260
#define LOAD_WITH_ALTERED_SEARCH_PATH 0x00000008
#define SUCCEEDED(result) ((result) >= 0)

HMODULE __stdcall LoadLibraryExW(const wchar_t* file, void* reserved, DWORD flags);
int __stdcall FreeLibrary(HMODULE module);
FARPROC __stdcall GetProcAddress(HMODULE module, const char* name);
DWORD __stdcall GetModuleFileNameW(HMODULE module, wchar_t* path, DWORD capacity);
int __stdcall SetEnvironmentVariableW(const wchar_t* name, const wchar_t* value);
__declspec(noreturn) void __stdcall ExitProcess(unsigned int exitCode);

#ifdef __cplusplus
}
#endif
