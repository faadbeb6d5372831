// Reports the running test and the address of a crash, instead of waiting for a debugger.
#pragma once

namespace ZOTDam::Test {

void ReportCrashes();

}  // namespace ZOTDam::Test
