#pragma once

#include <objidl.h>

#include <string>

namespace ZOTDam {

// A stream in memory to which a DOM saves a document. It records failed writes, because some DOMs continue
// after one.
class CTextStream final : public IStream {
public:
    CTextStream() = default;
    CTextStream(const CTextStream&) = delete;
    CTextStream& operator=(const CTextStream&) = delete;
    ~CTextStream() = default;

    // Returns whether every write has succeeded.
    bool IsComplete() const noexcept { return complete; }

    const std::string& Text() const noexcept { return text; }

    HRESULT WINAPI Write(const void* data, ULONG size, ULONG* written) noexcept override;
    HRESULT WINAPI Commit(DWORD flags) noexcept override;

    // The owner of the stream determines its lifetime, so references are not counted.
    HRESULT WINAPI QueryInterface(REFIID iid, void** object) noexcept override;
    ULONG WINAPI AddRef() noexcept override;
    ULONG WINAPI Release() noexcept override;

    // The other methods are not needed to write a document sequentially.
    HRESULT WINAPI Read(void* data, ULONG size, ULONG* read) noexcept override;
    HRESULT WINAPI Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* position) noexcept override;
    HRESULT WINAPI SetSize(ULARGE_INTEGER size) noexcept override;
    HRESULT WINAPI CopyTo(IStream* stream, ULARGE_INTEGER size, ULARGE_INTEGER* read,
                          ULARGE_INTEGER* written) noexcept override;
    HRESULT WINAPI Revert() noexcept override;
    HRESULT WINAPI LockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER size, DWORD type) noexcept override;
    HRESULT WINAPI UnlockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER size, DWORD type) noexcept override;
    HRESULT WINAPI Stat(STATSTG* status, DWORD flags) noexcept override;
    HRESULT WINAPI Clone(IStream** stream) noexcept override;

private:
    std::string text;
    bool complete = true;
};

}  // namespace ZOTDam
