#pragma once

#include <string>

namespace ZOTDam {

// Whether an XML file declares entities that would keep a DOM busy for minutes: parameter entities, on whose
// growth some parsers never end, or texts that are so long and so often used that to put them together takes
// as long. MSXML 6 refuses every document type, other DOMs do not. Where no file can be read there is none.
bool IsEntityBomb(const std::wstring& path);

}  // namespace ZOTDam
