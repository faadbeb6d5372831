#include "xml/StringTableControler.h"

#include <utility>

#include "platform/AsciiCase.h"
#include "platform/FalseOnException.h"
#include "platform/FileInFolder.h"
#include "platform/LocalisedFile.h"
#include "xml/DataFileElements.h"

namespace ZOTDam {

CStringTableControler::CStringTableControler() : CZOTProfile{LocalisedFile(PathOf(StringTableLocation))} {
    if (Load() == LoadResult::Loaded)
        ReadEntries();
}

bool CStringTableControler::Lookup(const wchar_t* key, Text& output) const noexcept {
    return FalseOnException([&] {
        const auto entry = entries.find(ToLowerAscii(std::wstring{key}));
        if (entry == entries.end())
            return false;
        // An entry without a text hides later entries with the same name. Compatibility: C28.
        const IXMLDOMElementPtr value = SelectChild(entry->second, Elements::TextValue);
        if (!value)
            return false;
        ReadElementText(value, output);
        return true;
    });
}

void CStringTableControler::ReadEntries() {
    for (const IXMLDOMElementPtr& element : SelectChildren(FindRoot(), Elements::TextEntry)) {
        std::wstring name;
        if (ReadAttribute(element, Attributes::TextKey, name))
            entries.try_emplace(ToLowerAscii(std::move(name)), element);
    }
}

}  // namespace ZOTDam
