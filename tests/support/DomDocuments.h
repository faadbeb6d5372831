// Counts the DOM documents that the DLL creates while this object exists. It keeps a reference to each one
// until the end of the test, so that the test can find out which of them have other references.
#pragma once

#include <objbase.h>
#include <windows.h>

#include <optional>
#include <utility>
#include <vector>

#include "support/ImportPatch.h"

namespace ZOTDam::Test {

class DomDocuments {
public:
    explicit DomDocuments(HMODULE dll) : patch{std::in_place, dll, "CoCreateInstance", &Create} {
        current = this;
    }
    DomDocuments(const DomDocuments&) = delete;
    DomDocuments& operator=(const DomDocuments&) = delete;
    ~DomDocuments() {
        for (IUnknown* document : created)
            document->Release();
    }

    // Must be called before the DLL is freed.
    void StopCounting() { patch.reset(); }

    std::size_t CreatedCount() const noexcept { return created.size(); }

    IUnknown* Last() const { return created.back(); }

    // The number of documents that have references other than that of this object.
    std::size_t HeldCount() const noexcept {
        std::size_t held = 0;
        for (IUnknown* document : created) {
            document->AddRef();
            held += document->Release() > 1;
        }
        return held;
    }

    // Makes every further attempt to create a document fail.
    void Fail(HRESULT error) noexcept { failure = error; }

private:
    static HRESULT WINAPI Create(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid, void** object) {
        if (FAILED(current->failure)) {
            *object = nullptr;
            return current->failure;
        }
        const HRESULT result = CoCreateInstance(clsid, outer, context, iid, object);
        if (SUCCEEDED(result)) {
            current->created.push_back(static_cast<IUnknown*>(*object));
            current->created.back()->AddRef();
        }
        return result;
    }

    inline static DomDocuments* current = nullptr;
    std::vector<IUnknown*> created;
    HRESULT failure = S_OK;
    std::optional<ImportPatch> patch;
};

}  // namespace ZOTDam::Test
