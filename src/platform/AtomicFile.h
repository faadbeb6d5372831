// Writes and copies of files that survive the end of the process and of the machine at any moment.
#pragma once

#include <string>
#include <string_view>

namespace ZOTDam {

// Atomically replaces the file's content and keeps the file's attributes and access rights. Writes a
// temporary file in the same folder, flushes it and renames it over the file. Waits at most 100 ms for other
// programs that have the file open; after that it writes the file in place, protected by a redo file. Without
// the right to create a temporary file it writes the file in place without protection. Returns false, with
// the old content in place, when the write fails or the file is read-only.
bool ReplaceAtomically(const std::wstring& path, std::string_view content);

// Returns whether the file has a redo file. Its content is then incomplete, unless no process has written to
// it yet.
bool HasRedoFile(const std::wstring& path);

// Completes a write in place whose process has ended. Has no effect while the process is alive, and when
// another program prevents the write; the redo file then remains.
void CompleteInterruptedWrite(const std::wstring& path);

// Copies a file to the other path, replacing any file there, and flushes the copy to disk.
bool CopyAndFlush(const std::wstring& source, const std::wstring& target) noexcept;

}  // namespace ZOTDam
