// The error information that COM returns to the library: a single object that counts its references.
#pragma once

#include <objbase.h>
#include <windows.h>

#include <oleauto.h>

namespace ZOTDam::Test {

class ErrorInfos final : public IErrorInfo {
public:
    // The replacement for the system's GetErrorInfo.
    static HRESULT WINAPI Get(ULONG, IErrorInfo** information) {
        *information = &Instance();
        ++Instance().references;
        return S_OK;
    }

    // The number of references that were returned and not released.
    static long long Count() noexcept { return Instance().references; }

    static void Reset() noexcept { Instance().references = 0; }

    HRESULT WINAPI QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG WINAPI AddRef() override { return ++references; }
    ULONG WINAPI Release() override { return --references; }

    HRESULT WINAPI GetGUID(GUID*) override { return E_NOTIMPL; }
    HRESULT WINAPI GetSource(BSTR*) override { return E_NOTIMPL; }
    HRESULT WINAPI GetDescription(BSTR*) override { return E_NOTIMPL; }
    HRESULT WINAPI GetHelpFile(BSTR*) override { return E_NOTIMPL; }
    HRESULT WINAPI GetHelpContext(DWORD*) override { return E_NOTIMPL; }

private:
    static ErrorInfos& Instance() noexcept {
        static ErrorInfos instance;
        return instance;
    }

    ULONG references = 0;
};

}  // namespace ZOTDam::Test
