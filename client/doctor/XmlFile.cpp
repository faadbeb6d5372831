#include "doctor/XmlFile.h"

#include <oleauto.h>

#include <system_error>

#include "doctor/FileUsers.h"
#include "doctor/ParseError.h"
#include "doctor/StartTags.h"
#include "Msxml.h"
#include "platform/File.h"
#include "xml/FileContent.h"
#include "xml/Prolog.h"

namespace ZOTDam::Client {

namespace {

bool Load(IXMLDOMDocument& document, CFileContent& content) {
    VARIANT_BOOL loaded = VARIANT_FALSE;
    return document.load(content.AsSource(), &loaded) == S_OK && loaded == VARIANT_TRUE;
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
    const Document document = CreateDocument();
    if (prolog == Prolog::Invalid || !Load(*document, content)) {
        const auto [position, reason] =
            prolog == Prolog::Invalid ? ParseError{} : FindParseError(content.AsSource());
        findings.AddObstacle("not-well-formed",
                             "the file is not well-formed" + (reason.empty() ? "" : ": " + reason),
                             file.failure.notWellFormed, position);
        return {};
    }
    return BuildElement(RootOf(*document).get(), FindStartTags(content.View(), MaxDepth));
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
        if (GetLastError() == ERROR_SHARING_VIOLATION)
            findings.AddObstacle("file-in-use", "the file is in use by " + ProgramsUsing(findings.Path()),
                                 file.failure.unreadable);
        else
            findings.AddObstacle("unreadable-file", "the file cannot be opened", file.failure.unreadable);
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
