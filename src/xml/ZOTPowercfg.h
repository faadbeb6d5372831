#pragma once

#include "xml/DataFileElements.h"
#include "xml/GuardedProfile.h"

namespace ZOTDam {

// The user settings (ZOTPowercfg.xml). The file is read again before each use if it may have changed, so
// every operation uses the current content on disk. Only the reset uses the content that this process has
// read last. Compatibility: C12.
class CXmlZOTPowercfg : public CGuardedProfile {
public:
    CXmlZOTPowercfg();

    IXMLDOMElementPtr CommonSettings() { return Section(Elements::CommonSettings); }
    IXMLDOMElementPtr PowerSchemes() { return Section(Elements::PowerSchemes); }

    // Removes the content of both sections. Returns false and keeps the common settings when the document
    // contains no schemes. Compatibility: C13.
    bool ResetSkeleton();

private:
    // Settings that were read before the file was deleted are no longer valid.
    void OpenWithoutFile() override { ResetSkeleton(); }
};

}  // namespace ZOTDam
