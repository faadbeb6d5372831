// A client that checks everything the exports pass to it, and records it.
#pragma once

#include <gtest/gtest.h>

#include <cwchar>
#include <functional>
#include <iterator>
#include <string>
#include <type_traits>
#include <utility>

#include "support/ClientList.h"
#include "support/EveryExport.h"
#include "support/XmlFile.h"
#include "xml/DomInterfaces.h"

namespace ZOTDam::Test {

// Writes records as text, and checks everything that a client relies on.
class RecordWriter {
public:
    void Write(std::int32_t number) { text += std::to_wstring(number) + L' '; }
    void Write(std::uint32_t number) { text += std::to_wstring(number) + L' '; }

    void Write(const Text& terminated) {
        const std::size_t length = wcsnlen(terminated, TextCapacity);
        EXPECT_LT(length, TextCapacity) << "a text without its terminating zero";
        text.append(terminated, length).append(L"\n");
    }

    void Write(const GUID& guid) {
        wchar_t braced[39] = {};
        StringFromGUID2(guid, braced, static_cast<int>(std::size(braced)));
        text.append(braced).append(L" ");
    }

    void Write(const CountedPointer<IXMLDOMNode>& node) {
        BSTR name = nullptr;
        if (node.get() != nullptr) {
            EXPECT_EQ(node.get()->get_nodeName(&name), S_OK);
        }
        const OwnedBstr owner{name};
        text.append(name != nullptr ? name : L"no node").append(L" ");
    }

    template <class Record>
    void Write(const List<Record>& list) {
        std::uint64_t count = 0;
        text += L"[";
        for (const Record& record : list) {
            const auto* const links = reinterpret_cast<const ListLinks*>(&record) - 1;
            ASSERT_EQ(links->prev->next, links) << "a list that does not lead back";
            ASSERT_LE(++count, list.size()) << "a list that is longer than its count";
            Write(record);
        }
        EXPECT_EQ(count, list.size());
        text += L"]";
    }

    void Write(const DisplayItem& item) { WriteAll(item.option, item.label); }
    void Write(const FunctionRecord& function) {
        WriteAll(function.type, function.flag, function.name, function.group, function.acDisplayItems,
                 function.dcDisplayItems);
    }
    void Write(const BaseCommandItem& item) {
        WriteAll(item.id, item.event, item.state, item.paramIndex1, item.paramIndex2, item.flag,
                 item.specInfo1);
    }
    void Write(const CheckExistItem& item) {
        WriteAll(item.checkFlag, item.param1, item.param2, item.param3, item.param4);
    }
    void Write(const CommandFamily& family) { WriteAll(family.commandItems, family.checkExistItems); }
    void Write(const FunctionBaseRecord& function) {
        WriteAll(function.id, function.type, function.flag, function.name, function.group,
                 function.displayNode, function.defaultNode, function.commandFamilies);
    }
    void Write(const ParamValue& value) { WriteAll(value.ACParamIndex, value.DCParamIndex); }
    void Write(const CommandInfoRecord& command) {
        WriteAll(command.id, command.event, command.state, command.option1, command.option2, command.flag,
                 command.specInfo1);
    }
    void Write(const SpecPowerSettingRecord& setting) {
        WriteAll(setting.acValue, setting.dcValue, setting.powerSetting);
    }
    void Write(const SpecSubGroupRecord& subGroup) { WriteAll(subGroup.subGroup, subGroup.powerSettings); }
    void Write(const SpecSchemeRecord& scheme) {
        WriteAll(scheme.scheme, scheme.unused1, scheme.unused2, scheme.unused3, scheme.subGroups);
    }

    template <class Record>
    void Write(const Record* record) {
        ASSERT_NE(record, nullptr);
        Write(*record);
    }

    template <class... Values>
    void WriteAll(const Values&... values) {
        (Write(values), ...);
    }

