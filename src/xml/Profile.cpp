#include "xml/Profile.h"

#include <shlwapi.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/AtomicFile.h"
#include "platform/FalseOnException.h"
#include "platform/File.h"
#include "xml/Prolog.h"
#include "xml/SavedValues.h"
#include "xml/TextStream.h"
#include "xml/XmlDeclaration.h"

namespace ZOTDam {

namespace {

// Windows unloads the module of the DOM at the last CoUninitialize, even while its objects are in use.
// Releasing a document would then call code that is no longer mapped.
void KeepModuleLoaded(IUnknown* object) noexcept {
    const auto* const methods = *reinterpret_cast<const wchar_t* const* const*>(object);
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, methods[0],
                       &module);
}

IXMLDOMDocument2Ptr CreateDocument() noexcept {
    IXMLDOMDocument2Ptr document;
    // An asynchronous load would return before the file is read.
    if (FAILED(document.CreateInstance(DomDocument60, nullptr, CLSCTX_ALL)) ||
        FAILED(document->put_async(VARIANT_FALSE)))
        return {};
    KeepModuleLoaded(document);
    return document;
}

}  // namespace

CZOTProfile::CZOTProfile(std::wstring path) : document{CreateDocument()}, path{std::move(path)} {}

IXMLDOMElementPtr CZOTProfile::GetChildNode(IXMLDOMNode* parent, const CXmlName& name) {
    if (parent == nullptr)
        return {};
    if (const IXMLDOMElementPtr found = SelectChild(parent, name))
        return found;
    return document ? AppendElement(document, parent, name) : IXMLDOMElementPtr{};
}

IXMLDOMElementPtr CZOTProfile::FindRoot() const {
    IXMLDOMElementPtr root;
    if (document)
        Check(document->get_documentElement(&root), document.GetInterfacePtr());
    return root;
}

bool CZOTProfile::FileExists() const noexcept {
    return PathFileExistsW(path.c_str()) != FALSE;
}

CZOTProfile::LoadResult CZOTProfile::Load() noexcept {
    ForgetFileState();
    LoadResult result = LoadResult::Failed;
    const bool isLoaded = FalseOnException([&] {
        result = ReadAndParse();
        return result == LoadResult::Loaded;
    });
    return isLoaded || FalseOnException([&] { return Clear(); }) ? result : LoadResult::Failed;
}

CZOTProfile::LoadResult CZOTProfile::ReadAndParse() {
    const std::uint64_t time = CurrentTime();
    const CFile file{OpenForReading(path)};
    if (!file.IsOpen() || IsIncomplete())
        return LoadResult::NotRead;
    const FileState state = StateOf(file.Handle());
    std::optional<CFileContent> content = ReadContent(file);
    if (!content)
        return LoadResult::NotRead;
    const LoadResult result = Parse(*content);
    if (result == LoadResult::Loaded && IdentifiesContent(state, time)) {
        loadedState = state;
        changesAtLoad = CountOfDomChanges();
    }
    return result;
}

CZOTProfile::LoadResult CZOTProfile::Parse(CFileContent& content) {
    if (ExamineProlog(content.View()) != Prolog::Valid)
        return LoadResult::NotWellFormed;
    NoteLoadedContent(content.View());
    const VARIANT& source = content.AsSource();
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    const HRESULT result = document->load(source, &isLoaded);
    // Some DOMs return this for a stream that is not well-formed.
    if (result == E_FAIL && V_VT(&source) == VT_UNKNOWN)
        return LoadResult::NotWellFormed;
    Check(result, document.GetInterfacePtr());
    return isLoaded == VARIANT_TRUE ? LoadResult::Loaded : LoadResult::NotWellFormed;
}

// The DOM empties the document at a failed load, but it does not receive every file that cannot be loaded.
bool CZOTProfile::Clear() {
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    return document && SUCCEEDED(document->loadXML(CXmlName{L""}.AsBstr(), &isLoaded));
}

bool CZOTProfile::IsUpToDate() const noexcept {
    return loadedState != FileState{} && changesAtLoad == CountOfDomChanges() && StateOf(path) == loadedState;
}

bool CZOTProfile::Write() noexcept {
    return FalseOnException([&] {
        if (!document || path.empty())
            return false;
        DeclareUtf8(document);
        CTextStream stream;
        return document->save(_variant_t{&stream}) == S_OK && stream.IsComplete() &&
               IsLoadable(stream.Text()) && ReplaceAtomically(path, stream.Text());
    });
}

bool CZOTProfile::IsLoadable(std::string_view text) const {
    return text.size() <= MaxFileSize && (!HasCriticalValues() || IsReadBack(text));
}

bool CZOTProfile::IsReadBack(std::string_view text) const {
    const IXMLDOMDocument2Ptr copy = CreateDocument();
    CFileContent content{static_cast<ULONG>(text.size())};
    std::ranges::copy(text, content.Data());
    VARIANT_BOOL isLoaded = VARIANT_FALSE;
    return copy && copy->load(content.AsSource(), &isLoaded) == S_OK && HaveEqualAttributes(document, copy);
}

IXMLDOMElementPtr CZOTProfile::FindSection(const CXmlName& name) const {
    const IXMLDOMElementPtr root = FindRoot();
    return root ? SelectChild(root, name) : IXMLDOMElementPtr{};
}

IXMLDOMElementPtr CZOTProfile::CreateRoot(const CXmlName& name) {
    if (!document)
        return {};
    // An earlier call that failed may have left a declaration.
    RemoveChildren(document);
    AppendDeclaration(document);
    return AppendElement(document, document, name);
}

bool CZOTProfile::ClearSection(const CXmlName& name) {
    const IXMLDOMElementPtr root = FindRoot();
    return root && RemoveChildren(GetChildNode(root, name));
}

}  // namespace ZOTDam
