// Lets a crash say which test it ends, and where, instead of waiting for a debugger.
#pragma once

namespace ZOTDam::Test {

void ReportCrashes();

}  // namespace ZOTDam::Test
