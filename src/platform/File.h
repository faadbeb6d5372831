#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace ZOTDam {

// An open file, closed at the end of its scope.
class CFile {
public:
    explicit CFile(HANDLE opened) noexcept : handle{opened} {}
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;
    ~CFile() {
        if (IsOpen())
            CloseHandle(handle);
    }

    bool IsOpen() const noexcept { return handle != INVALID_HANDLE_VALUE; }

    // Reads the file from its beginning to its end.
    bool Read(std::string& content) const;

    // Makes this all that the file holds, on the disk itself. False where the disk did not take all of it.
    bool Write(std::string_view content) const noexcept;

    // Brings to the disk what the system still holds of the file.
    bool Flush() const noexcept { return FlushFileBuffers(handle) != FALSE; }

private:
    HANDLE handle;
};

}  // namespace ZOTDam
