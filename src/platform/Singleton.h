#pragma once

#include <atomic>
#include <memory>
#include <mutex>

#include "platform/CriticalSection.h"
#include "platform/ModuleUnload.h"

namespace ZOTDam {

// The only instance of a class, created on first use. After a release, the next use creates a new instance.
template <class Object>
class CSingleton {
public:
    CSingleton() = default;
    CSingleton(const CSingleton&) = delete;
    CSingleton& operator=(const CSingleton&) = delete;
    ~CSingleton() {
        if (!isProcessShuttingDown)
            Release();
    }

    // Returns the object and creates it if it does not exist. Returns null when it could not be created.
    Object* Get() noexcept {
        if (object == nullptr) {
            const std::lock_guard guard{section};
            if (object == nullptr)
                object = Create();
        }
        return object;
    }

    // Destroys the object. The pointers that Get has returned become invalid.
    void Release() noexcept {
        if (object == nullptr)
            return;
        const std::lock_guard guard{section};
        // The pointer is cleared before the object is destroyed, so Get never returns a partly destroyed
        // object.
        const std::unique_ptr<Object> released{object.exchange(nullptr)};
    }

private:
    static Object* Create() noexcept {
        try {
            return new Object;
        } catch (...) {
            return nullptr;
        }
    }

    CCriticalSection section;
    std::atomic<Object*> object = nullptr;
};

}  // namespace ZOTDam
