// Functions of Windows that are loaded on demand.
#pragma once

#include <windows.h>

namespace ZOTDam::Client {

// Loads a library from the system folder. It stays loaded until the process ends. Returns null if this system
// does not have the function.
template <class Function>
Function FindSystemFunction(const wchar_t* library, const char* name) {
    const HMODULE module = LoadLibraryExW(library, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (module == nullptr)
        return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

}  // namespace ZOTDam::Client
