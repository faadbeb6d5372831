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
        *information = &OnlyOne();
        ++OnlyOne().references;
        return S_OK;
    }

    // The number of references that were returned and not released.
    static long long Held() noexcept { return OnlyOne().references; }

    static void Forget() noexcept { OnlyOne().references = 0; }

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
    static ErrorInfos& OnlyOne() noexcept {
        static ErrorInfos onlyOne;
        return onlyOne;
    }

    ULONG references = 0;
};

}  // namespace ZOTDam::Test
