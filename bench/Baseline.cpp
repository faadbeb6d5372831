#include "Baseline.h"

#include <cwchar>

namespace ZOTDam::Bench {

namespace {

bool Has(IXMLDOMNode* element, const CXmlName& name, const wchar_t* text) {
    const _variant_t value = Attribute(element, name);
    return _wcsicmp(V_BSTR(&value), text) == 0;
}

IXMLDOMNodePtr FindScheme(const PlainDocument& settings, const wchar_t* scheme) {
    return Find(Child(settings.Root(), L"PowerSchemes"), L"PowerScheme",
                [&](IXMLDOMNode* element) { return Has(element, L"GUID", scheme); });
}

long ReadDisplayItems(IXMLDOMNode* function) {
    long sum = 0;
    const IXMLDOMNodePtr display = Child(function, L"Display");
    for (const CXmlName& source : {CXmlName{L"AC"}, CXmlName{L"DC"}})
        ForEach(Child(display, source), L"DisplayItem",
                [&](IXMLDOMNode* item) { sum += Texts(item, {L"Label"}) + Numbers(item, {L"Option"}); });
    return sum;
}

long ReadCommandItems(IXMLDOMNode* commands) {
    long sum = 0;
    ForEach(commands, L"CommandItem", [&](IXMLDOMNode* item) {
        sum += Numbers(item, {L"ID", L"Event", L"Flag", L"State", L"ParamIndex1", L"ParamIndex2"}) +
               Texts(item, {L"SpecInfo1"});
    });
    return sum;
}

long ReadHead(IXMLDOMNode* function) {
    return Numbers(function, {L"ID", L"Flag", L"Type"}) + Texts(function, {L"Name", L"Group"});
}

long QueryDisplay() {
    DEVMODEW mode = {};
    long sum = 0;
    for (DWORD number = 0; EnumDisplaySettingsW(nullptr, number, &mode) != FALSE; ++number)
        sum += static_cast<long>(mode.dmDisplayFrequency);
    return sum;
}

long Translate(const wchar_t* key, const PlainDocument& stringTable) {
    const IXMLDOMNodePtr entry =
        Find(stringTable.Root(), L"data", [&](IXMLDOMNode* data) { return Has(data, L"name", key); });
    if (!entry)
        return 0;
    _variant_t text;
    Child(entry, L"value")->get_nodeTypedValue(&text);
    return static_cast<long>(SysStringLen(V_BSTR(&text)));
}

IXMLDOMNodePtr FirstChild(IXMLDOMNode* parent) {
    IXMLDOMNodePtr child;
    parent->get_firstChild(&child);
    return child;
}

template <class Action>
void ForEachSibling(IXMLDOMNodePtr node, const CXmlName& name, Action action) {
    while (node) {
        if (const IXMLDOMElementPtr element = node) {
            BSTR tag = nullptr;
            element->get_tagName(&tag);
            if (name.View() == tag)
                action(element);
            SysFreeString(tag);
        }
        IXMLDOMNodePtr next;
        node->get_nextSibling(&next);
        node = next;
    }
}

_variant_t ReadAttribute(IXMLDOMElement* element, const CXmlName& name) {
    _variant_t value;
    element->getAttribute(name.AsBstr(), &value);
    return value;
}

long Number(IXMLDOMElement* element, const CXmlName& name) {
    const _variant_t value = ReadAttribute(element, name);
    return _wtol(V_BSTR(&value));
}

bool IsText(IXMLDOMElement* element, const CXmlName& name, const wchar_t* text) {
    const _variant_t value = ReadAttribute(element, name);
    return _wcsicmp(V_BSTR(&value), text) == 0;
}

void CreateCommands(const PlainDocument& defaults, int count, IXMLDOMNode* function) {
    const IXMLDOMNodePtr commands = CreateElement(defaults, L"Commands");
    Append(function, commands);
    for (int i = 0; i < count; ++i) {
        const IXMLDOMNodePtr item = CreateElement(defaults, L"CommandItem");
        Append(commands, item);
        for (const CXmlName& name : {CXmlName{L"ID"}, CXmlName{L"Event"}, CXmlName{L"Flag"},
                                     CXmlName{L"State"}, CXmlName{L"ParamIndex1"}, CXmlName{L"ParamIndex2"}})
            SetAttribute(item, name, 1);
        SetAttribute(item, L"SpecInfo1", L"SUB_VIDEO VIDEOIDLE");
    }
}

void AppendCopy(IXMLDOMNode* target, IXMLDOMNode* source) {
    IXMLDOMNodePtr copy;
    source->cloneNode(VARIANT_TRUE, &copy);
    Append(target, copy);
}

}  // namespace

long ReadCatalogue(const PlainDocument& defaults) {
    long sum = 0;
    ForEach(Child(defaults.Root(), L"Functions"), L"Function", [&](IXMLDOMNode* function) {
        sum +=
            ReadHead(function) + ReadDisplayItems(function) + ReadCommandItems(Child(function, L"Commands"));
    });
    return sum;
}

long ReadBase(const PlainDocument& base) {
    long sum = 0;
    ForEach(Child(base.Root(), L"Functions"), L"Function", [&](IXMLDOMNode* function) {
        sum += ReadHead(function);
        sum += Child(function, L"Display") != nullptr && Child(function, L"Default") != nullptr;
        ForEach(Child(function, L"Commands"), L"CommandFamily", [&](IXMLDOMNode* family) {
            sum += ReadCommandItems(family);
            ForEach(family, L"CheckExistItem", [&](IXMLDOMNode* item) {
                sum +=
                    Numbers(item, {L"CheckFlag"}) + Texts(item, {L"Param1", L"Param2", L"Param3", L"Param4"});
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
    ForEach(Child(base.Root(), L"SpecSchemes"), L"SchemeItem", [&](IXMLDOMNode* scheme) {
        readGuid(scheme, L"SchemeGUID");
        ForEach(scheme, L"SubGroup", [&](IXMLDOMNode* subGroup) {
            readGuid(subGroup, L"SubGroupGUID");
            ForEach(subGroup, L"PowerSetting", [&](IXMLDOMNode* setting) {
                readGuid(setting, L"PowerSettingGUID");
                sum += Numbers(setting, {L"ACValue", L"DCValue"});
            });
        });
    });
    return sum;
}

long ReadDefaultParameters(const PlainDocument& defaults) {
    long sum = 0;
    ForEach(Child(defaults.Root(), L"Functions"), L"Function", [&](IXMLDOMNode* function) {
        sum += Numbers(function, {L"ID"});
        const IXMLDOMNodePtr item =
            Find(Child(function, L"Default"), L"DefaultItem", [](IXMLDOMNode* element) {
                return Has(element, L"GUID", L"381b4222-f694-41f0-9685-ff5bb260df2e");
            });
        sum += Numbers(item, {L"ACParamIndex", L"DCParamIndex"});
    });
    return sum;
}

long WalkDefaultParameters(const PlainDocument& defaults) {
    long sum = 0;
    ForEachSibling(FirstChild(Child(defaults.Root(), L"Functions")), L"Function",
                   [&](IXMLDOMElement* function) {
                       sum += Number(function, L"ID");
                       ForEachSibling(FirstChild(function), L"Default", [&](IXMLDOMElement* fallback) {
                           IXMLDOMElementPtr source = fallback;
                           ForEachSibling(FirstChild(fallback), L"DefaultItem", [&](IXMLDOMElement* item) {
                               if (IsText(item, L"GUID", L"381b4222-f694-41f0-9685-ff5bb260df2e"))
                                   source = item;
                           });
                           sum += Number(source, L"ACParamIndex") + Number(source, L"DCParamIndex");
                       });
                   });
    return sum;
}

long ReadScheme(const std::filesystem::path& userFile, const wchar_t* scheme) {
    const PlainDocument settings{userFile};
    long sum = 0;
    ForEach(FindScheme(settings, scheme), L"Function", [&](IXMLDOMNode* function) {
        sum += Numbers(function, {L"ID", L"ACParamIndex", L"DCParamIndex"});
    });
    // The library queries the display once for each of the two refresh-rate functions.
    return sum + QueryDisplay() + QueryDisplay();
}

long ReadSetting(const std::filesystem::path& userFile) {
    const PlainDocument settings{userFile};
    return Texts(Child(settings.Root(), L"CommonSettings"), {L"User"});
}

long TranslateFunctions(const PlainDocument& defaults, const PlainDocument& stringTable) {
    long sum = 0;
    const auto translate = [&](IXMLDOMNode* element, const CXmlName& name) {
        const _variant_t key = Attribute(element, name);
        sum += Translate(V_BSTR(&key), stringTable);
    };
    ForEach(Child(defaults.Root(), L"Functions"), L"Function", [&](IXMLDOMNode* function) {
        translate(function, L"Group");
        translate(function, L"Name");
        const IXMLDOMNodePtr display = Child(function, L"Display");
        for (const CXmlName& source : {CXmlName{L"AC"}, CXmlName{L"DC"}})
            ForEach(Child(display, source), L"DisplayItem",
                    [&](IXMLDOMNode* item) { translate(item, L"Label"); });
    });
    return sum;
}

long TranslateDifferences(const PlainDocument& defaults, const PlainDocument& stringTable) {
    long sum = 0;
    ForEach(Child(defaults.Root(), L"Functions"), L"Function", [&](IXMLDOMNode* function) {
        const _variant_t name = Attribute(function, L"Name");
        const _variant_t label =
            Attribute(Child(Child(Child(function, L"Display"), L"AC"), L"DisplayItem"), L"Label");
        sum += Translate(V_BSTR(&name), stringTable) + Translate(V_BSTR(&label), stringTable);
    });
    return sum;
}

void WriteScheme(const std::filesystem::path& userFile, const wchar_t* scheme, SaveDocument save) {
    const PlainDocument settings{userFile};
    ForEach(FindScheme(settings, scheme), L"Function", [&](IXMLDOMNode* function) {
        const long id = Numbers(function, {L"ID"});
        SetAttribute(function, L"ACParamIndex", id % 2);
        SetAttribute(function, L"DCParamIndex", id % 3);
    });
    (settings.*save)(userFile);
}

void WriteSetting(const std::filesystem::path& userFile, SaveDocument save) {
    const PlainDocument settings{userFile};
    SetAttribute(Child(settings.Root(), L"CommonSettings"), L"User", L"value");
    (settings.*save)(userFile);
}

std::vector<PlainFunction> CollectFunctions(const PlainDocument& base) {
    std::vector<PlainFunction> functions;
    ForEach(Child(base.Root(), L"Functions"), L"Function", [&](IXMLDOMNode* function) {
        functions.push_back({Child(function, L"Display"), Child(function, L"Default"), 2});
    });
    return functions;
}

void ReplaceFunctions(const PlainDocument& defaults, const std::vector<PlainFunction>& functions,
                      const std::filesystem::path& file, SaveDocument save) {
    const IXMLDOMNodePtr section = Child(defaults.Root(), L"Functions");
    RemoveChildren(section);
    for (const PlainFunction& source : functions) {
        const IXMLDOMNodePtr function = CreateElement(defaults, L"Function");
        Append(section, function);
        for (const CXmlName& name : {CXmlName{L"ID"}, CXmlName{L"Flag"}, CXmlName{L"Type"}})
            SetAttribute(function, name, 1);
        SetAttribute(function, L"Name", L"FunctionName1");
        SetAttribute(function, L"Group", L"Group1Name");
        AppendCopy(function, source.display);
        AppendCopy(function, source.defaults);
        CreateCommands(defaults, source.commands, function);
    }
    (defaults.*save)(file);
}

void ReplaceSettings(const PlainDocument& defaults, const PlainDocument& base,
                     const std::filesystem::path& file, SaveDocument save) {
    const IXMLDOMNodePtr root = defaults.Root();
    const IXMLDOMNodePtr old = Child(root, L"CommonSettings");
    IXMLDOMNodePtr removed;
    root->removeChild(old, &removed);
    AppendCopy(root, Child(base.Root(), L"CommonSettings"));
    (defaults.*save)(file);
}

void ResetSettings(const PlainDocument& settings, const std::filesystem::path& file, SaveDocument save) {
    RemoveChildren(Child(settings.Root(), L"PowerSchemes"));
    const IXMLDOMNodePtr common = Child(settings.Root(), L"CommonSettings");
    RemoveChildren(common);
    IXMLDOMElementPtr {
        common
        } -> removeAttribute(CXmlName{L"User"}.AsBstr());
    (settings.*save)(file);
}

}  // namespace ZOTDam::Bench
