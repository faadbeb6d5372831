// The fixture of the tests of zotdamctl doctor: an installation without flaws, and the library's results for
// it.
#pragma once

#include <functional>
#include <set>

#include "client/ClientTest.h"
#include "xml/DomInterfaces.h"

namespace ZOTDam::Test {

inline constexpr char HealthyBase[] = R"(<ZOTBase><CommonSettings Warning="5" Shift="0"/><Functions>
  <Function ID="1" Flag="1" Type="2" Name="LightKey" Group="ScreenKey"><Display>
    <AC><DisplayItem Label="BrightKey" Option="100"/><DisplayItem Label="DarkKey" Option="20"/></AC>
    <DC><DisplayItem Label="HighKey" Option="80"/><DisplayItem Label="LowKey" Option="10"/></DC></Display>
    <Default ACParamIndex="0" DCParamIndex="1"/>
    <Commands><CommandFamily>
      <CommandItem ID="11" Event="12" Flag="13" State="14" ParamIndex1="0" ParamIndex2="1" SpecInfo1="Dim"/>
      <CheckExistItem CheckFlag="15" Param1="a" Param2="b" Param3="c" Param4="d"/></CommandFamily></Commands>
  </Function>
  <Function ID="2" Flag="3" Type="4" Name="SleepKey" Group="PowerKey"><Display><AC/><DC/></Display>
    <Default ACParamIndex="0" DCParamIndex="0"/>
    <Commands><CommandFamily>
      <CommandItem ID="21" Event="22" Flag="23" State="24" ParamIndex1="0" ParamIndex2="1" SpecInfo1="Doze"/>
      <CheckExistItem CheckFlag="25" Param1="e" Param2="f" Param3="g" Param4="h"/></CommandFamily></Commands>
  </Function>
</Functions><SpecSchemes>
  <SchemeItem SchemeGUID="381b4222-f694-41f0-9685-ff5bb260df2e">
    <SubGroup SubGroupGUID="7516b95f-f776-4464-8c53-06167f40cc99">
      <PowerSetting PowerSettingGUID="3c0bc021-c8a8-4e07-a973-6b14cbcb2b7e" ACValue="300" DCValue="120"/>
      <PowerSetting PowerSettingGUID="aded5e82-b909-4619-9949-f5d71dac0bcb" ACValue="60" DCValue="20"/>
    </SubGroup><SubGroup SubGroupGUID="238c9fa8-0aad-41ed-83f4-97be242c8f20"/>
  </SchemeItem>
  <SchemeItem SchemeGUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c"/>
</SpecSchemes></ZOTBase>)";

// The default of function 1 applies to all schemes except the second one.
inline constexpr char HealthyDefaults[] = R"(<ZOTDefault><CommonSettings Warning="10"/><Functions>
  <Function ID="1" Flag="1" Type="2" Name="LightKey" Group="ScreenKey"><Display>
    <AC><DisplayItem Label="BrightKey" Option="100"/><DisplayItem Label="DarkKey" Option="20"/></AC>
    <DC><DisplayItem Label="HighKey" Option="80"/><DisplayItem Label="LowKey" Option="10"/></DC></Display>
    <Default ACParamIndex="0" DCParamIndex="1">
      <DefaultItem GUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c" ACParamIndex="1" DCParamIndex="0"/></Default>
    <Commands>
      <CommandItem ID="11" Event="12" Flag="13" State="14" ParamIndex1="0" ParamIndex2="1" SpecInfo1="Dim"/>
      <CommandItem ID="16" Event="17" Flag="18" State="19" ParamIndex1="0" ParamIndex2="1" SpecInfo1="Off"/>
    </Commands>
  </Function>
  <Function ID="2" Flag="3" Type="4" Name="SleepKey" Group="PowerKey"><Display>
    <AC><DisplayItem Label="SoonKey" Option="60"/><DisplayItem Label="NeverKey" Option="0"/></AC>
    <DC/></Display><Default ACParamIndex="0" DCParamIndex="0"/><Commands/>
  </Function>
