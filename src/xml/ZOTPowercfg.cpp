#include "xml/ZOTPowercfg.h"

#include "platform/FileInFolder.h"

namespace ZOTDam {

CXmlZOTPowercfg::CXmlZOTPowercfg()
    : CGuardedProfile{PathOf(UserSettingsLocation), UserSettingsLocation.busyMarker, L"OrloPowerCfg"} {}

bool CXmlZOTPowercfg::ResetSkeleton() {
    if (!ClearSection(L"PowerSchemes"))
        return false;
    ClearSection(L"CommonSettings");
    // The common settings are attributes of their section.
    RemoveAttributes(CommonSettings());
    return true;
}

}  // namespace ZOTDam
