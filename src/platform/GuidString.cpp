#include "platform/GuidString.h"

#include <windows.h>

#include <rpc.h>

#include <cwchar>
#include <new>

namespace ZOTDam {

CGuidString::CGuidString(const GUID& guid) {
    RPC_WSTR allocated = nullptr;
    if (UuidToStringW(const_cast<UUID*>(&guid), &allocated) != RPC_S_OK)
        throw std::bad_alloc{};
    std::wmemcpy(text.data(), reinterpret_cast<const wchar_t*>(allocated), text.size());
    RpcStringFreeW(&allocated);
}

bool CGuidString::Matches(const wchar_t* other) const noexcept {
    return _wcsicmp(text.data(), other) == 0;
}

bool ParseGuid(const wchar_t* text, GUID& guid) noexcept {
    return UuidFromStringW(reinterpret_cast<RPC_WSTR>(const_cast<wchar_t*>(text)), &guid) == RPC_S_OK;
}

}  // namespace ZOTDam
