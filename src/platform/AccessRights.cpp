#include "platform/AccessRights.h"

namespace ZOTDam {

namespace {

// A library of the system that is there only while it is needed.
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
    // Nothing but a save asks for access rights, so the library that knows them is not imported.
    const CSystemLibrary security{L"advapi32.dll"};
    const auto getFileSecurity = security.Find<decltype(GetFileSecurityW)>("GetFileSecurityW");
    if (getFileSecurity == nullptr)
        return;
    // The list of rights alone: another owner can be given only by those who have a privilege for it.
    constexpr SECURITY_INFORMATION list = DACL_SECURITY_INFORMATION;
    // Each call opens the file: the first one asks for as much as common lists need.
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