    std::wstring text;
};

class CheckingClient {
    auto Writing(RecordWriter& writer) const {
        return [this, &writer](auto... items) {
            writer.WriteAll(items...);
            duringItem();
        };
    }

public:
    // `onItem` runs inside every OnItem.
    explicit CheckingClient(
        const Library& library, std::function<void()> onItem = [] {})
        : dll{library}, duringItem{std::move(onItem)} {}

    // Returns the result of an export, which must be a valid bool for clients in any language.
    template <class... Arguments>
    static bool Call(bool (*exported)(Arguments...), std::type_identity_t<Arguments>... arguments) {
        const int result = RawResult(exported, arguments...);
        EXPECT_TRUE(result == 0 || result == 1) << result;
        return result == 1;
    }

    template <class Interface>
    std::wstring Read(bool (*enumerate)(Interface*)) const {
        RecordWriter writer;
        auto callback = MakeCallback<Interface>(Writing(writer));
        EXPECT_TRUE(Call(enumerate, &callback));
        return writer.text;
    }

    template <class Interface>
    std::wstring Read(bool (*enumerate)(const GUID*, Interface*), const GUID& scheme) const {
        RecordWriter writer;
        auto callback = MakeCallback<Interface>(Writing(writer));
        EXPECT_TRUE(Call(enumerate, &scheme, &callback));
        return writer.text;
    }

    std::wstring ReadCurrentValue(std::uint32_t position) const {
        FuncCurValue value = {};
        RecordWriter writer;
        if (Call(dll.GetFuncCurValue, position, &value))
            writer.WriteAll(value.FunctionId, value.ACValue, value.DCValue);
        return writer.text;
    }

    std::wstring ReadSetting(const wchar_t* name) const {
        CheckedBuffer value;
        const bool found = Call(dll.GetCommonSetting, name, value.get());
        return value.TextIf(found);
    }

    std::wstring ReadDifferences(const GUID& schemeA, const GUID& schemeB, std::uint32_t mode) const {
        CheckedBuffer names;
        CheckedBuffer values;
        const bool differ = Call(dll.GetDiffFuncList, &schemeA, &schemeB, mode, names.get(), values.get());
        return names.TextIf(differ) + values.TextIf(differ);
    }

private:
    // A client's buffer. An inaccessible page follows it, so that any access past its end is detected.
    class CheckedBuffer {
    public:
        CheckedBuffer() { std::fill_n(get(), TextCapacity, Untouched); }

        wchar_t* get() const { return static_cast<wchar_t*>(block.get()); }

        std::wstring TextIf(bool written) const {
            if (!written) {
                EXPECT_EQ(std::count(get(), get() + TextCapacity, Untouched), std::ptrdiff_t{TextCapacity});
                return {};
            }
            const std::size_t length = wcsnlen(get(), TextCapacity);
            EXPECT_LT(length, TextCapacity) << "a text without its terminating zero";
            return {get(), length};
        }

    private:
        static constexpr wchar_t Untouched = L'\x2603';

        GuardedBlock block{sizeof(Text)};
    };

    const Library& dll;
    std::function<void()> duringItem;
};

// Returns the results of all exports that read.
inline std::wstring ReadEverything(const Library& dll, const GUID& scheme) {
    const CheckingClient client{dll};
    std::wstring text = std::to_wstring(dll.GetFuncCount());
    text += client.Read(dll.GetFunctionBase);
    text += client.Read(dll.GetFunctionBaseUnSupported);
    text += client.Read(dll.GetFunctionInfo);
    text += client.Read(dll.GetParameter, scheme);
    text += client.Read(dll.GetParameterDefault, scheme);
    text += client.Read(dll.GetCommandInfo, scheme);
    text += client.Read(dll.GetSpecScheme);
    text += client.ReadDifferences(scheme, PowerSaver, 1);
    text += client.ReadSetting(L"Setting");
    CheckingClient::Call(dll.TEVGetParam, &scheme);
    return text + client.ReadCurrentValue(0);
}

}  // namespace ZOTDam::Test
