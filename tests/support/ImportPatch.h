// Replaces a function that a loaded module imports with a function of the test, for a scope.
#pragma once

#include <cstring>
#include <stdexcept>

#include "support/SlotPatch.h"

namespace ZOTDam::Test {

// Returns the slot with the address of an imported function, or null if the module does not import it.
inline void** ImportSlot(HMODULE module, const char* importedName) {
    auto* const base = reinterpret_cast<BYTE*>(module);
    const auto* dos = reinterpret_cast<IMAGE_DOS_HEADER*>(base);
    const auto* nt = reinterpret_cast<IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const DWORD imports = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (auto* library = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + imports); library->Name != 0;
         ++library) {
        auto* name = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
        auto* address = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++address) {
            const auto* byName = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
            if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal) && std::strcmp(byName->Name, importedName) == 0)
                return reinterpret_cast<void**>(&address->u1.Function);
        }
    }
    return nullptr;
}

// The compiler and the linker decide which functions are imported only for the C++ runtime. A function that
// is not imported cannot be called, so it needs no replacement.
inline bool IsImported(HMODULE module, const char* name) {
    return ImportSlot(module, name) != nullptr;
}

class ImportPatch : public SlotPatch {
public:
    template <class Function>
    ImportPatch(HMODULE module, const char* importedName, Function replacement)
        : SlotPatch{Find(module, importedName), replacement} {}

private:
    static void** Find(HMODULE module, const char* importedName) {
        void** const slot = ImportSlot(module, importedName);
        if (slot == nullptr)
            throw std::invalid_argument{importedName};
        return slot;
    }
};

// Applies a patch that stays in place until the module is unloaded.
template <class Function>
void PatchPermanently(HMODULE module, const char* importedName, Function replacement) {
    static_cast<void>(new ImportPatch{module, importedName, replacement});
}

template <class Function>
void PatchPermanentlyIfImported(HMODULE module, const char* importedName, Function replacement) {
    if (IsImported(module, importedName))
        PatchPermanently(module, importedName, replacement);
}

}  // namespace ZOTDam::Test
