// Functions that write and copy files and protect their content against power failures and the end of the
// process.
#pragma once

#include <string>
#include <string_view>

namespace ZOTDam {

// Atomically replaces the file's content and keeps the file's attributes and access rights. Writes a
// temporary file in the same folder, flushes it and renames it over the file. Waits at most 100 ms for other
// programs that have the file open. After that, writes the file in place and keeps the new content in a redo
// file until the write is complete. Without the right to create a temporary file, writes the file in place
// without protection. Returns false when the file is read-only or a link, or the write fails. The old content
// is then kept or restored. If it cannot be restored, the redo file remains.
bool ReplaceAtomically(const std::wstring& path, std::string_view content);

// Returns whether the file has a redo file that is not a link. The content of the file may then be
// incomplete.
bool HasRedoFile(const std::wstring& path);

// Completes a write in place with the redo file of a process that has ended. Has no effect while that process
// is alive. When another program prevents the write, the redo file remains. Returns whether the file now has
// the complete content.
bool CompleteInterruptedWrite(const std::wstring& path);

// Copies a file to another path and flushes the copy to disk. Replaces a file that exists there, but not a
// link.
bool CopyAndFlush(const std::wstring& source, const std::wstring& target) noexcept;

}  // namespace ZOTDam
