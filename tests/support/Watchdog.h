// Reports the current step of a test program that crashes or hangs, and ends a program that hangs.
#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <thread>

namespace ZOTDam::Test {

class Watchdog {
public:
    // `limit` is the maximum duration of a step in milliseconds. It should be generous.
    explicit Watchdog(DWORD limit);
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
    ~Watchdog();

    // Begins a step and ends the previous one.
    void Begin(const std::string& step);

private:
    void WaitForSteps(DWORD limit) const;

    HANDLE stepBegins;
    std::atomic<bool> ends = false;
    std::thread watcher;
};

}  // namespace ZOTDam::Test
