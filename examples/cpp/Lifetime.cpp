#include <cstdio>

#include "Examples.h"

namespace Examples {

// [begin LoadAndUnload]
void LoadAndUnload() {
    const ZOTDam::Library library;  // CoInitializeEx, LoadLibraryExW, all eighteen GetProcAddress
    std::printf("loaded: %u functions\n", library.GetFuncCount());
}  // ZOTDamExit, FreeLibrary, CoUninitialize
// [end LoadAndUnload]

// [begin ZOTDamExit]
void LoadByHand() {
    const ZOTDam::ComScope com;  // initialised first, released last
    const ZOTDam::Module module{ZOTDam::Library::ProgramFolder() / L"ZOTDam.dll"};
    const auto getFuncCount = module.Export<decltype(&ZOTDam::GetFuncCount)>("GetFuncCount");
    const auto zotDamExit = module.Export<decltype(&ZOTDam::ZOTDamExit)>("ZOTDamExit");
    const std::uint32_t before = getFuncCount();
    zotDamExit();
    zotDamExit();  // has no further effect and returns true again
    const bool unavailable = getFuncCount() == ZOTDam::CatalogueUnavailable;
    std::printf("before ZOTDamExit: %u functions, after it: %s\n", before, unavailable ? "none" : "some");
}
// [end ZOTDamExit]

// [begin Reload]
void ReplaceCatalogueAndReload() {
    {
        const ZOTDam::Library library;
        const std::uint32_t before = library.GetFuncCount();
        AdoptAll(library);
        std::printf("before: %u functions, still: %u\n", before, library.GetFuncCount());
    }
    const ZOTDam::Library library;
    std::printf("loaded again: %u functions\n", library.GetFuncCount());
}
// [end Reload]

}  // namespace Examples
