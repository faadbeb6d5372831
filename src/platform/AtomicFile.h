// Writes and copies of files that survive a power failure at any moment.
#pragma once

#include <string>
#include <string_view>

namespace ZOTDam {

// Atomically replaces the file's content and keeps the file's attributes and access rights. A reader always
// gets either the complete old content or the complete new content, even after the process or the machine has
// failed. If a temporary file cannot replace the file, writes the file in place, which is not atomic. Returns
// false, with the old content in place, when the write fails or the file is read-only.
bool ReplaceAtomically(const std::wstring& path, std::string_view content);

// Copies a file to the other path, replacing any file there, and flushes the copy to disk.
bool CopyAndFlush(const std::wstring& source, const std::wstring& target) noexcept;

}  // namespace ZOTDam
