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
        holdsFile = false;
        FalseOnException([this] {
            OpenWithoutFile();
            return true;
        });
    } else if (const CBusyMarker marker{markerName}; marker.IsOurs()) {
        holdsFile = Load();
    }
}

bool CGuardedProfile::Save() noexcept {
    return FalseOnException([this] {
        const CBusyMarker marker{markerName};
        return !marker.IsOurs() || ReplaceFile();
    });
}

IXMLDOMElementPtr CGuardedProfile::Root() {
    const IXMLDOMElementPtr root = FindRoot();
    return root ? root : CreateRoot(rootName);
}

// The battery may die at any moment of a save. So the document goes into a sibling file first, which takes
// the old file's place in one step, and only when all of it is on the disk.
bool CGuardedProfile::ReplaceFile() {
    if (Path().empty() || IsReadOnly(Path()) || !KeepUnreadFile())
        return false;
    const std::wstring sibling = WithExtension(Path(), L".new");
    if (!SaveAs(sibling) || !MoveOver(sibling, Path())) {
        DeleteFileW(sibling.c_str());
        return false;
    }
    holdsFile = true;
    return true;
}

// A file that could not be read is about to lose all that it holds: a copy of it stays.
bool CGuardedProfile::KeepUnreadFile() const {
    return holdsFile || !FileExists() ||
           CopyFileW(Path().c_str(), WithExtension(Path(), L".bak").c_str(), FALSE) != FALSE;
}

}  // namespace ZOTDam
