#pragma once

#include "xml/Com.h"

namespace ZOTDam {

// Gives an empty document the declaration that all new files begin with.
void AppendDeclaration(IXMLDOMDocument* document);

// Makes the declaration of a document that is about to be saved say UTF-8. Some DOMs write UTF-8 whatever it
// says, and a file that says otherwise would be read wrongly, or not at all.
void DeclareUtf8(IXMLDOMDocument* document);

}  // namespace ZOTDam
