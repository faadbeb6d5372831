#include "DataFileContent.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cwchar>
#include <fstream>
#include <iterator>
#include <system_error>

#include "Error.h"
#include "platform/AtomicFile.h"
#include "platform/BusyMarker.h"
#include "platform/File.h"
#include "platform/FileInFolder.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

namespace {

[[noreturn]] void ThrowUnreadable(const DataFile& file) {
    throw Error{ErrorKind::UnreadableFile, "The " + TitleOf(file) + " cannot be read.", PathOf(file)};
}

// Returns the content, or nothing if the file does not exist.
std::optional<std::string> ReadContent(const DataFile& file, const std::filesystem::path& path) {
    const CFile opened{OpenForReading(path)};
    const DWORD error = GetLastError();
    if (!opened.IsOpen() && (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND))
        return {};
    if (!opened.IsOpen() && error == ERROR_SHARING_VIOLATION)
        ThrowInUse(file);
    std::string content;
    if (!opened.IsOpen() || !opened.Read(content))
        ThrowUnreadable(file);
    return content;
}

// Returns the path with the local time: "C:\...\ZOTPowercfg.xml.20261121-143000.backup".
std::filesystem::path NewBackupPath(const DataFile& file) {
    SYSTEMTIME now;
    GetLocalTime(&now);
    wchar_t time[32];
    swprintf(time, std::size(time), L".%04u%02u%02u-%02u%02u%02u", now.wYear, now.wMonth, now.wDay, now.wHour,
             now.wMinute, now.wSecond);
    const std::wstring start = PathOf(file).native() + time;
    std::filesystem::path path = start + L".backup";
    for (int number = 2; exists(path); ++number)
        path = start + L"-" + std::to_wstring(number) + L".backup";
    return path;
}

// Returns whether a path refers to a data file of the suite, in any spelling.
bool IsDataFile(const std::filesystem::path& path) {
    const std::array files = {PathOf(BaseCatalogue), PathOf(Defaults), PathOf(UserSettings),
                              NeutralStringTable()};
    return std::ranges::any_of(files, [&](const std::filesystem::path& file) {
        std::error_code ignored;
        return equivalent(path, file, ignored);
    });
}

bool HaveSameContent(const std::filesystem::path& a, const std::filesystem::path& b) {
    std::ifstream streamA{a, std::ios::binary};
    std::ifstream streamB{b, std::ios::binary};
    using Bytes = std::istreambuf_iterator<char>;
    return streamA && streamB && std::equal(Bytes{streamA}, Bytes{}, Bytes{streamB}, Bytes{});
}

}  // namespace

FileContents ReadDataFile(const DataFile& file) {
    const CBusyMarker marker{file.location.busyMarker};
    if (!marker.IsAcquired())
        ThrowInUse(file);
    const std::filesystem::path path = ZOTDam::PathOf(file.location);
    // The library ignores a file in a folder whose path is too long.
    if (path.empty())
        return {};
    return {ReadContent(file, path), ReadContent(file, path.native() + RedoExtension)};
}

void ReplaceDataFile(const DataFile& file, const std::string& content) {
    const CBusyMarker marker{file.location.busyMarker};
    if (!marker.IsAcquired())
        ThrowInUse(file);
    const std::wstring path = ZOTDam::PathOf(file.location);
    CompleteInterruptedWrite(path);
    if (path.empty() || !ReplaceAtomically(path, content))
        throw Error{ErrorKind::NotStored, "The " + TitleOf(file) + " cannot be written.", PathOf(file)};
}

std::optional<std::filesystem::path> BackUp(const DataFile& file,
                                            const std::optional<std::filesystem::path>& target) {
    const FileContents contents = ReadDataFile(file);
    if (!contents.Exist())
        return {};
    const std::filesystem::path path = target ? absolute(*target) : NewBackupPath(file);
    WriteNamedFile(path, contents.redoFile ? *contents.redoFile : *contents.file);
    return path;
}

Backup::~Backup() {
    std::error_code ignored;
    if (path && !isKept && HaveSameContent(*path, file))
        remove(*path, ignored);
}

Json Backup::ToJson() const {
    return path ? Json(Utf8(*path)) : Json();
}

std::string Backup::Text() const {
    return path ? "Backup: " + Utf8(*path) + "\n" : "";
}

std::string ReadNamedFile(const std::filesystem::path& path) {
    if (!exists(path))
        throw Error{ErrorKind::MissingFile, "The file " + Utf8(path) + " does not exist.", path};
    std::ifstream stream{path, std::ios::binary};
    std::string content{std::istreambuf_iterator<char>{stream}, {}};
    if (!stream)
        throw Error{ErrorKind::UnreadableFile, "The file " + Utf8(path) + " cannot be read.", path};
    return content;
}

void WriteNamedFile(const std::filesystem::path& path, const std::string& content) {
    if (IsDataFile(path))
        throw UsageError{"The file " + Utf8(path) + " is a data file of the suite: specify another one."};
    std::ofstream stream{path, std::ios::binary | std::ios::trunc};
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!stream.flush())
        throw Error{ErrorKind::NotStored, "The file " + Utf8(path) + " cannot be written.", path};
}

}  // namespace ZOTDam::Client
