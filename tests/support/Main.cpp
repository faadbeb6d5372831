#include <gtest/gtest.h>

#include <windows.h>

#include <shellapi.h>

#include "support/CrashReport.h"
#include "support/SecondProcess.h"

int main(int argc, char** argv) {
    ZOTDam::Test::ReportCrashes();
    int wideCount = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &wideCount);
    int exitCode = 0;
    if (ZOTDam::Test::RunRole({wide, wide + wideCount}, exitCode))
        return exitCode;
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
