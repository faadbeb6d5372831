#pragma once

#include "xml/DataFileElements.h"
#include "xml/GuardedProfile.h"

namespace ZOTDam {

// The user settings. The file is read again before each use, so that every operation uses the current content
// on disk. Only the reset uses the content that this process read last. Compatibility: C12.
class CXmlZOTPowercfg : public CGuardedProfile {
public:
    CXmlZOTPowercfg();

    IXMLDOMElementPtr CommonSettings() { return Section(Elements::CommonSettings); }
    IXMLDOMElementPtr PowerSchemes() { return Section(Elements::PowerSchemes); }

    // Empties both sections. Returns false and keeps the common settings when the settings contain no
    // schemes. Compatibility: C13.
    bool ResetSkeleton();

private:
    // Settings that were read from a deleted file are no longer valid.
    void OpenWithoutFile() override { ResetSkeleton(); }
};

}  // namespace ZOTDam
