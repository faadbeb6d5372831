// The documents that all of the module works on.
#pragma once

#include "xml/Singleton.h"
#include "xml/StringTableControler.h"
#include "xml/ZOTBase.h"
#include "xml/ZOTDefault.h"
#include "xml/ZOTPowercfg.h"

namespace ZOTDam {

extern CSingleton<CStringTableControler> StringTable;
extern CSingleton<CXmlZOTBase> BaseCatalogue;
extern CSingleton<CXmlZOTDefault> Defaults;
extern CSingleton<CXmlZOTPowercfg> UserSettings;

// The user settings as they are on disk now, or null. Every use but the reset begins with this.
CXmlZOTPowercfg* OpenUserSettings() noexcept;

// Releases all four, in the order in which they stand above.
void ReleaseDocuments() noexcept;

}  // namespace ZOTDam
