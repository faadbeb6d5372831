#include "Baseline.h"

#include <cwchar>

#include "xml/DataFileElements.h"

namespace ZOTDam::Bench {

namespace {

bool Has(IXMLDOMNode* element, const CXmlName& name, const wchar_t* text) {
    const _variant_t value = Attribute(element, name);
    return _wcsicmp(V_BSTR(&value), text) == 0;
}

IXMLDOMNodePtr FindScheme(const PlainDocument& settings, const wchar_t* scheme) {
    return Find(Child(settings.Root(), Elements::PowerSchemes), Elements::PowerScheme,
                [&](IXMLDOMNode* element) { return Has(element, Attributes::GUID, scheme); });
}

long ReadDisplayItems(IXMLDOMNode* function) {
    long sum = 0;
    const IXMLDOMNodePtr display = Child(function, Elements::Display);
    for (const CXmlName& source : {CXmlName{Elements::AC}, CXmlName{Elements::DC}})
        ForEach(Child(display, source), Elements::DisplayItem, [&](IXMLDOMNode* item) {
            sum += Texts(item, {Attributes::Label}) + Numbers(item, {Attributes::Option});
        });
    return sum;
}

long ReadCommandItems(IXMLDOMNode* commands) {
    long sum = 0;
    ForEach(commands, Elements::CommandItem, [&](IXMLDOMNode* item) {
        sum += Numbers(item, {Attributes::ID, Attributes::Event, Attributes::Flag, Attributes::State,
                              Attributes::ParamIndex1, Attributes::ParamIndex2}) +
               Texts(item, {Attributes::SpecInfo1});
    });
    return sum;
}

long ReadHead(IXMLDOMNode* function) {
    return Numbers(function, {Attributes::ID, Attributes::Flag, Attributes::Type}) +
           Texts(function, {Attributes::Name, Attributes::Group});
}

long Translate(const wchar_t* key, const PlainDocument& stringTable) {
    const IXMLDOMNodePtr entry = Find(stringTable.Root(), Elements::TextEntry,
                                      [&](IXMLDOMNode* data) { return Has(data, Attributes::TextKey, key); });
    if (!entry)
        return 0;
    _variant_t text;
    Child(entry, Elements::TextValue)->get_nodeTypedValue(&text);
    return static_cast<long>(SysStringLen(V_BSTR(&text)));
}

void CreateCommands(const PlainDocument& defaults, int count, IXMLDOMNode* function) {
    const IXMLDOMNodePtr commands = CreateElement(defaults, Elements::Commands);
    Append(function, commands);
    for (int i = 0; i < count; ++i) {
        const IXMLDOMElementPtr item = CreateElement(defaults, Elements::CommandItem);
        Append(commands, item);
        for (const CXmlName& name : {CXmlName{Attributes::ID}, CXmlName{Attributes::Event},
                                     CXmlName{Attributes::Flag}, CXmlName{Attributes::State},
                                     CXmlName{Attributes::ParamIndex1}, CXmlName{Attributes::ParamIndex2}})
            SetAttribute(item, name, 1);
        SetAttribute(item, Attributes::SpecInfo1, L"SUB_VIDEO VIDEOIDLE");
    }
}

void AppendCopy(IXMLDOMNode* target, IXMLDOMNode* source) {
    IXMLDOMNodePtr copy;
    source->cloneNode(VARIANT_TRUE, &copy);
    Append(target, copy);
}

long QueryDisplay() {
    DEVMODEW mode = {};
    long sum = 0;
    for (DWORD number = 0; EnumDisplaySettingsW(nullptr, number, &mode) != FALSE; ++number)
        sum += static_cast<long>(mode.dmDisplayFrequency);
    return sum;
}

}  // namespace

long ReadCatalogue(const PlainDocument& defaults) {
    long sum = 0;
    ForEach(Child(defaults.Root(), Elements::Functions), Elements::Function, [&](IXMLDOMNode* function) {
        sum += ReadHead(function) + ReadDisplayItems(function) +
               ReadCommandItems(Child(function, Elements::Commands));
    });
    return sum;
}

long ReadBase(const PlainDocument& base) {
    long sum = 0;
    ForEach(Child(base.Root(), Elements::Functions), Elements::Function, [&](IXMLDOMNode* function) {
        sum += ReadHead(function);
        if (Child(function, Elements::Display) != nullptr && Child(function, Elements::Default) != nullptr)
            ++sum;
        ForEach(Child(function, Elements::Commands), Elements::CommandFamily, [&](IXMLDOMNode* family) {
            sum += ReadCommandItems(family);
            ForEach(family, Elements::CheckExistItem, [&](IXMLDOMNode* item) {
                sum += Numbers(item, {Attributes::CheckFlag}) +
                       Texts(item, {Attributes::Param1, Attributes::Param2, Attributes::Param3,
                                    Attributes::Param4});
            });
        });
    });
    return sum;
}

long ReadSpecSchemes(const PlainDocument& base) {
    long sum = 0;
    const auto readGuid = [&](IXMLDOMNode* element, const CXmlName& name) {
        const _variant_t text = Attribute(element, name);
        GUID guid = {};
        UuidFromStringW(reinterpret_cast<RPC_WSTR>(V_BSTR(&text)), &guid);
        sum += static_cast<long>(guid.Data2);
    };
    ForEach(Child(base.Root(), Elements::SpecSchemes), Elements::SchemeItem, [&](IXMLDOMNode* scheme) {
        readGuid(scheme, Attributes::SchemeGUID);
        ForEach(scheme, Elements::SubGroup, [&](IXMLDOMNode* subGroup) {
            readGuid(subGroup, Attributes::SubGroupGUID);
            ForEach(subGroup, Elements::PowerSetting, [&](IXMLDOMNode* setting) {
                readGuid(setting, Attributes::PowerSettingGUID);
                sum += Numbers(setting, {Attributes::ACValue, Attributes::DCValue});
            });
        });
    });
    return sum;
}

long ReadDefaultParameters(const PlainDocument& defaults) {
    long sum = 0;
    ForEach(Child(defaults.Root(), Elements::Functions), Elements::Function, [&](IXMLDOMNode* function) {
        sum += Numbers(function, {Attributes::ID});
        const IXMLDOMNodePtr item =
            Find(Child(function, Elements::Default), Elements::DefaultItem, [](IXMLDOMNode* element) {
                return Has(element, Attributes::GUID, L"381b4222-f694-41f0-9685-ff5bb260df2e");
            });
        sum += Numbers(item, {Attributes::ACParamIndex, Attributes::DCParamIndex});
    });
    return sum;
}

long ReadScheme(const std::filesystem::path& userFile, const wchar_t* scheme) {
    const PlainDocument settings{userFile};
    long sum = 0;
    ForEach(FindScheme(settings, scheme), Elements::Function, [&](IXMLDOMNode* function) {
        sum += Numbers(function, {Attributes::ID, Attributes::ACParamIndex, Attributes::DCParamIndex});
    });
    // The library queries the display once for each of the two refresh-rate functions.
    return sum + QueryDisplay() + QueryDisplay();
}

long ReadSetting(const std::filesystem::path& userFile) {
    const PlainDocument settings{userFile};
    return Texts(Child(settings.Root(), Elements::CommonSettings), {L"User"});
}

long TranslateFunctions(const PlainDocument& defaults, const PlainDocument& stringTable) {
    long sum = 0;
    const auto translate = [&](IXMLDOMNode* element, const CXmlName& name) {
        const _variant_t key = Attribute(element, name);
        sum += Translate(V_BSTR(&key), stringTable);
    };
    ForEach(Child(defaults.Root(), Elements::Functions), Elements::Function, [&](IXMLDOMNode* function) {
        translate(function, Attributes::Group);
        translate(function, Attributes::Name);
        const IXMLDOMNodePtr display = Child(function, Elements::Display);
        for (const CXmlName& source : {CXmlName{Elements::AC}, CXmlName{Elements::DC}})
            ForEach(Child(display, source), Elements::DisplayItem,
                    [&](IXMLDOMNode* item) { translate(item, Attributes::Label); });
    });
    return sum;
}

long TranslateDifferences(const PlainDocument& defaults, const PlainDocument& stringTable) {
    long sum = 0;
    ForEach(Child(defaults.Root(), Elements::Functions), Elements::Function, [&](IXMLDOMNode* function) {
        const _variant_t name = Attribute(function, Attributes::Name);
        const _variant_t label =
            Attribute(Child(Child(Child(function, Elements::Display), Elements::AC), Elements::DisplayItem),
                      Attributes::Label);
        sum += Translate(V_BSTR(&name), stringTable) + Translate(V_BSTR(&label), stringTable);
    });
    return sum;
}

void WriteScheme(const std::filesystem::path& userFile, const wchar_t* scheme, SaveDocument save) {
    const PlainDocument settings{userFile};
    ForEach(FindScheme(settings, scheme), Elements::Function, [&](IXMLDOMNode* function) {
        const long id = Numbers(function, {Attributes::ID});
        const IXMLDOMElementPtr element = function;
        SetAttribute(element, Attributes::ACParamIndex, id % 2);
        SetAttribute(element, Attributes::DCParamIndex, id % 3);
    });
    (settings.*save)(userFile);
}

void WriteSetting(const std::filesystem::path& userFile, SaveDocument save) {
    const PlainDocument settings{userFile};
    const IXMLDOMElementPtr common = Child(settings.Root(), Elements::CommonSettings);
    SetAttribute(common, L"User", L"value");
    (settings.*save)(userFile);
}

std::vector<PlainFunction> CollectFunctions(const PlainDocument& base) {
    std::vector<PlainFunction> functions;
    ForEach(Child(base.Root(), Elements::Functions), Elements::Function, [&](IXMLDOMNode* function) {
        functions.push_back({Child(function, Elements::Display), Child(function, Elements::Default), 2});
    });
    return functions;
}

void ReplaceFunctions(const PlainDocument& defaults, const std::vector<PlainFunction>& functions,
                      const std::filesystem::path& file, SaveDocument save) {
    const IXMLDOMNodePtr section = Child(defaults.Root(), Elements::Functions);
    RemoveChildren(section);
    for (const PlainFunction& source : functions) {
        const IXMLDOMElementPtr function = CreateElement(defaults, Elements::Function);
        Append(section, function);
        for (const CXmlName& name :
             {CXmlName{Attributes::ID}, CXmlName{Attributes::Flag}, CXmlName{Attributes::Type}})
            SetAttribute(function, name, 1);
        SetAttribute(function, Attributes::Name, L"FunctionName1");
        SetAttribute(function, Attributes::Group, L"Group1Name");
        AppendCopy(function, source.display);
        AppendCopy(function, source.defaults);
        CreateCommands(defaults, source.commands, function);
    }
    (defaults.*save)(file);
}

void ReplaceSettings(const PlainDocument& defaults, const PlainDocument& base,
                     const std::filesystem::path& file, SaveDocument save) {
    const IXMLDOMNodePtr root = defaults.Root();
    const IXMLDOMNodePtr old = Child(root, Elements::CommonSettings);
    IXMLDOMNodePtr removed;
    root->removeChild(old, &removed);
    AppendCopy(root, Child(base.Root(), Elements::CommonSettings));
    (defaults.*save)(file);
}

void ResetSettings(const PlainDocument& settings, const std::filesystem::path& file, SaveDocument save) {
    RemoveChildren(Child(settings.Root(), Elements::PowerSchemes));
    const IXMLDOMElementPtr common = Child(settings.Root(), Elements::CommonSettings);
    RemoveChildren(common);
    common->removeAttribute(CXmlName{L"User"}.AsBstr());
    (settings.*save)(file);
}

}  // namespace ZOTDam::Bench
