#pragma once

#include <cstdint>
#include <string>

#include "platform/FileState.h"
#include "xml/Dom.h"
#include "xml/FileContent.h"

namespace ZOTDam {

// A data file as a DOM document. If the DOM cannot be created (COM is not initialised on the thread), the
// object is still valid: searches find nothing, and loading and saving fail. Compatibility: C9.
class CZOTProfile {
public:
    explicit CZOTProfile(std::wstring path);
    CZOTProfile(const CZOTProfile&) = delete;
    CZOTProfile& operator=(const CZOTProfile&) = delete;
    virtual ~CZOTProfile() = default;

    // Returns the first child element with this name, which is created when it is missing. Returns null for a
    // null parent. Compatibility: C14.
    virtual IXMLDOMElementPtr GetChildNode(IXMLDOMNode* parent, const CXmlName& name);

    // Returns the document element, whatever its name, or null. Compatibility: C15.
    IXMLDOMElementPtr FindRoot() const;

protected:
    bool FileExists() const noexcept;
    const std::wstring& Path() const noexcept { return path; }

    enum class LoadResult : unsigned char {
        Loaded,
        NotRead,        // the file could not be opened or not be read to its end
        NotWellFormed,  // the DOM refused the content, or the file has a document type
        Failed,         // the DOM or memory is not available
    };

    // Loads the file into the document, which is empty after any other result than Loaded.
    LoadResult Load() noexcept;

    // Returns whether the document is what a load would produce now. "Unknown" counts as false.
    bool IsUpToDate() const noexcept;

    // Must be called when the document and the file can differ from now on for another reason than a change
    // of one of them.
    void ForgetFileState() noexcept { loadedState = {}; }

    // Replaces the file with the document, completely or not at all. Returns false on failure.
    bool Write() noexcept;

    // Returns the first child of the root with this name, or null. Creates nothing.
    IXMLDOMElementPtr FindSection(const CXmlName& name) const;

    IXMLDOMElementPtr CreateRoot(const CXmlName& name);

    // Removes all children of a section of the root. Returns false when the section is empty, or when the
    // document has no root; the function creates no root.
    bool ClearSection(const CXmlName& name);

private:
    // Returns whether the file may contain only a part of its content. Called while no other process can
    // write to it.
    virtual bool IsIncomplete() const { return false; }

    LoadResult ReadAndParse();
    LoadResult Parse(const CFileContent& content);
    bool Clear();

    IXMLDOMDocument2Ptr document;
    std::wstring path;
    FileState loadedState;
    std::uint32_t changesAtLoad = 0;
};

}  // namespace ZOTDam
