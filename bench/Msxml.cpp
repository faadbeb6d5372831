#include "Msxml.h"

#include <cstdlib>

namespace ZOTDam::Bench {

PlainDocument::PlainDocument(const std::filesystem::path& file) {
    document.CreateInstance(DomDocument60);
    document->put_async(VARIANT_FALSE);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    document->load(_variant_t{file.c_str()}, &loaded);
}

IXMLDOMNodePtr PlainDocument::Root() const {
    IXMLDOMElementPtr root;
    document->get_documentElement(&root);
    return root;
}

void PlainDocument::SaveAtomically(const std::filesystem::path& file) const {
    std::filesystem::path temporaryFile = file;
    temporaryFile.replace_extension(L".new");
    Save(temporaryFile);
    const HANDLE saved = CreateFileW(temporaryFile.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                     OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    FlushFileBuffers(saved);
    CloseHandle(saved);
    MoveFileExW(temporaryFile.c_str(), file.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

void PlainDocument::Save(const std::filesystem::path& file) const {
    document->save(_variant_t{file.c_str()});
}

IXMLDOMNodePtr Child(IXMLDOMNode* parent, const CXmlName& name) {
    IXMLDOMNodePtr child;
    parent->selectSingleNode(name.AsBstr(), &child);
    return child;
}

_variant_t Attribute(IXMLDOMNode* element, const CXmlName& name) {
    IXMLDOMNamedNodeMapPtr attributes;
    element->get_attributes(&attributes);
    IXMLDOMNodePtr attribute;
    attributes->getNamedItem(name.AsBstr(), &attribute);
    _variant_t value;
    attribute->get_nodeTypedValue(&value);
    return value;
}

long Numbers(IXMLDOMNode* element, std::initializer_list<CXmlName> names) {
    long sum = 0;
    for (const CXmlName& name : names) {
        const _variant_t value = Attribute(element, name);
        sum += _wtol(V_BSTR(&value));
    }
    return sum;
}

long Texts(IXMLDOMNode* element, std::initializer_list<CXmlName> names) {
    long sum = 0;
    for (const CXmlName& name : names) {
        const _variant_t value = Attribute(element, name);
        sum += static_cast<long>(SysStringLen(V_BSTR(&value)));
    }
    return sum;
}

void SetAttribute(IXMLDOMNode* element, const CXmlName& name, const wchar_t* value) {
    IXMLDOMElementPtr {
        element
        } -> setAttribute(name.AsBstr(), _variant_t{value});
}

void SetAttribute(IXMLDOMNode* element, const CXmlName& name, std::int32_t value) {
    wchar_t digits[12];
    _itow_s(value, digits, std::size(digits), 10);
    SetAttribute(element, name, digits);
}

IXMLDOMNodePtr CreateElement(const PlainDocument& document, const CXmlName& name) {
    IXMLDOMElementPtr element;
    document->createElement(name.AsBstr(), &element);
    element->put_text(CXmlName{L"\n\t"}.AsBstr());
    return element;
}

void Append(IXMLDOMNode* parent, IXMLDOMNode* child) {
    IXMLDOMNodePtr appended;
    parent->appendChild(child, &appended);
}

void RemoveChildren(IXMLDOMNode* parent) {
    IXMLDOMNodePtr child;
    while (parent->get_firstChild(&child) == S_OK) {
        IXMLDOMNodePtr removed;
        parent->removeChild(child, &removed);
    }
}

}  // namespace ZOTDam::Bench
