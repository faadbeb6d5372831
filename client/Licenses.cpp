#include "Licenses.h"

#include <windows.h>

#include "Error.h"

namespace ZOTDam::Client {

namespace {

// Returns a text that zotdamctl.rc includes in the program.
std::string EmbeddedText(const wchar_t* name) {
    const HRSRC resource = FindResourceW(nullptr, name, L"DOCUMENT");
    const HGLOBAL loaded = resource == nullptr ? nullptr : LoadResource(nullptr, resource);
    if (loaded == nullptr)
        throw Error{"The program does not contain its licences."};
    return {static_cast<const char*>(LockResource(loaded)), SizeofResource(nullptr, resource)};
}

}  // namespace

std::string Licenses() {
    std::string text = EmbeddedText(L"LICENSE") + '\n' + EmbeddedText(L"NOTICES");
    text.pop_back();
    return text;
}

}  // namespace ZOTDam::Client
