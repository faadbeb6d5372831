#include "xml/ZOTDefault.h"

#include "platform/FileInFolder.h"

namespace ZOTDam {

CXmlZOTDefault::CXmlZOTDefault()
    : CGuardedProfile{PathOf(DefaultsLocation), DefaultsLocation.busyMarker, L"ZOTDefault"} {
    Open();
}

}  // namespace ZOTDam
