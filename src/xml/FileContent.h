#pragma once

#include <oleauto.h>

#include <comutil.h>
#include <optional>
#include <string_view>

#include "platform/File.h"

namespace ZOTDam {

// The bytes of a file as the array that a DOM loads. A DOM treats a path as a URL, opens the file with share
// modes of its own, and takes several times as long to load it.
class CFileContent {
public:
    explicit CFileContent(ULONG size);

    char* Data() noexcept { return static_cast<char*>(V_ARRAY(&array)->pvData); }
    std::string_view View() const noexcept;
    const VARIANT& AsVariant() const noexcept { return array; }

private:
    _variant_t array;
};

// Returns nothing when the file cannot be read to its end, is too large, or is a device.
std::optional<CFileContent> ReadContent(const CFile& file);

}  // namespace ZOTDam
