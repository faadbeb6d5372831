// Runs tests that read or save files, with files in the form of those that MSXML writes.
#include "support/ExportTest.h"
#include "support/StartProcess.h"

namespace ZOTDam::Test {

namespace {

// Sets an environment variable of this process, or removes it if the value is null, for a scope.
class EnvironmentVariable {
public:
    EnvironmentVariable(const wchar_t* variable, const wchar_t* value) : name{variable} {
        wasSet = GetEnvironmentVariableW(name, old, static_cast<DWORD>(std::size(old))) != 0;
        SetEnvironmentVariableW(name, value);
    }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
    ~EnvironmentVariable() { SetEnvironmentVariableW(name, wasSet ? old : nullptr); }

private:
    const wchar_t* name;
    wchar_t old[MAX_PATH] = {};
    bool wasSet = false;
};

// Runs tests of this program in another process, which writes the results to a file at its end. Returns the
// exit code.
DWORD ExitCodeOfTests(const std::wstring& filter, const std::filesystem::path& results) {
    const EnvironmentVariable dom{L"ZOTDAM_TEST_DOM", L"msxml"};
    const EnvironmentVariable shards{L"GTEST_TOTAL_SHARDS", nullptr};
    const EnvironmentVariable shard{L"GTEST_SHARD_INDEX", nullptr};
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const PROCESS_INFORMATION started =
        StartProcess({.program = program,
                      .commandLine = std::wstring{L"\""} + program + L"\" --gtest_brief=1 --gtest_filter=" +
                                     filter + L" \"--gtest_output=json:" + results.wstring() + L"\"",
                      .inheritsHandles = true});
    WaitForSingleObject(started.hProcess, INFINITE);
    DWORD exitCode = STILL_ACTIVE;
    GetExitCodeProcess(started.hProcess, &exitCode);
    CloseHandle(started.hThread);
    CloseHandle(started.hProcess);
    return exitCode;
}

// The tests that read each of the four files. The others pass too, but take longer.
constexpr wchar_t ReadingTests[] =
    L"*StringTable*:*EntryWithoutValue*:*InvalidEntry*:*FunctionInfo*:*InfoOnItem*:*SchemeReading*:"
    L"*StoredGuid*:*StoredNumber*:*CommandInfo*:*CommandNumber*:*OptionPosition*:*ResetTest*:"
    L"*CommonSettingsTest*:*CommonSettingSource*:*FunctionBase*:*SpecScheme*:*DefaultParameters*:"
    L"*CurrentValues*:*Catalogue*:*RefreshRate*:*Difference*:*Loading*";

}  // namespace

class MsxmlFilesTest : public ExportTest {};

TEST_F(MsxmlFilesTest, ReadingTestsPassOnFilesOfMsxml) {
    const std::filesystem::path results = installation.ProgramData() / L"results.json";
    EXPECT_EQ(ExitCodeOfTests(ReadingTests, results), 0u);
    EXPECT_TRUE(std::filesystem::exists(results));
}

}  // namespace ZOTDam::Test
