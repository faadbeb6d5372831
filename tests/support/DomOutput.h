// Changes the output of each save to a stream, for a scope. An object inside the scope of another one changes
// the output of that one. COM must be initialised.
#pragma once

#include <windows.h>

#include <oleauto.h>
#include <shlwapi.h>

#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "support/DomMethods.h"
#include "xml/ComOwners.h"

namespace ZOTDam::Test {

class DomOutput {
public:
    using Change = std::string (*)(std::string_view text);

    explicit DomOutput(Change outputChange) : change{outputChange}, outer{std::exchange(current, this)} {
        if (outer == nullptr)
            original = patch.emplace(DomMethod::Save, &Save).Original<Method>();
    }
    DomOutput(const DomOutput&) = delete;
    DomOutput& operator=(const DomOutput&) = delete;
    ~DomOutput() { current = outer; }

private:
    using Method = HRESULT WINAPI(IXMLDOMDocument*, VARIANT);

    static HRESULT WINAPI Save(IXMLDOMDocument* document, VARIANT target) {
        if (V_VT(&target) != VT_UNKNOWN)
            return original(document, target);
        const OwnedInterface<IStream> memory{SHCreateMemStream(nullptr, 0)};
        VARIANT stream;
        V_VT(&stream) = VT_UNKNOWN;
        V_UNKNOWN(&stream) = memory.get();
        const HRESULT result = original(document, stream);
        Write(V_UNKNOWN(&target), current->Changed(ReadAll(*memory)));
        return result;
    }

    std::string Changed(const std::string& text) const {
        return change(outer != nullptr ? outer->Changed(text) : text);
    }

    static std::string ReadAll(IStream& stream) {
        stream.Seek({}, STREAM_SEEK_SET, nullptr);
        std::string text;
        char buffer[4096];
        ULONG count = 0;
        while (SUCCEEDED(stream.Read(buffer, static_cast<ULONG>(std::size(buffer)), &count)) && count != 0)
            text.append(buffer, count);
        return text;
    }

    static void Write(IUnknown* target, const std::string& text) {
        IStream* output = nullptr;
        target->QueryInterface(IID_IStream, reinterpret_cast<void**>(&output));
        const OwnedInterface<IStream> ownedOutput{output};
        output->Write(text.data(), static_cast<ULONG>(text.size()), nullptr);
    }

    inline static DomOutput* current = nullptr;
    inline static Method* original = nullptr;
    Change change;
    DomOutput* outer;
    std::optional<DomMethodPatch> patch;
};

}  // namespace ZOTDam::Test
