// Tests of saves to a disk that becomes full during the write. Some DOMs do not report such an error.
#include "support/FunctionDefaultsTest.h"
#include "support/ImportPatch.h"

namespace ZOTDam::Test {

namespace {

// The free bytes on the disk, and whether a write that does not fit writes as many bytes as possible.
DWORD freeBytes = 0;
bool writesWhatFits = false;

BOOL WINAPI WriteToSmallDisk(HANDLE file, LPCVOID data, DWORD size, LPDWORD written,
                             LPOVERLAPPED overlapped) {
    if (size <= freeBytes) {
        freeBytes -= size;
        return WriteFile(file, data, size, written, overlapped);
    }
    *written = 0;
    if (!writesWhatFits) {
        SetLastError(ERROR_DISK_FULL);
        return FALSE;
    }
    return WriteFile(file, data, std::exchange(freeBytes, 0), written, overlapped);
}

}  // namespace

// The parameter is whether the last write succeeds partially.
class FullDiskTest : public FunctionDefaultsTest, public testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        WriteUserSettings(userSettings);
        WriteDefaults(defaults);
        WriteBase(R"(<ZOTBase><CommonSettings Base="b"/></ZOTBase>)");
    }
    void TearDown() override {
        EXPECT_EQ(UserSettings(), userSettings);
        EXPECT_EQ(Defaults(), defaults);
        EXPECT_FALSE(std::filesystem::exists(TemporaryFileOf(installation.UserFile())));
        EXPECT_FALSE(std::filesystem::exists(TemporaryFileOf(installation.DefaultsFile())));
    }

    ImportPatch FillDiskAfter(DWORD bytes) {
        freeBytes = bytes;
        writesWhatFits = GetParam();
        return {Dll().Handle(), "WriteFile", &WriteToSmallDisk};
    }

    const std::string userSettings = OldUserFile(OldScheme(BalancedText, OldFunction(1, 5, 6)));
    const std::string defaults = TwoFunctions;
};

INSTANTIATE_TEST_SUITE_P(, FullDiskTest, testing::Bool(), [](const testing::TestParamInfo<bool>& info) {
    return info.param ? "ShortWrite" : "FailingWrite";
});

TEST_P(FullDiskTest, FullDiskKeepsOldCommonSettings) {
    for (const DWORD bytes : {0u, 1u, 40u, 150u}) {
        const ImportPatch fullDisk = FillDiskAfter(bytes);
        EXPECT_FALSE(Dll().SetCommonSetting(L"Name", std::wstring(300, L'x').c_str())) << bytes;
    }
}

TEST_P(FullDiskTest, FullDiskKeepsOldParameters) {
    const ImportPatch fullDisk = FillDiskAfter(60);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {7, 8}}, {2, {9, 10}}}));
}

TEST_P(FullDiskTest, FullDiskKeepsSchemesDuringReset) {
    EXPECT_EQ(GetParameterDefault(Balanced), (Params{{1, {2, 3}}, {2, {4, 5}}}));
    Text setting;
    EXPECT_FALSE(Dll().GetCommonSetting(L"None", setting));
    const ImportPatch fullDisk = FillDiskAfter(10);
    EXPECT_TRUE(Dll().ResetDefault());
}

TEST_P(FullDiskTest, FullDiskKeepsOldDefaultSettings) {
    const ImportPatch fullDisk = FillDiskAfter(100);
    EXPECT_FALSE(Dll().InitCommonSetting());
}

TEST_P(FullDiskTest, FullDiskKeepsOldFunctions) {
    const FunctionBaseHolder holder = HolderOf({Record(1), Record(2)});
    const ImportPatch fullDisk = FillDiskAfter(50);
    EXPECT_TRUE(Dll().AddFunctionDefault(&holder));
}

}  // namespace ZOTDam::Test
