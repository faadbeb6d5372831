#pragma once

namespace ZOTDam {

// The common settings of the three data files. It holds no state, and finds and stores nothing yet.
class CCommonSettingStore {
public:
    bool Read(const wchar_t*, wchar_t*) const noexcept { return false; }
    bool Write(const wchar_t*, const wchar_t*) const noexcept { return false; }
    bool Initialise() const noexcept { return false; }
};

}  // namespace ZOTDam
