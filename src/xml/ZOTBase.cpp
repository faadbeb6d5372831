#include "xml/ZOTBase.h"

#include "platform/FileInFolder.h"

namespace ZOTDam {

CXmlZOTBase::CXmlZOTBase() : CZOTProfile{PathOf(BaseCatalogueLocation)} {
    Load();
}

IXMLDOMElementPtr CXmlZOTBase::GetChildNode(IXMLDOMNode* parent, const CXmlName& name) {
    return parent != nullptr ? SelectChild(parent, name) : IXMLDOMElementPtr{};
}

}  // namespace ZOTDam
