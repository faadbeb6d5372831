#include "xml/XmlDeclaration.h"

#include <shlwapi.h>

#include "xml/Bstr.h"
#include "xml/Dom.h"
#include "xml/XmlName.h"

namespace ZOTDam {

namespace {

IXMLDOMProcessingInstructionPtr CreateDeclaration(IXMLDOMDocument* document) {
    IXMLDOMProcessingInstructionPtr declaration;
    Check(document->createProcessingInstruction(CXmlName{L"xml"}.AsBstr(),
                                                _bstr_t{L"version='1.0' encoding='UTF-8'"}, &declaration),
          document);
    return declaration;
}

bool NamesOtherEncoding(IXMLDOMProcessingInstruction* declaration) {
    CBstr target;
    CBstr data;
    Check(declaration->get_target(target.Receive()), declaration);
    Check(declaration->get_data(data.Receive()), declaration);
    return target.View() == L"xml" && StrStrIW(data.Text(), L"encoding") != nullptr &&
           StrStrIW(data.Text(), L"UTF-8") == nullptr;
}

}  // namespace

void AppendDeclaration(IXMLDOMDocument* document) {
    AppendChild(document, CreateDeclaration(document));
}

void DeclareUtf8(IXMLDOMDocument* document) {
    IXMLDOMNodePtr first;
    Check(document->get_firstChild(&first), document);
    const IXMLDOMProcessingInstructionPtr declaration = first;
    if (!declaration || !NamesOtherEncoding(declaration))
        return;
    IXMLDOMNodePtr replaced;
    Check(document->replaceChild(CreateDeclaration(document), declaration, &replaced), document);
}

}  // namespace ZOTDam
