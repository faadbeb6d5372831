// The documents that the whole module uses.
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

// Reads the user settings from disk again and returns them, or null. Every operation except the reset starts
// with this call.
CXmlZOTPowercfg* OpenUserSettings() noexcept;

// Releases all four documents, in the order of their declarations.
void ReleaseDocuments() noexcept;

}  // namespace ZOTDam
