#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace ZOTDam {

// Larger files are not read; the library's own have at most a few megabytes.
inline constexpr LONGLONG MaxFileSize = 64 << 20;

// An open file, closed by the destructor.
class CFile {
public:
    explicit CFile(HANDLE handle) noexcept : handle{handle} {}
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;
    ~CFile() { Close(); }

    bool IsOpen() const noexcept { return handle != INVALID_HANDLE_VALUE; }
    HANDLE Handle() const noexcept { return handle; }
    void Open(HANDLE opened) noexcept;
    void Close() noexcept;

    // Returns false for a device and for a file that is too large to be read.
    bool GetSize(DWORD& size) const noexcept;

    // Reads the complete file, which has this size. Returns false when it has become shorter.
    bool Read(void* content, DWORD size) const noexcept;
    bool Read(std::string& content) const;

    // Replaces the file's content and flushes it to disk. Returns false when not everything could be written.
    bool Write(std::string_view content) const noexcept;

    // Removes the file's content and flushes this change to disk.
    bool Truncate() const noexcept;

    // Flushes the data that the system has buffered for the file to disk.
    bool Flush() const noexcept { return FlushFileBuffers(handle) != FALSE; }

    // Deletes the file and closes it. The file must have been opened with DELETE access.
    void Delete() noexcept;

private:
    HANDLE handle;
};

// Opens an existing file to read it. Other programs can read, rename and delete the file while it is open,
// but not write it. A file that another program is writing is not opened.
HANDLE OpenForReading(const std::wstring& path) noexcept;

// Opens an existing file, whose content other programs can read but not change while it is open.
HANDLE OpenForWriting(const std::wstring& path) noexcept;

}  // namespace ZOTDam
