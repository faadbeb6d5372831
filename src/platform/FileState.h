#pragma once

#include <cstdint>
#include <string>

namespace ZOTDam {

// The last-write time and size of a file, used to detect changes of its content.
struct FileState {
    std::uint64_t writeTime = 0;  // in 100 ns since 1601, UTC
    std::uint64_t size = 0;       // in bytes

    bool operator==(const FileState&) const = default;
};

// Returns zeros when the file does not exist.
FileState StateOf(const std::wstring& path) noexcept;

}  // namespace ZOTDam
