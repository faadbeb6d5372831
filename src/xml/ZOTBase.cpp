#include "xml/ZOTBase.h"

#include "platform/DataFolders.h"
#include "platform/Folder.h"

namespace ZOTDam {

CXmlZOTBase::CXmlZOTBase()
    : CZOTProfile{FileInFolder(BaseCatalogueFolder, L"ZOTBase.xml", DataFolderCapacity)} {
    Load();
}

IXMLDOMElementPtr CXmlZOTBase::GetChildNode(IXMLDOMNode* parent, const CName& name) {
    return parent != nullptr ? SelectChild(parent, name) : IXMLDOMElementPtr{};
}

}  // namespace ZOTDam
