#include "xml/FileStream.h"

namespace ZOTDam {

CFileStream::CFileStream(const std::wstring& path) noexcept
    : file{CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                       FILE_ATTRIBUTE_NORMAL, nullptr)} {}

CFileStream::~CFileStream() {
    if (IsOpen())
        CloseHandle(file);
}

bool CFileStream::IsOpen() const noexcept {
    return file != INVALID_HANDLE_VALUE;
}

bool CFileStream::Flush() noexcept {
    return complete && FlushFileBuffers(file) != FALSE;
}

HRESULT CFileStream::Write(const void* data, ULONG size, ULONG* written) noexcept {
    DWORD count = 0;
    complete = complete && WriteFile(file, data, size, &count, nullptr) != FALSE && count == size;
    if (written != nullptr)
        *written = count;
    return complete ? S_OK : STG_E_MEDIUMFULL;
}

HRESULT CFileStream::Commit(DWORD /*flags*/) noexcept {
    return S_OK;
}

HRESULT CFileStream::QueryInterface(REFIID iid, void** object) noexcept {
    const bool known = iid == IID_IUnknown || iid == IID_ISequentialStream || iid == IID_IStream;
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
}

ULONG CFileStream::AddRef() noexcept {
    return 1;
}

ULONG CFileStream::Release() noexcept {
    return 1;
}

HRESULT CFileStream::Read(void* /*data*/, ULONG /*size*/, ULONG* /*read*/) noexcept {
    return E_NOTIMPL;
}

HRESULT CFileStream::Seek(LARGE_INTEGER /*move*/, DWORD /*origin*/, ULARGE_INTEGER* /*position*/) noexcept {
    return E_NOTIMPL;
}

HRESULT CFileStream::SetSize(ULARGE_INTEGER /*size*/) noexcept {
    return E_NOTIMPL;
}

HRESULT CFileStream::CopyTo(IStream* /*stream*/, ULARGE_INTEGER /*size*/, ULARGE_INTEGER* /*read*/,
                            ULARGE_INTEGER* /*written*/) noexcept {
    return E_NOTIMPL;
}

HRESULT CFileStream::Revert() noexcept {
    return E_NOTIMPL;
}

HRESULT CFileStream::LockRegion(ULARGE_INTEGER /*offset*/, ULARGE_INTEGER /*size*/, DWORD /*type*/) noexcept {
    return E_NOTIMPL;
}

HRESULT CFileStream::UnlockRegion(ULARGE_INTEGER /*offset*/, ULARGE_INTEGER /*size*/,
                                  DWORD /*type*/) noexcept {
    return E_NOTIMPL;
}

HRESULT CFileStream::Stat(STATSTG* /*status*/, DWORD /*flags*/) noexcept {
    return E_NOTIMPL;
}

HRESULT CFileStream::Clone(IStream** /*stream*/) noexcept {
    return E_NOTIMPL;
}

}  // namespace ZOTDam
