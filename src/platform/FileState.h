#pragma once

#include <cstdint>
#include <string>

namespace ZOTDam {

// What the folder says of a file. It changes with the file's content.
struct FileState {
    std::uint64_t writeTime = 0;  // in 100 ns since 1601, UTC
    std::uint64_t size = 0;       // in bytes

    bool operator==(const FileState&) const = default;
};

// All zero when there is no such file.
FileState StateOf(const std::wstring& path) noexcept;

}  // namespace ZOTDam
