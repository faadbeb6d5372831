#pragma once

#include <string>

#include "platform/FileState.h"
#include "xml/Dom.h"

namespace ZOTDam {

// One data file as a DOM document. Where the DOM cannot be created (COM not initialised on the thread) the
// object stands all the same: it finds nothing, and loading and saving fail.
class CZOTProfile {
public:
    explicit CZOTProfile(std::wstring filePath);
    CZOTProfile(const CZOTProfile&) = delete;
    CZOTProfile& operator=(const CZOTProfile&) = delete;
    virtual ~CZOTProfile() = default;

    // The first child element of that name, created when there is none. Null for a null parent.
    virtual IXMLDOMElementPtr GetChildNode(IXMLDOMNode* parent, const CName& name);

    // The document element, whatever its name, or null.
    IXMLDOMElementPtr FindRoot() const;

protected:
    bool FileExists() const noexcept;
    const std::wstring& Path() const noexcept { return path; }

    // Reads the document's file. A failed load leaves an empty document. An entity bomb is not loaded.
    bool Load() noexcept;

    // The same, but a load that did not come to an answer, for want of memory or of a DOM, throws.
    bool LoadOrThrow();

    // Writes the document over its file: all of it, or nothing.
    bool Write() noexcept;

    // The first child of the root with that name, or null. Creates nothing.
    IXMLDOMElementPtr FindSection(const CName& name) const;

    IXMLDOMElementPtr CreateRoot(const CName& name);

    // Removes all children of a section of the root. True only when there was one: an empty section gives
    // false, and so does a document without a root, in which nothing is created.
    bool ClearSection(const CName& name);

private:
    bool IsFileHarmless();

    IXMLDOMDocument2Ptr document;
    std::wstring path;
    FileState harmless;
};

}  // namespace ZOTDam
