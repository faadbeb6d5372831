// Reading and writing of elements and attributes. Every call throws a _com_error when the DOM reports a
// failure. The error E_POINTER means that `parent` or `element` is null.
#pragma once

#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "xml/Com.h"
#include "xml/XmlName.h"
#include "ZOTDam.h"

namespace ZOTDam {

// The child elements of `parent` that have the given name and no namespace, in document order, for a
// range-based for loop. The iterator compares the names of the siblings. An XPath query would cost more,
// because the DOM compiles it each time and an element of the data files has few children.
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

// Reads an attribute into `field`. Returns false and leaves `field` unchanged when the attribute is missing.
// A number is read up to its first non-digit character (Compatibility: C18). Throws E_INVALIDARG when a
// string does not fit into a Text, because a truncated string would be a different value. Compatibility: C19.
bool ReadAttribute(IXMLDOMElement* element, const CXmlName& name, std::int32_t& field);
bool ReadAttribute(IXMLDOMElement* element, const CXmlName& name, Text& field);
bool ReadAttribute(IXMLDOMElement* element, const CXmlName& name, std::wstring& field);

// Reads the display text of an element. Truncates it if it does not fit.
void ReadElementText(IXMLDOMElement* element, Text& field);

// Sets an attribute, creating it when it is missing. Throws E_INVALIDARG for a string that XML cannot
// represent.
void WriteAttribute(IXMLDOMElement* element, const CXmlName& name, std::int32_t value);
void WriteAttribute(IXMLDOMElement* element, const CXmlName& name, const wchar_t* value);

// Reads or writes an attribute whose name comes from the client. ReadNamedAttribute returns false when the
// attribute is missing or is a namespace declaration. WriteNamedAttribute throws E_INVALIDARG when the name
// is invalid, contains a prefix or declares a namespace, or when XML cannot represent the value.
bool ReadNamedAttribute(IXMLDOMElement* element, const wchar_t* name, std::wstring& value);
void WriteNamedAttribute(IXMLDOMElement* element, const wchar_t* name, const wchar_t* value);

// The number of changes that the functions of this header have made to all documents. If the number is the
// same at two times, they have changed no document in between.
std::uint32_t CountOfDomChanges() noexcept;

// Appends an element without content. `parent` may be the document itself.
IXMLDOMElementPtr AppendElement(IXMLDOMDocument* document, IXMLDOMNode* parent, const CXmlName& name);

// Creates an element with a value for the document of `parent`. Without a value, the element contains a line
// feed and a tab (Compatibility: C16). CreateChild also appends the element to `parent`.
IXMLDOMElementPtr CreateElement(IXMLDOMNode* parent, const CXmlName& name, const _variant_t& value = {});
IXMLDOMElementPtr CreateChild(IXMLDOMNode* parent, const CXmlName& name, const _variant_t& value = {});

// Creates a deep copy of a node of another document, for the document of `parent`. Does not append the copy.
IXMLDOMNodePtr ImportNode(IXMLDOMNode* parent, IXMLDOMNode* node);

void AppendChild(IXMLDOMNode* parent, IXMLDOMNode* child);
void RemoveChild(IXMLDOMNode* parent, IXMLDOMNode* child);

// Removes all child nodes, not only the elements. Returns false when the node has no children.
bool RemoveChildren(IXMLDOMNode* parent);

struct NamedAttribute {
    std::wstring name;
    IXMLDOMNodePtr node;
};

// Returns all attributes except namespace declarations, even if the DOM selects these too.
std::vector<NamedAttribute> SelectAttributes(IXMLDOMNode* element);

// Removes all attributes except namespace declarations.
void RemoveAttributes(IXMLDOMNode* element);

}  // namespace ZOTDam
