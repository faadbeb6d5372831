// Runs a function of the test when the process loads ZOTDam.dll: after the loader has resolved the imports of
// the DLL and before the DLL initialises itself. A test can thus observe allocations of the DLL while it is
// loaded.
#pragma once

#include <windows.h>

#include <functional>
#include <stdexcept>
#include <utility>

namespace ZOTDam::Test {

// Runs the function on each load of the DLL while this object exists.
class LoadHook {
public:
    explicit LoadHook(std::function<void(HMODULE dll)> function) : onLoad{std::move(function)} {
        const auto begin = Find<LONG NTAPI(ULONG, Callback*, void*, void**)>("LdrRegisterDllNotification");
        if (begin(0, &OnNotification, this, &registration) < 0)
            throw std::runtime_error{"the loader does not report its loads"};
    }
    LoadHook(const LoadHook&) = delete;
    LoadHook& operator=(const LoadHook&) = delete;
    ~LoadHook() { Find<LONG NTAPI(void*)>("LdrUnregisterDllNotification")(registration); }

private:
    // The structures that the loader passes. The headers do not declare them.
    struct UnicodeString {
        USHORT size;  // in bytes
        USHORT capacity;
        const wchar_t* text;
    };
    struct Notification {
        ULONG flags;
        const UnicodeString* path;
        const UnicodeString* fileName;
        void* module;
        ULONG moduleSize;
    };
    using Callback = void CALLBACK(ULONG reason, const Notification* notification, void* hook);
    static constexpr ULONG Loaded = 1;

    template <class Function>
    static Function* Find(const char* name) {
        return reinterpret_cast<Function*>(
            reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name)));
    }

    static void CALLBACK OnNotification(ULONG reason, const Notification* notification, void* hook) {
        constexpr wchar_t fileName[] = L"ZOTDam.dll";
        if (reason == Loaded && notification->fileName->size == sizeof fileName - sizeof fileName[0] &&
            CompareStringOrdinal(notification->fileName->text, -1, fileName, -1, TRUE) == CSTR_EQUAL)
            static_cast<LoadHook*>(hook)->onLoad(static_cast<HMODULE>(notification->module));
    }

    std::function<void(HMODULE)> onLoad;
    void* registration = nullptr;
};

}  // namespace ZOTDam::Test
