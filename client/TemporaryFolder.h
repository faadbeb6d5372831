#pragma once

#include <filesystem>

namespace ZOTDam::Client {

// An empty folder in the user's temporary folder. The destructor deletes it with its content.
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

}  // namespace ZOTDam::Client
