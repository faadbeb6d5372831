#include "doctor/XmlFile.h"

#include <oleauto.h>

#include <system_error>

#include "Error.h"
#include "platform/File.h"
#include "Text.h"
#include "xml/EntityBomb.h"

namespace ZOTDam::Client {

namespace {

using Document = OwnedInterface<IXMLDOMDocument>;

Document NewDocument() {
    void* created = nullptr;
    if (FAILED(CoCreateInstance(DomDocument60, nullptr, CLSCTX_ALL, __uuidof(IXMLDOMDocument), &created)))
        throw Error{"MSXML 6 is not installed."};
    Document document{static_cast<IXMLDOMDocument*>(created)};
    document->put_async(VARIANT_FALSE);
    return document;
}

bool Load(IXMLDOMDocument& document, const std::filesystem::path& path) {
    VARIANT source;
    V_VT(&source) = VT_BSTR;
    V_BSTR(&source) = SysAllocString(path.c_str());
    VARIANT_BOOL loaded = VARIANT_FALSE;
    const HRESULT result = document.load(source, &loaded);
    SysFreeString(V_BSTR(&source));
    return result == S_OK && loaded == VARIANT_TRUE;
}

// Returns " at line 3, column 7", as far as the parser reports the position.
std::string PositionOfError(IXMLDOMDocument& document) {
    IXMLDOMParseError* parseError = nullptr;
    if (document.get_parseError(&parseError) != S_OK)
        return {};
    const OwnedInterface<IXMLDOMParseError> error{parseError};
    long line = 0;
    long column = 0;
    if (error->get_line(&line) != S_OK || line == 0)
        return {};
    return " at line " + std::to_string(line) +
           (error->get_linepos(&column) == S_OK && column != 0 ? ", column " + std::to_string(column) : "");
}

bool HasDocumentType(IXMLDOMDocument& document) {
    bool found = false;
    return FindDocumentType(&document, found) == S_OK && found;
}

Node RootOf(IXMLDOMDocument& document) {
    IXMLDOMElement* root = nullptr;
    document.get_documentElement(&root);
    return Node{root};
}

std::optional<Element> ReadDocument(const FileToExamine& file, Findings& findings) {
    const Document document = NewDocument();
    if (!Load(*document, findings.Path())) {
        findings.AddObstacle("not-well-formed", "the file is not well-formed" + PositionOfError(*document),
                             file.failure.notWellFormed);
        return {};
    }
    if (HasDocumentType(*document))
        findings.AddToFile("document-type", "the file has a document type",
                           "the library cannot copy nodes from it, and the DOM of Windows rejects it");
    return BuildElement(RootOf(*document).get());
}

bool IsMissing(const FileToExamine& file, Findings& findings) {
    std::error_code error;
    if (exists(findings.Path(), error) || error)
        return false;
    if (file.failure.missing != nullptr)
        findings.AddObstacle("missing-file", "the file does not exist", file.failure.missing);
    return true;
}

// Includes the trailing separator.
std::size_t LengthOfFolder(const std::filesystem::path& path) {
    return path.native().rfind(L'\\') + 1;
}

}  // namespace

std::optional<Element> ReadXmlFile(const FileToExamine& file, Findings& findings) {
    if (LengthOfFolder(findings.Path()) >= file.folderCapacity) {
        findings.AddObstacle(
            "path-too-long",
            "the path of its folder has more than " + std::to_string(file.folderCapacity - 1) + " characters",
            file.failure.unreadable);
        return {};
    }
    if (IsMissing(file, findings))
        return {};
    // Prevents other processes from writing the file while it is examined.
    const CFile opened{CreateFileW(findings.Path().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                   OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)};
    if (!opened.IsOpen()) {
        const bool isInUse = GetLastError() == ERROR_SHARING_VIOLATION;
        findings.AddObstacle("unreadable-file",
                             isInUse ? "the file is in use by another program" : "the file cannot be opened",
                             file.failure.unreadable);
        return {};
    }
    if (IsEntityBomb(findings.Path())) {
        findings.AddObstacle("entity-bomb",
                             "the expansion of the entities that the file declares is too large",
                             file.failure.notWellFormed);
        return {};
    }
    return ReadDocument(file, findings);
}

}  // namespace ZOTDam::Client
