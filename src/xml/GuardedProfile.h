#pragma once

#include "xml/Profile.h"

namespace ZOTDam {

// A data file that several processes read and write. A process holds the file's busy marker while it loads or
// saves the file.
class CGuardedProfile : public CZOTProfile {
public:
    // Reads the file again unless it and the document are unchanged since the last load. Leaves the document
    // unchanged when the file is busy. Compatibility: C3.
    void Open() noexcept;

    // Writes the document to the file. When the file is busy, or exists but was not read by this process, the
    // changes stay in memory and the function returns true. Compatibility: C3.
    bool Save() noexcept;

    // Returns the document element, and creates it if it is missing. Returns null when the DOM is missing.
    IXMLDOMElementPtr Root();

protected:
    CGuardedProfile(std::wstring path, const wchar_t* markerName, const CXmlName& rootName);

    // Returns a child of the root, and creates it if it is missing.
    IXMLDOMElementPtr Section(const CXmlName& name) { return GetChildNode(Root(), name); }

private:
    // Prepares the document. Called by Open instead of a load when the file does not exist.
    virtual void OpenWithoutFile() = 0;

    bool IsIncomplete() const override;

    void Reload();

    // Returns whether a file that was read may be replaced now.
    bool PrepareToReplaceFile() const;

    const wchar_t* markerName;
    CXmlName rootName;
    // The result of the last load. It is Loaded after a save, and NotRead if the file did not exist.
    LoadResult loadResult = LoadResult::NotRead;
};

}  // namespace ZOTDam
