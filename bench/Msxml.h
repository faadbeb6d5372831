// The MSXML calls of a program that does not use the library. Errors are not checked.
#pragma once

#include <comdef.h>

#include <cstdint>
#include <filesystem>
#include <initializer_list>

#include "xml/Com.h"
#include "xml/XmlName.h"

namespace ZOTDam::Bench {

class PlainDocument {
public:
    PlainDocument();
    explicit PlainDocument(const std::filesystem::path& file) : PlainDocument{} { Load(file); }

    // Passes the path to the DOM.
    void Load(const std::filesystem::path& file);

    // Opens the file once and passes its bytes to the DOM, which is faster.
    void LoadBytes(const std::filesystem::path& file);

    IXMLDOMDocument2Ptr operator->() const { return document; }
    IXMLDOMElementPtr Root() const;

    // Saves to a temporary file with the DOM's own method, flushes that file to the disk and replaces the
    // file with it.
    void SaveAtomically(const std::filesystem::path& file) const;

    // Does the same with one handle, from a stream in memory, which is faster. No other program can change
    // the temporary file before the rename.
    void SaveByHandle(const std::filesystem::path& file) const;

    // Saves with the DOM's own method.
    void Save(const std::filesystem::path& file) const;

private:
    void LoadFrom(const VARIANT& source);

    IXMLDOMDocument2Ptr document;
};

// The method that saves a document.
using SaveDocument = void (PlainDocument::*)(const std::filesystem::path& file) const;

// ---- Reading by XPath, and through the attribute map ----

// Returns the first child with this name that satisfies the predicate, or null.
template <class Predicate>
IXMLDOMNodePtr Find(IXMLDOMNode* parent, const CXmlName& name, Predicate predicate) {
    IXMLDOMNodeListPtr children;
    parent->selectNodes(name.AsBstr(), &children);
    long length = 0;
    children->get_length(&length);
    for (long i = 0; i < length; ++i) {
        IXMLDOMNodePtr child;
        children->get_item(i, &child);
        if (predicate(child))
            return child;
    }
    return {};
}

template <class Action>
void ForEach(IXMLDOMNode* parent, const CXmlName& name, Action action) {
    Find(parent, name, [&](IXMLDOMNode* child) {
        action(child);
        return false;
    });
}

IXMLDOMNodePtr Child(IXMLDOMNode* parent, const CXmlName& name);

// Return a sum over the values read, so that no read can be omitted.
long Numbers(IXMLDOMNode* element, std::initializer_list<CXmlName> names);
long Texts(IXMLDOMNode* element, std::initializer_list<CXmlName> names);
_variant_t Attribute(IXMLDOMNode* element, const CXmlName& name);

// ---- Changes ----

void SetAttribute(IXMLDOMElement* element, const CXmlName& name, const wchar_t* value);
void SetAttribute(IXMLDOMElement* element, const CXmlName& name, std::int32_t value);
IXMLDOMElementPtr CreateElement(const PlainDocument& document, const CXmlName& name);
void Append(IXMLDOMNode* parent, IXMLDOMNode* child);
void RemoveChildren(IXMLDOMNode* parent);

}  // namespace ZOTDam::Bench
