// What happens when the library is unloaded, and what must not happen when the process ends.
#pragma once

namespace ZOTDam {

// Set by DllMain when the process ends. Then the other threads are gone, wherever they were, and modules that
// our pointers lead to may be gone too: nothing may be released, no lock may be taken.
inline bool processIsEnding = false;

// Runs an action when its scope ends, which for a static object means: when the library is unloaded.
template <class Action>
class CAtUnload {
public:
    explicit CAtUnload(Action onUnload) noexcept : action{onUnload} {}
    CAtUnload(const CAtUnload&) = delete;
    CAtUnload& operator=(const CAtUnload&) = delete;
    ~CAtUnload() {
        if (!processIsEnding)
            action();
    }

private:
    Action action;
};

}  // namespace ZOTDam
