#pragma once

#include "xml/Profile.h"

namespace ZOTDam {

// A data file that this and other processes read and write, each under the file's busy marker.
class CGuardedProfile : public CZOTProfile {
public:
    // Reads the file again, unless it is busy: then the document stays as it is.
    void Open() noexcept;

    // Writes the file, unless it is busy, or holds what this process has not read: then the changes stay in
    // memory, which counts as success.
    bool Save() noexcept;

    // The document element; a document without one gets it. Null without a DOM.
    IXMLDOMElementPtr Root();

protected:
    CGuardedProfile(std::wstring filePath, const wchar_t* busyMarkerName, const CName& newRootName);

    // A child of the root, created when missing.
    IXMLDOMElementPtr Section(const CName& name) { return GetChildNode(Root(), name); }

private:
    // What becomes of the document when there is no file to read.
    virtual void OpenWithoutFile() = 0;

    // What the document in memory has to do with the file.
    enum class FileContent : unsigned char {
        Unknown,  // nothing: the file has never been read, could not be opened, or came later
        Known,    // the document began as what the file holds
        NoXml,    // the file was read, but there is nothing that a document could hold
        Missed,   // the file was to be read, but there was no DOM or too little memory for it
    };

    FileContent ReadFile() noexcept;
    bool SetUnreadableFileAside() const;
    bool ReplaceFile();

    const wchar_t* markerName;
    CName rootName;
    FileContent fileContent = FileContent::Unknown;
};

}  // namespace ZOTDam
