// The export and import directories of a loaded module.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace ZOTDam::Test {

class LoadedImage {
public:
    explicit LoadedImage(HMODULE module) : base{reinterpret_cast<const BYTE*>(module)} {}

    const IMAGE_NT_HEADERS& Headers() const {
        return *At<IMAGE_NT_HEADERS>(static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
    }

    // Returns the names that the module exports, in the order of its export directory.
    std::vector<std::string> ExportedNames() const {
        std::vector<std::string> names;
        const auto* const name = At<DWORD>(Exports().AddressOfNames);
        for (DWORD i = 0; i < Exports().NumberOfNames; ++i)
            names.emplace_back(At<char>(name[i]));
        return names;
    }

    // Returns the number of all exports, with or without a name.
    std::size_t ExportCount() const { return Exports().NumberOfFunctions; }

    std::vector<std::string> ImportedModules() const {
        std::vector<std::string> names;
        for (const auto* import = At<IMAGE_IMPORT_DESCRIPTOR>(Directory(IMAGE_DIRECTORY_ENTRY_IMPORT));
             import->Name != 0; ++import)
            names.emplace_back(At<char>(import->Name));
        return names;
    }

private:
    template <class Structure>
    const Structure* At(DWORD offset) const {
        return reinterpret_cast<const Structure*>(base + offset);
    }

    DWORD Directory(int index) const { return Headers().OptionalHeader.DataDirectory[index].VirtualAddress; }

    const IMAGE_EXPORT_DIRECTORY& Exports() const {
        return *At<IMAGE_EXPORT_DIRECTORY>(Directory(IMAGE_DIRECTORY_ENTRY_EXPORT));
    }

    const BYTE* base;
};

}  // namespace ZOTDam::Test
