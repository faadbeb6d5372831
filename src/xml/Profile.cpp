#include "xml/Profile.h"

#include <shlwapi.h>

#include <utility>

#include "platform/AtomicFile.h"
#include "platform/FalseOnException.h"
#include "xml/EntityBomb.h"
#include "xml/TextStream.h"
#include "xml/XmlDeclaration.h"

namespace ZOTDam {

namespace {

IXMLDOMDocument2Ptr CreateDocument() noexcept {
    IXMLDOMDocument2Ptr document;
    // An asynchronous load would return before the file is read.
    if (FAILED(document.CreateInstance(DomDocument60, nullptr, CLSCTX_ALL)) ||
        FAILED(document->put_async(VARIANT_FALSE)))
        return {};
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

bool CZOTProfile::Load() noexcept {
    return FalseOnException([this] { return LoadOrThrow(); });
}

bool CZOTProfile::LoadOrThrow() {
    VARIANT_BOOL loaded = VARIANT_FALSE;
    if (!HasNoEntityBomb()) {
        Check(document->loadXML(CXmlName{L""}.AsBstr(), &loaded), document.GetInterfacePtr());
        return false;
    }
    Check(document->load(_variant_t{path.c_str()}, &loaded), document.GetInterfacePtr());
    return loaded == VARIANT_TRUE;
}

// The check reads the whole file, so it is skipped when the file is unchanged since the last check.
bool CZOTProfile::HasNoEntityBomb() {
    const FileState state = StateOf(path);
    if (state != checkedState && !IsEntityBomb(path))
        checkedState = state;
    return state == checkedState;
}

bool CZOTProfile::Write() noexcept {
    return FalseOnException([&] {
        if (!document || path.empty())
            return false;
        DeclareUtf8(document);
        CTextStream stream;
        return document->save(_variant_t{&stream}) == S_OK && stream.IsComplete() &&
               ReplaceAtomically(path, stream.Text());
    });
}

IXMLDOMElementPtr CZOTProfile::FindSection(const CXmlName& name) const {
    const IXMLDOMElementPtr root = FindRoot();
    return root ? SelectChild(root, name) : IXMLDOMElementPtr{};
}

IXMLDOMElementPtr CZOTProfile::CreateRoot(const CXmlName& name) {
    if (!document)
        return {};
    AppendDeclaration(document);
    return AppendElement(document, document, name);
}

bool CZOTProfile::ClearSection(const CXmlName& name) {
    const IXMLDOMElementPtr root = FindRoot();
    return root && RemoveChildren(GetChildNode(root, name));
}

}  // namespace ZOTDam
