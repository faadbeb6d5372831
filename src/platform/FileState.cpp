#include "platform/FileState.h"

#include <winternl.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "platform/FileInFolder.h"

namespace ZOTDam {

namespace {

struct FileNetworkOpenInformation {
    LARGE_INTEGER creationTime;
    LARGE_INTEGER lastAccessTime;
    LARGE_INTEGER lastWriteTime;
    LARGE_INTEGER changeTime;
    LARGE_INTEGER allocationSize;
    LARGE_INTEGER endOfFile;
    ULONG attributes;
};

// The only call that returns the change time without opening the file. The Windows API reports the change
// time only for an open file, which takes a hundred times as long.
using NtQueryFullAttributesFile = NTSTATUS NTAPI(OBJECT_ATTRIBUTES* file,
                                                 FileNetworkOpenInformation* information);

NtQueryFullAttributesFile* FindQuery() noexcept {
    const HMODULE system = GetModuleHandleW(L"ntdll.dll");
    return system == nullptr ? nullptr
                             : reinterpret_cast<NtQueryFullAttributesFile*>(reinterpret_cast<void*>(
                                   GetProcAddress(system, "NtQueryFullAttributesFile")));
}

NtQueryFullAttributesFile* const QueryState = FindQuery();

constexpr std::uint64_t Unsigned(const LARGE_INTEGER& number) noexcept {
    return static_cast<std::uint64_t>(number.QuadPart);
}

// A path in the system's own namespace.
class CNativePath {
public:
    // Only a path on a drive is converted. The others have other forms in that namespace.
    explicit CNativePath(std::wstring_view path) noexcept {
        if (path.starts_with(LongPathPrefix))
            path.remove_prefix(LongPathPrefix.size());
        if (path.size() < 3 || path.substr(1, 2) != L":\\" || path.size() > std::size(buffer) - Prefix.size())
            return;
        std::ranges::copy(path, std::ranges::copy(Prefix, buffer).out);
        const auto bytes = static_cast<USHORT>((Prefix.size() + path.size()) * sizeof(wchar_t));
        name = {bytes, bytes, buffer};
    }

    bool IsValid() const noexcept { return name.Buffer != nullptr; }
    OBJECT_ATTRIBUTES Attributes() noexcept {
        OBJECT_ATTRIBUTES attributes = {};
        attributes.Length = sizeof attributes;
        attributes.ObjectName = &name;
        attributes.Attributes = OBJ_CASE_INSENSITIVE;
        return attributes;
    }

private:
    static constexpr std::wstring_view Prefix = L"\\??\\";

    wchar_t buffer[MAX_PATH + 40];
    UNICODE_STRING name = {};
};

}  // namespace

std::uint64_t CurrentTime() noexcept {
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

FileState StateOf(const std::wstring& path) noexcept {
    CNativePath nativePath{path};
    if (QueryState == nullptr || !nativePath.IsValid())
        return {};
    OBJECT_ATTRIBUTES file = nativePath.Attributes();
    FileNetworkOpenInformation information;
    if (QueryState(&file, &information) != 0)
        return {};
    return {Unsigned(information.endOfFile), Unsigned(information.creationTime),
            Unsigned(information.lastWriteTime), Unsigned(information.changeTime)};
}

FileState StateOf(HANDLE file) noexcept {
    FILE_BASIC_INFO times;
    LARGE_INTEGER size;
    if (GetFileInformationByHandleEx(file, FileBasicInfo, &times, sizeof times) == FALSE ||
        GetFileSizeEx(file, &size) == FALSE)
        return {};
    return {Unsigned(size), Unsigned(times.CreationTime), Unsigned(times.LastWriteTime),
            Unsigned(times.ChangeTime)};
}

bool IdentifiesContent(const FileState& state, std::uint64_t timeOfRead) noexcept {
    constexpr std::uint64_t resolution = 20'000'000;
    return state.changeTime != 0 && std::max(state.writeTime, state.changeTime) + resolution <= timeOfRead;
}

}  // namespace ZOTDam
