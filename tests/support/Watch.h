// Tells what a test program was at when it crashed or hung, and ends a program that hangs.
#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <thread>

namespace ZOTDam::Test {

class Watch {
public:
    // `limit` is how long a step may take, generously, in milliseconds.
    explicit Watch(DWORD limit);
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch();

    // Begins a step, which ends the one before.
    void Begin(const std::string& step);

private:
    void WaitForSteps(DWORD limit) const;

    HANDLE stepBegins;
    std::atomic<bool> ends = false;
    std::thread watcher;
};

}  // namespace ZOTDam::Test
