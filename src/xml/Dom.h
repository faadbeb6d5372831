// Reading and writing elements and attributes. Every function throws the DOM's failures as _com_error, and
// E_POINTER for an element that is null.
#pragma once

#include <cstdint>
#include <iterator>
#include <string>

#include "xml/Com.h"
#include "xml/Name.h"
#include "ZOTDam.h"

namespace ZOTDam {

// The child elements of `parent` that have the given name and no namespace, in document order, for a
// range-for. (Siblings are walked: a DOM compiles an XPath anew for each selection, which costs more than
// looking at the few children that an element of our files has.)
class CSelection {
public:
    CSelection(IXMLDOMNode* parent, const CName& childName);

    class Iterator {
    public:
        Iterator(const IXMLDOMNodePtr& first, const CName& name);
        const IXMLDOMElementPtr& operator*() const noexcept { return element; }
        Iterator& operator++();
        bool operator==(std::default_sentinel_t) const noexcept {
            return element.GetInterfacePtr() == nullptr;
        }

    private:
        IXMLDOMElementPtr element;
        const CName& name;
    };

    Iterator begin() const { return {firstChild, name}; }
    static std::default_sentinel_t end() noexcept { return {}; }

private:
    IXMLDOMNodePtr firstChild;
    CName name;
};

inline CSelection SelectChildren(IXMLDOMNode* parent, const CName& name) {
    return {parent, name};
}

// The first of the children that SelectChildren would give, or null.
IXMLDOMElementPtr SelectChild(IXMLDOMNode* parent, const CName& name);

// Reads an attribute. False, and `field` untouched, when the element lacks it. A number is read up to its
// first character that is no digit; a text that does not fit a fixed field is refused with E_INVALIDARG,
// since a part of it would be a different text.
bool ReadAttribute(IXMLDOMElement* element, const CName& name, std::int32_t& field);
bool ReadAttribute(IXMLDOMElement* element, const CName& name, Text& field);
bool ReadAttribute(IXMLDOMElement* element, const CName& name, std::wstring& field);

// Reads the text of an element for display: what does not fit is cut off.
void ReadElementText(IXMLDOMElement* element, Text& field);

// Sets an attribute, creating it when it is missing. A text that XML cannot carry is refused with
// E_INVALIDARG.
void WriteAttribute(IXMLDOMElement* element, const CName& name, std::int32_t value);
void WriteAttribute(IXMLDOMElement* element, const CName& name, const wchar_t* value);

// The same for an attribute whose name comes from outside. To set one, the name has to be one without a
// prefix and must not stand for a namespace; others are refused with E_INVALIDARG.
bool ReadNamedAttribute(IXMLDOMElement* element, const wchar_t* name, std::wstring& value);
void WriteNamedAttribute(IXMLDOMElement* element, const wchar_t* name, const wchar_t* value);

// Appends an empty element; `parent` may be the document itself.
IXMLDOMElementPtr AppendElement(IXMLDOMDocument* document, IXMLDOMNode* parent, const CName& name);

// Makes an element with a value, or with none, for the document of `parent`. CreateElement leaves the
// appending to the caller.
IXMLDOMElementPtr CreateElement(IXMLDOMNode* parent, const CName& name, const _variant_t& value = {});
IXMLDOMElementPtr CreateChild(IXMLDOMNode* parent, const CName& name, const _variant_t& value = {});

// Makes a deep copy of a node of another document, for the document of `parent`, without appending it. A node
// of a document with a document type is refused with E_INVALIDARG.
IXMLDOMNodePtr ImportNode(IXMLDOMNode* parent, IXMLDOMNode* node);

void AppendChild(IXMLDOMNode* parent, IXMLDOMNode* child);
void RemoveChild(IXMLDOMNode* parent, IXMLDOMNode* child);

// Removes all children, of whatever kind. True when there was one.
bool RemoveChildren(IXMLDOMNode* parent);

void RemoveAttributes(IXMLDOMNode* element);

}  // namespace ZOTDam
