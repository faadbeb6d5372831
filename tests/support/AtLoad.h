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
class AtLoad {
public:
    explicit AtLoad(std::function<void(HMODULE dll)> function) : onLoad{std::move(function)} {
        const auto begin = Find<LONG NTAPI(ULONG, Listener*, void*, void**)>("LdrRegisterDllNotification");
        if (begin(0, &Listen, this, &registration) < 0)
            throw std::runtime_error{"the loader does not tell of its loads"};
    }
    AtLoad(const AtLoad&) = delete;
    AtLoad& operator=(const AtLoad&) = delete;
    ~AtLoad() { Find<LONG NTAPI(void*)>("LdrUnregisterDllNotification")(registration); }

private:
    // The structures that the loader passes. The headers do not declare them.
    struct CountedText {
        USHORT size;  // in bytes
        USHORT capacity;
        const wchar_t* text;
    };
    struct Event {
        ULONG flags;
        const CountedText* path;
        const CountedText* fileName;
        void* module;
        ULONG moduleSize;
    };
    using Listener = void CALLBACK(ULONG reason, const Event* event, void* listener);
    static constexpr ULONG Loaded = 1;

    template <class Function>
    static Function* Find(const char* name) {
        return reinterpret_cast<Function*>(
            reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name)));
    }

    static void CALLBACK Listen(ULONG reason, const Event* event, void* listener) {
        constexpr wchar_t fileName[] = L"ZOTDam.dll";
        if (reason == Loaded && event->fileName->size == sizeof fileName - sizeof fileName[0] &&
            CompareStringOrdinal(event->fileName->text, -1, fileName, -1, TRUE) == CSTR_EQUAL)
            static_cast<AtLoad*>(listener)->onLoad(static_cast<HMODULE>(event->module));
    }

    std::function<void(HMODULE)> onLoad;
    void* registration = nullptr;
};

}  // namespace ZOTDam::Test
