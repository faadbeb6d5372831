// Copies of the records that GetFunctionBase enumerates, which remain valid after the call.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "support/XmlFile.h"
#include "xml/DomInterfaces.h"

namespace ZOTDam::Test {

struct BaseCommand {
    std::int32_t id = 0;
    std::int32_t event = 0;
    std::int32_t state = 0;
    std::int32_t paramIndex1 = 0;
    std::int32_t paramIndex2 = 0;
    std::int32_t flag = 0;
    std::wstring specInfo1 = {};

    bool operator==(const BaseCommand&) const = default;
};

inline void PrintTo(const BaseCommand& command, std::ostream* out) {
    *out << "{" << command.id << ", event " << command.event << ", state " << command.state << ", indices "
         << command.paramIndex1 << " and " << command.paramIndex2 << ", flag " << command.flag << ", "
         << testing::PrintToString(command.specInfo1) << "}";
}

struct ExistCheck {
    std::int32_t checkFlag = 0;
    std::wstring param1 = {};
    std::wstring param2 = {};
    std::wstring param3 = {};
    std::wstring param4 = {};

    bool operator==(const ExistCheck&) const = default;
};

inline void PrintTo(const ExistCheck& check, std::ostream* out) {
    *out << "{" << check.checkFlag;
    for (const std::wstring& param : {check.param1, check.param2, check.param3, check.param4})
        *out << ", " << testing::PrintToString(param);
    *out << "}";
}

struct Family {
    std::vector<BaseCommand> commands = {};
    std::vector<ExistCheck> checks = {};

    bool operator==(const Family&) const = default;
};

inline void PrintTo(const Family& family, std::ostream* out) {
    *out << "commands " << testing::PrintToString(family.commands) << ", checks "
         << testing::PrintToString(family.checks);
}

// Nodes are stored as XML. A null node has no value.
struct FunctionBase {
    std::int32_t id = 0;
    std::int32_t type = 0;
    std::int32_t flag = 0;
    std::wstring name = {};
    std::wstring group = {};
    std::optional<std::wstring> display = {};
    std::optional<std::wstring> defaults = {};
    std::vector<Family> families = {};

    bool operator==(const FunctionBase&) const = default;
};

inline void PrintTo(const FunctionBase& function, std::ostream* out) {
    *out << "{" << function.id << ", type " << function.type << ", flag " << function.flag << ", "
         << testing::PrintToString(function.name) << " of " << testing::PrintToString(function.group)
         << ", display " << testing::PrintToString(function.display) << ", default "
         << testing::PrintToString(function.defaults) << ", families "
         << testing::PrintToString(function.families) << "}";
}

// Returns the XML of a node without line breaks and tabs, which a DOM may insert between tags.
inline std::wstring XmlOf(IXMLDOMNode* node) {
    if (node == nullptr)
        return L"no node";
    BSTR received = nullptr;
    EXPECT_EQ(node->get_xml(&received), S_OK);
    const std::unique_ptr<OLECHAR, FreeBstr> owner{received};
    std::wstring xml{received, SysStringLen(received)};
    std::erase_if(xml, [](wchar_t unit) { return unit == L'\r' || unit == L'\n' || unit == L'\t'; });
    return xml;
}

inline std::optional<std::wstring> CopyOf(const CountedPointer<IXMLDOMNode>& node) {
    return node.get() != nullptr ? std::optional{XmlOf(node.get())} : std::nullopt;
}

inline Family CopyOf(const CommandFamily& family) {
    Family copy;
    for (const BaseCommandItem& item : family.commandItems)
        copy.commands.push_back(
            {item.id, item.event, item.state, item.paramIndex1, item.paramIndex2, item.flag, item.specInfo1});
    for (const CheckExistItem& item : family.checkExistItems)
        copy.checks.push_back({item.checkFlag, item.param1, item.param2, item.param3, item.param4});
    return copy;
}

inline FunctionBase CopyOf(const FunctionBaseRecord& record) {
    FunctionBase copy = {record.id,
                         record.type,
                         record.flag,
                         record.name,
                         record.group,
                         CopyOf(record.displayNode),
                         CopyOf(record.defaultNode)};
    for (const CommandFamily& family : record.commandFamilies)
        copy.families.push_back(CopyOf(family));
    return copy;
}

// Returns the number of references to an object, or 0 for a null pointer.
inline ULONG References(IUnknown* counted) {
    if (counted == nullptr)
        return 0;
    counted->AddRef();
    return counted->Release();
}

}  // namespace ZOTDam::Test
