#include "xml/GuardedProfile.h"

#include <utility>

#include "platform/AtomicFile.h"
#include "platform/BusyMarker.h"
#include "platform/FalseOnException.h"
#include "platform/File.h"

namespace ZOTDam {

CGuardedProfile::CGuardedProfile(std::wstring path, const wchar_t* markerName, const CXmlName& rootName)
    : CZOTProfile{std::move(path)}, markerName{markerName}, rootName{rootName} {}

void CGuardedProfile::Open() noexcept {
    if (IsUpToDate())
        return;
    const bool succeeded = FalseOnException([this] {
        Reload();
        return true;
    });
    if (!succeeded)
        loadResult = LoadResult::Failed;
}

void CGuardedProfile::Reload() {
    // The document no longer counts as loaded from a file that is missing now and returns later.
    ForgetFileState();
    if (!FileExists() && !HasRedoFile(Path())) {
        loadResult = LoadResult::NotRead;
        OpenWithoutFile();
    } else if (const CBusyMarker marker{markerName}; marker.IsAcquired()) {
        loadResult = Load();
        if (loadResult == LoadResult::NotRead && CompleteInterruptedWrite(Path()))
            loadResult = Load();
    }
}

bool CGuardedProfile::Save() noexcept {
    return FalseOnException([this] {
        ForgetFileState();
        const CBusyMarker marker{markerName};
        if (!marker.IsAcquired())
            return true;
        CompleteInterruptedWrite(Path());
        // Without a file, a save cannot destroy content that this process has not read.
        const bool replacesFile = MayBeFile(Path());
        if (replacesFile && loadResult == LoadResult::NotRead)
            return true;
        if ((replacesFile && !PrepareToReplaceFile()) || !Write())
            return false;
        loadResult = LoadResult::Loaded;
        return true;
    });
}

bool CGuardedProfile::IsIncomplete() const {
    return HasRedoFile(Path());
}

IXMLDOMElementPtr CGuardedProfile::Root() {
    const IXMLDOMElementPtr root = FindRoot();
    return root ? root : CreateRoot(rootName);
}

bool CGuardedProfile::PrepareToReplaceFile() const {
    // A copy of a file that is not well-formed is kept.
    return loadResult == LoadResult::Loaded ||
           (loadResult == LoadResult::NotWellFormed && CopyAndFlush(Path(), Path() + L".unreadable"));
}

}  // namespace ZOTDam
