// The times of a file, in 100 ns since 1601, and a fake clock.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <optional>

#include "support/ImportPatch.h"

namespace ZOTDam::Test {

inline constexpr LONGLONG OneSecond = 10'000'000;

// All times are 0 if the file does not exist.
inline FILE_BASIC_INFO TimesOf(const std::filesystem::path& path) {
    FILE_BASIC_INFO times = {};
    const HANDLE file = CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        EXPECT_TRUE(GetFileInformationByHandleEx(file, FileBasicInfo, &times, sizeof times));
        CloseHandle(file);
    }
    return times;
}

inline LONGLONG ChangeTimeOf(const std::filesystem::path& path) {
    return TimesOf(path).ChangeTime.QuadPart;
}

inline FILETIME FileTimeOf(LONGLONG time) {
    return {static_cast<DWORD>(time), static_cast<DWORD>(time >> 32)};
}

inline LONGLONG Now() {
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    return static_cast<LONGLONG>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

// Sets the creation time and the last-write time. The system sets the change time to the current time.
inline void SetTimes(const std::filesystem::path& path, LONGLONG creation, LONGLONG write) {
    const HANDLE file = CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    const FILETIME creationTime = FileTimeOf(creation);
    const FILETIME writeTime = FileTimeOf(write);
    EXPECT_TRUE(SetFileTime(file, &creationTime, nullptr, &writeTime));
    CloseHandle(file);
}

// Changes a file until its change time is later than this one. Two changes within the resolution of the file
// system's clock can have the same change time.
template <class Change>
void ChangeLaterThan(LONGLONG time, const std::filesystem::path& path, Change change) {
    do
        change();
    while (ChangeTimeOf(path) <= time);
}

// Changes a file and then restores its creation time and its last-write time. Only the change time shows that
// the file has changed.
template <class Change>
void ChangeWithRestoredTimes(const std::filesystem::path& path, Change change) {
    const FILE_BASIC_INFO before = TimesOf(path);
    ChangeLaterThan(before.ChangeTime.QuadPart, path, [&] {
        change();
        SetTimes(path, before.CreationTime.QuadPart, before.LastWriteTime.QuadPart);
    });
}

// The time that a module sees. By default, it is so far ahead that a file counts as old right after it was
// written.
class FakeClock {
public:
    explicit FakeClock(HMODULE module) : patch{module, "GetSystemTimeAsFileTime", &Read} { stopped.reset(); }

    void StopAt(LONGLONG time) { stopped = time; }

private:
    static void WINAPI Read(FILETIME* time) {
        *time = FileTimeOf(stopped ? *stopped : Now() + 10 * OneSecond);
    }

    inline static std::optional<LONGLONG> stopped;
    ImportPatch patch;
};

}  // namespace ZOTDam::Test
