#pragma once

#include <objidl.h>

#include <string>

namespace ZOTDam {

// Keeps what a DOM writes. Some DOMs go on when a stream refuses something: this one remembers it.
class CTextStream final : public IStream {
public:
    CTextStream() = default;
    CTextStream(const CTextStream&) = delete;
    CTextStream& operator=(const CTextStream&) = delete;
    ~CTextStream() = default;

    // Whether nothing is missing of what was written.
    bool IsComplete() const noexcept { return complete; }

    const std::string& Text() const noexcept { return text; }

    HRESULT WINAPI Write(const void* data, ULONG size, ULONG* written) noexcept override;
    HRESULT WINAPI Commit(DWORD flags) noexcept override;

    // The stream lives where it is declared, so nobody's references count.
    HRESULT WINAPI QueryInterface(REFIID iid, void** object) noexcept override;
    ULONG WINAPI AddRef() noexcept override;
    ULONG WINAPI Release() noexcept override;

    // All else is not needed to write a document from its beginning to its end.
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
