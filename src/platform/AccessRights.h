#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace ZOTDam {

// Who may do what with a file, so that another file can be made with the same rights.
class CAccessRights {
public:
    explicit CAccessRights(const std::wstring& path);

    // Null where there is no such file, or it does not tell: a new file then has the rights that its folder
    // gives. Valid as long as this object.
    SECURITY_ATTRIBUTES* ForNewFile() noexcept;

private:
    std::vector<char> descriptor;
    SECURITY_ATTRIBUTES attributes = {};
};

}  // namespace ZOTDam
