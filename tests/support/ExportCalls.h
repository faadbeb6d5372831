// One call of each export, an installation that provides data for all of them, and the results that a client
// sees.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "support/FunctionDefaultsTest.h"

namespace ZOTDam::Test {

// ---- Answers ----

using Lines = std::vector<std::wstring>;

// The output of an export: its result, and the data passed to OnItem or written to the buffers.
struct Answer {
    std::uint32_t result = 0;
    Lines items = {};

    bool operator==(const Answer&) const = default;
};

inline void PrintTo(const Answer& answer, std::ostream* out) {
    *out << answer.result;
    for (const std::wstring& item : answer.items)
        *out << ", " << testing::PrintToString(item);
}

inline std::wstring Word(const std::wstring& text) {
    return text;
}

inline std::wstring Word(std::int64_t number) {
    return std::to_wstring(number);
}

// Joins strings and numbers with spaces.
template <class First, class... Others>
std::wstring Line(const First& first, const Others&... others) {
    return (Word(first) + ... + (L" " + Word(others)));
}

inline std::wstring Describe(const ParamValue& value) {
    return Line(value.ACParamIndex, value.DCParamIndex);
}

inline std::wstring Describe(const CommandFamily& family) {
    std::wstring line = L"family";
    for (const BaseCommandItem& command : family.commandItems)
        line += Line(L", command", command.id, command.specInfo1);
    for (const CheckExistItem& check : family.checkExistItems)
        line += Line(L", check", check.checkFlag, check.param1);
    return line;
}

inline std::wstring Describe(const FunctionBaseRecord& function) {
    const auto node = [](const CountedPointer<IXMLDOMNode>& pointer) {
        return pointer.get() != nullptr ? L"node" : L"nothing";
    };
    std::wstring line =
        Line(function.id, function.name, node(function.displayNode), node(function.defaultNode));
    for (const CommandFamily& family : function.commandFamilies)
        line += Line(L"", Describe(family));
    return line;
}

inline std::wstring Describe(const FunctionRecord& function) {
    std::wstring line = Line(function.group, function.name);
    for (const List<DisplayItem>* items : {&function.acDisplayItems, &function.dcDisplayItems})
        for (const DisplayItem& item : *items)
            line += Line(L"", item.option, item.label);
    return line;
}

inline std::wstring Describe(const CommandInfoRecord& command) {
    return Line(command.id, command.option1, command.option2, command.specInfo1);
}

inline std::wstring Describe(const SpecSchemeRecord& scheme) {
    std::wstring line = Line(scheme.scheme.Data1);
    for (const SpecSubGroupRecord& subGroup : scheme.subGroups)
        for (const SpecPowerSettingRecord& setting : subGroup.powerSettings)
            line += Line(L", setting", setting.acValue, setting.dcValue);
    return line;
}

// ---- Calls ----

template <class Record>
std::wstring DescribeItem(const Record* record) {
    return Describe(*record);
}

template <class Id, class Record>
std::wstring DescribeItem(Id id, const Record* record) {
    return Word(id) + L": " + Describe(*record);
}

template <class Callback, class Call>
Answer Collect(Call call) {
    Answer answer;
    auto keep = MakeCallback<Callback>([&](auto... item) { answer.items.push_back(DescribeItem(item...)); });
    answer.result = call(&keep);
    return answer;
}

template <class Callback>
Answer Enumerate(bool (*enumerate)(Callback*)) {
    return Collect<Callback>(enumerate);
}

template <class Callback>
Answer Enumerate(bool (*enumerate)(const GUID*, Callback*), const GUID& scheme) {
    return Collect<Callback>([&](Callback* callback) { return enumerate(&scheme, callback); });
}

inline Answer Store(const Library& dll, const GUID& scheme) {
    return {dll.SetParameter(&scheme, ParamHolder{{{1, {11, 12}}, {3, {13, 14}}}}.get())};
}

inline Answer Differences(const Library& dll) {
    Text names = L"untouched";
    Text values = L"untouched";
    const bool differ = dll.GetDiffFuncList(&Balanced, &HighPerformance, 1, names, values);
    return {differ, {names, values}};
}

inline Answer CurrentValue(const Library& dll, std::uint32_t position) {
    FuncCurValue value = {};
    const bool found = dll.GetFuncCurValue(position, &value);
    return {found, {Line(value.FunctionId, value.ACValue, value.DCValue)}};
}

inline Answer CommonSetting(const Library& dll, const wchar_t* name) {
    Text value = L"untouched";
    const bool found = dll.GetCommonSetting(name, value);
    return {found, {value}};
}

// Passes two functions to AddFunctionDefault. The second one refers to nodes of a document of the client.
inline Answer ReplaceFunctions(const Library& dll) {
    const XmlTree tree = XmlTree::OfText(L"<F><Display><AC/></Display><Default ACParamIndex=\"1\"/></F>");
    FunctionBaseRecord withNodes = Record(2);
    withNodes.displayNode = tree.Find(L"/F/Display");
    withNodes.defaultNode = tree.Find(L"/F/Default");
    const FunctionBaseHolder holder = HolderOf({Record(1), withNodes});
    return {dll.AddFunctionDefault(&holder)};
}

struct ExportCall {
    std::string exportName;
    Answer answer;
    Answer (*call)(const Library& dll);
    void (*before)(const Library& dll) = [](const Library&) {
    };  // creates the state that the call needs to return data
};

inline void PrintTo(const ExportCall& call, std::ostream* out) {
    *out << call.exportName;
}

// The position of the function that is hidden because the display supports only a rate of 60.
inline constexpr std::uint32_t HiddenFunctionPosition = 2;

inline const std::vector<ExportCall> CallsOfAllExports = {
    {"GetFuncCount", {3}, [](const Library& dll) { return Answer{dll.GetFuncCount()}; }},
    {"GetFunctionBase",
     {1,
      {L"1 Dim node node family, command 0 s, check 0 p", L"5 Dim node node family, command 0 s, check 0 p",
       L"6 Dim node node family, command 0 s, check 0 p"}},
     [](const Library& dll) { return Enumerate(dll.GetFunctionBase); }},
    {"GetFunctionBaseUnSupported",
     {1,
      {L"5 Dim node node family, command 0 s, check 0 p", L"6 Dim node node family, command 0 s, check 0 p"}},
     [](const Library& dll) { return Enumerate(dll.GetFunctionBaseUnSupported); }},
    {"GetFunctionInfo",
     {1,
      {L"1: Group1Name Text 11 Text 12 Text", L"2: Group1Name Other",
       L"7: Group1Name Other 60 Text 48 Text"}},
     [](const Library& dll) { return Enumerate(dll.GetFunctionInfo); }},
    {"AddFunctionDefault", {1}, &ReplaceFunctions},
    {"GetParameter",
     {1, {L"1: 0 8", L"2: 9 10"}},
     [](const Library& dll) { return Enumerate(dll.GetParameter, HighPerformance); }},
    {"GetParameterDefault",
     {1, {L"1: 1 3", L"2: 6 7", L"7: 1 1"}},
     [](const Library& dll) { return Enumerate(dll.GetParameterDefault, HighPerformance); }},
    {"SetParameter", {1}, [](const Library& dll) { return Store(dll, Balanced); }},
    {"ResetDefault",
     {1},
     [](const Library& dll) { return Answer{dll.ResetDefault()}; },
     [](const Library& dll) { Store(dll, HighPerformance); }},
    {"TEVGetParam", {1}, [](const Library& dll) { return Answer{dll.TEVGetParam(&HighPerformance)}; }},
    {"GetFuncCurValue",
     {1, {L"7 60 0"}},
     [](const Library& dll) { return CurrentValue(dll, HiddenFunctionPosition); },
     [](const Library& dll) { dll.TEVGetParam(&HighPerformance); }},
    {"GetCommandInfo",
     {1, {L"21 11 11 a text that no small buffer holds", L"22 0 11 another text that none of them holds"}},
     [](const Library& dll) { return Enumerate(dll.GetCommandInfo, HighPerformance); }},
    {"GetDiffFuncList", {1, {L"- Text\n\r- Other\n\r", L"Text\n\r\n\r"}}, &Differences},
    {"GetSpecScheme",
     {1, {L"941310498, setting 1 2", L"2355003354, setting 1 2"}},
     [](const Library& dll) { return Enumerate(dll.GetSpecScheme); }},
    {"GetCommonSetting", {1, {L"base"}}, [](const Library& dll) { return CommonSetting(dll, L"base"); }},
    {"SetCommonSetting",
     {1},
     [](const Library& dll) { return Answer{dll.SetCommonSetting(L"user", L"new")}; }},
    {"InitCommonSetting", {1}, [](const Library& dll) { return Answer{dll.InitCommonSetting()}; }},
    {"ZOTDamExit",
     {1},
     [](const Library& dll) { return Answer{dll.ZOTDamExit()}; },
     [](const Library& dll) { dll.GetFuncCount(); }},
};

// ---- The installation ----

// A base catalogue with complete functions and schemes.
inline constexpr char WholeBase[] = R"(<ZOTBase><CommonSettings base="base"/><Functions>
    <Function ID="1" Name="Dim"><Display/><Default/><Commands><CommandFamily>
        <CommandItem SpecInfo1="s"/><CheckExistItem Param1="p"/></CommandFamily></Commands></Function>
    <Function ID="5"><Display/><Default/><Commands><CommandFamily><CommandItem/><CheckExistItem/>
        </CommandFamily></Commands></Function>
    <Function ID="6"><Display/><Default/><Commands><CommandFamily><CommandItem/><CheckExistItem/>
        </CommandFamily></Commands></Function>
</Functions><SpecSchemes>
    <SchemeItem SchemeGUID="381b4222-f694-41f0-9685-ff5bb260df2e">
        <SubGroup SubGroupGUID="381b4222-f694-41f0-9685-ff5bb260df2e">
            <PowerSetting PowerSettingGUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACValue="1" DCValue="2"/>
        </SubGroup>
    </SchemeItem>
    <SchemeItem SchemeGUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c">
        <SubGroup SubGroupGUID="381b4222-f694-41f0-9685-ff5bb260df2e">
            <PowerSetting PowerSettingGUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACValue="1" DCValue="2"/>
        </SubGroup>
    </SchemeItem>
</SpecSchemes></ZOTBase>)";

