#include <gtest/gtest.h>

#include <windows.h>

#include <shellapi.h>

#include "support/CrashReport.h"
#include "support/DomOutput.h"
#include "support/MsxmlFiles.h"
#include "support/SecondProcess.h"
#include "ZOTDamClient.h"

namespace {

// Keeps the DOM loaded, but not COM initialised.
void ImitateMsxml() {
    const ZOTDam::ComScope com;
    static_cast<void>(new ZOTDam::Test::DomOutput{&ZOTDam::Test::AsMsxmlWrites});
}

}  // namespace

int main(int argc, char** argv) {
    ZOTDam::Test::ReportCrashes();
    if (ZOTDam::Test::ImitatesMsxml())
        ImitateMsxml();
    int wideCount = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &wideCount);
    int exitCode = 0;
    if (ZOTDam::Test::RunRole({wide, wide + wideCount}, exitCode))
        return exitCode;
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
