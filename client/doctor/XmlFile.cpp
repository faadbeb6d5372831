#include "doctor/XmlFile.h"

#include <oleauto.h>

#include <system_error>

#include "Error.h"
#include "platform/File.h"
#include "Text.h"
#include "xml/FileContent.h"
#include "xml/Prolog.h"

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

bool Load(IXMLDOMDocument& document, CFileContent& content) {
    VARIANT_BOOL loaded = VARIANT_FALSE;
    return document.load(content.AsSource(), &loaded) == S_OK && loaded == VARIANT_TRUE;
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

Node RootOf(IXMLDOMDocument& document) {
    IXMLDOMElement* root = nullptr;
    document.get_documentElement(&root);
    return Node{root};
}

// Checks in the same order as the library, which passes no file with a document type to the DOM.
std::optional<Element> ReadDocument(CFileContent& content, const FileToExamine& file, Findings& findings) {
    const Prolog prolog = ExamineProlog(content.View());
    if (prolog == Prolog::DocumentType) {
        findings.AddObstacle("document-type", "the file has a document type", file.failure.notWellFormed);
        return {};
    }
    const Document document = NewDocument();
    if (prolog == Prolog::Invalid || !Load(*document, content)) {
        findings.AddObstacle("not-well-formed", "the file is not well-formed" + PositionOfError(*document),
                             file.failure.notWellFormed);
        return {};
    }
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
    const CFile opened{OpenForReading(findings.Path())};
    if (!opened.IsOpen()) {
        const bool isInUse = GetLastError() == ERROR_SHARING_VIOLATION;
        findings.AddObstacle("unreadable-file",
                             isInUse ? "the file is in use by another program" : "the file cannot be opened",
                             file.failure.unreadable);
        return {};
    }
    std::optional<CFileContent> content = ReadContent(opened);
    if (!content) {
        findings.AddObstacle("unreadable-file", "the file cannot be read to its end",
                             file.failure.unreadable);
        return {};
    }
    return ReadDocument(*content, file, findings);
}

}  // namespace ZOTDam::Client
