#pragma once

#include <windows.h>

#include <oleauto.h>

#include <new>
#include <string_view>

namespace ZOTDam {

// A BSTR that is passed to a call or received from it. Unlike _bstr_t, this class allocates no memory besides
// the BSTR.
class CBstr {
public:
    CBstr() noexcept = default;
    explicit CBstr(const wchar_t* string) : text{SysAllocString(string)} {
        if (text == nullptr)
            throw std::bad_alloc{};
    }
    CBstr(const CBstr&) = delete;
    CBstr& operator=(const CBstr&) = delete;
    ~CBstr() { SysFreeString(text); }

    // Returns the address for an output parameter of a call. The BSTR must still be null.
    BSTR* Receive() noexcept { return &text; }
    BSTR AsBstr() const noexcept { return text; }
    const wchar_t* Text() const noexcept { return text != nullptr ? text : L""; }
    std::wstring_view View() const noexcept { return {text, SysStringLen(text)}; }

private:
    BSTR text = nullptr;
};

}  // namespace ZOTDam
