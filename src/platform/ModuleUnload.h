// A scope guard for module unload, and the flag that marks process shutdown.
#pragma once

namespace ZOTDam {

// Set by DllMain at process shutdown. At that point, the other threads have been terminated at arbitrary
// positions, and modules that the library's pointers refer to may already be unloaded. No resource may be
// released and no lock may be taken.
inline bool isProcessShuttingDown = false;

// Runs an action at the end of a scope; for a static object, at module unload. Does nothing at process
// shutdown.
template <class Action>
class CUnloadGuard {
public:
    explicit CUnloadGuard(Action action) noexcept : action{action} {}
    CUnloadGuard(const CUnloadGuard&) = delete;
    CUnloadGuard& operator=(const CUnloadGuard&) = delete;
    ~CUnloadGuard() {
        if (!isProcessShuttingDown)
            action();
    }

private:
    Action action;
};

}  // namespace ZOTDam
