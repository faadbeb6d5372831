// A scope guard for module unload, and the flag that marks process shutdown.
#pragma once

namespace ZOTDam {

// Set by DllMain at process shutdown. From then on, no resource may be released and no lock may be taken. The
// other threads have been terminated at arbitrary positions, and the modules that the library uses may
// already be unloaded.
inline bool isProcessShuttingDown = false;

// Runs an action in its destructor: at the end of a scope or, for a static object, at module unload. Does
// nothing at process shutdown.
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
