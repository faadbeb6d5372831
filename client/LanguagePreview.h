#pragma once

#include <filesystem>
#include <string>

namespace ZOTDam::Client {

// Shows the catalogue as the users of another language see it: for its scope, and only before the library is
// loaded, this process works with a copy of the installation whose one string table is that of the language.
class LanguagePreview {
public:
    // Throws UsageError for what is no name of a language, and Error where it has no string table.
    explicit LanguagePreview(const std::string& language);

private:
    class TemporaryFolder {
    public:
        TemporaryFolder();
        TemporaryFolder(const TemporaryFolder&) = delete;
        TemporaryFolder& operator=(const TemporaryFolder&) = delete;
        ~TemporaryFolder();

        const std::filesystem::path& Path() const noexcept { return path; }

    private:
        std::filesystem::path path;
    };

    TemporaryFolder programFiles;
};

}  // namespace ZOTDam::Client
