// Tests of the busy marker with fake mutex functions, for results that a second process cannot cause.
#include "platform/BusyMarker.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/ImportPatch.h"
#include "support/SecondProcess.h"

namespace ZOTDam::Test {

namespace {

constexpr wchar_t Name[] = L"zotdam-dom-test-marker";

// The results that the fake functions return and the arguments that they received.
struct Platform {
    DWORD openError = ERROR_FILE_NOT_FOUND;
    DWORD createError = ERROR_SUCCESS;
    HANDLE created = nullptr;
    DWORD openAccess = 0;
    BOOL openInheritable = TRUE;
    BOOL initialOwner = FALSE;
    std::vector<HANDLE> closed;
} platform;

HANDLE WINAPI OpenMutexHook(DWORD access, BOOL inheritable, LPCWSTR) {
    platform.openAccess = access;
    platform.openInheritable = inheritable;
    SetLastError(platform.openError);
    return nullptr;
}

HANDLE WINAPI CreateMutexHook(LPSECURITY_ATTRIBUTES, BOOL initialOwner, LPCWSTR) {
    platform.initialOwner = initialOwner;
    SetLastError(platform.createError);
    return platform.created;
}

BOOL WINAPI CloseHandleHook(HANDLE handle) {
    platform.closed.push_back(handle);
    return TRUE;
}

bool Exists() {
    const HANDLE mutex = OpenMutexW(SYNCHRONIZE, FALSE, Name);
    if (mutex != nullptr)
        CloseHandle(mutex);
    return mutex != nullptr;
}

}  // namespace

TEST(BusyMarkerTest, FreeMarkerIsAcquired) {
    const CBusyMarker marker{Name};
    EXPECT_TRUE(marker.IsAcquired());
    EXPECT_TRUE(Exists());
}

TEST(BusyMarkerTest, MarkerIsReleasedAtScopeEnd) {
    { const CBusyMarker marker{Name}; }
    EXPECT_FALSE(Exists());
}

TEST(BusyMarkerTest, MarkerHeldByThisProcessIsBusy) {
    const CBusyMarker first{Name};
    EXPECT_FALSE(CBusyMarker{Name}.IsAcquired());
    EXPECT_TRUE(first.IsAcquired());
}

TEST(BusyMarkerTest, MarkerHeldByOtherProcessIsBusy) {
    SecondProcess other{HoldMutex, {Name}};
    EXPECT_FALSE(CBusyMarker{Name}.IsAcquired());
    other.Kill();
    EXPECT_TRUE(CBusyMarker{Name}.IsAcquired());
}

TEST(BusyMarkerTest, ProbeDoesNotKeepMarkerAlive) {
    {
        const CBusyMarker holder{Name};
        const CBusyMarker probe{Name};
    }
    EXPECT_FALSE(Exists());
}

TEST(BusyMarkerTest, MarkerOfOtherNameIsIndependent) {
    const CBusyMarker other{L"zotdam-dom-test-other-marker"};
    EXPECT_TRUE(CBusyMarker{Name}.IsAcquired());
}

TEST(BusyMarkerTest, NameUsedByEventIsNotBusy) {
    const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, Name);
    EXPECT_TRUE(CBusyMarker{Name}.IsAcquired());
    CloseHandle(event);
}

class BusyMarkerMutexTest : public testing::Test {
protected:
    BusyMarkerMutexTest() { platform = {}; }

    static bool MarkerIsAcquired() {
        const HMODULE program = GetModuleHandleW(nullptr);
        const ImportPatch open{program, "OpenMutexW", OpenMutexHook};
        const ImportPatch create{program, "CreateMutexW", CreateMutexHook};
        const ImportPatch close{program, "CloseHandle", CloseHandleHook};
        return CBusyMarker{Name}.IsAcquired();
    }

    static inline const HANDLE SomeHandle = reinterpret_cast<HANDLE>(0x1234);
};

TEST_F(BusyMarkerMutexTest, MutexIsOpenedToSynchronizeAndModify) {
    platform.created = SomeHandle;
    EXPECT_TRUE(MarkerIsAcquired());
    EXPECT_EQ(platform.openAccess, 0x00100001u);
    EXPECT_FALSE(platform.openInheritable);
    EXPECT_TRUE(platform.initialOwner);
    EXPECT_EQ(platform.closed, std::vector{SomeHandle});
}

TEST_F(BusyMarkerMutexTest, DeniedOpenMeansBusy) {
    platform.openError = ERROR_ACCESS_DENIED;
    platform.created = SomeHandle;
    EXPECT_FALSE(MarkerIsAcquired());
}

TEST_F(BusyMarkerMutexTest, DeniedCreationMeansBusy) {
    platform.createError = ERROR_ACCESS_DENIED;
    EXPECT_FALSE(MarkerIsAcquired());
    EXPECT_TRUE(platform.closed.empty());
}

TEST_F(BusyMarkerMutexTest, MutexCreatedMeanwhileMeansBusy) {
    platform.created = SomeHandle;
    platform.createError = ERROR_ALREADY_EXISTS;
    EXPECT_FALSE(MarkerIsAcquired());
    EXPECT_EQ(platform.closed, std::vector{SomeHandle});
}

TEST_F(BusyMarkerMutexTest, AllocationFailureDoesNotMeanBusy) {
    platform.createError = ERROR_NOT_ENOUGH_MEMORY;
    EXPECT_TRUE(MarkerIsAcquired());
    EXPECT_TRUE(platform.closed.empty());
}

}  // namespace ZOTDam::Test