</Functions></ZOTDefault>)";

inline constexpr char HealthyUserSettings[] = R"(<OrloPowerCfg><CommonSettings Warning="15"/><PowerSchemes>
  <PowerScheme GUID="381b4222-f694-41f0-9685-ff5bb260df2e">
    <Function ID="1" ACParamIndex="1" DCParamIndex="0"/><Function ID="2" ACParamIndex="1" DCParamIndex="0"/>
  </PowerScheme>
  <PowerScheme GUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c">
    <Function ID="1" ACParamIndex="1" DCParamIndex="1"/><Function ID="2" ACParamIndex="0" DCParamIndex="0"/>
  </PowerScheme>
</PowerSchemes></OrloPowerCfg>)";

// The values that the library returns for these files.
inline const Params StoredForBalanced = {{1, {1, 0}}, {2, {1, 0}}};
inline const Params StoredForHighPerformance = {{1, {1, 1}}, {2, {0, 0}}};
inline const Params DefaultsOfBalanced = {{1, {0, 1}}, {2, {0, 0}}};
inline const Params DefaultsOfHighPerformance = {{1, {1, 0}}, {2, {0, 0}}};

inline std::string HealthyStringTable() {
    std::string entries;
    for (const char* const key :
         {"Light", "Screen", "Bright", "Dark", "High", "Low", "Sleep", "Power", "Soon"})
        entries += Entry(key + std::string{"Key"}, key + std::string{" text"});
    return StringTable(entries + Entry("NeverKey", "Never"));
}

enum class File : unsigned char { Base, Defaults, UserSettings, StringTable };

class DoctorTest : public ClientTest {
public:
    // Make the functions accessible to the lambdas in tables.
    using ClientTest::GetFunctionInfo;
    using ClientTest::GetParameter;
    using ClientTest::GetParameterDefault;
    using ExportTest::Dll;
    using ExportTest::SetParameter;
    using ExportTest::Unload;

    DoctorTest() {
        for (const File file : {File::Base, File::Defaults, File::UserSettings, File::StringTable})
            WriteFile(PathOf(file), Healthy(file));
    }

    static std::string Healthy(File file) {
        switch (file) {
            case File::Base:
                return HealthyBase;
            case File::Defaults:
                return HealthyDefaults;
            case File::UserSettings:
                return HealthyUserSettings;
            default:
                return HealthyStringTable();
        }
    }

    std::filesystem::path PathOf(File file) const {
        switch (file) {
            case File::Base:
                return installation.BaseFile();
            case File::Defaults:
                return installation.DefaultsFile();
            case File::UserSettings:
                return installation.UserFile();
            default:
                return installation.StringTableFile();
        }
    }

    std::string UserSettings() const { return ReadFile(installation.UserFile()); }
    std::filesystem::path UnreadableUserSettings() const { return UnreadableCopyOf(installation.UserFile()); }

    std::uint32_t FuncCount() { return Dll().GetFuncCount(); }

    std::vector<CommandInfoRecord> Commands(const GUID& scheme) {
        std::vector<CommandInfoRecord> commands;
        auto collect = MakeCallback<IGetCommandInfoCallback>(
            [&](const CommandInfoRecord* command) { commands.push_back(*command); });
        Dll().GetCommandInfo(&scheme, &collect);
        return commands;
    }

    // The records are valid only while the library is loaded.
    List<FunctionBaseRecord> BaseFunctions() { return Collect(Dll().GetFunctionBase); }
    List<FunctionBaseRecord> UnsupportedFunctions() { return Collect(Dll().GetFunctionBaseUnSupported); }

    // Makes the catalogue contain all functions of the base catalogue.
    void AdoptAll() {
        {
            const FunctionBaseHolder holder{nullptr, BaseFunctions()};
            EXPECT_TRUE(Dll().AddFunctionDefault(&holder));
        }
        Unload();
    }

