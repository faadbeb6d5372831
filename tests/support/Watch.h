// Reports the current step of a test program that crashes or hangs, and ends a program that hangs.
#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <thread>

namespace ZOTDam::Test {

class Watch {
public:
    // `limit` is the maximum duration of a step in milliseconds. It should be generous.
    explicit Watch(DWORD limit);
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch();

    // Begins a step and ends the previous one.
    void Begin(const std::string& step);

private:
    void WaitForSteps(DWORD limit) const;

    HANDLE stepBegins;
    std::atomic<bool> ends = false;
    std::thread watcher;
};

}  // namespace ZOTDam::Test
