#include "catalogue/FunctionDefaults.h"

#include "platform/FalseOnException.h"
#include "xml/Documents.h"

namespace ZOTDam {

namespace {

void AppendCopy(IXMLDOMElement* function, const CountedPointer<IXMLDOMNode>& node) {
    if (node.get() != nullptr)
        AppendChild(function, ImportNode(function, node.get()));
}

void WriteCommandItem(IXMLDOMElement* commands, const BaseCommandItem& item) {
    const IXMLDOMElementPtr element = CreateChild(commands, L"CommandItem");
    WriteAttribute(element, L"ID", item.id);
    WriteAttribute(element, L"Event", item.event);
    WriteAttribute(element, L"Flag", item.flag);
    WriteAttribute(element, L"State", item.state);
    WriteAttribute(element, L"ParamIndex1", item.paramIndex1);
    WriteAttribute(element, L"ParamIndex2", item.paramIndex2);
    WriteAttribute(element, L"SpecInfo1", item.specInfo1);
}

// Families and their checks are not written. They only serve to determine whether the machine supports a
// function.
IXMLDOMElementPtr WriteCommands(IXMLDOMElement* function, const List<CommandFamily>& families) {
    IXMLDOMElementPtr commands = CreateChild(function, L"Commands");
    for (const CommandFamily& family : families)
        for (const BaseCommandItem& item : family.commandItems)
            WriteCommandItem(commands, item);
    return commands;
}

// The function is appended to the section only when it is complete, so that a failure leaves no partial
// function.
void WriteFunction(IXMLDOMElement* functions, const FunctionBaseRecord& record) {
    const IXMLDOMElementPtr function = CreateElement(functions, L"Function");
    WriteAttribute(function, L"ID", record.id);
    WriteAttribute(function, L"Flag", record.flag);
    WriteAttribute(function, L"Type", record.type);
    WriteAttribute(function, L"Name", record.name);
    WriteAttribute(function, L"Group", record.group);
    AppendCopy(function, record.displayNode);
    AppendCopy(function, record.defaultNode);
    const IXMLDOMElementPtr commands = WriteCommands(function, record.commandFamilies);
    // Deliberate: a function without commands is left out.
    if (SelectChild(commands, L"CommandItem"))
        AppendChild(functions, function);
}

}  // namespace

bool ReplaceFunctionDefaults(const List<FunctionBaseRecord>& records) noexcept {
    return FalseOnException([&] {
        CXmlZOTDefault* defaults = DefaultsDocument.Get();
        // Deliberate: without a document there is nothing to write, which counts as success.
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
