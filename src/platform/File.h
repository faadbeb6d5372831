#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace ZOTDam {

// An open file, closed by the destructor.
class CFile {
public:
    explicit CFile(HANDLE handle) noexcept : handle{handle} {}
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;
    ~CFile() {
        if (IsOpen())
            CloseHandle(handle);
    }

    bool IsOpen() const noexcept { return handle != INVALID_HANDLE_VALUE; }

    // Reads the complete file.
    bool Read(std::string& content) const;

    // Replaces the file's content and flushes it to disk. Returns false when not everything could be written.
    bool Write(std::string_view content) const noexcept;

    // Flushes the data that the system has buffered for the file to disk.
    bool Flush() const noexcept { return FlushFileBuffers(handle) != FALSE; }

private:
    HANDLE handle;
};

}  // namespace ZOTDam
