#include "xml/ZOTBase.h"

#include "platform/DataFolders.h"
#include "platform/FileInFolder.h"

namespace ZOTDam {

CXmlZOTBase::CXmlZOTBase()
    : CZOTProfile{FileInFolder(BaseCatalogueFolder, L"ZOTBase.xml", DataFolderCapacity)} {
    Load();
}

IXMLDOMElementPtr CXmlZOTBase::GetChildNode(IXMLDOMNode* parent, const CXmlName& name) {
    return parent != nullptr ? SelectChild(parent, name) : IXMLDOMElementPtr{};
}

}  // namespace ZOTDam
