#include "platform/BusyMarker.h"

namespace ZOTDam {

namespace {

// Opening or creating a mutex of another user's process fails with ERROR_ACCESS_DENIED.
bool MeansAnotherHolder(DWORD error) noexcept {
    return error == ERROR_ALREADY_EXISTS || error == ERROR_ACCESS_DENIED;
}

bool IsHeldByAnother(const wchar_t* name) noexcept {
    const HANDLE held = OpenMutexW(SYNCHRONIZE | MUTEX_MODIFY_STATE, FALSE, name);
    if (held == nullptr)
        return MeansAnotherHolder(GetLastError());
    CloseHandle(held);
    return true;
}

}  // namespace

CBusyMarker::CBusyMarker(const wchar_t* name) noexcept {
    if (IsHeldByAnother(name))
        return;
    SetLastError(ERROR_SUCCESS);
    mutex = CreateMutexW(nullptr, TRUE, name);
    acquired = !MeansAnotherHolder(GetLastError());
}

CBusyMarker::~CBusyMarker() {
    // Closing the last handle destroys the mutex, so ownership is not released separately.
    if (mutex != nullptr)
        CloseHandle(mutex);
}

}  // namespace ZOTDam
