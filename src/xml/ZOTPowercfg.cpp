#include "xml/ZOTPowercfg.h"

#include "platform/FileInFolder.h"
#include "xml/DataFileElements.h"

namespace ZOTDam {

CXmlZOTPowercfg::CXmlZOTPowercfg()
    : CGuardedProfile{PathOf(UserSettingsLocation), UserSettingsLocation.busyMarker, Elements::OrloPowerCfg} {
}

bool CXmlZOTPowercfg::ResetSkeleton() {
    if (!ClearSection(Elements::PowerSchemes))
        return false;
    ClearSection(Elements::CommonSettings);
    // The common settings are attributes of their section.
    RemoveAttributes(CommonSettings());
    return true;
}

}  // namespace ZOTDam
