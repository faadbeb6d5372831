#include "TemporaryFolder.h"

#include <windows.h>

#include <string>
#include <system_error>

namespace ZOTDam::Client {

namespace {

std::wstring NextName() {
    static int count = 0;
    return L"zotdamctl-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++count);
}

}  // namespace

TemporaryFolder::TemporaryFolder() : path{std::filesystem::temp_directory_path() / NextName()} {
    remove_all(path);  // may be left by a killed process with the same id
    create_directory(path);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    remove_all(path, ignored);
}

}  // namespace ZOTDam::Client
