// The fixture of tests for localised texts: string tables, and a catalogue whose texts are their keys.
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

    // Returns the path of the string table for a language.
    std::filesystem::path CopyFor(const std::wstring& language) const {
        return installation.StringTableFile().parent_path() / language / L"StringTable.xml";
    }

    // Returns the path of a copy that only systems without a lookup find.
    std::filesystem::path MuiCopyFor(const std::wstring& language) const {
        return CopyFor(language) += L".mui";
    }

    void WriteCopy(const std::wstring& language, const std::string& entries) const {
        WriteTable(CopyFor(language), entries);
    }

    void WriteMuiCopy(const std::wstring& language, const std::string& entries) const {
        WriteTable(MuiCopyFor(language), entries);
    }

    static void WriteTable(const std::filesystem::path& file, const std::string& entries) {
        std::filesystem::create_directories(file.parent_path());
        WriteFile(file, StringTable(entries));
    }

    // Collects the items that the export enumerates. The test fails if the export returns false.
    std::vector<FunctionInfo> GetFunctionInfo() {
        std::vector<FunctionInfo> infos;
        auto collect =
            MakeCallback<IGetFunctionInfoCallback>([&](std::uint32_t id, const FunctionRecord* function) {
                infos.push_back(CopyOf(id, *function));
            });
        EXPECT_TRUE(Dll().GetFunctionInfo(&collect));
        return infos;
    }

    std::wstring FirstName() {
        const std::vector<FunctionInfo> infos = GetFunctionInfo();
        return infos.empty() ? L"no function" : infos.front().name;
    }
};

// A catalogue with one function, and a neutral string table that maps its name to "neutral".
class StringTableTest : public TranslationTest {
protected:
    StringTableTest() {
        WriteKey("Key");
        WriteEntries(Entry("Key", "neutral"));
    }

    void WriteKey(const std::string& key) const {
        WriteFunctions("<Function ID=\"1\" Name=\"" + key + "\"><Display/><Commands/></Function>");
    }

    // Returns the text that a table with these entries has for a key, or the key if the text is missing.
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
