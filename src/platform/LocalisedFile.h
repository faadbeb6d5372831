#pragma once

#include <string>

namespace ZOTDam {

// Returns the path of the file's copy for the user's language, or the file's own path when no copy exists.
// Copies for parent languages or for the system's preferred languages are ignored. An empty path stays empty.
std::wstring LocalisedFile(const std::wstring& neutralFile);

}  // namespace ZOTDam
