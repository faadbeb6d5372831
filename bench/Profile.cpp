#include "Profile.h"

#include <windows.h>

#include <atomic>
#include <filesystem>
#include <thread>

namespace ZOTDam::Bench {

namespace {

std::string ModuleAt(DWORD64 address) {
    constexpr DWORD flags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    HMODULE module = nullptr;
    if (GetModuleHandleExW(flags, reinterpret_cast<const wchar_t*>(address), &module) == FALSE)
        return "the system";
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(module, path, MAX_PATH);
    return std::filesystem::path{path}.filename().string();
}

DWORD64 InstructionPointer(HANDLE thread) {
    CONTEXT context = {};
    context.ContextFlags = CONTEXT_CONTROL;
    SuspendThread(thread);
    GetThreadContext(thread, &context);
    ResumeThread(thread);
    return context.Rip;
}

}  // namespace

std::map<std::string, double> Profile(const Run& call, double seconds) {
    HANDLE caller = nullptr;
    DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &caller, 0, FALSE,
                    DUPLICATE_SAME_ACCESS);
    std::atomic<bool> isOver = false;
    std::atomic<bool> isRunning = false;
    std::map<std::string, double> shares;
    int samples = 0;
    std::thread sampler{[&] {
        while (!isOver) {
            Sleep(1);
            if (!isRunning)
                continue;
            ++shares[ModuleAt(InstructionPointer(caller))];
            ++samples;
        }
    }};
    for (double spent = 0; spent < seconds * 1e6;) {
        Prepare(call);
        isRunning = true;
        spent += Microseconds(call.measured);
        isRunning = false;
    }
    isOver = true;
    sampler.join();
    CloseHandle(caller);
    for (auto& [module, share] : shares)
        share *= 100.0 / samples;
    return shares;
}

}  // namespace ZOTDam::Bench
