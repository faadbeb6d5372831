#pragma once

#include "xml/GuardedProfile.h"

namespace ZOTDam {

// The user settings. The file is opened anew before each use, so that every operation works on what is on
// disk now; only the reset works on what this process read last.
class CXmlZOTPowercfg : public CGuardedProfile {
public:
    CXmlZOTPowercfg();

    IXMLDOMElementPtr CommonSettings() { return Section(L"CommonSettings"); }
    IXMLDOMElementPtr PowerSchemes() { return Section(L"PowerSchemes"); }

    // Empties both sections. False, and the common settings stay, when there was no scheme to remove.
    bool ResetSkeleton();

private:
    // What was read from a file that is gone is no longer true.
    void OpenWithoutFile() override { ResetSkeleton(); }
};

}  // namespace ZOTDam
