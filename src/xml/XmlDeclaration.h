#pragma once

#include "xml/Com.h"

namespace ZOTDam {

// Appends the XML declaration of new files to an empty document.
void AppendDeclaration(IXMLDOMDocument* document);

// Changes the XML declaration of a document to UTF-8 before the document is saved. Some DOMs always write
// UTF-8; with another encoding in the declaration, the file would be read incorrectly or not at all.
void DeclareUtf8(IXMLDOMDocument* document);

}  // namespace ZOTDam
