#include "xml/Documents.h"

namespace ZOTDam {

CSingleton<CStringTableControler> StringTableDocument;
CSingleton<CXmlZOTBase> BaseCatalogueDocument;
CSingleton<CXmlZOTDefault> DefaultsDocument;
CSingleton<CXmlZOTPowercfg> UserSettingsDocument;

CXmlZOTPowercfg* OpenUserSettings() noexcept {
    CXmlZOTPowercfg* settings = UserSettingsDocument.Get();
    if (settings != nullptr)
        settings->Open();
    return settings;
}

void ReleaseDocuments() noexcept {
    StringTableDocument.Release();
    BaseCatalogueDocument.Release();
    DefaultsDocument.Release();
    UserSettingsDocument.Release();
}

}  // namespace ZOTDam
