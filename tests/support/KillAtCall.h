// Kills a program at a call of a function of Windows.
#pragma once

#include <windows.h>

#include <functional>
#include <utility>

#include "support/StartProcess.h"

namespace ZOTDam::Test {

// The debugger of a program. It sets a breakpoint at a function, which has the same address in all processes.
class KillAtCall {
public:
    KillAtCall(const void* functionOfWindows, std::function<bool()> callCondition)
        : function{const_cast<void*>(functionOfWindows)}, condition{std::move(callCondition)} {}

    // Runs a program until it calls the function and the condition holds, and kills it there. Returns false
    // if the program ends without such a call.
    bool Run(ProcessStart start) {
        start.flags |= DEBUG_ONLY_THIS_PROCESS;
        process = StartProcess(std::move(start));
        DEBUG_EVENT event = {};
        do {
            WaitForDebugEvent(&event, INFINITE);
            const DWORD answer = Handle(event);
            ContinueDebugEvent(event.dwProcessId, event.dwThreadId, answer);
        } while (event.dwDebugEventCode != EXIT_PROCESS_DEBUG_EVENT);
        WaitForSingleObject(process.hProcess, INFINITE);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
        return isKilled;
    }

private:
    DWORD Handle(const DEBUG_EVENT& event) {
        if (event.dwDebugEventCode == CREATE_PROCESS_DEBUG_EVENT)
            CloseHandle(event.u.CreateProcessInfo.hFile);
        if (event.dwDebugEventCode == LOAD_DLL_DEBUG_EVENT)
            CloseHandle(event.u.LoadDll.hFile);
        if (event.dwDebugEventCode != EXCEPTION_DEBUG_EVENT)
            return DBG_CONTINUE;
        const EXCEPTION_RECORD& exception = event.u.Exception.ExceptionRecord;
        if (exception.ExceptionCode == EXCEPTION_BREAKPOINT && exception.ExceptionAddress == function)
            HandleCall(event.dwThreadId);
        else if (exception.ExceptionCode == EXCEPTION_BREAKPOINT ||
                 exception.ExceptionCode == EXCEPTION_SINGLE_STEP)
            SetBreakpoint();  // at the start of the program, and after the first instruction of the function
        else
            return DBG_EXCEPTION_NOT_HANDLED;
        return DBG_CONTINUE;
    }

    void HandleCall(DWORD threadId) {
        if (!isKilled && condition()) {
            isKilled = true;
            TerminateProcess(process.hProcess, 1);
            return;
        }
        Write(firstByte);
        constexpr DWORD singleStep = 0x100;
        const HANDLE thread = OpenThread(THREAD_ALL_ACCESS, FALSE, threadId);
        CONTEXT context = {};
        context.ContextFlags = CONTEXT_CONTROL;
        GetThreadContext(thread, &context);
        context.Rip = reinterpret_cast<DWORD64>(function);
        context.EFlags |= singleStep;
        SetThreadContext(thread, &context);
        CloseHandle(thread);
    }

    void SetBreakpoint() {
        constexpr unsigned char breakpoint = 0xCC;
        if (firstByte == 0)
            ReadProcessMemory(process.hProcess, function, &firstByte, 1, nullptr);
        Write(breakpoint);
    }

    void Write(unsigned char byte) const {
        WriteProcessMemory(process.hProcess, function, &byte, 1, nullptr);
        FlushInstructionCache(process.hProcess, function, 1);
    }

    void* function;
    std::function<bool()> condition;
    PROCESS_INFORMATION process = {};
    unsigned char firstByte = 0;
    bool isKilled = false;
};

}  // namespace ZOTDam::Test
