// A freshly loaded DLL whose imports a test can patch and whose DOM calls are counted.
#pragma once

#include "support/AllocationFailures.h"
#include "support/DomCalls.h"
#include "support/UnflushedFiles.h"

namespace ZOTDam::Test {

class HookedDll {
public:
    // The display supports only a rate of 60.
    explicit HookedDll(const std::filesystem::path& file = L"ZOTDam.dll")
        : dll{Library::ProgramFolder() / file} {
        imports.Patch("FlushFileBuffers", &DoNotFlush);
        imports.Patch("EnumDisplaySettingsW", [](LPCWSTR, DWORD number, DEVMODEW* mode) -> BOOL {
            mode->dmDisplayFrequency = 60;
            return number == 0 ? TRUE : FALSE;
        });
    }
    HookedDll(const HookedDll&) = delete;
    HookedDll& operator=(const HookedDll&) = delete;
    ~HookedDll() { DomCalls::mustFail = nullptr; }

    const Library& Exports() const noexcept { return dll; }
    PatchedImports& Imports() noexcept { return imports; }

private:
    Library dll;
    ImportPatch domPatch = DomCalls::Track(dll.Handle());
    PatchedImports imports{dll.Handle()};
};

}  // namespace ZOTDam::Test
