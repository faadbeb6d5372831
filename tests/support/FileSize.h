// Files of a given size.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>

namespace ZOTDam::Test {

// The size of the largest file that the library reads.
inline constexpr LONGLONG MaximumSize = 64 << 20;

// Extends a file with zeros, which most file systems do not store.
inline void ExtendTo(LONGLONG size, const std::filesystem::path& path) {
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    LARGE_INTEGER position;
    position.QuadPart = size;
    EXPECT_TRUE(SetFilePointerEx(file, position, nullptr, FILE_BEGIN));
    EXPECT_TRUE(SetEndOfFile(file));
    CloseHandle(file);
}

}  // namespace ZOTDam::Test
