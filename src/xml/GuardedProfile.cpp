#include "xml/GuardedProfile.h"

#include <windows.h>

#include <utility>

#include "platform/DurableFile.h"
#include "platform/Failure.h"
#include "platform/File.h"
#include "xml/BusyMarker.h"

namespace ZOTDam {

namespace {

bool CanBeOpened(const std::wstring& path) noexcept {
    constexpr DWORD anybody = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return CFile{CreateFileW(path.c_str(), GENERIC_READ, anybody, nullptr, OPEN_EXISTING,
                             FILE_ATTRIBUTE_NORMAL, nullptr)}
        .IsOpen();
}

bool IsFile(const std::wstring& path) noexcept {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
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

bool CGuardedProfile::ReplaceFile() {
    if (!SetUnreadableFileAside() || !Write())
        return false;
    fileContent = FileContent::Known;
    return true;
}

// A file that is no XML is about to lose all that it holds: a copy of it stays.
bool CGuardedProfile::SetUnreadableFileAside() const {
    return fileContent != FileContent::NoXml || !FileExists() || CopyDurably(Path(), Path() + L".unreadable");
}

}  // namespace ZOTDam
