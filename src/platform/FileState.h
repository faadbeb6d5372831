#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace ZOTDam {

// The size and times of a file, used to detect that its content is unchanged. The times are in 100 ns since
// 1601, UTC.
struct FileState {
    std::uint64_t size = 0;
    std::uint64_t creationTime = 0;
    std::uint64_t writeTime = 0;
    // Unlike the write time, programs cannot set it. Every write and every replacement changes it. It is 0
    // when the file system does not store it.
    std::uint64_t changeTime = 0;

    bool operator==(const FileState&) const = default;
};

std::uint64_t CurrentTime() noexcept;

// Returns an unknown state (zeros) when the file does not exist or the system does not report its state. The
// query by path does not open the file.
FileState StateOf(const std::wstring& path) noexcept;
FileState StateOf(HANDLE file) noexcept;

// Returns whether a content that was read at this time can still be recognised by the file's state. A file
// that was written shortly before may be written again within the resolution of its times, which does not
// change them. A time in the future is unreliable.
bool IdentifiesContent(const FileState& state, std::uint64_t timeOfRead) noexcept;

}  // namespace ZOTDam
