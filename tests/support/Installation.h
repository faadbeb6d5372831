// A suite installation in its own folders. %ProgramFiles% and %ProgramData% of this process point to them.
// The folders are created in the temporary folder, or in the folder that ZOTDAM_TEST_FOLDER names.
#pragma once

#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace ZOTDam::Test {

class Installation {
public:
    Installation() {
        // A folder of this name may exist already, created by another process.
        do
            root = NextRoot();
        while (!std::filesystem::create_directory(root));
        std::filesystem::create_directories(BaseFile().parent_path());
        std::filesystem::create_directories(UserFile().parent_path());
        SetEnvironmentVariableW(L"ProgramFiles", ProgramFiles().c_str());
        SetEnvironmentVariableW(L"ProgramData", ProgramData().c_str());
    }
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;
    ~Installation() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }

    std::filesystem::path ProgramFiles() const { return root / L"Program Files"; }
    std::filesystem::path ProgramData() const { return root / L"ProgramData"; }
    std::filesystem::path DefaultsFile() const { return Folder() / L"ZOTDefault.xml"; }
    std::filesystem::path BaseFile() const { return Folder() / L"data" / L"ZOTBase.xml"; }
    std::filesystem::path StringTableFile() const { return Folder() / L"StringTable.xml"; }
    std::filesystem::path UserFile() const {
        return ProgramData() / L"Orlo Corporation" / L"QUEN Power Management" / L"ZOTPowercfg.xml";
    }

private:
    static std::filesystem::path NextRoot() {
        static int count = 0;
        const char* const folder = std::getenv("ZOTDAM_TEST_FOLDER");
        return (folder != nullptr ? std::filesystem::path{folder} : std::filesystem::temp_directory_path()) /
               (L"zotdam-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++count));
    }

    std::filesystem::path Folder() const { return ProgramFiles() / L"Orlo" / L"QUEN Power Management"; }

    std::filesystem::path root;
};

// The files that the library creates next to a data file: the temporary file with the new content, and the
// copy of a file that was not well-formed.
inline std::filesystem::path SiblingOf(std::filesystem::path file) {
    return file.replace_extension(L".new");
}

inline std::filesystem::path UnreadableCopyOf(std::filesystem::path file) {
    return file += L".unreadable";
}

inline void WriteFile(const std::filesystem::path& file, std::string_view content) {
    std::ofstream{file, std::ios::binary | std::ios::trunc}.write(
        content.data(), static_cast<std::streamsize>(content.size()));
}

inline std::string ReadFile(const std::filesystem::path& file) {
    std::ifstream stream{file, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, std::istreambuf_iterator<char>{}};
}

}  // namespace ZOTDam::Test
