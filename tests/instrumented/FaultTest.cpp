// Commits each fault in a separate process and expects the fault to terminate the process.
#include "instrumented/FaultTest.h"

#include <algorithm>

#include "support/SettingsTest.h"

namespace ZOTDam::Test {

void PrintTo(const Fault& fault, std::ostream* out) {
    *out << fault.name;
}

namespace {

constexpr DWORD Aborted = 3;

constexpr wchar_t CommitFault[] = L"commit-fault";

const RegisterRole CommitFaultRole{CommitFault, [](const std::vector<std::wstring>& arguments) {
                                       const std::string name{arguments.at(0).begin(), arguments.at(0).end()};
                                       std::ranges::find(Faults(), name, &Fault::name)->commit();
                                       return 0;
                                   }};

}  // namespace

class FaultDetectionTest : public testing::TestWithParam<Fault> {};

INSTANTIATE_TEST_SUITE_P(, FaultDetectionTest, testing::ValuesIn(Faults()), CaseName<Fault>);

TEST_P(FaultDetectionTest, FaultEndsProcess) {
    const std::string& name = GetParam().name;
    SecondProcess process{CommitFault, {{name.begin(), name.end()}}};
    const DWORD exitCode = process.WaitForExit();
    EXPECT_TRUE(exitCode == STATUS_ACCESS_VIOLATION || exitCode == STATUS_ILLEGAL_INSTRUCTION ||
                exitCode == Aborted)
        << exitCode;
}

}  // namespace ZOTDam::Test
