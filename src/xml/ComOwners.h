// Owning pointers to COM objects and strings, for code that reports failures without _com_error: the client
// and the tests. The library itself uses Com.h and Bstr.h.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <memory>

namespace ZOTDam {

struct ReleaseInterface {
    void operator()(IUnknown* object) const noexcept { object->Release(); }
};

template <class Interface>
using OwnedInterface = std::unique_ptr<Interface, ReleaseInterface>;

struct FreeBstr {
    void operator()(BSTR string) const noexcept { SysFreeString(string); }
};

using OwnedBstr = std::unique_ptr<OLECHAR, FreeBstr>;

}  // namespace ZOTDam
