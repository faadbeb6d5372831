#include <string_view>

#include "doctor/ExportNames.h"
#include "doctor/Installation.h"
#include "Library.h"
#include "Msxml.h"

namespace ZOTDam::Client {

namespace {

constexpr char NothingWorks[] = "no program can read or change the settings";

// For its scope, the system shows no message box if it cannot load a library.
class QuietErrors {
public:
    QuietErrors() noexcept { SetThreadErrorMode(SEM_FAILCRITICALERRORS, &previous); }
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;
    ~QuietErrors() { SetThreadErrorMode(previous, nullptr); }

private:
    DWORD previous = 0;
};

void CheckVersion(Findings& findings) {
    const std::string version = VersionOf(findings.Path());
    if (version != ZOTDAM_VERSION)
        findings.AddToFile(
            "version-mismatch",
            (version.empty() ? "the library has no version" : "the library has the version " + version) +
                ", and zotdamctl has the version " ZOTDAM_VERSION,
            "the two files are from different packages");
}

void CheckExports(HMODULE library, Findings& findings) {
    std::string missing;
    for (const char* const name : ExportNames)
        if (GetProcAddress(library, name) == nullptr)
            missing += (missing.empty() ? "" : ", ") + std::string{name};
    if (!missing.empty())
        findings.AddObstacle("missing-export", "the library does not export " + missing,
                             "programs that need these functions fail");
}

void CheckLoading(Findings& findings) {
    const QuietErrors quiet;
    const HMODULE library = LoadLibraryExW(findings.Path().c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (library == nullptr) {
        findings.AddObstacle(
            "library-not-loadable",
            "the system cannot load the library (error " + std::to_string(GetLastError()) + ")",
            NothingWorks);
        return;
    }
    CheckExports(library, findings);
    FreeLibrary(library);
}

void CheckMsxml(Findings& findings) {
    const std::string problem = FindMsxmlProblem();
    if (!problem.empty())
        findings.AddObstacle("missing-msxml", problem, "the library reads and writes no file");
}

}  // namespace

std::string VersionOf(const std::filesystem::path& file) {
    DWORD ignored = 0;
    std::vector<char> resource(GetFileVersionInfoSizeW(file.c_str(), &ignored));
    VS_FIXEDFILEINFO* version = nullptr;
    UINT size = 0;
    if (resource.empty() ||
        GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(resource.size()), resource.data()) == FALSE ||
        VerQueryValueW(resource.data(), L"\\", reinterpret_cast<void**>(&version), &size) == FALSE)
        return {};
    return std::to_string(HIWORD(version->dwFileVersionMS)) + "." +
           std::to_string(LOWORD(version->dwFileVersionMS)) + "." +
           std::to_string(HIWORD(version->dwFileVersionLS));
}

Findings ExamineLibrary() {
    Findings findings{"library", Library::Path()};
    std::error_code error;
    if (exists(findings.Path(), error) || error) {
        CheckLoading(findings);
        CheckVersion(findings);
    } else {
        findings.AddObstacle("missing-library", "the library does not exist", NothingWorks);
    }
    CheckMsxml(findings);
    return findings;
}

}  // namespace ZOTDam::Client
