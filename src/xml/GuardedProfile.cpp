#include "xml/GuardedProfile.h"

#include <windows.h>

#include <string_view>
#include <utility>

#include "platform/Failure.h"
#include "xml/BusyMarker.h"

namespace ZOTDam {

namespace {

// Of the same length, so that no path becomes too long by it.
std::wstring WithExtension(const std::wstring& path, std::wstring_view extension) {
    return path.substr(0, path.size() - extension.size()).append(extension);
}

bool CanBeOpened(const std::wstring& path) noexcept {
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    CloseHandle(file);
    return true;
}

bool IsFile(const std::wstring& path) noexcept {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

// Some systems would move another file over a read-only one.
bool IsReadOnly(const std::wstring& path) noexcept {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

bool MoveOver(const std::wstring& source, const std::wstring& target) noexcept {
    return MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) !=
           FALSE;
}

}  // namespace

CGuardedProfile::CGuardedProfile(std::wstring filePath, const wchar_t* busyMarkerName,
                                 const CName& newRootName)
    : CZOTProfile{std::move(filePath)}, markerName{busyMarkerName}, rootName{newRootName} {}

void CGuardedProfile::Open() noexcept {
    if (!FileExists()) {
        fileContent = FileContent::Unknown;
        FalseOnException([this] {
            OpenWithoutFile();
            return true;
        });
    } else if (const CBusyMarker marker{markerName}; marker.IsOurs()) {
        if (Load())
            fileContent = FileContent::Known;
        else
            fileContent = CanBeOpened(Path()) ? FileContent::NoXml : FileContent::Unknown;
    }
}

bool CGuardedProfile::Save() noexcept {
    return FalseOnException([this] {
        const CBusyMarker marker{markerName};
        return !marker.IsOurs() || !MayReplaceFile() || ReplaceFile();
    });
}

IXMLDOMElementPtr CGuardedProfile::Root() {
    const IXMLDOMElementPtr root = FindRoot();
    return root ? root : CreateRoot(rootName);
}

bool CGuardedProfile::MayReplaceFile() const noexcept {
    return fileContent != FileContent::Unknown || !IsFile(Path());
}

// The battery may die at any moment of a save. So the document goes into a sibling file first, which takes
// the old file's place in one step, and only when all of it is on the disk.
bool CGuardedProfile::ReplaceFile() {
    if (Path().empty() || IsReadOnly(Path()))
        return false;
    const std::wstring sibling = WithExtension(Path(), L".new");
    if (!SaveAs(sibling) || !SetUnreadableFileAside() || !MoveOver(sibling, Path())) {
        DeleteFileW(sibling.c_str());
        return false;
    }
    fileContent = FileContent::Known;
    return true;
}

// A file that is no XML is about to lose all that it holds: a copy of it stays.
bool CGuardedProfile::SetUnreadableFileAside() const {
    return fileContent != FileContent::NoXml || !FileExists() ||
           CopyFileW(Path().c_str(), (Path() + L".unreadable").c_str(), FALSE) != FALSE;
}

}  // namespace ZOTDam
