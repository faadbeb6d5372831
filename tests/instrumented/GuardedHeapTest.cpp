// The memory errors that the heap of the guarded build detects.
#include <windows.h>

#include <algorithm>
#include <new>

#include "instrumented/FaultTest.h"
#include "instrumented/GuardedHeap.h"
#include "support/SettingsTest.h"

namespace ZOTDam::Test {

namespace {

// Volatile, because the compiler may remove or change code if it can see that the code is undefined.
volatile std::size_t length = 5;
volatile wchar_t unit = L'x';

// Allocates a guarded block of `length` characters. Guarding is enabled here because a process that commits
// a fault does not run the tests, whose start enables it otherwise.
wchar_t* NewText() {
    guardsNewBlocks = true;
    auto* const text = new wchar_t[length];
    std::fill_n(text, length - 1, unit);
    text[length - 1] = L'\0';
    return text;
}

template <class Action>
void UseFreed(Action&& action) {
    wchar_t* const text = NewText();
    delete[] text;
    action(text);
}

}  // namespace

const std::vector<Fault>& Faults() {
    static const std::vector<Fault> faults = {
        {"ReadingAfterABlock", [] { unit = NewText()[length]; }},
        {"WritingAfterABlock", [] { NewText()[length] = unit; }},
        {"ReadingAfterATextOfTheRuntime",
         [] {
             const std::wstring text = NewText() + std::wstring(100, unit);
             unit = text.c_str()[text.capacity() + 1];
         }},
        {"WritingInFrontOfABlock",
         [] {
             wchar_t* const text = NewText();
             *(text - length) = unit;
             delete[] text;
         }},
        {"WritingFarInFrontOfABlock",
         [] {
             wchar_t* const text = NewText();
             *(text - 10 * length) = unit;
             delete[] text;
         }},
        {"ReadingAFreedBlock", [] { UseFreed([](const wchar_t* text) { unit = *text; }); }},
        {"WritingAFreedBlock", [] { UseFreed([](wchar_t* text) { *text = unit; }); }},
        {"FreeingABlockTwice", [] { UseFreed([](const wchar_t* text) { delete[] text; }); }},
        {"FreeingTheMiddleOfABlock", [] { delete[](NewText() + length / 2); }},
    };
    return faults;
}

class GuardedHeapTest : public SettingsTest {
protected:
    static DWORD AccessTo(const void* memory) {
        MEMORY_BASIC_INFORMATION information = {};
        VirtualQuery(memory, &information, sizeof information);
        return information.Protect;
    }
};

TEST_F(GuardedHeapTest, AllocationOfDllEndsAtGuardPage) {
    WriteDefaults(TwoFunctions);
    std::vector<DWORD> accesses;  // to each record, and to the memory after the list node that holds it
    auto collect = MakeCallback<IGetParameterCallback>([&](std::int32_t, const ParamValue* value) {
        accesses.push_back(AccessTo(value));
        accesses.push_back(AccessTo(value + 2));
    });
    EXPECT_TRUE(Dll().GetParameter(&Balanced, &collect));
    constexpr DWORD guard = 0;  // reserved, but not committed
    EXPECT_EQ(accesses, (std::vector<DWORD>{PAGE_READWRITE, guard, PAGE_READWRITE, guard}));
}

TEST_F(GuardedHeapTest, FreedMemoryOfDllIsInaccessible) {
    WriteDefaults(TwoFunctions);
    const ParamValue* freed = nullptr;
    auto keep =
        MakeCallback<IGetParameterCallback>([&](std::int32_t, const ParamValue* value) { freed = value; });
    EXPECT_TRUE(Dll().GetParameter(&Balanced, &keep));
    EXPECT_EQ(AccessTo(freed), static_cast<DWORD>(PAGE_NOACCESS));
}

TEST_F(GuardedHeapTest, NewAndFreedMemoryIsFilled) {
    auto* volatile memory = static_cast<unsigned char*>(::operator new(length));
    EXPECT_EQ(std::count(memory, memory + length, 0xcd), 5);
    ::operator delete(memory);
    DWORD previous = 0;
    VirtualProtect(memory, length, PAGE_READONLY, &previous);
    EXPECT_EQ(std::count(memory, memory + length, 0xdd), 5);
}

TEST_F(GuardedHeapTest, ImpossibleSizeThrowsBadAlloc) {
    volatile std::size_t tooMuch = SIZE_MAX;
    EXPECT_THROW(static_cast<void>(::operator new(tooMuch)), std::bad_alloc);
    tooMuch = SIZE_MAX / 2;
    EXPECT_THROW(static_cast<void>(::operator new(tooMuch)), std::bad_alloc);
}

}  // namespace ZOTDam::Test
