#include "xml/TextStream.h"

#include "platform/FalseOnException.h"

namespace ZOTDam {

HRESULT CTextStream::Write(const void* data, ULONG size, ULONG* written) noexcept {
    complete = complete && FalseOnException([&] {
                   text.append(static_cast<const char*>(data), size);
                   return true;
               });
    if (written != nullptr)
        *written = complete ? size : 0;
    return complete ? S_OK : E_OUTOFMEMORY;
}

HRESULT CTextStream::Commit(DWORD /*flags*/) noexcept {
    return S_OK;
}

HRESULT CTextStream::QueryInterface(REFIID iid, void** object) noexcept {
    const bool known = iid == IID_IUnknown || iid == IID_ISequentialStream || iid == IID_IStream;
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
}

ULONG CTextStream::AddRef() noexcept {
    return 1;
}

ULONG CTextStream::Release() noexcept {
    return 1;
}

HRESULT CTextStream::Read(void* /*data*/, ULONG /*size*/, ULONG* /*read*/) noexcept {
    return E_NOTIMPL;
}

HRESULT CTextStream::Seek(LARGE_INTEGER /*move*/, DWORD /*origin*/, ULARGE_INTEGER* /*position*/) noexcept {
    return E_NOTIMPL;
}

HRESULT CTextStream::SetSize(ULARGE_INTEGER /*size*/) noexcept {
    return E_NOTIMPL;
}

HRESULT CTextStream::CopyTo(IStream* /*stream*/, ULARGE_INTEGER /*size*/, ULARGE_INTEGER* /*read*/,
                            ULARGE_INTEGER* /*written*/) noexcept {
    return E_NOTIMPL;
}

HRESULT CTextStream::Revert() noexcept {
    return E_NOTIMPL;
}

HRESULT CTextStream::LockRegion(ULARGE_INTEGER /*offset*/, ULARGE_INTEGER /*size*/, DWORD /*type*/) noexcept {
    return E_NOTIMPL;
}

HRESULT CTextStream::UnlockRegion(ULARGE_INTEGER /*offset*/, ULARGE_INTEGER /*size*/,
                                  DWORD /*type*/) noexcept {
    return E_NOTIMPL;
}

HRESULT CTextStream::Stat(STATSTG* /*status*/, DWORD /*flags*/) noexcept {
    return E_NOTIMPL;
}

HRESULT CTextStream::Clone(IStream** /*stream*/) noexcept {
    return E_NOTIMPL;
}

}  // namespace ZOTDam
