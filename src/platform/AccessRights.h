#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace ZOTDam {

// The access control list (DACL) of a file, for creating another file with the same access rights.
class CAccessRights {
public:
    explicit CAccessRights(const std::wstring& path);

    // Returns the rights as an argument of CreateFileW. Returns null when the file does not exist or its
    // rights cannot be read; a new file then inherits the rights of its folder. The pointer is valid for the
    // lifetime of this object.
    SECURITY_ATTRIBUTES* ForNewFile() noexcept;

private:
    std::vector<char> descriptor;
    SECURITY_ATTRIBUTES attributes = {};
};

}  // namespace ZOTDam
