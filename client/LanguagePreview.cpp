#include "LanguagePreview.h"

#include <windows.h>

#include <system_error>

#include "DataFiles.h"
#include "Error.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

namespace {

std::filesystem::path RequireStringTable(const std::string& language) {
    std::filesystem::path table = StringTableFor(language);
    if (!exists(table))
        throw Error{"There is no string table for " + language + ": the file " + Utf8(table) +
                    " does not exist."};
    return table;
}

}  // namespace

LanguagePreview::TemporaryFolder::TemporaryFolder()
    : path{std::filesystem::temp_directory_path() /
           (L"zotdamctl-" + std::to_wstring(GetCurrentProcessId()))} {
    remove_all(path);  // may be left by a killed process with the same id
    create_directory(path);
}

LanguagePreview::TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    remove_all(path, ignored);
}

LanguagePreview::LanguagePreview(const std::string& language) {
    const std::filesystem::path table = RequireStringTable(language);
    const std::filesystem::path defaults = PathOf(Defaults);
    RedirectProgramFiles(programFiles.Path());
    const std::filesystem::path copy = PathOf(Defaults);
    create_directories(copy.parent_path());
    std::error_code error;
    copy_file(defaults, copy, error);  // if it fails, loading the catalogue reports the error
    if (!copy_file(table, copy.parent_path() / StringTableLocation.fileName, error))
        throw Error{"The string table " + Utf8(table) + " cannot be read."};
}

}  // namespace ZOTDam::Client
