// The library, loaded and freed again and again in one process.
#include "support/Endurance.h"
#include "support/EveryExport.h"
#include "support/SettingsTest.h"

namespace ZOTDam::Test {

class LoadRoundsTest : public SettingsTest {
protected:
    static DWORD OpenHandles() {
        DWORD count = 0;
        GetProcessHandleCount(GetCurrentProcess(), &count);
        return count;
    }
};

TEST_F(LoadRoundsTest, EachRoundWorksLikeTheFirstAndKeepsNoHandle) {
    WriteFunctions(Functions({1, 2}));
    CallEveryExport(Dll(), Balanced);
    Unload();
    const DWORD handles = OpenHandles();
    const int rounds = Rounds(20, 1000);
    for (int round = 0; round < rounds; ++round) {
        WriteFunctions(Functions({1, 2}));
        ASSERT_EQ(Dll().GetFuncCount(), 2u);
        CallEveryExport(Dll(), Balanced);
        Unload();
    }
    EXPECT_EQ(OpenHandles(), handles);
    ShowFigure("rounds of loading, calling every export and unloading", rounds);
}

}  // namespace ZOTDam::Test
