// A file that another program has open.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>

namespace ZOTDam::Test {

class OpenFile {
public:
    OpenFile(const std::filesystem::path& path, DWORD access, DWORD shared)
        : file{CreateFileW(path.c_str(), access, shared, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                           nullptr)} {
        EXPECT_NE(file, INVALID_HANDLE_VALUE);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile() { CloseHandle(file); }

    void Lock() const { EXPECT_TRUE(LockFile(file, 0, 0, 1000, 0)); }

private:
    HANDLE file;
};

}  // namespace ZOTDam::Test
