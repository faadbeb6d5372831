#include "support/FileGenerator.h"

#include <windows.h>

#include <cctype>
#include <numeric>

#include "support/Repeat.h"

namespace ZOTDam::Test {

namespace {

const std::vector<std::string> Keys = {"Dim", "Rate", "Sleep", "a", "b", "Group1Name", "Group2Name", "dim"};

const std::vector<std::string> Guids = {
    "381b4222-f694-41f0-9685-ff5bb260df2e", "8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c",
    "a1841308-3541-4fab-bc81-f71556f20b4a", "381B4222-F694-41F0-9685-FF5BB260DF2E",
    "00000000-0000-0000-0000-000000000000"};

const std::vector<std::string> WrongGuids = {"",
                                             "{381b4222-f694-41f0-9685-ff5bb260df2e}",
                                             "381b4222f69441f09685ff5bb260df2e",
                                             " 381b4222-f694-41f0-9685-ff5bb260df2e",
                                             "381b4222-f694-41f0-9685-ff5bb260df2",
                                             "381b4222-f694-41f0-9685-ff5bb260df2g",
                                             std::string(300, '3'),
                                             "Balanced"};

const std::vector<std::string> WrongNumbers = {"",
                                               "-1",
                                               "-0",
                                               "abc",
                                               "1e3",
                                               "0x10",
                                               " 5",
                                               "5 ",
                                               "+5",
                                               "1 2",
                                               "2147483647",
                                               "2147483648",
                                               "-2147483648",
                                               "-2147483649",
                                               "4294967296",
                                               "99999999999999999999",
                                               "&#x661;",
                                               std::string(1000, '9')};

// Strings with lengths around the limit of a field, and with every kind of XML text content.
const std::vector<std::string> WrongTexts = {"",
                                             " ",
                                             " padded ",
                                             "two\nlines",
                                             "&#10;&#13;&#9;",
                                             "&lt;&amp;&gt;&quot;&apos;",
                                             "&#x10FFFF;",
                                             "\xf0\x9f\x98\x80",
                                             "gr\xc3\xbcn",
                                             "%s%n%d",
                                             std::string(258, 'x') + "&#x1F600;",
                                             std::string(259, 'x'),
                                             std::string(260, 'x'),
                                             std::string(261, 'x'),
                                             std::string(70000, 'x'),
                                             "&text;",
                                             "&number;",
                                             "&undeclared;",
                                             "&#1;",
                                             "\xff",
                                             "<"};

const std::vector<std::string> Names = {"Function",
                                        "Functions",
                                        "Display",
                                        "AC",
                                        "DC",
                                        "DisplayItem",
                                        "Commands",
                                        "CommandItem",
                                        "CommandFamily",
                                        "Default",
                                        "DefaultItem",
                                        "CheckExistItem",
                                        "CommonSettings",
                                        "SpecSchemes",
                                        "PowerSchemes",
                                        "PowerScheme",
                                        "data",
                                        "value",
                                        "R"};

std::string Join(const std::vector<std::string>& parts) {
    return std::accumulate(parts.begin(), parts.end(), std::string{});
}

std::string InOtherCase(std::string name) {
    for (char& letter : name)
        letter = static_cast<char>(std::islower(letter) != 0 ? std::toupper(letter) : std::tolower(letter));
    return name;
}

std::string WithLineBreaks(const std::string& xml, const std::string& lineBreak) {
    std::string result;
    for (const char character : xml)
        character == '\n' ? result += lineBreak : result += character;
    return result;
}

std::string Utf16(const std::string& utf8, bool bigEndian) {
    const int size = static_cast<int>(utf8.size());
    std::wstring utf16(utf8.size(), L'\0');
    utf16.resize(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, utf16.data(), size)));
    std::string bytes;
    for (const wchar_t unit : utf16) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        bytes += bigEndian ? std::string{high, low} : std::string{low, high};
    }
    return bytes;
}

}  // namespace

// ---- The four files ----

std::string FileGenerator::Defaults() {
    return Document([this] {
        return Element(
            "ZOTDefault", {},
            {Element("Functions", {}, Several([this] { return DefaultsFunction(); })), CommonSettings()});
    });
}

std::string FileGenerator::UserSettings() {
    return Document([this] {
        return Element(
            "OrloPowerCfg", {},
            {Element("PowerSchemes", {}, Several([this] { return PowerScheme(); })), CommonSettings()});
    });
}

std::string FileGenerator::Base() {
    return Document([this] {
        return Element(
            "ZOTBase", {},
            {CommonSettings(), Element("Functions", {}, Several([this] { return BaseFunction(); })),
             Element("SpecSchemes", {}, Several([this] { return SchemeItem(); }))});
    });
}

