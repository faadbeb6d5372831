#include "Msxml.h"

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace ZOTDam::Bench {

namespace {

_COM_SMARTPTR_TYPEDEF(IStream, __uuidof(IStream));

// The array of bytes that a DOM loads.
_variant_t ReadBytes(const std::filesystem::path& file) {
    const HANDLE handle = CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    const DWORD size = GetFileSize(handle, nullptr);
    _variant_t bytes;
    V_ARRAY(&bytes) = SafeArrayCreateVector(VT_UI1, 0, size);
    V_VT(&bytes) = VT_ARRAY | VT_UI1;
    DWORD count = 0;
    ReadFile(handle, V_ARRAY(&bytes)->pvData, size, &count, nullptr);
    CloseHandle(handle);
    return bytes;
}

void WriteStream(IStream* stream, HANDLE file) {
    STATSTG state = {};
    stream->Stat(&state, STATFLAG_NONAME);
    HGLOBAL memory = nullptr;
    GetHGlobalFromStream(stream, &memory);
    DWORD count = 0;
    WriteFile(file, GlobalLock(memory), state.cbSize.LowPart, &count, nullptr);
    GlobalUnlock(memory);
    FlushFileBuffers(file);
}

// Replaces the target with an open file. The newer kind of rename also replaces a file that is in use.
void RenameByHandle(HANDLE file, const std::filesystem::path& target) {
    constexpr auto renameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
    constexpr DWORD replaceWithPosixSemantics = 3;
    const std::wstring& name = target.native();
    std::vector<char> information(sizeof(FILE_RENAME_INFO) + name.size() * sizeof(wchar_t));
    auto* const fields = reinterpret_cast<FILE_RENAME_INFO*>(information.data());
    std::memcpy(fields, &replaceWithPosixSemantics, sizeof replaceWithPosixSemantics);
    fields->FileNameLength = static_cast<DWORD>(name.size() * sizeof(wchar_t));
    std::memcpy(fields->FileName, name.c_str(), fields->FileNameLength);
    const auto size = static_cast<DWORD>(information.size());
    if (SetFileInformationByHandle(file, renameInfoEx, fields, size) != FALSE)
        return;
    fields->ReplaceIfExists = TRUE;
    SetFileInformationByHandle(file, FileRenameInfo, fields, size);
}

}  // namespace

PlainDocument::PlainDocument() {
    document.CreateInstance(DomDocument60);
    document->put_async(VARIANT_FALSE);
}

void PlainDocument::Load(const std::filesystem::path& file) {
    LoadFrom(_variant_t{file.c_str()});
}

void PlainDocument::LoadBytes(const std::filesystem::path& file) {
    LoadFrom(ReadBytes(file));
}

void PlainDocument::LoadFrom(const VARIANT& source) {
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    document->load(source, &isLoaded);
}

IXMLDOMElementPtr PlainDocument::Root() const {
    IXMLDOMElementPtr root;
    document->get_documentElement(&root);
    return root;
}

void PlainDocument::SaveAtomically(const std::filesystem::path& file) const {
    std::filesystem::path temporaryFile = file;
    temporaryFile.replace_extension(L".new");
    Save(temporaryFile);
    const HANDLE saved = CreateFileW(temporaryFile.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                     OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    FlushFileBuffers(saved);
    CloseHandle(saved);
    MoveFileExW(temporaryFile.c_str(), file.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

void PlainDocument::SaveByHandle(const std::filesystem::path& file) const {
    IStreamPtr stream;
    CreateStreamOnHGlobal(nullptr, TRUE, &stream);
    document->save(_variant_t{stream.GetInterfacePtr()});
    std::filesystem::path temporaryFile = file;
    temporaryFile.replace_extension(L".new");
    const HANDLE saved = CreateFileW(temporaryFile.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_ALWAYS,
                                     FILE_ATTRIBUTE_NORMAL | FILE_FLAG_WRITE_THROUGH, nullptr);
    WriteStream(stream, saved);
    RenameByHandle(saved, file);
    CloseHandle(saved);
}

void PlainDocument::Save(const std::filesystem::path& file) const {
    document->save(_variant_t{file.c_str()});
}

IXMLDOMNodePtr Child(IXMLDOMNode* parent, const CXmlName& name) {
    IXMLDOMNodePtr child;
    parent->selectSingleNode(name.AsBstr(), &child);
    return child;
}

_variant_t Attribute(IXMLDOMNode* element, const CXmlName& name) {
    IXMLDOMNamedNodeMapPtr attributes;
    element->get_attributes(&attributes);
    IXMLDOMNodePtr attribute;
    attributes->getNamedItem(name.AsBstr(), &attribute);
    _variant_t value;
    attribute->get_nodeTypedValue(&value);
    return value;
}

long Numbers(IXMLDOMNode* element, std::initializer_list<CXmlName> names) {
    long sum = 0;
    for (const CXmlName& name : names) {
        const _variant_t value = Attribute(element, name);
        sum += _wtol(V_BSTR(&value));
    }
    return sum;
}

long Texts(IXMLDOMNode* element, std::initializer_list<CXmlName> names) {
    long sum = 0;
    for (const CXmlName& name : names) {
        const _variant_t value = Attribute(element, name);
        sum += static_cast<long>(SysStringLen(V_BSTR(&value)));
    }
    return sum;
}

void SetAttribute(IXMLDOMElement* element, const CXmlName& name, const wchar_t* value) {
    element->setAttribute(name.AsBstr(), _variant_t{value});
}

void SetAttribute(IXMLDOMElement* element, const CXmlName& name, std::int32_t value) {
    wchar_t digits[12];
    _itow_s(value, digits, std::size(digits), 10);
    SetAttribute(element, name, digits);
}

IXMLDOMElementPtr CreateElement(const PlainDocument& document, const CXmlName& name) {
    IXMLDOMElementPtr element;
    document->createElement(name.AsBstr(), &element);
    element->put_text(CXmlName{L"\n\t"}.AsBstr());
    return element;
}

void Append(IXMLDOMNode* parent, IXMLDOMNode* child) {
    IXMLDOMNodePtr appended;
    parent->appendChild(child, &appended);
}

void RemoveChildren(IXMLDOMNode* parent) {
    IXMLDOMNodePtr child;
    while (parent->get_firstChild(&child) == S_OK) {
        IXMLDOMNodePtr removed;
        parent->removeChild(child, &removed);
    }
}

}  // namespace ZOTDam::Bench
