#include "BaseFunction.h"

#include <cwchar>

#include "Dom.h"
#include "Text.h"
#include "xml/DataFileElements.h"

namespace ZOTDam::Client {

namespace {

// As in the library, a field keeps its value if the attribute is missing.
void Read(IXMLDOMNode* element, const wchar_t* attribute, std::int32_t& field) {
    if (const auto text = ReadAttribute(element, attribute))
        field = std::wcstol(text->c_str(), nullptr, 10);
}

void Read(IXMLDOMNode* element, const wchar_t* attribute, std::string& field) {
    if (const auto text = ReadAttribute(element, attribute))
        field = ToUtf8(*text);
}

Options ReadOptions(IXMLDOMNode* display, const wchar_t* source) {
    Options options;
    const std::vector<Node> lists = SelectChildren(display, source);
    if (lists.empty())
        return options;
    Option option;
    for (const Node& item : SelectChildren(lists.front().get(), Elements::DisplayItem)) {
        Read(item.get(), Attributes::Label, option.label);
        Read(item.get(), Attributes::Option, option.option);
        options.push_back(option);
    }
    return options;
}

DefaultValue ReadDefault(IXMLDOMNode* element) {
    DefaultValue value;
    Read(element, Attributes::GUID, value.scheme);
    Read(element, Attributes::ACParamIndex, value.ac);
    Read(element, Attributes::DCParamIndex, value.dc);
    return value;
}

std::vector<DefaultValue> ReadDefaults(IXMLDOMNode* defaultElement) {
    std::vector<DefaultValue> defaults;
    if (defaultElement == nullptr)
        return defaults;
    defaults.push_back(ReadDefault(defaultElement));
    for (const Node& item : SelectChildren(defaultElement, Elements::DefaultItem))
        defaults.push_back(ReadDefault(item.get()));
    return defaults;
}

std::string DefaultText(const DefaultValue& value) {
    return "    Default     " + std::to_string(value.ac) + " plugged in, " + std::to_string(value.dc) +
           " on battery" + (value.scheme.empty() ? "" : " in " + value.scheme) + "\n";
}

std::string CommandText(const BaseCommandItem& command) {
    return "      Command   " + std::to_string(command.id) + ": event " + std::to_string(command.event) +
           ", state " + std::to_string(command.state) + ", parameters " +
           std::to_string(command.paramIndex1) + " and " + std::to_string(command.paramIndex2) + ", flag " +
           std::to_string(command.flag) + ", \"" + ToUtf8(command.specInfo1) + "\"\n";
}

std::string CheckText(const CheckExistItem& check) {
    std::string text = "      Check     flag " + std::to_string(check.checkFlag);
    for (const wchar_t* const param : {check.param1, check.param2, check.param3, check.param4})
        text += ", \"" + ToUtf8(param) + "\"";
    return text + "\n";
}

Json CommandJson(const BaseCommandItem& command) {
    return {{"commandId", command.id},
            {"event", command.event},
            {"state", command.state},
            {"paramIndex1", command.paramIndex1},
            {"paramIndex2", command.paramIndex2},
            {"flag", command.flag},
            {"specInfo1", ToUtf8(command.specInfo1)}};
}

Json CheckJson(const CheckExistItem& check) {
    return {{"checkFlag", check.checkFlag},
            {"param1", ToUtf8(check.param1)},
            {"param2", ToUtf8(check.param2)},
            {"param3", ToUtf8(check.param3)},
            {"param4", ToUtf8(check.param4)}};
}

Json FamilyJson(const CommandFamily& family) {
    Json commands = Json::array();
    for (const BaseCommandItem& command : family.commandItems)
        commands.push_back(CommandJson(command));
    Json checks = Json::array();
    for (const CheckExistItem& check : family.checkExistItems)
        checks.push_back(CheckJson(check));
    return {{"commands", commands}, {"checks", checks}};
}

}  // namespace

BaseFunction::BaseFunction(const FunctionBaseRecord& functionRecord)
    : record{functionRecord},
      acOptions{ReadOptions(functionRecord.displayNode.get(), Elements::AC)},
      dcOptions{ReadOptions(functionRecord.displayNode.get(), Elements::DC)},
      defaults{ReadDefaults(functionRecord.defaultNode.get())} {}

std::string BaseFunction::Text() const {
    std::string text = std::to_string(record.id) + "  " + ToUtf8(record.name) + "\n" + "    Group       " +
                       ToUtf8(record.group) + "\n" + "    Type, flag  " + std::to_string(record.type) + ", " +
                       std::to_string(record.flag) + "\n" + "    Plugged in  " + OptionsText(acOptions) +
                       "\n" + "    On battery  " + OptionsText(dcOptions) + "\n";
    for (const DefaultValue& value : defaults)
        text += DefaultText(value);
    for (const CommandFamily& family : record.commandFamilies) {
        text += "    Family\n";
        for (const BaseCommandItem& command : family.commandItems)
            text += CommandText(command);
        for (const CheckExistItem& check : family.checkExistItems)
            text += CheckText(check);
    }
    return text;
}

Json BaseFunction::ToJson() const {
    Json values = Json::array();
    for (const DefaultValue& value : defaults)
        values.push_back({{"scheme", value.scheme.empty() ? Json() : Json(value.scheme)},
                          {"acIndex", value.ac},
                          {"dcIndex", value.dc}});
    Json families = Json::array();
    for (const CommandFamily& family : record.commandFamilies)
        families.push_back(FamilyJson(family));
    return {{"id", record.id},
            {"name", ToUtf8(record.name)},
            {"group", ToUtf8(record.group)},
            {"type", record.type},
            {"flag", record.flag},
            {"acOptions", OptionsJson(acOptions)},
            {"dcOptions", OptionsJson(dcOptions)},
            {"defaults", values},
            {"families", families}};
}

}  // namespace ZOTDam::Client
