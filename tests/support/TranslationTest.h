// The fixture of tests about texts in the user's language: string tables beside a catalogue whose texts are
// keys.
#pragma once

#include "support/FunctionInfo.h"
#include "support/SettingsTest.h"

namespace ZOTDam::Test {

// An entry of a string table.
inline std::string Entry(const std::string& name, const std::string& text) {
    return "<data name=\"" + name + "\"><value>" + text + "</value></data>";
}

inline std::string StringTable(const std::string& entries) {
    return "<root>" + entries + "</root>";
}

class TranslationTest : public SettingsTest {
protected:
    void WriteEntries(const std::string& entries) const { WriteStringTable(StringTable(entries)); }

    // Where the lookup of the library itself finds the string table for a language.
    std::filesystem::path CopyFor(const std::wstring& language) const {
        return installation.StringTableFile().parent_path() / language / L"StringTable.xml.mui";
    }

    void WriteCopy(const std::wstring& language, const std::string& entries) const {
        std::filesystem::create_directories(CopyFor(language).parent_path());
        WriteFile(CopyFor(language), StringTable(entries));
    }

    // What the export enumerates; a false result fails the test.
    std::vector<FunctionInfo> GetFunctionInfo() {
        std::vector<FunctionInfo> infos;
        auto collect = MakeCallback<IGetFunctionInfoCallback>(
            [&](std::uint32_t id, const FunctionRecord* function) { infos.push_back(Kept(id, *function)); });
        EXPECT_TRUE(Dll().GetFunctionInfo(&collect));
        return infos;
    }

    std::wstring FirstName() {
        const std::vector<FunctionInfo> infos = GetFunctionInfo();
        return infos.empty() ? L"no function" : infos.front().name;
    }
};

// A catalogue of one function, and a neutral string table with the text "neutral" for its name.
class StringTableTest : public TranslationTest {
protected:
    StringTableTest() {
        WriteKey("Key");
        WriteEntries(Entry("Key", "neutral"));
    }

    void WriteKey(const std::string& key) const {
        WriteFunctions("<Function ID=\"1\" Name=\"" + key + "\"><Display/><Commands/></Function>");
    }

    // What a table with these entries has for a key: itself when there is no text.
    std::wstring TextOf(const std::string& key, const std::string& entries) {
        WriteKey(key);
        WriteEntries(entries);
        return FirstName();
    }

    std::wstring TextInTable(const std::string& xml) {
        WriteStringTable(xml);
        return FirstName();
    }

    void LoadCatalogue() { EXPECT_EQ(Dll().GetFuncCount(), 1u); }
};

}  // namespace ZOTDam::Test
