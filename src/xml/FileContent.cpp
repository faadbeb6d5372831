#include "xml/FileContent.h"

#include <shlwapi.h>

#include <new>

#include "xml/Prolog.h"

namespace ZOTDam {

CFileContent::CFileContent(ULONG size) {
    V_ARRAY(&array) = SafeArrayCreateVector(VT_UI1, 0, size);
    if (V_ARRAY(&array) == nullptr)
        throw std::bad_alloc{};
    V_VT(&array) = VT_ARRAY | VT_UI1;
}

std::string_view CFileContent::View() const noexcept {
    return {static_cast<const char*>(V_ARRAY(&array)->pvData), V_ARRAY(&array)->rgsabound[0].cElements};
}

const VARIANT& CFileContent::AsSource() {
    const std::string_view bytes = View();
    if (IsUtf8(bytes))
        return array;
    V_UNKNOWN(&stream) =
        SHCreateMemStream(reinterpret_cast<const BYTE*>(bytes.data()), static_cast<UINT>(bytes.size()));
    if (V_UNKNOWN(&stream) == nullptr)
        throw std::bad_alloc{};
    V_VT(&stream) = VT_UNKNOWN;
    return stream;
}

std::optional<CFileContent> ReadContent(const CFile& file) {
    DWORD size = 0;
    if (!file.GetSize(size))
        return {};
    std::optional<CFileContent> content{size};
    if (!file.Read(content->Data(), size))
        content.reset();
    return content;
}

}  // namespace ZOTDam
