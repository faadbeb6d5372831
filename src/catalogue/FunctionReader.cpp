#include "catalogue/FunctionReader.h"

#include <utility>

#include "platform/FalseOnException.h"
#include "xml/DataFileElements.h"
#include "xml/Dom.h"

namespace ZOTDam {

namespace {

constexpr std::int32_t MissingId = -1;

bool LoadFunctions(IXMLDOMElement* functions, CFunctionTable& table) {
    FunctionRecord record;
    std::vector<CommandItem> commands;
    for (const IXMLDOMElementPtr& function : SelectChildren(functions, Elements::Function)) {
        record.acDisplayItems.clear();
        record.dcDisplayItems.clear();
        commands.clear();
        const std::int32_t id = ReadFunctionElement(function, record);
        if (id < 0 || !ReadCommandItems(SelectChild(function, Elements::Commands), commands))
            return false;
        // If two functions have the same id, the first one is used (Compatibility: C23). Moving a record
        // moves its lists, but copies its numbers and strings, so the next function can inherit them.
        table.functions.try_emplace(id, std::move(record));
        table.commands.try_emplace(id, std::move(commands));
    }
    table.positions.reserve(table.functions.size());
    for (auto entry = table.functions.cbegin(); entry != table.functions.cend(); ++entry)
        table.positions.push_back(entry);
    return true;
}

}  // namespace

bool LoadFunctionTable(IXMLDOMElement* functions, CFunctionTable& table) noexcept {
    table.Clear();
    const bool loaded = FalseOnException([&] { return LoadFunctions(functions, table); });
    if (!loaded)
        table.Clear();
    return loaded;
}

std::int32_t ReadFunctionElement(IXMLDOMElement* function, FunctionRecord& record) {
    std::int32_t id = MissingId;
    if (function == nullptr)
        return id;
    ReadAttribute(function, Attributes::ID, id);
    ReadAttribute(function, Attributes::Flag, record.flag);
    ReadAttribute(function, Attributes::Type, record.type);
    ReadAttribute(function, Attributes::Name, record.name);
    ReadAttribute(function, Attributes::Group, record.group);
    const IXMLDOMElementPtr display = SelectChild(function, Elements::Display);
    ReadDisplayItems(SelectChild(display, Elements::AC), record.acDisplayItems);
    ReadDisplayItems(SelectChild(display, Elements::DC), record.dcDisplayItems);
    return id;
}

bool ReadDisplayItems(IXMLDOMElement* listElement, List<DisplayItem>& list) {
    if (listElement == nullptr)
        return false;
    DisplayItem item;
    for (const IXMLDOMElementPtr& displayItem : SelectChildren(listElement, Elements::DisplayItem)) {
        ReadAttribute(displayItem, Attributes::Label, item.label);
        ReadAttribute(displayItem, Attributes::Option, item.option);
        list.push_back(item);
    }
    return true;
}

bool ReadCommandItems(IXMLDOMElement* commands, std::vector<CommandItem>& list) {
    if (commands == nullptr)
        return false;
    CommandItem item;
    for (const IXMLDOMElementPtr& commandItem : SelectChildren(commands, Elements::CommandItem)) {
        ReadAttribute(commandItem, Attributes::Event, item.event);
        ReadAttribute(commandItem, Attributes::Flag, item.flag);
        ReadAttribute(commandItem, Attributes::ID, item.id);
        ReadAttribute(commandItem, Attributes::State, item.state);
        ReadAttribute(commandItem, Attributes::ParamIndex1, item.paramIndex1);
        ReadAttribute(commandItem, Attributes::ParamIndex2, item.paramIndex2);
        ReadAttribute(commandItem, Attributes::SpecInfo1, item.specInfo1);
        list.push_back(item);
    }
    return true;
}

}  // namespace ZOTDam
