// A fake primary display with modes that a test sets.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/ImportPatch.h"

namespace ZOTDam::Test {

// The display that the module sees while this object exists; only one may exist at a time. It also records
// the calls of the module.
class FakeDisplay {
public:
    struct Call {
        std::wstring device;
        DWORD number;
        DEVMODEW received;
        const DEVMODEW* structure;
    };

    FakeDisplay(HMODULE module, std::vector<DWORD> modeRates)
        : rates{std::move(modeRates)}, patch{module, "EnumDisplaySettingsW", &Enumerate} {
        current = this;
    }
    FakeDisplay(const FakeDisplay&) = delete;
    FakeDisplay& operator=(const FakeDisplay&) = delete;
    ~FakeDisplay() { current = nullptr; }

    // Replaces the display with another one after the module has queried the first mode.
    void ChangeAfterFirstMode(std::vector<DWORD> modeRates) { nextRates = std::move(modeRates); }

    const std::vector<Call>& Calls() const noexcept { return calls; }

    std::vector<DWORD> QueriedNumbers() const {
        std::vector<DWORD> numbers;
        for (const Call& call : calls)
            numbers.push_back(call.number);
        return numbers;
    }

    // Some display drivers return a mode without setting its rate.
    static constexpr DWORD UnsetRate = 0xABCD;

private:
    static BOOL WINAPI Enumerate(const wchar_t* device, DWORD number, DEVMODEW* mode) {
        const BOOL answered = current->Answer(device != nullptr ? device : L"", number, *mode) ? TRUE : FALSE;
        if (current->nextRates)
            current->rates = *std::exchange(current->nextRates, std::nullopt);
        return answered;
    }

    bool Answer(const wchar_t* device, DWORD number, DEVMODEW& mode) {
        calls.push_back({device, number, mode, &mode});
        if (number >= rates.size())
            return false;
        mode.dmPelsWidth = 1000 + number;
        if (rates[number] != UnsetRate)
            mode.dmDisplayFrequency = rates[number];
        return true;
    }

    static inline FakeDisplay* current = nullptr;

    std::vector<DWORD> rates;
    std::optional<std::vector<DWORD>> nextRates;
    std::vector<Call> calls;
    ImportPatch patch;
};

}  // namespace ZOTDam::Test
