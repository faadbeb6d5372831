#pragma once

#include <windows.h>

namespace ZOTDam {

// Marks a data file as busy, for all processes of the session, while one of them reads or writes it. Nobody
// waits for the marker: whoever finds it leaves the file alone.
class CBusyMarker {
public:
    explicit CBusyMarker(const wchar_t* name) noexcept;
    CBusyMarker(const CBusyMarker&) = delete;
    CBusyMarker& operator=(const CBusyMarker&) = delete;
    ~CBusyMarker();

    // Whether the file is free for us. It is, too, where no marker could be made although nobody has it:
    // better to go on without one than never to read or save.
    bool IsOurs() const noexcept { return ours; }

private:
    HANDLE mutex = nullptr;
    bool ours = false;
};

}  // namespace ZOTDam