std::string FileGenerator::StringTable() {
    return Document([this] { return Element("StringTable", {}, Several([this] { return Entry(); })); });
}

// ---- Functions ----

std::string FileGenerator::DefaultsFunction() {
    return Element(
        "Function",
        {{"ID", Number(12)}, {"Type", Number(3)}, {"Flag", Number(8)}, {"Name", Text()}, {"Group", Text()}},
        {Display(), Element("Commands", {}, Several([this] { return CommandItem(); })), Default()});
}

std::string FileGenerator::Display() {
    return Element("Display", {},
                   {Element("AC", {}, Several([this] { return DisplayItem(); })),
                    Element("DC", {}, Several([this] { return DisplayItem(); }))});
}

std::string FileGenerator::DisplayItem() {
    return Element("DisplayItem", {{"Label", Text()}, {"Option", Number(70)}});
}

std::string FileGenerator::Default() {
    return Element("Default", {{"ACParamIndex", Number(4)}, {"DCParamIndex", Number(4)}}, Several([this] {
                       return Element(
                           "DefaultItem",
                           {{"GUID", Guid()}, {"ACParamIndex", Number(4)}, {"DCParamIndex", Number(4)}});
                   }));
}

std::string FileGenerator::CommandItem() {
    return Element("CommandItem", {{"ID", Number(100)},
                                   {"Event", Number(10)},
                                   {"Flag", Number(4)},
                                   {"State", Number(4)},
                                   {"ParamIndex1", Number(3)},
                                   {"ParamIndex2", Number(3)},
                                   {"SpecInfo1", Text()}});
}

std::string FileGenerator::BaseFunction() {
    return Element(
        "Function",
        {{"ID", Number(12)}, {"Group", Text()}, {"Flag", Number(8)}, {"Name", Text()}, {"Type", Number(3)}},
        {Display(), Default(), Element("Commands", {}, Several([this] { return CommandFamily(); }))});
}

std::string FileGenerator::CommandFamily() {
    return Element("CommandFamily", {},
                   {Join(Several([this] { return CommandItem(); })),
                    Join(Several([this] { return CheckExistItem(); }))});
}

std::string FileGenerator::CheckExistItem() {
    return Element("CheckExistItem", {{"CheckFlag", Number(8)},
                                      {"Param1", Text()},
                                      {"Param2", Text()},
                                      {"Param3", Text()},
                                      {"Param4", Text()}});
}

// ---- Schemes ----

std::string FileGenerator::SchemeItem() {
    return Element("SchemeItem", {{"SchemeGUID", Guid()}}, Several([this] { return SubGroup(); }));
}

std::string FileGenerator::SubGroup() {
    return Element("SubGroup", {{"SubGroupGUID", Guid()}}, Several([this] { return PowerSetting(); }));
}

std::string FileGenerator::PowerSetting() {
    return Element("PowerSetting",
                   {{"PowerSettingGUID", Guid()}, {"ACValue", Number(100)}, {"DCValue", Number(100)}});
}

std::string FileGenerator::PowerScheme() {
    return Element("PowerScheme", {{"GUID", Guid()}}, Several([this] {
                       return Element(
                           "Function",
                           {{"ID", Number(12)}, {"ACParamIndex", Number(4)}, {"DCParamIndex", Number(4)}});
                   }));
}

// ---- Texts and settings ----

std::string FileGenerator::Entry() {
    const std::string text = Text();
    return Element("data", {{"name", Text()}},
                   {Element("value", {}, {random.OneIn(6) ? "<![CDATA[" + text + "]]>" : text})});
}

std::string FileGenerator::CommonSettings() {
    return Element("CommonSettings", {{"Setting", Text()}, {"Other", Text()}, {"xml:lang", "en"}});
}

// ---- XML ----

template <class MakeRoot>
std::string FileGenerator::Document(MakeRoot makeRoot) {
    trouble = random.ElementOf({0, 0, 500, 150, 40, 15});
    const std::string type = InjectsError() || random.OneIn(20) ? DocumentType() : std::string{};
    const std::string root = makeRoot();
    const std::string declaration = random.OneIn(2) ? R"(<?xml version="1.0" encoding="UTF-8"?>)"
                                                      "\n"
                                                    : std::string{};
    std::string xml = declaration + BetweenElements() + type + root;
    xml += BetweenElements();
    return Encoded(xml);
}

std::string FileGenerator::DocumentType() {
    return R"(<!DOCTYPE R [<!ENTITY text "some &number; text"><!ENTITY number "3">
<!ENTITY element "<Function ID='4'/>"><!ENTITY file SYSTEM "StringTable.xml">
<!ATTLIST Function Flag CDATA "5">]>)";
}

