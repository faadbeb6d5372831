#pragma once

#include <windows.h>

namespace ZOTDam {

// A named mutex used as a busy flag for a data file, for all processes of the session. The flag is
// non-blocking: a process that finds the file busy does not access it.
class CBusyMarker {
public:
    explicit CBusyMarker(const wchar_t* name) noexcept;
    CBusyMarker(const CBusyMarker&) = delete;
    CBusyMarker& operator=(const CBusyMarker&) = delete;
    ~CBusyMarker();

    // Returns true when this process may use the file. This is also the case when the mutex could not be
    // created although no other process holds it: working without the marker is better than never reading or
    // saving.
    bool IsAcquired() const noexcept { return acquired; }

private:
    HANDLE mutex = nullptr;
    bool acquired = false;
};

}  // namespace ZOTDam
