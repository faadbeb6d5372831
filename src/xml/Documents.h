// The documents of the four data files. Each one is created on first use.
#pragma once

#include "platform/Singleton.h"
#include "xml/StringTableControler.h"
#include "xml/ZOTBase.h"
#include "xml/ZOTDefault.h"
#include "xml/ZOTPowercfg.h"

namespace ZOTDam {

extern CSingleton<CStringTableControler> StringTableDocument;
extern CSingleton<CXmlZOTBase> BaseCatalogueDocument;
extern CSingleton<CXmlZOTDefault> DefaultsDocument;
extern CSingleton<CXmlZOTPowercfg> UserSettingsDocument;

// Returns the user settings, or null when the document cannot be created. First reads the file again if it
// may differ from the document. Every operation on the user settings except the reset uses this call.
CXmlZOTPowercfg* OpenUserSettings() noexcept;

// Releases all four documents, in the order of their declarations.
void ReleaseDocuments() noexcept;

}  // namespace ZOTDam
