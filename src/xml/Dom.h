// Functions that read and write elements and attributes. Every function throws the DOM's failures as
// _com_error, and E_POINTER for a null element.
#pragma once

#include <cstdint>
#include <iterator>
#include <string>

#include "xml/Com.h"
#include "xml/XmlName.h"
#include "ZOTDam.h"

namespace ZOTDam {

// The child elements of `parent` that have the given name and no namespace, in document order, for use in a
// range-based for loop. (The iterator walks the siblings, because a DOM compiles the XPath of each selection,
// which costs more than checking the few children of an element in the data files.)
class CSelection {
public:
    CSelection(IXMLDOMNode* parent, const CXmlName& name);

    class Iterator {
    public:
        Iterator(const IXMLDOMNodePtr& first, const CXmlName& name);
        const IXMLDOMElementPtr& operator*() const noexcept { return element; }
        Iterator& operator++();
        bool operator==(std::default_sentinel_t) const noexcept {
            return element.GetInterfacePtr() == nullptr;
        }

    private:
        IXMLDOMElementPtr element;
        const CXmlName& name;
    };

    Iterator begin() const { return {firstChild, name}; }
    static std::default_sentinel_t end() noexcept { return {}; }

private:
    IXMLDOMNodePtr firstChild;
    CXmlName name;
};

inline CSelection SelectChildren(IXMLDOMNode* parent, const CXmlName& name) {
    return {parent, name};
}

// Returns the first element that SelectChildren would return, or null.
IXMLDOMElementPtr SelectChild(IXMLDOMNode* parent, const CXmlName& name);

// Reads an attribute. Returns false and leaves `field` unchanged when the attribute is missing. A number is
// read up to its first non-digit character (Compatibility: C18). Throws E_INVALIDARG when a string does not
// fit into a fixed field, because a truncated string would be a different value (Compatibility: C19).
bool ReadAttribute(IXMLDOMElement* element, const CXmlName& name, std::int32_t& field);
bool ReadAttribute(IXMLDOMElement* element, const CXmlName& name, Text& field);
bool ReadAttribute(IXMLDOMElement* element, const CXmlName& name, std::wstring& field);

// Reads the text of an element for display. Truncates text that does not fit.
void ReadElementText(IXMLDOMElement* element, Text& field);

// Sets an attribute, creating it when it is missing. Throws E_INVALIDARG for a string that XML cannot
// represent.
void WriteAttribute(IXMLDOMElement* element, const CXmlName& name, std::int32_t value);
void WriteAttribute(IXMLDOMElement* element, const CXmlName& name, const wchar_t* value);

// The same for an attribute whose name comes from the client. WriteNamedAttribute throws E_INVALIDARG unless
// the name is valid, has no prefix and does not declare a namespace.
bool ReadNamedAttribute(IXMLDOMElement* element, const wchar_t* name, std::wstring& value);
void WriteNamedAttribute(IXMLDOMElement* element, const wchar_t* name, const wchar_t* value);

// The number of changes that this library has made to the trees of all documents.
std::uint32_t CountOfDomChanges() noexcept;

// Appends an empty element; `parent` may be the document itself.
IXMLDOMElementPtr AppendElement(IXMLDOMDocument* document, IXMLDOMNode* parent, const CXmlName& name);

// Creates an element, with or without a value, for the document of `parent`. CreateChild also appends it;
// CreateElement leaves that to the caller.
IXMLDOMElementPtr CreateElement(IXMLDOMNode* parent, const CXmlName& name, const _variant_t& value = {});
IXMLDOMElementPtr CreateChild(IXMLDOMNode* parent, const CXmlName& name, const _variant_t& value = {});

// Creates a deep copy of a node of another document, for the document of `parent`, without appending it.
IXMLDOMNodePtr ImportNode(IXMLDOMNode* parent, IXMLDOMNode* node);

void AppendChild(IXMLDOMNode* parent, IXMLDOMNode* child);
void RemoveChild(IXMLDOMNode* parent, IXMLDOMNode* child);

// Removes all children of any kind. Returns false when the node has no children.
bool RemoveChildren(IXMLDOMNode* parent);

void RemoveAttributes(IXMLDOMNode* element);

}  // namespace ZOTDam
