// The fixture of tests that apply to each of the four data files. Each file has content that a client can
// see, so a test can find out whether the library has read the file.
#pragma once

#include <string>
#include <vector>

#include "support/TranslationTest.h"

namespace ZOTDam::Test {

class DataFileTest;

struct DataFile {
    std::string name;
    std::filesystem::path (Installation::*path)() const;
    std::string content;
    bool (*isRead)(DataFileTest& test);
    bool (*save)(const Library& dll) = nullptr;  // null if the library never writes the file
};

inline void PrintTo(const DataFile& file, std::ostream* out) {
    *out << file.name;
}

class DataFileTest : public TranslationTest {
public:
    using ExportTest::Dll;
    using TranslationTest::FirstName;

    DataFileTest();

    bool FindsSetting(const wchar_t* name) {
        Text value = {};
        return Dll().GetCommonSetting(name, value);
    }

protected:
    std::filesystem::path PathOf(const DataFile& file) const { return (installation.*file.path)(); }
};

inline const DataFile DefaultsDataFile = {
    "Defaults", &Installation::DefaultsFile,
    R"(<ZOTDefault><Functions><Function ID="1" Name="Key"><Display/><Commands/></Function></Functions>)"
    "</ZOTDefault>",
    [](DataFileTest& test) { return test.Dll().GetFuncCount() == 1; },
    [](const Library& dll) {
        FunctionBaseHolder functions;
        functions.records.push_back(FunctionBaseRecord{});
        return dll.AddFunctionDefault(&functions);
    }};

inline const DataFile UserDataFile = {
    "UserSettings", &Installation::UserFile, R"(<OrloPowerCfg><CommonSettings User="u"/></OrloPowerCfg>)",
    [](DataFileTest& test) { return test.FindsSetting(L"User"); },
    [](const Library& dll) { return dll.SetCommonSetting(L"Added", L"a"); }};

inline const DataFile BaseDataFile = {"Base", &Installation::BaseFile,
                                      R"(<ZOTBase><CommonSettings Base="b"/></ZOTBase>)",
                                      [](DataFileTest& test) { return test.FindsSetting(L"Base"); }};

inline const DataFile StringTableDataFile = {"StringTable", &Installation::StringTableFile,
                                             R"(<root><data name="Key"><value>Text</value></data></root>)",
                                             [](DataFileTest& test) { return test.FirstName() == L"Text"; }};

inline std::vector<DataFile> AllDataFiles() {
    return {DefaultsDataFile, UserDataFile, BaseDataFile, StringTableDataFile};
}

inline std::vector<DataFile> WritableDataFiles() {
    return {DefaultsDataFile, UserDataFile};
}

inline DataFileTest::DataFileTest() {
    for (const DataFile& file : AllDataFiles())
        WriteFile(PathOf(file), file.content);
}

}  // namespace ZOTDam::Test
