#pragma once

namespace ZOTDam {

// The common settings: named texts, of the user, of the defaults and of the base catalogue. It holds no state
// of its own. Buffers have TextCapacity units; every failure means false, and leaves them untouched.
class CCommonSettingStore {
public:
    // One source each. A text that does not fit the buffer counts as missing; an empty one is there.
    bool ReadFromUserSettings(const wchar_t* name, wchar_t* value) const noexcept;
    bool ReadFromDefaults(const wchar_t* name, wchar_t* value) const noexcept;
    bool ReadFromBase(const wchar_t* name, wchar_t* value) const noexcept;

    // Into the user settings as they are on disk, which are saved.
    bool Write(const wchar_t* name, const wchar_t* value) const noexcept;

    // Makes the settings of the base catalogue the only ones of the defaults, which are saved.
    bool Initialise() const noexcept;
};

}  // namespace ZOTDam
