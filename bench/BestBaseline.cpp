#include "BestBaseline.h"

#include <cwchar>
#include <initializer_list>

#include "xml/DataFileElements.h"

namespace ZOTDam::Bench::Best {

namespace {

// ---- The DOM ----

// Calls the action with the child elements of this name until it returns false.
template <class Action>
void WalkChildren(IXMLDOMNode* parent, const CXmlName& name, Action action) {
    IXMLDOMNodePtr node;
    parent->get_firstChild(&node);
    while (node) {
        BSTR tag = nullptr;
        node->get_nodeName(&tag);
        const bool isNamed = name.View() == tag;
        SysFreeString(tag);
        if (isNamed && !action(IXMLDOMElementPtr{node}))
            return;
        IXMLDOMNodePtr next;
        node->get_nextSibling(&next);
        node.Attach(next.Detach());
    }
}

template <class Action>
void ForEach(IXMLDOMNode* parent, const CXmlName& name, Action action) {
    WalkChildren(parent, name, [&](IXMLDOMElement* element) {
        action(element);
        return true;
    });
}

template <class Predicate>
IXMLDOMElementPtr Find(IXMLDOMNode* parent, const CXmlName& name, Predicate predicate) {
    IXMLDOMElementPtr found;
    WalkChildren(parent, name, [&](IXMLDOMElement* element) {
        if (predicate(element))
            found = element;
        return !found;
    });
    return found;
}

IXMLDOMElementPtr Child(IXMLDOMNode* parent, const CXmlName& name) {
    return Find(parent, name, [](IXMLDOMElement*) { return true; });
}

_variant_t Attribute(IXMLDOMElement* element, const CXmlName& name) {
    _variant_t value;
    element->getAttribute(name.AsBstr(), &value);
    return value;
}

long Numbers(IXMLDOMElement* element, std::initializer_list<CXmlName> names) {
    long sum = 0;
    for (const CXmlName& name : names) {
        const _variant_t value = Attribute(element, name);
        sum += _wtol(V_BSTR(&value));
    }
    return sum;
}

long Texts(IXMLDOMElement* element, std::initializer_list<CXmlName> names) {
    long sum = 0;
    for (const CXmlName& name : names) {
        const _variant_t value = Attribute(element, name);
        sum += static_cast<long>(SysStringLen(V_BSTR(&value)));
    }
    return sum;
}

bool Has(IXMLDOMElement* element, const CXmlName& name, const wchar_t* text) {
    const _variant_t value = Attribute(element, name);
    return _wcsicmp(V_BSTR(&value), text) == 0;
}

// ---- The data files ----

IXMLDOMElementPtr FindScheme(const PlainDocument& settings, const wchar_t* scheme) {
    return Find(Child(settings.Root(), Elements::PowerSchemes), Elements::PowerScheme,
                [&](IXMLDOMElement* element) { return Has(element, Attributes::GUID, scheme); });
}

long ReadParameters(IXMLDOMElement* scheme) {
    long sum = 0;
    ForEach(scheme, Elements::Function, [&](IXMLDOMElement* function) {
        sum += Numbers(function, {Attributes::ID, Attributes::ACParamIndex, Attributes::DCParamIndex});
    });
    return sum;
}

long ReadHead(IXMLDOMElement* function) {
    return Numbers(function, {Attributes::ID, Attributes::Flag, Attributes::Type}) +
           Texts(function, {Attributes::Name, Attributes::Group});
}

template <class Action>
void ForEachDisplayItem(IXMLDOMElement* function, Action action) {
    const IXMLDOMElementPtr display = Child(function, Elements::Display);
    for (const CXmlName& source : {CXmlName{Elements::AC}, CXmlName{Elements::DC}})
        ForEach(Child(display, source), Elements::DisplayItem, action);
}

long ReadCommandItems(IXMLDOMElement* commands) {
    long sum = 0;
    ForEach(commands, Elements::CommandItem, [&](IXMLDOMElement* item) {
        sum += Numbers(item, {Attributes::ID, Attributes::Event, Attributes::Flag, Attributes::State,
                              Attributes::ParamIndex1, Attributes::ParamIndex2}) +
               Texts(item, {Attributes::SpecInfo1});
    });
    return sum;
}

long ReadCheckItems(IXMLDOMElement* family) {
    long sum = 0;
    ForEach(family, Elements::CheckExistItem, [&](IXMLDOMElement* item) {
        sum += Numbers(item, {Attributes::CheckFlag}) +
               Texts(item, {Attributes::Param1, Attributes::Param2, Attributes::Param3, Attributes::Param4});
    });
    return sum;
}

long ReadGuid(IXMLDOMElement* element, const CXmlName& name) {
    const _variant_t text = Attribute(element, name);
    GUID guid = {};
    UuidFromStringW(reinterpret_cast<RPC_WSTR>(V_BSTR(&text)), &guid);
    return static_cast<long>(guid.Data2);
}

// Reads modes of the display until the first rate of the refresh-rate functions is found. The data files have
// the same rates for both functions, so one search is enough.
long FindRefreshRate() {
    constexpr DWORD rate = 60;
    DEVMODEW mode = {};
    for (DWORD number = 0; EnumDisplaySettingsW(nullptr, number, &mode) != FALSE; ++number)
        if (mode.dmDisplayFrequency == rate)
            return 1;
    return 0;
}

// ---- Texts ----

std::wstring Fold(const _variant_t& key) {
    std::wstring text{V_BSTR(&key), SysStringLen(V_BSTR(&key))};
    _wcslwr(text.data());
    return text;
}

long TextLength(IXMLDOMElement* entry) {
    _variant_t text;
    Child(entry, Elements::TextValue)->get_nodeTypedValue(&text);
    return static_cast<long>(SysStringLen(V_BSTR(&text)));
}

long Translate(IXMLDOMElement* element, const CXmlName& name, const TextLengths& texts) {
    const auto entry = texts.find(Fold(Attribute(element, name)));
    return entry == texts.end() ? 0 : entry->second;
}

}  // namespace

TextLengths IndexTexts(const PlainDocument& stringTable) {
    TextLengths texts;
    ForEach(stringTable.Root(), Elements::TextEntry, [&](IXMLDOMElement* entry) {
        texts.try_emplace(Fold(Attribute(entry, Attributes::TextKey)), TextLength(entry));
    });
    return texts;
}

long ReadCatalogue(PlainDocument& defaults, const std::filesystem::path& defaultsFile) {
    defaults.LoadBytes(defaultsFile);
    long sum = 0;
    ForEach(Child(defaults.Root(), Elements::Functions), Elements::Function, [&](IXMLDOMElement* function) {
        sum += ReadHead(function) + ReadCommandItems(Child(function, Elements::Commands));
        ForEachDisplayItem(function, [&](IXMLDOMElement* item) {
            sum += Texts(item, {Attributes::Label}) + Numbers(item, {Attributes::Option});
        });
    });
    return sum;
}

long ReadBase(const PlainDocument& base) {
    long sum = 0;
    ForEach(Child(base.Root(), Elements::Functions), Elements::Function, [&](IXMLDOMElement* function) {
        sum += ReadHead(function);
        if (Child(function, Elements::Display) != nullptr && Child(function, Elements::Default) != nullptr)
            ++sum;
        ForEach(Child(function, Elements::Commands), Elements::CommandFamily,
                [&](IXMLDOMElement* family) { sum += ReadCommandItems(family) + ReadCheckItems(family); });
    });
    return sum;
}

long ReadSpecSchemes(const PlainDocument& base) {
    long sum = 0;
    ForEach(Child(base.Root(), Elements::SpecSchemes), Elements::SchemeItem, [&](IXMLDOMElement* scheme) {
        sum += ReadGuid(scheme, Attributes::SchemeGUID);
        ForEach(scheme, Elements::SubGroup, [&](IXMLDOMElement* subGroup) {
            sum += ReadGuid(subGroup, Attributes::SubGroupGUID);
            ForEach(subGroup, Elements::PowerSetting, [&](IXMLDOMElement* setting) {
                sum += ReadGuid(setting, Attributes::PowerSettingGUID) +
                       Numbers(setting, {Attributes::ACValue, Attributes::DCValue});
            });
        });
    });
    return sum;
}

long ReadDefaultParameters(const PlainDocument& defaults) {
    long sum = 0;
    ForEach(Child(defaults.Root(), Elements::Functions), Elements::Function, [&](IXMLDOMElement* function) {
        const IXMLDOMElementPtr item =
            Find(Child(function, Elements::Default), Elements::DefaultItem, [](IXMLDOMElement* element) {
                return Has(element, Attributes::GUID, L"381b4222-f694-41f0-9685-ff5bb260df2e");
            });
        sum += Numbers(function, {Attributes::ID}) +
               Numbers(item, {Attributes::ACParamIndex, Attributes::DCParamIndex});
    });
    return sum;
}

long ReadScheme(PlainDocument& settings, const std::filesystem::path& userFile, const wchar_t* scheme) {
    settings.LoadBytes(userFile);
    return ReadParameters(FindScheme(settings, scheme)) + FindRefreshRate();
}

long ReadSetting(PlainDocument& settings, const std::filesystem::path& userFile) {
    settings.LoadBytes(userFile);
    return Texts(Child(settings.Root(), Elements::CommonSettings), {L"User"});
}

long TranslateFunctions(const PlainDocument& defaults, const TextLengths& texts) {
    long sum = 0;
    ForEach(Child(defaults.Root(), Elements::Functions), Elements::Function, [&](IXMLDOMElement* function) {
        sum += Translate(function, Attributes::Group, texts) + Translate(function, Attributes::Name, texts);
        ForEachDisplayItem(function,
                           [&](IXMLDOMElement* item) { sum += Translate(item, Attributes::Label, texts); });
    });
    return sum;
}

long CompareSchemes(PlainDocument& settings, const std::filesystem::path& userFile, const wchar_t* schemeA,
                    const wchar_t* schemeB, const PlainDocument& defaults, const TextLengths& texts) {
    settings.LoadBytes(userFile);
    long sum = FindRefreshRate();
    for (const wchar_t* const scheme : {schemeA, schemeB})
        sum += ReadParameters(FindScheme(settings, scheme));
    ForEach(Child(defaults.Root(), Elements::Functions), Elements::Function, [&](IXMLDOMElement* function) {
        const IXMLDOMElementPtr item =
            Child(Child(Child(function, Elements::Display), Elements::AC), Elements::DisplayItem);
        sum += Translate(function, Attributes::Name, texts) + Translate(item, Attributes::Label, texts);
    });
    return sum;
}

void WriteScheme(PlainDocument& settings, const std::filesystem::path& userFile, const wchar_t* scheme) {
    settings.LoadBytes(userFile);
    ForEach(FindScheme(settings, scheme), Elements::Function, [&](IXMLDOMElement* function) {
        const long id = Numbers(function, {Attributes::ID});
        SetAttribute(function, Attributes::ACParamIndex, id % 2);
        SetAttribute(function, Attributes::DCParamIndex, id % 3);
    });
    settings.SaveByHandle(userFile);
}

void WriteSetting(PlainDocument& settings, const std::filesystem::path& userFile) {
    settings.LoadBytes(userFile);
    SetAttribute(Child(settings.Root(), Elements::CommonSettings), L"User", L"value");
    settings.SaveByHandle(userFile);
}

}  // namespace ZOTDam::Bench::Best
