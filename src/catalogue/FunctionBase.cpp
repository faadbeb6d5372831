#include "catalogue/FunctionBase.h"

#include <utility>

#include "platform/FalseOnException.h"
#include "xml/Documents.h"

namespace ZOTDam {

namespace {

// Deliberate: one set of working records for the whole read, so that an element inherits the previous
// element's value of each missing attribute.
struct WorkingRecords {
    FunctionBaseRecord function;
    BaseCommandItem commandItem;
    CheckExistItem checkExistItem;
};

void ReadCommandItem(IXMLDOMElement* element, BaseCommandItem& item) {
    ReadAttribute(element, L"ID", item.id);
    ReadAttribute(element, L"Event", item.event);
    ReadAttribute(element, L"Flag", item.flag);
    ReadAttribute(element, L"State", item.state);
    ReadAttribute(element, L"ParamIndex1", item.paramIndex1);
    ReadAttribute(element, L"ParamIndex2", item.paramIndex2);
    ReadAttribute(element, L"SpecInfo1", item.specInfo1);
}

void ReadCheckExistItem(IXMLDOMElement* element, CheckExistItem& item) {
    ReadAttribute(element, L"CheckFlag", item.checkFlag);
    ReadAttribute(element, L"Param1", item.param1);
    ReadAttribute(element, L"Param2", item.param2);
    ReadAttribute(element, L"Param3", item.param3);
    ReadAttribute(element, L"Param4", item.param4);
}

List<CommandFamily> ReadCommandFamilies(IXMLDOMElement* commands, WorkingRecords& working) {
    List<CommandFamily> families;
    for (const IXMLDOMElementPtr& familyElement : SelectChildren(commands, L"CommandFamily")) {
        CommandFamily family;
        for (const IXMLDOMElementPtr& item : SelectChildren(familyElement, L"CommandItem")) {
            ReadCommandItem(item, working.commandItem);
            family.commandItems.push_back(working.commandItem);
        }
        for (const IXMLDOMElementPtr& item : SelectChildren(familyElement, L"CheckExistItem")) {
            ReadCheckExistItem(item, working.checkExistItem);
            family.checkExistItems.push_back(working.checkExistItem);
        }
        families.push_back(std::move(family));
    }
    return families;
}

FunctionBaseRecord ReadFunction(IXMLDOMElement* element, WorkingRecords& working) {
    FunctionBaseRecord& function = working.function;
    ReadAttribute(element, L"ID", function.id);
    ReadAttribute(element, L"Group", function.group);
    ReadAttribute(element, L"Flag", function.flag);
    ReadAttribute(element, L"Name", function.name);
    ReadAttribute(element, L"Type", function.type);
    FunctionBaseRecord record = function;
    record.displayNode = CountedPointer<IXMLDOMNode>{SelectChild(element, L"Display")};
    record.defaultNode = CountedPointer<IXMLDOMNode>{SelectChild(element, L"Default")};
    record.commandFamilies = ReadCommandFamilies(SelectChild(element, L"Commands"), working);
    return record;
}

}  // namespace

bool ReadFunctionBase(List<FunctionBaseRecord>& output) noexcept {
    return FalseOnException([&] {
        CXmlZOTBase* base = BaseCatalogueDocument.Get();
        if (base == nullptr)
            return false;
        const IXMLDOMElementPtr functions = base->Functions();
        if (!functions)
            return false;
        WorkingRecords working;
        for (const IXMLDOMElementPtr& function : SelectChildren(functions, L"Function"))
            output.push_back(ReadFunction(function, working));
        return true;
    });
}

bool SelectUnsupportedFunctions(CFunctionTable& table, List<FunctionBaseRecord>& output) noexcept {
    output.clear();
    if (!EnsureFunctionTable(table))
        return false;
    if (!ReadFunctionBase(output)) {
        output.clear();
        return false;
    }
    output.remove_if([&](const FunctionBaseRecord& record) { return table.functions.contains(record.id); });
    return true;
}

}  // namespace ZOTDam
