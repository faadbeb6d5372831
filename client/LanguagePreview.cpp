#include "LanguagePreview.h"

#include <system_error>

#include "DataFiles.h"
#include "Error.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

namespace {

std::filesystem::path RequireStringTable(const std::string& language) {
    std::filesystem::path table = StringTableFor(language);
    if (!exists(table))
        throw Error{
            ErrorKind::MissingFile,
            "There is no string table for " + language + ": the file " + Utf8(table) + " does not exist.",
            table};
    return table;
}

}  // namespace

LanguagePreview::LanguagePreview(const std::string& language) {
    const std::filesystem::path table = RequireStringTable(language);
    const std::filesystem::path defaults = PathOf(Defaults);
    redirection.emplace(L"ProgramFiles", programFiles.Path());
    const std::filesystem::path copy = PathOf(Defaults);
    create_directories(copy.parent_path());
    std::error_code error;
    copy_file(defaults, copy, error);  // if it fails, loading the catalogue reports the error
    if (!copy_file(table, copy.parent_path() / StringTableLocation.fileName, error))
        throw Error{ErrorKind::UnreadableFile, "The string table " + Utf8(table) + " cannot be read.", table};
}

}  // namespace ZOTDam::Client
