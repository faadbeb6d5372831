#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/FileState.h"
#include "xml/Dom.h"
#include "xml/FileContent.h"

namespace ZOTDam {

// A data file as a DOM document. The object is also valid without a DOM, for example when COM is not
// initialised on the thread. Searches then find nothing, and loading and saving fail. Compatibility: C9.
class CZOTProfile {
public:
    explicit CZOTProfile(std::wstring path);
    CZOTProfile(const CZOTProfile&) = delete;
    CZOTProfile& operator=(const CZOTProfile&) = delete;
    virtual ~CZOTProfile() = default;

    // Returns the first child element with this name, and creates it if it is missing. Returns null when
    // `parent` is null. Compatibility: C14.
    virtual IXMLDOMElementPtr GetChildNode(IXMLDOMNode* parent, const CXmlName& name);

    // Returns the document element, or null. Does not check its name. Compatibility: C15.
    IXMLDOMElementPtr FindRoot() const;

protected:
    // Returns true also for a folder.
    bool FileExists() const noexcept;

    const std::wstring& Path() const noexcept { return path; }

    enum class LoadResult : unsigned char {
        Loaded,
        NotRead,        // the file could not be opened or read to its end, or is incomplete
        NotWellFormed,  // the DOM or the check of the prolog rejected the content
        Failed,         // the DOM or memory is not available
    };

    // Loads the file into the document. If this fails, the document is empty, unless the DOM cannot empty it.
    LoadResult Load() noexcept;

    // Returns whether the file and the document are unchanged since the last load. Returns false when this is
    // unknown.
    bool IsUpToDate() const noexcept;

    // Makes IsUpToDate return false until the next load. To be called before an operation that may change the
    // file or the document in a way that IsUpToDate does not detect.
    void ForgetFileState() noexcept { loadedState = {}; }

    // Atomically replaces the file with the document. Returns false on failure.
    bool Write() noexcept;

    // Returns the first child element of the root with this name, or null. Creates nothing.
    IXMLDOMElementPtr FindSection(const CXmlName& name) const;

    // Appends an XML declaration and a root element. Returns null when the DOM is missing.
    IXMLDOMElementPtr CreateRoot(const CXmlName& name);

    // Removes all children of a section of the root, and creates the section if it is missing. Returns false
    // when the section is empty or the document has no root.
    bool ClearSection(const CXmlName& name);

private:
    // Returns whether the file may contain only a part of its content. Called while the file is open and no
    // other process can write to it.
    virtual bool IsIncomplete() const { return false; }

    // Returns whether a load accepts the serialized document and would read its values.
    bool IsLoadable(std::string_view text) const;
    bool IsReadBack(std::string_view text) const;

    LoadResult ReadAndParse();
    LoadResult Parse(CFileContent& content);
    bool Clear();

    IXMLDOMDocument2Ptr document;
    std::wstring path;
    FileState loadedState;
    std::uint32_t changesAtLoad = 0;
};

}  // namespace ZOTDam
