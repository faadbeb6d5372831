// The calls of MSXML that programs consist of which have no library: selections by XPath, attributes through
// the attribute map. Failures are not looked at.
#pragma once

#include <comdef.h>

#include <cstdint>
#include <filesystem>
#include <initializer_list>

#include "xml/Com.h"
#include "xml/Name.h"

#ifdef __MINGW32__
__CRT_UUID_DECL(IXMLDOMNodeList, 0x2933bf82, 0x7b36, 0x11d2, 0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60)
#endif

namespace ZOTDam::Bench {

_COM_SMARTPTR_TYPEDEF(IXMLDOMNodeList, __uuidof(IXMLDOMNodeList));

// A document that is loaded from a file.
class PlainDocument {
public:
    explicit PlainDocument(const std::filesystem::path& file);

    IXMLDOMDocument2Ptr operator->() const { return document; }
    IXMLDOMNodePtr Root() const;

    // As the library saves: beside the file, through to the disk, and moved over the file.
    void SaveDurably(const std::filesystem::path& file) const;

    // As the DOM saves.
    void Save(const std::filesystem::path& file) const;

private:
    IXMLDOMDocument2Ptr document;
};

// The first of these children for which the predicate holds, or null.
template <class Predicate>
IXMLDOMNodePtr Find(IXMLDOMNode* parent, const CName& name, Predicate predicate) {
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
void ForEach(IXMLDOMNode* parent, const CName& name, Action action) {
    Find(parent, name, [&](IXMLDOMNode* child) {
        action(child);
        return false;
    });
}

IXMLDOMNodePtr Child(IXMLDOMNode* parent, const CName& name);

// A sum over what was read: nobody may leave a read out.
long Numbers(IXMLDOMNode* element, std::initializer_list<CName> names);
long Texts(IXMLDOMNode* element, std::initializer_list<CName> names);
_variant_t Attribute(IXMLDOMNode* element, const CName& name);

void SetAttribute(IXMLDOMNode* element, const CName& name, const wchar_t* value);
void SetAttribute(IXMLDOMNode* element, const CName& name, std::int32_t value);
IXMLDOMNodePtr CreateElement(const PlainDocument& document, const CName& name);
void Append(IXMLDOMNode* parent, IXMLDOMNode* child);
void RemoveChildren(IXMLDOMNode* parent);

}  // namespace ZOTDam::Bench
