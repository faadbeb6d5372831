#pragma once

#include <windows.h>

namespace ZOTDam {

// A named mutex that all processes of a logon session use as the busy flag of a data file. The flag is
// non-blocking: a process that finds the file busy does not access the file.
class CBusyMarker {
public:
    explicit CBusyMarker(const wchar_t* name) noexcept;
    CBusyMarker(const CBusyMarker&) = delete;
    CBusyMarker& operator=(const CBusyMarker&) = delete;
    ~CBusyMarker();

    // Returns whether this process may access the file. Usually, the process then holds the mutex. It may
    // also access the file when the mutex cannot be created and no other process is known to hold it: reading
    // and saving without the marker is better than not at all.
    bool IsAcquired() const noexcept { return acquired; }

private:
    HANDLE mutex = nullptr;
    bool acquired = false;
};

}  // namespace ZOTDam
