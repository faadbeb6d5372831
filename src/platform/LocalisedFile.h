#pragma once

#include <string>

namespace ZOTDam {

// Returns the path of the localised copy of a file for a language such as "de-DE". Returns an empty path when
// no such copy exists. The system's lookup finds "de-DE\File.xml". On a system without a lookup,
// "de-DE\File.xml.mui" is used before "de-DE\File.xml".
std::wstring FindLocalisedCopy(const std::wstring& neutralFile, std::wstring language);

// Returns the path of the localised copy of a file for the user's language. Returns the path of the
// language-neutral file when no such copy exists. Copies for parent languages or for the system's preferred
// languages are ignored. Returns an empty path unchanged.
std::wstring LocalisedFile(const std::wstring& neutralFile);

}  // namespace ZOTDam