std::string FileGenerator::Encoded(const std::string& xml) {
    if (!InjectsError() && !random.OneIn(10))
        return xml;
    switch (random.Below(9)) {
        case 0:
            return "\xef\xbb\xbf" + xml;
        case 1:
            return "\xff\xfe" + Utf16(xml, false);
        case 2:
            return "\xfe\xff" + Utf16(xml, true);
        case 3:
            return Utf16(xml, false);
        case 4:
            return WithLineBreaks(xml, "\r\n");
        case 5:
            return WithLineBreaks(xml, "\r");
        case 6:
            return R"(<?xml version="1.0" encoding="ISO-8859-1"?>)" + xml;
        case 7:
            return xml.substr(0, static_cast<std::size_t>(random.Below(xml.size() + 1)));
        default:
            return xml + std::string(static_cast<std::size_t>(random.Below(9)), '\0');
    }
}

std::string FileGenerator::Element(const std::string& name, const Attributes& attributes,
                                   const std::vector<std::string>& children) {
    std::string start;
    for (const auto& [attribute, value] : attributes)
        start += Attribute(attribute, value);
    std::string content;
    for (const std::string& child : children)
        content += child + BetweenElements();
    if (InjectsError())
        return WrongElement(name, start, content);
    return "<" + name + start + ">" + content + "</" + name + ">";
}

std::string FileGenerator::WrongElement(const std::string& name, const std::string& attributes,
                                        const std::string& children) {
    const auto element = [](const std::string& start, const std::string& content, const std::string& end) {
        return "<" + start + ">" + content + "</" + end + ">";
    };
    const std::string whole = element(name + attributes, children, name);
    switch (random.Below(13)) {
        case 0:
            return {};
        case 1:
            return whole + whole;
        case 2:
            return element(InOtherCase(name) + attributes, children, InOtherCase(name));
        case 3:
            return element("p:" + name + attributes + " xmlns:p=\"urn:any\"", children, "p:" + name);
        case 4:
            return element(name + attributes + " xmlns=\"urn:any\"", children, name);
        case 5:
            return element("Extra", whole, "Extra");
        case 6:
            return children;
        case 7: {
            const std::string& other = random.ElementOf(Names);
            return element(other + attributes, children, other);
        }
        case 8:
            return element(name + attributes, Repeat(children, 3), name);
        case 9:
            return "<" + name + attributes + ">" + children;
        case 10: {
            const int depth = random.Below(300);
            return Repeat("<" + name + ">", depth) + whole + Repeat("</" + name + ">", depth);
        }
        case 11:
            return "<!--" + name + "-->";
        default:
            return element(name + attributes + " " + attributes, children, name);
    }
}

std::string FileGenerator::Attribute(const char* name, const std::string& value) {
    const std::string whole = std::string{name} + "=\"" + value + "\"";
    if (!InjectsError())
        return random.OneIn(60) ? std::string{} : " " + whole;
    switch (random.Below(6)) {
        case 0:
            return " p:" + whole + " xmlns:p=\"urn:any\"";
        case 1:
            return " " + InOtherCase(name) + "=\"" + value + "\"";
        case 2:
            return "\r\n\t" + std::string{name} + " = '" + value + "'";
        case 3:
            return " " + whole + " " + whole;
        case 4:
            return " xmlns:" + whole;
        default:
            return {};
    }
}

std::string FileGenerator::BetweenElements() {
    if (!InjectsError())
        return random.OneIn(3) ? "\n" : "";
    return random.ElementOf<std::string>({"<!--a comment-->", "<?an instruction?>", "text",
                                          "<![CDATA[<Function/>]]>", "&element;", "&text;", "&file;", "&#1;",
                                          "]]>", " \r\n\t", "<Extra/>"});
}

template <class MakePart>
std::vector<std::string> FileGenerator::Several(MakePart makePart) {
    std::vector<std::string> parts;
    const int count = random.OneIn(200) ? random.Below(60) : random.ElementOf({0, 1, 1, 2, 2, 3, 3, 4});
    parts.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        parts.push_back(makePart());
    return parts;
}

std::string FileGenerator::Number(int limit) {
    return InjectsError() ? random.ElementOf(WrongNumbers)
                          : std::to_string(random.Below(static_cast<std::size_t>(limit)));
}

std::string FileGenerator::Text() {
    return InjectsError() ? random.ElementOf(WrongTexts) : random.ElementOf(Keys);
}

std::string FileGenerator::Guid() {
    return InjectsError() ? random.ElementOf(WrongGuids) : random.ElementOf(Guids);
}

}  // namespace ZOTDam::Test
