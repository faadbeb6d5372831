// Changes the output of each save to a stream, for a scope. COM must be initialised.
#pragma once

#include <windows.h>

#include <oleauto.h>
#include <shlwapi.h>

#include <iterator>
#include <string>
#include <string_view>

#include "support/DomMethods.h"
#include "xml/ComOwners.h"

namespace ZOTDam::Test {

class DomOutput {
public:
    using Change = std::string (*)(std::string_view text);

    explicit DomOutput(Change outputChange) : patch{DomMethod::Save, &Save} {
        change = outputChange;
        original = patch.Original<Method>();
    }
    DomOutput(const DomOutput&) = delete;
    DomOutput& operator=(const DomOutput&) = delete;

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
        Write(V_UNKNOWN(&target), change(ReadAll(*memory)));
        return result;
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

    inline static Change change = nullptr;
    inline static Method* original = nullptr;
    DomMethodPatch patch;
};

}  // namespace ZOTDam::Test
