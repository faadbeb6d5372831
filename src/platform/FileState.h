#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace ZOTDam {

// The size and times of a file, used to detect that its content is unchanged. The times are in units of 100
// nanoseconds since 1 January 1601 (UTC).
struct FileState {
    std::uint64_t size = 0;
    std::uint64_t creationTime = 0;
    std::uint64_t writeTime = 0;
    // The time of the last change of any kind. Every write and every replacement changes it, and programs do
    // not normally set it. It is 0 when the file system does not store it.
    std::uint64_t changeTime = 0;

    bool operator==(const FileState&) const = default;
};

// Returns the time of the system clock in the same units.
std::uint64_t CurrentTime() noexcept;

// Returns the state of a file, or zeros when the file does not exist or its state is not available. The
// overload for a path does not open the file.
FileState StateOf(const std::wstring& path) noexcept;
FileState StateOf(HANDLE file) noexcept;

// Returns whether an equal state later means that the content is still the one that was read at `timeOfRead`.
// Returns false for a file that was changed shortly before: another write within the resolution of the times
// may not change them. Also returns false for a time in the future, which is unreliable, and for a file
// without a change time.
bool IdentifiesContent(const FileState& state, std::uint64_t timeOfRead) noexcept;

}  // namespace ZOTDam
