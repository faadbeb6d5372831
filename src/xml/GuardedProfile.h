#pragma once

#include "xml/Profile.h"

namespace ZOTDam {

// A data file that this and other processes read and write, each under the file's busy marker.
class CGuardedProfile : public CZOTProfile {
public:
    // Reads the file again if that can make a difference. If the file is busy, leaves the document unchanged.
    // Compatibility: C3.
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

    bool IsIncomplete() const override;

    bool BackUpUnreadableFile() const;
    bool ReplaceFile();

    const wchar_t* markerName;
    CXmlName rootName;
    // The last load of the file. A file that was created later was not read.
    LoadResult loadResult = LoadResult::NotRead;
};

}  // namespace ZOTDam
