#pragma once

#include <optional>
#include <string>

#include "DataFiles.h"
#include "TemporaryFolder.h"

namespace ZOTDam::Client {

// Shows the catalogue in another language. For its scope, it redirects this process to a copy of the
// installation with the string table of that language. Must be created before the library is loaded.
class LanguagePreview {
public:
    // Throws UsageError if the argument is not a valid language name, and Error if there is no string table
    // for the language.
    explicit LanguagePreview(const std::string& language);

private:
    TemporaryFolder programFiles;
    std::optional<FolderRedirection> redirection;
};

}  // namespace ZOTDam::Client
