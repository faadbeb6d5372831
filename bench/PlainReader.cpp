#include "PlainReader.h"

#include <cwchar>
#include <initializer_list>

namespace ZOTDam::Bench {

namespace {

constexpr CLSID DomDocument60 = {
    0x88d96a05, 0xf192, 0x11d4, {0xa6, 0x5f, 0x00, 0x40, 0x96, 0x32, 0x51, 0xe5}};
constexpr wchar_t BalancedText[] = L"381b4222-f694-41f0-9685-ff5bb260df2e";

template <class Action>
void ForEach(IXMLDOMNode* parent, const wchar_t* name, Action action) {
    IXMLDOMNodeList* children = nullptr;
    parent->selectNodes(_bstr_t{name}, &children);
    long length = 0;
    children->get_length(&length);
    for (long i = 0; i < length; ++i) {
        IXMLDOMNodePtr child;
        children->get_item(i, &child);
        action(child);
    }
    children->Release();
}

IXMLDOMNodePtr Child(IXMLDOMNode* parent, const wchar_t* name) {
    IXMLDOMNodePtr child;
    parent->selectSingleNode(_bstr_t{name}, &child);
    return child;
}

_variant_t Attribute(IXMLDOMNode* element, const wchar_t* name) {
    IXMLDOMNamedNodeMapPtr attributes;
    element->get_attributes(&attributes);
    IXMLDOMNodePtr attribute;
    attributes->getNamedItem(_bstr_t{name}, &attribute);
    _variant_t value;
    attribute->get_nodeTypedValue(&value);
    return value;
}

long Numbers(IXMLDOMNode* element, std::initializer_list<const wchar_t*> names) {
    long sum = 0;
    for (const wchar_t* name : names)
        sum += _wtol(V_BSTR(&static_cast<const _variant_t&>(Attribute(element, name))));
    return sum;
}

bool IsBalanced(IXMLDOMNode* element) {
    const _variant_t guid = Attribute(element, L"GUID");
    return _wcsicmp(V_BSTR(&guid), BalancedText) == 0;
}

long Texts(IXMLDOMNode* element, std::initializer_list<const wchar_t*> names) {
    long sum = 0;
    for (const wchar_t* name : names)
        sum += static_cast<long>(
            SysStringLen(V_BSTR(&static_cast<const _variant_t&>(Attribute(element, name)))));
    return sum;
}

}  // namespace

PlainDocument::PlainDocument(const std::filesystem::path& file) {
    document.CreateInstance(DomDocument60);
    document->put_async(VARIANT_FALSE);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    document->load(_variant_t{file.c_str()}, &loaded);
    document->get_documentElement(&root);
}

long PlainCatalogue(const std::filesystem::path& file) {
    const PlainDocument defaults{file};
    long sum = 0;
    ForEach(Child(defaults.root, L"Functions"), L"Function", [&](IXMLDOMNode* function) {
        sum += Numbers(function, {L"ID", L"Flag", L"Type"}) + Texts(function, {L"Name", L"Group"});
        const IXMLDOMNodePtr display = Child(function, L"Display");
        for (const wchar_t* source : {L"AC", L"DC"})
            ForEach(Child(display, source), L"DisplayItem",
                    [&](IXMLDOMNode* item) { sum += Texts(item, {L"Label"}) + Numbers(item, {L"Option"}); });
        ForEach(Child(function, L"Commands"), L"CommandItem", [&](IXMLDOMNode* item) {
            sum += Numbers(item, {L"Event", L"Flag", L"ID", L"State", L"ParamIndex1", L"ParamIndex2"}) +
                   Texts(item, {L"SpecInfo1"});
        });
    });
    return sum;
}

long PlainScheme(const std::filesystem::path& file) {
    const PlainDocument settings{file};
    long sum = 0;
    ForEach(Child(settings.root, L"PowerSchemes"), L"PowerScheme", [&](IXMLDOMNode* scheme) {
        if (IsBalanced(scheme))
            ForEach(scheme, L"Function", [&](IXMLDOMNode* function) {
                sum += Numbers(function, {L"ID", L"ACParamIndex", L"DCParamIndex"});
            });
    });
    return sum;
}

long PlainDefaults(const PlainDocument& defaults) {
    long sum = 0;
    ForEach(Child(defaults.root, L"Functions"), L"Function", [&](IXMLDOMNode* function) {
        sum += Numbers(function, {L"ID"});
        ForEach(Child(function, L"Default"), L"DefaultItem", [&](IXMLDOMNode* item) {
            if (IsBalanced(item))
                sum += Numbers(item, {L"ACParamIndex", L"DCParamIndex"});
        });
    });
    return sum;
}

}  // namespace ZOTDam::Bench
