#include "xml/Documents.h"

namespace ZOTDam {

CSingleton<CStringTableControler> StringTable;
CSingleton<CXmlZOTBase> BaseCatalogue;
CSingleton<CXmlZOTDefault> Defaults;
CSingleton<CXmlZOTPowercfg> UserSettings;

CXmlZOTPowercfg* OpenUserSettings() noexcept {
    CXmlZOTPowercfg* settings = UserSettings.Get();
    if (settings != nullptr)
        settings->Open();
    return settings;
}

void ReleaseDocuments() noexcept {
    StringTable.Release();
    BaseCatalogue.Release();
    Defaults.Release();
    UserSettings.Release();
}

}  // namespace ZOTDam
