#pragma once

#include <string>

namespace ZOTDam {

// The copy of a file for the user's language, or the file itself where there is no copy. Copies for parent
// languages or for those that the system prefers do not count. No path stays none.
std::wstring LocalisedFile(const std::wstring& neutralFile);

}  // namespace ZOTDam
