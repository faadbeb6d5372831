#pragma once

#include <atomic>
#include <memory>
#include <mutex>

#include "platform/AtUnload.h"
#include "platform/CriticalSection.h"

namespace ZOTDam {

// The only instance of a document class, created on first use and again after a release.
template <class Document>
class CSingleton {
public:
    CSingleton() = default;
    CSingleton(const CSingleton&) = delete;
    CSingleton& operator=(const CSingleton&) = delete;
    ~CSingleton() {
        if (!processIsEnding)
            Release();
    }

    // Returns null when the object could not be created.
    Document* Get() noexcept {
        if (document == nullptr) {
            const std::lock_guard guard{section};
            if (document == nullptr)
                document = Create();
        }
        return document;
    }

    void Release() noexcept {
        if (document == nullptr)
            return;
        const std::lock_guard guard{section};
        // The pointer is cleared before the object is destroyed, so Get never returns a partly destroyed
        // document.
        const std::unique_ptr<Document> released{document.exchange(nullptr)};
    }

private:
    static Document* Create() noexcept {
        try {
            return new Document;
        } catch (...) {
            return nullptr;
        }
    }

    CCriticalSection section;
    std::atomic<Document*> document = nullptr;
};

}  // namespace ZOTDam
