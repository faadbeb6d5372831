#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace ZOTDam {

// The maximum size of a file that is read. The library's own files have at most a few megabytes.
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

    // Closes the current file and takes ownership of a handle that the caller has opened.
    void Open(HANDLE opened) noexcept;
    void Close() noexcept;

    // Returns false for a device and for a file larger than MaxFileSize.
    bool GetSize(DWORD& size) const noexcept;

    // Reads from the start of the file: `size` bytes, or the complete file. Returns false when the file is
    // shorter than `size` or cannot be read.
    bool Read(void* content, DWORD size) const noexcept;
    bool Read(std::string& content) const;

    // Replaces the file's content and flushes it to disk. Returns false when not everything could be written.
    bool Write(std::string_view content) const noexcept;

    // Removes the file's content and flushes this change to disk.
    bool Truncate() const noexcept;

    // Flushes the system's buffers for the file to disk.
    bool Flush() const noexcept { return FlushFileBuffers(handle) != FALSE; }

    // Deletes the file and closes it. The file must have been opened with DELETE access.
    void Delete() noexcept;

private:
    HANDLE handle;
};

// A flag of CreateFileW for each file that is opened to write, rename or delete it. It opens a link at the
// path, not the file that the link names, which can be a file of another user.
inline constexpr DWORD DoNotFollowLinks = FILE_FLAG_OPEN_REPARSE_POINT;

// Returns whether the path names an existing file, not a folder.
bool IsFile(const std::wstring& path) noexcept;

// Returns true as IsFile does, and also when the system does not report whether the file exists.
bool MayBeFile(const std::wstring& path) noexcept;

// Opens an existing file for reading. While it is open, other programs can read, rename and delete the file,
// but not write to it. Returns INVALID_HANDLE_VALUE when the file cannot be opened, for example because
// another program has it open for writing.
HANDLE OpenForReading(const std::wstring& path) noexcept;

// Opens an existing file for reading and writing. While it is open, other programs can only read the file.
// Returns INVALID_HANDLE_VALUE when the file cannot be opened or is a link.
HANDLE OpenForWriting(const std::wstring& path) noexcept;

// Returns an opened file. Closes it and returns INVALID_HANDLE_VALUE when it is a link.
HANDLE RejectLink(HANDLE file) noexcept;

// Returns whether the attributes are those of an existing link, such as a symbolic link or a junction.
constexpr bool IsLink(DWORD attributes) noexcept {
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

}  // namespace ZOTDam
