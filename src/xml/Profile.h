#pragma once

#include <string>

#include "platform/FileState.h"
#include "xml/Dom.h"

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

    // Loads the file into the document. Returns false and leaves an empty document when the load fails. A
    // file with an entity bomb is not loaded.
    bool Load() noexcept;

    // The same, but throws when the DOM or memory is not available.
    bool LoadOrThrow();

    // Replaces the file with the document, completely or not at all. Returns false on failure.
    bool Write() noexcept;

    // Returns the first child of the root with this name, or null. Creates nothing.
    IXMLDOMElementPtr FindSection(const CXmlName& name) const;

    IXMLDOMElementPtr CreateRoot(const CXmlName& name);

    // Removes all children of a section of the root. Returns false when the section is empty, or when the
    // document has no root; the function creates no root.
    bool ClearSection(const CXmlName& name);

private:
    bool HasNoEntityBomb();

    IXMLDOMDocument2Ptr document;
    std::wstring path;
    FileState checkedState;
};

}  // namespace ZOTDam
