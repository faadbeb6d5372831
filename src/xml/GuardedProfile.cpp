#include "xml/GuardedProfile.h"

#include <windows.h>

#include <utility>

#include "platform/AtomicFile.h"
#include "platform/BusyMarker.h"
#include "platform/FalseOnException.h"
#include "platform/File.h"

namespace ZOTDam {

namespace {

bool IsFile(const std::wstring& path) noexcept {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

}  // namespace

CGuardedProfile::CGuardedProfile(std::wstring path, const wchar_t* markerName, const CXmlName& rootName)
    : CZOTProfile{std::move(path)}, markerName{markerName}, rootName{rootName} {}

void CGuardedProfile::Open() noexcept {
    if (!FileExists()) {
        fileContent = FileContent::Unknown;
        FalseOnException([this] {
            OpenWithoutFile();
            return true;
        });
    } else if (const CBusyMarker marker{markerName}; marker.IsAcquired()) {
        fileContent = ReadFile();
    }
}

bool CGuardedProfile::Save() noexcept {
    return FalseOnException([this] {
        const CBusyMarker marker{markerName};
        if (!marker.IsAcquired())
            return true;
        // If the file does not exist, for whatever reason, a save cannot destroy data.
        const FileContent contentAtRisk = IsFile(Path()) ? fileContent : FileContent::Known;
        if (contentAtRisk == FileContent::Unknown)
            return true;
        return contentAtRisk != FileContent::LoadFailed && ReplaceFile();
    });
}

// A load fails both for content that is not well-formed and for a file that another program has locked. While
// the file is open here, no other program can lock it, so a second failure is due to the content.
CGuardedProfile::FileContent CGuardedProfile::ReadFile() noexcept {
    FileContent content = FileContent::LoadFailed;
    FalseOnException([&] {
        if (LoadOrThrow()) {
            content = FileContent::Known;
            return true;
        }
        const CFile file{CreateFileW(Path().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                     FILE_ATTRIBUTE_NORMAL, nullptr)};
        std::string bytes;
        if (!file.IsOpen() || !file.Read(bytes))
            content = FileContent::Unknown;
        else
            content = LoadOrThrow() ? FileContent::Known : FileContent::NotWellFormed;
        return true;
    });
    return content;
}

IXMLDOMElementPtr CGuardedProfile::Root() {
    const IXMLDOMElementPtr root = FindRoot();
    return root ? root : CreateRoot(rootName);
}

bool CGuardedProfile::ReplaceFile() {
    if (!BackUpUnreadableFile() || !Write())
        return false;
    fileContent = FileContent::Known;
    return true;
}

// A file without loadable content is about to be overwritten, so a copy of it is kept.
bool CGuardedProfile::BackUpUnreadableFile() const {
    return fileContent != FileContent::NotWellFormed || !FileExists() ||
           CopyAndFlush(Path(), Path() + L".unreadable");
}

}  // namespace ZOTDam
