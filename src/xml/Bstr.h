#pragma once

#include <oleauto.h>

#include <string_view>

namespace ZOTDam {

// A BSTR that a call hands out. (_bstr_t would allocate a block of its own beside each.)
class CBstr {
public:
    CBstr() noexcept = default;
    CBstr(const CBstr&) = delete;
    CBstr& operator=(const CBstr&) = delete;
    ~CBstr() { SysFreeString(text); }

    BSTR* Receive() noexcept { return &text; }
    const wchar_t* Text() const noexcept { return text != nullptr ? text : L""; }
    std::wstring_view View() const noexcept { return {text, SysStringLen(text)}; }

private:
    BSTR text = nullptr;
};

}  // namespace ZOTDam
