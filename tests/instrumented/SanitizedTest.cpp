// The errors that the sanitized build detects.
#include <climits>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>

#include "instrumented/FaultTest.h"

namespace ZOTDam::Test {

namespace {

// Volatile, because the compiler may remove or change code if it can see that the code is undefined.
volatile int largest = INT_MAX;
volatile int width = 32;
volatile int one = 1;
volatile unsigned char two = 2;
volatile std::size_t count = 8;
volatile int result = 0;

[[gnu::noinline]] void Fill(char* start, std::size_t size) {
    std::memset(start, one, size);
}

enum class Choice : unsigned char { No, Yes };

struct Pair {
    int first;
    int second;
};

}  // namespace

const std::vector<Fault>& Faults() {
    static const std::vector<Fault> faults = {
        {"Overflow", [] { result = largest + one; }},
        {"ShiftByTheWidth", [] { result = one << width; }},
        {"DivisionByZero", [] { result = largest / (one - 1); }},
        {"IndexAfterAnArray",
         [] {
             const int numbers[8] = {one};
             result = numbers[count];
         }},
        {"NullPointer",
         [] {
             Pair* const volatile none = nullptr;
             Pair* const pair = none;
             result = pair->second;
         }},
        {"MisalignedPointer",
         [] {
             alignas(int) char bytes[8] = {};
             result = *reinterpret_cast<int*>(bytes + one);
         }},
        {"ABoolThatIsNeither",
         [] {
             bool truth = false;
             std::memcpy(&truth, const_cast<unsigned char*>(&two), 1);
             result = truth;
         }},
        {"IndexAfterAVector", [] { result = std::vector<int>(count)[count]; }},
        {"IndexAfterAText", [] { result = std::wstring(count, L'x')[count + one]; }},
        {"BackOfAnEmptyView",
         [] {
             result = std::wstring_view{L"x", count - 8}.back();
         }},
        {"ValueOfAnEmptyOptional", [] { result = *std::optional<int>{}; }},
        {"NullUniquePointer", [] { result = *std::unique_ptr<int>{}; }},
        {"OverrunOfAFrame",
         [] {
             char buffer[8];
             Fill(buffer, count + 16);
             result = static_cast<unsigned char>(buffer[0]);
         }},
    };
    return faults;
}

}  // namespace ZOTDam::Test