    List<SpecSchemeRecord> SpecSchemes() {
        List<SpecSchemeRecord> schemes;
        auto collect = MakeCallback<IGetSpecSchemeCallback>(
            [&](const SpecSchemeRecord* scheme) { schemes.push_back(*scheme); });
        EXPECT_TRUE(Dll().GetSpecScheme(&collect));
        return schemes;
    }

    // Returns "none" if the setting does not exist.
    std::wstring Setting(const wchar_t* name) {
        Text value = {};
        return Dll().GetCommonSetting(name, value) ? value : L"none";
    }

    bool Set(const wchar_t* name, const wchar_t* value) { return Dll().SetCommonSetting(name, value); }

protected:
    Outcome RunDoctor(Arguments arguments = {}) const {
        arguments.insert(arguments.begin(), L"doctor");
        return Run(arguments);
    }

    // Returns the findings, and checks the exit code.
    Json FindingsWith(DWORD exitStatus, const Arguments& arguments = {L"--json"}) const {
        const Outcome outcome = RunDoctor(arguments);
        EXPECT_EQ(outcome.exitStatus, exitStatus);
        EXPECT_EQ(outcome.errors, "");
        return Json::parse(outcome.output)["findings"];
    }

    // Returns a finding without its position, and without its problem, which is a message for people.
    Json FindingIn(File file, const Json& element, const std::string& kind,
                   const std::string& consequence) const {
        return {
            {"file", Utf8(PathOf(file))}, {"element", element}, {"kind", kind}, {"consequence", consequence}};
    }

    static Json WithoutProblems(Json findings) {
        for (Json& finding : findings) {
            EXPECT_NE(finding["problem"], "");
            EXPECT_TRUE(finding["element"].is_null() || finding["line"] > 0) << finding;
            for (const char* const key : {"problem", "line", "column"})
                finding.erase(key);
        }
        return findings;
    }

private:
    static List<FunctionBaseRecord> Collect(decltype(&ZOTDam::GetFunctionBase) enumerate) {
        List<FunctionBaseRecord> records;
        auto collect = MakeCallback<IGetFunctionBaseCallback>(
            [&](const FunctionBaseRecord* record) { records.push_back(*record); });
        EXPECT_TRUE(enumerate(&collect));
        return records;
    }
};

// The client and the library are in the folder of the installation, as on a user's machine.
class InstalledClientTest : public DoctorTest {
protected:
    InstalledClientTest() {
        for (const wchar_t* const file : {L"zotdamctl.exe", L"ZOTDam.dll"})
            std::filesystem::copy_file(Library::ProgramFolder() / file, Folder() / file);
    }

    std::filesystem::path Folder() const { return installation.DefaultsFile().parent_path(); }
    std::filesystem::path Client() const override { return Folder() / L"zotdamctl.exe"; }
};

// A flaw in a file, and the resulting behaviour of the library.
struct Flaw {
    std::string name;
    File file;
    std::string healthy;  // the part of the healthy file to replace; empty for the whole file
    std::string flawed;
    std::string kind;
    std::string element;
    std::string consequence;
    std::function<void(DoctorTest&)> check;  // checks the consequence
};

inline void PrintTo(const Flaw& flaw, std::ostream* out) {
    *out << flaw.kind;
}

class DoctorFindingTest : public DoctorTest, public testing::WithParamInterface<Flaw> {
protected:
    void WriteFlaw() const {
        std::string content = Healthy(GetParam().file);
        const std::string& healthy = GetParam().healthy;
        const std::size_t place = content.find(healthy);
        ASSERT_NE(place, std::string::npos);
        ASSERT_TRUE(healthy.empty() || content.find(healthy, place + 1) == std::string::npos);
        content.replace(place, healthy.empty() ? content.size() : healthy.size(), GetParam().flawed);
        WriteFile(PathOf(GetParam().file), content);
    }
};

}  // namespace ZOTDam::Test
