#pragma once

#include <string>

namespace ZOTDam {

// Returns whether an XML file declares entities that would keep a DOM busy for minutes: parameter entities,
// whose expansion never ends in some parsers, or entities so long and so frequent that expanding them takes
// minutes. MSXML 6 rejects every document type, other DOMs do not. Returns false when the file cannot be
// read.
bool IsEntityBomb(const std::wstring& path);

}  // namespace ZOTDam
