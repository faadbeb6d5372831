#include <windows.h>

#include <array>
#include <system_error>

#include "doctor/Installation.h"
#include "platform/File.h"

namespace ZOTDam::Client {

namespace {

constexpr char StoresNothing[] = "the library stores nothing";

// ---- Rights of the user ----

// Closes the file again. Returns ERROR_SUCCESS or the error.
DWORD TryToOpen(const std::filesystem::path& file, DWORD access) noexcept {
    constexpr DWORD all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const CFile opened{
        CreateFileW(file.c_str(), access, all, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)};
    return opened.IsOpen() ? ERROR_SUCCESS : GetLastError();
}

bool IsDenial(DWORD error) noexcept {
    return error == ERROR_ACCESS_DENIED || error == ERROR_WRITE_PROTECT;
}

bool MayOpen(const std::filesystem::path& file, DWORD access) noexcept {
    return !IsDenial(TryToOpen(file, access));
}

// Creates a file, which the system deletes when it is closed.
bool MayCreateFileIn(const std::filesystem::path& folder) {
    const std::filesystem::path file = folder / (L"zotdamctl-" + std::to_wstring(GetCurrentProcessId()));
    const CFile created{CreateFileW(file.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr)};
    return created.IsOpen() || !IsDenial(GetLastError());
}

const char* ConsequenceOfWritingInPlace(bool mayCreateRedoFile) noexcept {
    return mayCreateRedoFile ? "the library writes the file in place, with a redo file"
                             : "the library writes the file in place; an interrupted save damages it";
}

void CheckAccess(const std::filesystem::path& file, Findings& findings) {
    constexpr char kind[] = "no-write-access";
    const bool mayCreate = MayCreateFileIn(file.parent_path());
    if (!IsFile(file)) {
        if (!mayCreate)
            findings.AddToFile(kind, "this user may not create the file", StoresNothing);
    } else if (!mayCreate || !MayOpen(file, DELETE)) {
        const bool mayWrite = MayOpen(file, GENERIC_READ | GENERIC_WRITE);
        findings.AddToFile(kind,
                           mayWrite ? "this user may write to the file, but not replace it"
                                    : "this user may neither replace the file nor write to it",
                           mayWrite ? ConsequenceOfWritingInPlace(mayCreate) : StoresNothing);
    }
}

// ---- Left-over files ----

struct LeftOver {
    const wchar_t* suffix;
    const char* problem;
    const char* consequence;
};

constexpr LeftOver TemporaryFile = {L"", "it is the temporary file of an interrupted save",
                                    "the library deletes it at the next save"};

constexpr std::array OtherLeftOvers = {
    LeftOver{L".redo", "it contains the result of an interrupted save",
             "the library completes the save at the next load"},
    LeftOver{L".unreadable", "it is a copy of a file that was not well-formed",
             "the library does not read it, and replaces it with the next copy"},
};

bool IsTemporaryExtension(std::wstring_view extension) {
    return extension == L".new" || (extension.size() == 4 && extension.starts_with(L".nw") &&
                                    extension[3] >= L'1' && extension[3] <= L'9');
}

const LeftOver* FindLeftOver(const std::filesystem::path& file, const std::filesystem::path& dataFile) {
    if (file.stem() == dataFile.stem() && IsTemporaryExtension(file.extension().native()))
        return &TemporaryFile;
    for (const LeftOver& candidate : OtherLeftOvers)
        if (file.filename().native() == dataFile.filename().native() + candidate.suffix)
            return &candidate;
    return nullptr;
}

// A process has its temporary file open without sharing it.
bool IsInUse(const std::filesystem::path& file) noexcept {
    return TryToOpen(file, GENERIC_READ) == ERROR_SHARING_VIOLATION;
}

}  // namespace

void CheckBusyMarker(const DataFile& file, Findings& findings) {
    // A program that works holds the marker for the time of a load or save.
    constexpr DWORD timeout = 1000;  // ms
    constexpr DWORD interval = 20;
    DWORD elapsed = 0;
    for (; IsBusy(file) && elapsed < timeout; elapsed += interval)
        Sleep(interval);
    if (elapsed >= timeout)
        findings.AddToFile("file-in-use", "another program holds the busy marker of the file",
                           "the library neither loads nor saves the file");
}

void CheckStorage(Findings& findings) {
    std::error_code error;
    if (!is_directory(findings.Path().parent_path(), error)) {
        findings.AddToFile("missing-folder", "its folder does not exist",
                           "the library does not create it and stores nothing");
        return;
    }
    const DWORD attributes = GetFileAttributesW(findings.Path().c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0)
        findings.AddToFile("read-only-file", "the file is read-only", StoresNothing);
    else
        CheckAccess(findings.Path(), findings);
}

std::vector<Findings> FindLeftOverFiles(const DataFile& file) {
    const std::filesystem::path dataFile = PathOf(file);
    std::vector<Findings> found;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator{dataFile.parent_path(), error})
        if (const LeftOver* const leftOver = FindLeftOver(entry.path(), dataFile);
            leftOver != nullptr && !IsInUse(entry.path())) {
            Findings& findings = found.emplace_back("left-over file", entry.path());
            findings.AddToFile("left-over-file", leftOver->problem, leftOver->consequence);
        }
    return found;
}

}  // namespace ZOTDam::Client
