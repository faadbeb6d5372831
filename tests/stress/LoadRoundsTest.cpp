// Loads and frees the library many times in one process.
#include <objbase.h>

#include <algorithm>
#include <functional>
#include <thread>

#include "support/EveryExport.h"
#include "support/HeapAllocations.h"
#include "support/LoadHook.h"
#include "support/ProcessResources.h"
#include "support/SettingsTest.h"
#include "support/Stress.h"
#include "support/UnflushedFiles.h"

namespace ZOTDam::Test {

namespace {

// A library that a client frees without calling ZOTDamExit. The destructor that would call it never runs.
union LibraryWithoutExit {
    LibraryWithoutExit() : library{} {}
    LibraryWithoutExit(const LibraryWithoutExit&) = delete;
    LibraryWithoutExit& operator=(const LibraryWithoutExit&) = delete;
    ~LibraryWithoutExit() {
        FreeLibrary(library.Handle());
        CoUninitialize();
    }

    Library library;
};

void UseWithExit() {
    const Library dll;
    ASSERT_EQ(dll.GetFuncCount(), 2u);
    CallEveryExport(dll, Balanced);
}

void UseWithoutExit() {
    const LibraryWithoutExit client;
    const Library& dll = client.library;
    ASSERT_EQ(dll.GetFuncCount(), 2u);
    EXPECT_EQ(std::ranges::count(RawResultsOfReadingExports(dll, Balanced), 1), 10);
    EXPECT_EQ(std::ranges::count(RawResultsOfWritingExports(dll, Balanced), 1), 4);
}

void OnNewThread(void (*use)()) {
    std::thread{use}.join();
}

}  // namespace

class LoadRoundsTest : public SettingsTest {
protected:
    LoadRoundsTest() { WriteBase(R"(<ZOTBase><CommonSettings Setting="base"/></ZOTBase>)"); }

    void LoadOnce(const std::function<void()>& use) {
        WriteDefaults(TwoFunctions);
        std::filesystem::remove(installation.UserFile());
        const LoadHook tracking{[](HMODULE dll) {
            HeapAllocations::Track(dll);
            LeaveFilesUnflushed(dll);
        }};
        use();
        ASSERT_EQ(GetModuleHandleW(L"ZOTDam.dll"), nullptr);
        ASSERT_EQ(HeapAllocations::Count(), 0u);
    }

    // The first rounds load what other libraries never release. The system may also keep a small amount of
    // memory, but not a handle in each round, and no large amount.
    void ExpectNoLeaks(const std::function<void()>& use) {
        for (int round = 0; round < 3; ++round)
            LoadOnce(use);
        const ProcessResources before;
        const int rounds = Rounds(12, 1000);
        for (int round = 0; round < rounds && !HasFailure(); ++round)
            LoadOnce(use);
        const ProcessResources after;
        EXPECT_EQ(after.freeThreadSlots, before.freeThreadSlots);
        EXPECT_EQ(after.loadedModules, before.loadedModules);
        EXPECT_LT(after.openHandles - before.openHandles, rounds / 2);
        EXPECT_LT(after.committedKilobytes - before.committedKilobytes, 50 * rounds);
        ShowFigure("rounds of loading, calling every export and freeing", rounds);
        ShowFigure("further open handles", after.openHandles - before.openHandles);
        ShowFigure("further KB of memory", after.committedKilobytes - before.committedKilobytes);
    }

    ComScope com;  // keeps COM initialised between the rounds
};

TEST_F(LoadRoundsTest, CountersDetectHeldResources) {
    const ProcessResources before;
    const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    const DWORD slot = TlsAlloc();
    {
        const Library library;
        const ProcessResources now;
        EXPECT_GT(now.openHandles, before.openHandles);
        EXPECT_LT(now.freeThreadSlots, before.freeThreadSlots);
        EXPECT_GT(now.loadedModules, before.loadedModules);
    }
    TlsFree(slot);
    CloseHandle(event);
}

TEST_F(LoadRoundsTest, RoundsWithExitReleaseResources) {
    ExpectNoLeaks(UseWithExit);
}

TEST_F(LoadRoundsTest, RoundsWithoutExitReleaseResources) {
    ExpectNoLeaks(UseWithoutExit);
}

TEST_F(LoadRoundsTest, RoundsWithExitOnOwnThreadReleaseResources) {
    ExpectNoLeaks([] { OnNewThread(UseWithExit); });
}

TEST_F(LoadRoundsTest, RoundsWithoutExitOnOwnThreadReleaseResources) {
    ExpectNoLeaks([] { OnNewThread(UseWithoutExit); });
}

}  // namespace ZOTDam::Test
