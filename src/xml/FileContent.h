#pragma once

#include <windows.h>

#include <comutil.h>
#include <oleauto.h>

#include <optional>
#include <string_view>

#include "platform/File.h"

namespace ZOTDam {

// The bytes of a file as the array that a DOM can load. A DOM that receives a path treats it as a URL, opens
// the file with its own share mode, and takes several times as long.
class CFileContent {
public:
    explicit CFileContent(ULONG size);

    char* Data() noexcept { return static_cast<char*>(V_ARRAY(&array)->pvData); }
    std::string_view View() const noexcept;

    // Returns the argument for the DOM's load: the array, or a stream of its bytes if they are not in UTF-8.
    // Some DOMs read an array as UTF-8, whatever the file declares.
    const VARIANT& AsSource();

private:
    _variant_t array;
    _variant_t stream;
};

// Returns the content of an open file. Returns std::nullopt for a device, a file larger than MaxFileSize, or
// a file that cannot be read to its end.
std::optional<CFileContent> ReadContent(const CFile& file);

}  // namespace ZOTDam
