#include "platform/AccessRights.h"

namespace ZOTDam {

namespace {

// A system library that stays loaded for the lifetime of this object.
class CSystemLibrary {
public:
    explicit CSystemLibrary(const wchar_t* name) noexcept : module{LoadLibraryW(name)} {}
    CSystemLibrary(const CSystemLibrary&) = delete;
    CSystemLibrary& operator=(const CSystemLibrary&) = delete;
    ~CSystemLibrary() {
        if (module != nullptr)
            FreeLibrary(module);
    }

    template <class Function>
    Function* Find(const char* name) const noexcept {
        return module == nullptr
                   ? nullptr
                   : reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
    }

private:
    HMODULE module;
};

}  // namespace

CAccessRights::CAccessRights(const std::wstring& path) {
    // Only a save reads access rights, so the DLL loads advapi32.dll here instead of importing it.
    const CSystemLibrary security{L"advapi32.dll"};
    const auto getFileSecurity = security.Find<decltype(GetFileSecurityW)>("GetFileSecurityW");
    if (getFileSecurity == nullptr)
        return;
    // Only the DACL, because setting another owner requires a privilege.
    constexpr SECURITY_INFORMATION list = DACL_SECURITY_INFORMATION;
    // Each call opens the file, so the first buffer is large enough for common lists.
    DWORD size = 512;
    bool isKnown = false;
    do {
        descriptor.resize(size);
        isKnown = getFileSecurity(path.c_str(), list, descriptor.data(), size, &size) != FALSE;
    } while (!isKnown && size > descriptor.size());
    if (!isKnown)
        descriptor.clear();
}

SECURITY_ATTRIBUTES* CAccessRights::ForNewFile() noexcept {
    attributes = {sizeof attributes, descriptor.data(), FALSE};
    return descriptor.empty() ? nullptr : &attributes;
}

}  // namespace ZOTDam
