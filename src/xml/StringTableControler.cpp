#include "xml/StringTableControler.h"

#include "platform/Folder.h"
#include "xml/DataFolders.h"

namespace ZOTDam {

CStringTableControler::CStringTableControler()
    : CZOTProfile{FileInFolder(InstallationFolder, L"StringTable.xml", StringTableFolderCapacity)} {
    if (FileExists())
        Load();
}

}  // namespace ZOTDam
