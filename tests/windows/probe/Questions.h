// The questions of the probe. They ask about behaviour on which the library relies, and about behaviour that
// is not documented.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace ZOTDam::Probe {

struct Question {
    const char* name;
    std::string (*ask)();
    const char* documented;  // the answer of Windows according to its documentation, or "?"
    const char* assumed;     // the answers with which the library works, separated by " or ", or "any"
};

std::vector<Question> FileQuestions();
std::vector<Question> SystemQuestions();
std::vector<Question> DomQuestions();

// Returns "success", or "error" with the code of the last error.
inline std::string Outcome(bool isSuccess) {
    return isSuccess ? "success" : "error " + std::to_string(GetLastError());
}

inline std::string YesOrNo(bool isTrue) {
    return isTrue ? "yes" : "no";
}

// A new folder for the files of one question, deleted with its files by the destructor.
class Folder {
public:
    Folder() : path{NewPath()} { std::filesystem::create_directories(path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    std::wstring operator/(const wchar_t* name) const { return (path / name).wstring(); }

private:
    static std::filesystem::path NewPath() {
        static int count = 0;
        return std::filesystem::temp_directory_path() /
               ("zotdam-probe-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++count));
    }

    std::filesystem::path path;
};

}  // namespace ZOTDam::Probe
