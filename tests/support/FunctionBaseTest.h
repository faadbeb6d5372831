// The fixture of tests for the functions of the base catalogue.
#pragma once

#include "support/FunctionBase.h"
#include "support/SettingsTest.h"

namespace ZOTDam::Test {

// The smallest function that can be read.
inline std::string BaseFunction(std::int32_t id, const std::string& families = {}) {
    return "<Function ID=\"" + std::to_string(id) + "\"><Commands>" + families + "</Commands></Function>";
}

inline std::string BaseFunctions(std::initializer_list<std::int32_t> ids) {
    std::string functions;
    for (const std::int32_t id : ids)
        functions += BaseFunction(id);
    return functions;
}

inline std::string CommandFamilies(const std::string& items) {
    return "<CommandFamily>" + items + "</CommandFamily>";
}

// One text of a function, and its location in the record.
struct TextField {
    std::string name;
    std::string before;
    std::string after;
    std::wstring (*find)(const FunctionBase& function);

    // A function that contains only this text.
    std::string Function(const std::string& text) const { return before + text + after; }
};

inline void PrintTo(const TextField& field, std::ostream* out) {
    *out << field.name;
}

inline std::vector<TextField> TextFields() {
    const auto ofFunction = [](const std::string& attribute) {
        return "<Function ID=\"2\" " + attribute + "=\"";
    };
    const auto ofItem = [](const std::string& item) {
        return "<Function ID=\"2\"><Commands><CommandFamily><" + item + "=\"";
    };
    const std::string afterFunction = "\"><Commands/></Function>";
    const std::string afterItem = "\"/></CommandFamily></Commands></Function>";
    return {
        {"Name", ofFunction("Name"), afterFunction, [](const FunctionBase& f) { return f.name; }},
        {"Group", ofFunction("Group"), afterFunction, [](const FunctionBase& f) { return f.group; }},
        {"SpecInfo1", ofItem("CommandItem SpecInfo1"), afterItem,
         [](const FunctionBase& f) { return f.families.at(0).commands.at(0).specInfo1; }},
        {"Param1", ofItem("CheckExistItem Param1"), afterItem,
         [](const FunctionBase& f) { return f.families.at(0).checks.at(0).param1; }},
        {"Param2", ofItem("CheckExistItem Param2"), afterItem,
         [](const FunctionBase& f) { return f.families.at(0).checks.at(0).param2; }},
        {"Param3", ofItem("CheckExistItem Param3"), afterItem,
         [](const FunctionBase& f) { return f.families.at(0).checks.at(0).param3; }},
        {"Param4", ofItem("CheckExistItem Param4"), afterItem,
         [](const FunctionBase& f) { return f.families.at(0).checks.at(0).param4; }},
    };
}

// Functions that cannot be read.
inline std::vector<XmlCase> UnreadableFunctions() {
    std::vector<XmlCase> functions = {
        {"WithoutCommands", R"(<Function ID="2"><Display/><Default/></Function>)"},
        {"WithoutAnything", "<Function/>"},
        {"WithCommandsOfAnotherCaseOfLetters", R"(<Function ID="2"><commands/></Function>)"},
        {"WithCommandsInADefaultNamespace", R"(<Function ID="2"><Commands xmlns="urn:other"/></Function>)"},
        {"WithCommandsOfANamespacePrefix",
         R"(<Function ID="2" xmlns:o="urn:other"><o:Commands/></Function>)"},
        {"WithCommandsBelowAnotherElement", R"(<Function ID="2"><All><Commands/></All></Function>)"},
        {"WithCommandsInAComment", R"(<Function ID="2"><!--<Commands/>--></Function>)"},
        {"WithCommandsAsText", R"(<Function ID="2"><![CDATA[<Commands/>]]></Function>)"},
        {"WithAnInstructionInThePlaceOfCommands", R"(<Function ID="2"><?Commands?></Function>)"},
        {"WithAnAttributeInThePlaceOfCommands", R"(<Function ID="2" Commands=""/>)"},
    };
    for (const TextField& field : TextFields())
        functions.push_back({"WithAnOverlong" + field.name, field.Function(std::string(260, 't'))});
    return functions;
}

class FunctionBaseTest : public SettingsTest {
protected:
    void WriteBaseFunctions(const std::string& functions) const {
        WriteBase("<ZOTBase><Functions>" + functions + "</Functions></ZOTBase>");
    }

    // Collect the items that the exports enumerate. The test fails if an export returns false.
    std::vector<FunctionBase> GetFunctionBase() { return Collect(Dll().GetFunctionBase); }
    std::vector<FunctionBase> GetFunctionBaseUnSupported() {
        return Collect(Dll().GetFunctionBaseUnSupported);
    }

    std::vector<FunctionBase> RecordsOf(const std::string& functions) {
        WriteBaseFunctions(functions);
        return GetFunctionBase();
    }

    FunctionBase OnlyRecordOf(const std::string& function) {
        const std::vector<FunctionBase> records = RecordsOf(function);
        EXPECT_EQ(records.size(), 1u);
        return records.empty() ? FunctionBase{} : records.front();
    }

    static std::vector<std::int32_t> Ids(const std::vector<FunctionBase>& records) {
        std::vector<std::int32_t> ids;
        ids.reserve(records.size());
        for (const FunctionBase& record : records)
            ids.push_back(record.id);
        return ids;
    }

    std::vector<std::int32_t> IdsOf(const std::string& functions) { return Ids(RecordsOf(functions)); }

private:
    static std::vector<FunctionBase> Collect(decltype(&ZOTDam::GetFunctionBase) enumerate) {
        std::vector<FunctionBase> records;
        auto collect = MakeCallback<IGetFunctionBaseCallback>(
            [&](const FunctionBaseRecord* record) { records.push_back(CopyOf(*record)); });
        EXPECT_TRUE(enumerate(&collect));
        return records;
    }

    ComScope com;  // for the nodes that a test keeps after the library is unloaded
};

}  // namespace ZOTDam::Test
