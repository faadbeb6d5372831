// The fixture of tests for AddFunctionDefault: records to pass, and their form in the file.
#pragma once

#include <algorithm>
#include <string_view>

#include "support/TranslationTest.h"
#include "support/XmlTree.h"

namespace ZOTDam::Test {

// ---- Records ----

inline void Assign(Text& field, std::wstring_view text) {
    *std::ranges::copy(text.substr(0, TextCapacity - 1), field).out = L'\0';
}

inline BaseCommandItem Command(std::int32_t id, std::wstring_view specInfo1 = {}) {
    BaseCommandItem item;
    item.id = id;
    Assign(item.specInfo1, specInfo1);
    return item;
}

inline CommandFamily FamilyWith(std::initializer_list<std::int32_t> commandIds) {
    CommandFamily family;
    for (const std::int32_t id : commandIds)
        family.commandItems.push_back(Command(id));
    return family;
}

// A record that contains only its families.
inline FunctionBaseRecord RecordWith(std::int32_t id, std::initializer_list<CommandFamily> families) {
    FunctionBaseRecord record;
    record.id = id;
    for (const CommandFamily& family : families)
        record.commandFamilies.push_back(family);
    return record;
}

// The smallest record that is written. Its only command has the same ID as the record.
inline FunctionBaseRecord Record(std::int32_t id) {
    return RecordWith(id, {FamilyWith({id})});
}

inline FunctionBaseHolder HolderOf(std::initializer_list<FunctionBaseRecord> records) {
    FunctionBaseHolder holder;
    for (const FunctionBaseRecord& record : records)
        holder.records.push_back(record);
    return holder;
}

// ---- Written XML ----

inline std::string WrittenCommand(std::int32_t id) {
    return "<CommandItem ID=\"" + std::to_string(id) +
           "\" Event=\"0\" Flag=\"0\" State=\"0\" ParamIndex1=\"0\" ParamIndex2=\"0\" SpecInfo1=\"\">\n\t"
           "</CommandItem>";
}

inline std::string WrittenWith(std::int32_t id, const std::string& commands, const std::string& nodes = {}) {
    return "<Function ID=\"" + std::to_string(id) + "\" Flag=\"0\" Type=\"0\" Name=\"\" Group=\"\">\n\t" +
           nodes + "<Commands>\n\t" + commands + "</Commands></Function>";
}

// The smallest record in its written form, optionally with copies of nodes.
inline std::string Written(std::int32_t id, const std::string& nodes = {}) {
    return WrittenWith(id, WrittenCommand(id), nodes);
}

// A defaults file without an XML declaration, in the form that is read and written back.
inline std::string OldDefaults(const std::string& functions) {
    const std::string section =
        functions.empty() ? "<Functions/>" : "<Functions>" + functions + "</Functions>";
    return "<ZOTDefault>" + section + "</ZOTDefault>\n";
}

// The defaults file that the library creates when no file exists.
inline std::string NewDefaults(const std::string& functions) {
    return "<?xml version='1.0' encoding='UTF-8'?>\n" + OldDefaults(functions);
}

class FunctionDefaultsTest : public TranslationTest {
    ComScope com;  // for the test's own DOM

protected:
    // Writes ten functions, which a replacement removes.
    FunctionDefaultsTest() { WriteFunctions(Functions({1, 2, 3, 4, 5, 6, 7, 8, 9, 10})); }

    void Replace(const FunctionBaseHolder& holder) { EXPECT_TRUE(Dll().AddFunctionDefault(&holder)); }
    void Replace(std::initializer_list<FunctionBaseRecord> records) { Replace(HolderOf(records)); }

    void RemoveDefaults() const { std::filesystem::remove(installation.DefaultsFile()); }
    bool HasDefaults() const { return std::filesystem::exists(installation.DefaultsFile()); }
    std::filesystem::path KeptDefaults() const { return UnreadableCopyOf(installation.DefaultsFile()); }

    // Copies of the records that the exports enumerate.
    FunctionBaseHolder Base() { return CopyRecords(Dll().GetFunctionBase); }
    FunctionBaseHolder Unsupported() { return CopyRecords(Dll().GetFunctionBaseUnSupported); }

    // A record with a "Default" node of the test's own document, so that a change in memory can be detected.
    static FunctionBaseRecord RecordWithDefault(std::int32_t id, std::int32_t ac, std::int32_t dc) {
        FunctionBaseRecord record = Record(id);
        record.defaultNode = XmlTree::OfText(L"<Default ACParamIndex=\"" + std::to_wstring(ac) +
                                             L"\" DCParamIndex=\"" + std::to_wstring(dc) + L"\"/>")
                                 .Root();
        return record;
    }

private:
    static FunctionBaseHolder CopyRecords(decltype(&ZOTDam::GetFunctionBase) enumerate) {
        FunctionBaseHolder holder;
        auto keep = MakeCallback<IGetFunctionBaseCallback>(
            [&](const FunctionBaseRecord* record) { holder.records.push_back(*record); });
        EXPECT_TRUE(enumerate(&keep));
        return holder;
    }
};

}  // namespace ZOTDam::Test
