#include "catalogue/FunctionBase.h"

#include <utility>

#include "platform/FalseOnException.h"
#include "xml/DataFileElements.h"
#include "xml/Documents.h"

namespace ZOTDam {

namespace {

// One set of working records for the whole read: an element inherits the previous element's value of each
// missing attribute. Compatibility: C20.
struct WorkingRecords {
    FunctionBaseRecord function;
    BaseCommandItem commandItem;
    CheckExistItem checkExistItem;
};

void ReadCommandItem(IXMLDOMElement* element, BaseCommandItem& item) {
    ReadAttribute(element, Attributes::ID, item.id);
    ReadAttribute(element, Attributes::Event, item.event);
    ReadAttribute(element, Attributes::Flag, item.flag);
    ReadAttribute(element, Attributes::State, item.state);
    ReadAttribute(element, Attributes::ParamIndex1, item.paramIndex1);
    ReadAttribute(element, Attributes::ParamIndex2, item.paramIndex2);
    ReadAttribute(element, Attributes::SpecInfo1, item.specInfo1);
}

void ReadCheckExistItem(IXMLDOMElement* element, CheckExistItem& item) {
    ReadAttribute(element, Attributes::CheckFlag, item.checkFlag);
    ReadAttribute(element, Attributes::Param1, item.param1);
    ReadAttribute(element, Attributes::Param2, item.param2);
    ReadAttribute(element, Attributes::Param3, item.param3);
    ReadAttribute(element, Attributes::Param4, item.param4);
}

List<CommandFamily> ReadCommandFamilies(IXMLDOMElement* commands, WorkingRecords& working) {
    List<CommandFamily> families;
    for (const IXMLDOMElementPtr& familyElement : SelectChildren(commands, Elements::CommandFamily)) {
        CommandFamily family;
        for (const IXMLDOMElementPtr& item : SelectChildren(familyElement, Elements::CommandItem)) {
            ReadCommandItem(item, working.commandItem);
            family.commandItems.push_back(working.commandItem);
        }
        for (const IXMLDOMElementPtr& item : SelectChildren(familyElement, Elements::CheckExistItem)) {
            ReadCheckExistItem(item, working.checkExistItem);
            family.checkExistItems.push_back(working.checkExistItem);
        }
        families.push_back(std::move(family));
    }
    return families;
}

FunctionBaseRecord ReadFunction(IXMLDOMElement* element, WorkingRecords& working) {
    FunctionBaseRecord& function = working.function;
    ReadAttribute(element, Attributes::ID, function.id);
    ReadAttribute(element, Attributes::Group, function.group);
    ReadAttribute(element, Attributes::Flag, function.flag);
    ReadAttribute(element, Attributes::Name, function.name);
    ReadAttribute(element, Attributes::Type, function.type);
    FunctionBaseRecord record = function;
    record.displayNode = CountedPointer<IXMLDOMNode>{SelectChild(element, Elements::Display)};
    record.defaultNode = CountedPointer<IXMLDOMNode>{SelectChild(element, Elements::Default)};
    record.commandFamilies = ReadCommandFamilies(SelectChild(element, Elements::Commands), working);
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
        for (const IXMLDOMElementPtr& function : SelectChildren(functions, Elements::Function))
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
