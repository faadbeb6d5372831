#include "xml/BusyMarker.h"

namespace ZOTDam {

namespace {

// Access is denied to a marker that another user's process has made.
bool TellsOfAnotherHolder(DWORD error) noexcept {
    return error == ERROR_ALREADY_EXISTS || error == ERROR_ACCESS_DENIED;
}

bool IsHeldByAnother(const wchar_t* name) noexcept {
    const HANDLE held = OpenMutexW(SYNCHRONIZE | MUTEX_MODIFY_STATE, FALSE, name);
    if (held == nullptr)
        return TellsOfAnotherHolder(GetLastError());
    CloseHandle(held);
    return true;
}

}  // namespace

CBusyMarker::CBusyMarker(const wchar_t* name) noexcept {
    if (IsHeldByAnother(name))
        return;
    SetLastError(ERROR_SUCCESS);
    mutex = CreateMutexW(nullptr, TRUE, name);
    ours = !TellsOfAnotherHolder(GetLastError());
}

CBusyMarker::~CBusyMarker() {
    // The last handle takes the marker with it, so ownership needs no release of its own.
    if (mutex != nullptr)
        CloseHandle(mutex);
}

}  // namespace ZOTDam