inline constexpr char FullDefaults[] = R"(<ZOTDefault><Functions>
    <Function ID="1" Name="Key" Group="Group1Name">
        <Display><AC><DisplayItem Label="Key" Option="11"/><DisplayItem Option="12"/></AC></Display>
        <Commands><CommandItem ID="21" SpecInfo1="a text that no small buffer holds"/>
            <CommandItem ID="22" ParamIndex1="1" SpecInfo1="another text that none of them holds"/></Commands>
        <Default ACParamIndex="1" DCParamIndex="3"/>
    </Function>
    <Function ID="2" Name="Other"><Display/><Commands/><Default ACParamIndex="4" DCParamIndex="5">
        <DefaultItem GUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c" ACParamIndex="6" DCParamIndex="7"/>
    </Default></Function>
    <Function ID="7"><Display>
        <AC><DisplayItem Label="Key" Option="60"/><DisplayItem Option="48"/></AC>
    </Display><Commands/><Default ACParamIndex="1" DCParamIndex="1"/></Function>
</Functions><CommonSettings default="default"/></ZOTDefault>)";

// The high-performance scheme is stored with all functions, the balanced scheme with the first one.
inline std::string FullUserSettings() {
    return "<OrloPowerCfg><PowerSchemes>" +
           OldScheme(HighPerformanceText,
                     OldFunction(1, 0, 8) + OldFunction(2, 9, 10) + OldFunction(7, 0, 1)) +
           OldScheme(BalancedText, OldFunction(1, 1, 1)) +
           "</PowerSchemes><CommonSettings user=\"user\"/></OrloPowerCfg>\n";
}

class ExportCallsTest : public FunctionDefaultsTest {
protected:
    ExportCallsTest() { WriteInstallation(); }

    void WriteInstallation() const {
        WriteBase(WholeBase);
        WriteEntries(Entry("Key", "Text"));
        WriteSettings();
    }

    // Restores the two files that the library writes, if they have changed.
    void WriteSettings() const {
        if (UserSettings() != FullUserSettings())
            WriteUserSettings(FullUserSettings());
        if (Defaults() != FullDefaults)
            WriteDefaults(FullDefaults);
    }
};

}  // namespace ZOTDam::Test
