#include "xml/ZOTDefault.h"

#include "platform/FileInFolder.h"
#include "xml/DataFileElements.h"

namespace ZOTDam {

CXmlZOTDefault::CXmlZOTDefault()
    : CGuardedProfile{PathOf(DefaultsLocation), DefaultsLocation.busyMarker, Elements::ZOTDefault} {
    Open();
}

}  // namespace ZOTDam
