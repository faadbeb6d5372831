#include "xml/ZOTDefault.h"

#include "platform/DataFolders.h"
#include "platform/FileInFolder.h"

namespace ZOTDam {

CXmlZOTDefault::CXmlZOTDefault()
    : CGuardedProfile{FileInFolder(InstallationFolder, L"ZOTDefault.xml", DataFolderCapacity),
                      L"XmlZOTDefaultMutex", L"ZOTDefault"} {
    Open();
}

}  // namespace ZOTDam
