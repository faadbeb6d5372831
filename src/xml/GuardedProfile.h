#pragma once

#include "xml/Profile.h"

namespace ZOTDam {

// A data file that this and other processes read and write, each under the file's busy marker.
class CGuardedProfile : public CZOTProfile {
public:
    // Reads the file again. If the file is busy, leaves the document unchanged. Compatibility: C3.
    void Open() noexcept;

    // Writes the file. If the file is busy or contains data that this process has not read, the changes stay
    // in memory, which counts as success. Compatibility: C3.
    bool Save() noexcept;

    // Returns the document element, which is created when it is missing. Returns null without a DOM.
    IXMLDOMElementPtr Root();

protected:
    CGuardedProfile(std::wstring path, const wchar_t* markerName, const CXmlName& rootName);

    // Returns a child of the root, which is created when it is missing.
    IXMLDOMElementPtr Section(const CXmlName& name) { return GetChildNode(Root(), name); }

private:
    // Prepares the document when the file does not exist.
    virtual void OpenWithoutFile() = 0;

    // The relation of the document in memory to the file.
    enum class FileContent : unsigned char {
        Unknown,        // the file was never read, could not be opened, or was created later
        Known,          // the document is based on the file's content
        NotWellFormed,  // the file was read, but its content cannot be loaded (not well-formed)
        LoadFailed,     // the load failed: no DOM or not enough memory
    };

    FileContent ReadFile() noexcept;
    bool BackUpUnreadableFile() const;
    bool ReplaceFile();

    const wchar_t* markerName;
    CXmlName rootName;
    FileContent fileContent = FileContent::Unknown;
};

}  // namespace ZOTDam
