#pragma once

namespace ZOTDam {

// The common settings: named strings in the user settings, the defaults and the base catalogue. The class has
// no state. Buffers have TextCapacity UTF-16 code units. On failure, every function returns false and leaves
// the buffer unchanged.
class CCommonSettingStore {
public:
    // Reads a setting from one of the three files. A string that does not fit into the buffer counts as
    // missing; an empty string is valid. Compatibility: C51.
    bool ReadFromUserSettings(const wchar_t* name, wchar_t* value) const noexcept;
    bool ReadFromDefaults(const wchar_t* name, wchar_t* value) const noexcept;
    bool ReadFromBase(const wchar_t* name, wchar_t* value) const noexcept;

    // Reads the user settings from disk again, stores a setting in them and saves them.
    bool Write(const wchar_t* name, const wchar_t* value) const noexcept;

    // Replaces the common settings of the defaults with those of the base catalogue and saves the defaults.
    bool Initialise() const noexcept;
};

}  // namespace ZOTDam
