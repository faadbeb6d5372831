// Files that the battery may fail at any moment.
#pragma once

#include <string>
#include <string_view>

namespace ZOTDam {

// Makes the content all that the file holds. Whoever reads the file at any moment, even after the process or
// the machine has died, finds the old content or the new one, whole; a write that fails leaves the old one.
// The attributes of the file and its access rights stay.
bool WriteDurably(const std::wstring& path, std::string_view content);

// Copies a file over what may stand at the other path.
bool CopyDurably(const std::wstring& source, const std::wstring& target) noexcept;

}  // namespace ZOTDam
