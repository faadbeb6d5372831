// A suite installation in its own folders. %ProgramFiles% and %ProgramData% of this process point to them.
// The folders are created in the temporary folder, or in the folder that ZOTDAM_TEST_FOLDER names. Creating
// and deleting them takes longer than most tests, so a process uses them again after deleting their files.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace ZOTDam::Test {

class Installation {
public:
    Installation() {
        if (unused.roots.empty())
            CreateFolders();
        else
            TakeUnusedFolders();
        SetEnvironmentVariableW(L"ProgramFiles", ProgramFiles().c_str());
        SetEnvironmentVariableW(L"ProgramData", ProgramData().c_str());
    }
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;
    ~Installation() {
        if (HasOnlyItsFolders())
            unused.roots.push_back(root);
        else
            RemoveAll(root);
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
    struct Roots {
        ~Roots() { std::ranges::for_each(roots, RemoveAll); }

        std::vector<std::filesystem::path> roots;
    };

    void TakeUnusedFolders() {
        root = unused.roots.back();
        unused.roots.pop_back();
    }

    void CreateFolders() {
        // A folder of this name may exist already, created by another process.
        do
            root = NextName();
        while (!std::filesystem::create_directory(root));
        for (const std::filesystem::path& file : {BaseFile(), UserFile()})
            std::filesystem::create_directories(file.parent_path());
    }

    static std::filesystem::path NextName() {
        static int count = 0;
        const char* const folder = std::getenv("ZOTDAM_TEST_FOLDER");
        return (folder != nullptr ? std::filesystem::path{folder} : std::filesystem::temp_directory_path()) /
               (L"zotdam-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++count));
    }

    // Deletes all files. Returns whether exactly the folders of a new installation remain.
    bool HasOnlyItsFolders() const {
        std::set<std::filesystem::path> missing;
        for (const std::filesystem::path& file : {BaseFile(), UserFile()})
            for (auto folder = file.parent_path(); folder != root; folder = folder.parent_path())
                missing.insert(folder);
        return DeleteFiles(root, missing) && missing.empty();
    }

    // Deletes the files of a folder and of the expected folders in it, and removes these from the set.
    // Returns false if it finds another folder, or a file that cannot be deleted.
    static bool DeleteFiles(const std::filesystem::path& folder, std::set<std::filesystem::path>& expected) {
        WIN32_FIND_DATAW entry;
        const HANDLE search = FindFirstFileW((folder / L"*").c_str(), &entry);
        bool succeeds = search != INVALID_HANDLE_VALUE;
        for (bool hasEntry = succeeds; succeeds && hasEntry; hasEntry = FindNextFileW(search, &entry) != 0) {
            const std::wstring_view name = entry.cFileName;
            const std::filesystem::path path = folder / name;
            if (name == L"." || name == L"..")
                continue;
            if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
                succeeds = DeleteFileW(path.c_str()) != 0;
            else
                succeeds = entry.dwFileAttributes == FILE_ATTRIBUTE_DIRECTORY && expected.erase(path) == 1 &&
                           DeleteFiles(path, expected);
        }
        FindClose(search);
        return succeeds;
    }

    static void RemoveAll(const std::filesystem::path& folder) {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    std::filesystem::path Folder() const { return ProgramFiles() / L"Orlo" / L"QUEN Power Management"; }

    static inline Roots unused;

    std::filesystem::path root;
};

// The files that the library creates next to a data file: the temporary file with the new content, the redo
// file while it writes the file in place, and the copy of a file that was not well-formed.
inline std::filesystem::path TemporaryFileOf(std::filesystem::path file) {
    return file.replace_extension(L".new");
}

inline std::filesystem::path RedoFileOf(std::filesystem::path file) {
    return file += L".redo";
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
