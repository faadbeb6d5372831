// Makes the DOM save tabs and line breaks in attributes without character references, for a scope. A parser
// reads each of them as a space. COM must be initialised.
#pragma once

#include <oleauto.h>
#include <shlwapi.h>

#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "support/DomMethods.h"
#include "xml/ComOwners.h"

namespace ZOTDam::Test {

class UnescapedSaves {
public:
    UnescapedSaves() : patch{DomMethod::Save, &Save} { current = this; }
    UnescapedSaves(const UnescapedSaves&) = delete;
    UnescapedSaves& operator=(const UnescapedSaves&) = delete;

private:
    static HRESULT WINAPI Save(IXMLDOMDocument* document, VARIANT target) {
        const OwnedInterface<IStream> memory{SHCreateMemStream(nullptr, 0)};
        VARIANT stream;
        V_VT(&stream) = VT_UNKNOWN;
        V_UNKNOWN(&stream) = memory.get();
        const HRESULT result = current->patch.Original<decltype(Save)>()(document, stream);
        const std::string text = Unescape(ReadAll(*memory));
        IStream* output = nullptr;
        V_UNKNOWN(&target)->QueryInterface(IID_IStream, reinterpret_cast<void**>(&output));
        const OwnedInterface<IStream> ownedOutput{output};
        output->Write(text.data(), static_cast<ULONG>(text.size()), nullptr);
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

    static std::string Unescape(std::string text) {
        const std::pair<std::string_view, char> references[] = {{"&#9;", '\t'},  {"&#10;", '\n'},
                                                                {"&#13;", '\r'}, {"&#x9;", '\t'},
                                                                {"&#xA;", '\n'}, {"&#xD;", '\r'}};
        for (const auto& [reference, character] : references)
            for (std::size_t i = text.find(reference); i != std::string::npos; i = text.find(reference, i))
                text.replace(i, reference.size(), 1, character);
        return text;
    }

    inline static UnescapedSaves* current = nullptr;
    DomMethodPatch patch;
};

}  // namespace ZOTDam::Test
