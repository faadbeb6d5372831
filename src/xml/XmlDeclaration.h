#pragma once

#include "xml/Com.h"

namespace ZOTDam {

// Appends an XML declaration with the encoding UTF-8 to an empty document.
void AppendDeclaration(IXMLDOMDocument* document);

// Replaces an XML declaration that specifies another encoding with a declaration of UTF-8. A document needs
// this before it is saved: some DOMs always write UTF-8, and a file that declares another encoding would be
// read incorrectly or not at all.
void DeclareUtf8(IXMLDOMDocument* document);

}  // namespace ZOTDam
