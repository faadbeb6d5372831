#include "catalogue/FunctionDefaults.h"

#include "platform/FalseOnException.h"
#include "xml/DataFileElements.h"
#include "xml/Documents.h"

namespace ZOTDam {

namespace {

void AppendCopy(IXMLDOMElement* function, const CountedPointer<IXMLDOMNode>& node) {
    if (node.get() != nullptr)
        AppendChild(function, ImportNode(function, node.get()));
}

void WriteCommandItem(IXMLDOMElement* commands, const BaseCommandItem& item) {
    const IXMLDOMElementPtr element = CreateChild(commands, Elements::CommandItem);
    WriteAttribute(element, Attributes::ID, item.id);
    WriteAttribute(element, Attributes::Event, item.event);
    WriteAttribute(element, Attributes::Flag, item.flag);
    WriteAttribute(element, Attributes::State, item.state);
    WriteAttribute(element, Attributes::ParamIndex1, item.paramIndex1);
    WriteAttribute(element, Attributes::ParamIndex2, item.paramIndex2);
    WriteAttribute(element, Attributes::SpecInfo1, item.specInfo1);
}

// Families and their checks are not written. They only serve to determine whether the machine supports a
// function.
IXMLDOMElementPtr WriteCommands(IXMLDOMElement* function, const List<CommandFamily>& families) {
    IXMLDOMElementPtr commands = CreateChild(function, Elements::Commands);
    for (const CommandFamily& family : families)
        for (const BaseCommandItem& item : family.commandItems)
            WriteCommandItem(commands, item);
    return commands;
}

// The function is appended to the section only when it is complete, so that a failure leaves no partial
// function.
void WriteFunction(IXMLDOMElement* functions, const FunctionBaseRecord& record) {
    const IXMLDOMElementPtr function = CreateElement(functions, Elements::Function);
    WriteAttribute(function, Attributes::ID, record.id);
    WriteAttribute(function, Attributes::Flag, record.flag);
    WriteAttribute(function, Attributes::Type, record.type);
    WriteAttribute(function, Attributes::Name, record.name);
    WriteAttribute(function, Attributes::Group, record.group);
    AppendCopy(function, record.displayNode);
    AppendCopy(function, record.defaultNode);
    const IXMLDOMElementPtr commands = WriteCommands(function, record.commandFamilies);
    // A function without commands is left out. Compatibility: C25.
    if (SelectChild(commands, Elements::CommandItem))
        AppendChild(functions, function);
}

}  // namespace

bool ReplaceFunctionDefaults(const List<FunctionBaseRecord>& records) noexcept {
    return FalseOnException([&] {
        CXmlZOTDefault* defaults = DefaultsDocument.Get();
        // Without a document, there is nothing to write. Compatibility: C4.
        if (defaults == nullptr)
            return true;
        const IXMLDOMElementPtr functions = defaults->Functions();
        if (!functions)
            return false;
        RemoveChildren(functions);
        const bool written = WriteFunctionDefaults(functions, records);
        defaults->Save();
        return written;
    });
}

bool WriteFunctionDefaults(IXMLDOMElement* functions, const List<FunctionBaseRecord>& records) noexcept {
    return FalseOnException([&] {
        for (const FunctionBaseRecord& record : records)
            WriteFunction(functions, record);
        return true;
    });
}

}  // namespace ZOTDam
