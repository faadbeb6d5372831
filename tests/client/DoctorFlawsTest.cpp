// Tests that zotdamctl doctor reports each flaw of the data files, and that the library behaves as reported.
#include "client/Flaws.h"

namespace ZOTDam::Test {

namespace {

// ---- Elements ----

const std::string Function1 = "/ZOTDefault/Functions/Function[1]";
const std::string Function2 = "/ZOTDefault/Functions/Function[2]";
const std::string Command1 = Function1 + "/Commands/CommandItem[1]";
const std::string DefaultItem1 = Function1 + "/Default/DefaultItem";
const std::string UserScheme1 = "/OrloPowerCfg/PowerSchemes/PowerScheme[1]";

// ---- Consequences, and checks of them ----

const std::string Rejected = "the library cannot load the catalogue";
const std::string SelectsNone = "it selects no option, and commands use 0";

void ExpectNoCatalogue(DoctorTest& test) {
    EXPECT_EQ(test.FuncCount(), CatalogueUnavailable);
}

void ExpectTwoFunctions(DoctorTest& test) {
    EXPECT_EQ(test.FuncCount(), 2u);
}

void ExpectDefaults(DoctorTest& test, const Params& ofHighPerformance, const Params& ofPowerSaver) {
    EXPECT_EQ(test.GetParameterDefault(HighPerformance), ofHighPerformance);
    EXPECT_EQ(test.GetParameterDefault(PowerSaver), ofPowerSaver);
}

void ExpectOptions(DoctorTest& test, const GUID& scheme, std::int32_t ac, std::int32_t dc) {
    const auto commands = test.Commands(scheme);
    ASSERT_EQ(commands.size(), 2u);
    EXPECT_EQ(commands[0].option1, ac);
    EXPECT_EQ(commands[0].option2, dc);
}

// ---- The defaults file ----

std::vector<Flaw> FlawsOfFunctions() {
    return {
        {"NoId", File::Defaults, R"(ID="2" )", "", "missing-id", Function2, Rejected, ExpectNoCatalogue},
        {"NegativeId", File::Defaults, R"(ID="2" )", R"(ID="-2" )", "negative-id", Function2, Rejected,
         ExpectNoCatalogue},
        {"IdThatBeginsWithANumber", File::Defaults, R"(ID="2" )", R"(ID="2nd" )", "invalid-number", Function2,
         "the library reads it as 2", [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[1].id, 2u); }},
        {"OptionThatIsNoNumber", File::Defaults, R"(Option="60")", R"(Option="soon")", "invalid-number",
         Function2 + "/Display/AC/DisplayItem[1]", "the library reads it as 0",
         [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[1].ac[0].first, 0); }},
        {"FlagThatIsNoInteger", File::Defaults, R"(Flag="3")", R"(Flag="3.9")", "invalid-number", Function2,
         "the library reads it as 3", [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[1].flag, 3); }},
        {"NumberThatDoesNotFit", File::Defaults, R"(Type="4")", R"(Type="99999999999")", "invalid-number",
         Function2, "the library reads it as 2147483647",
         [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[1].type, 2147483647); }},
        {"SameId", File::Defaults, "</Functions>",
         R"(<Function ID="2" Flag="0" Type="0" Name="LightKey" Group="PowerKey"><Display/><Commands/>
            <Default ACParamIndex="0" DCParamIndex="0"/></Function></Functions>)",
         "duplicate-id", "/ZOTDefault/Functions/Function[3]", "the library drops this function",
         [](DoctorTest& test) {
             ExpectTwoFunctions(test);
             EXPECT_EQ(test.GetFunctionInfo()[1].name, L"Sleep text");
         }},
        {"NoName", File::Defaults, R"(Name="SleepKey" )", "", "inherited-attribute", Function2,
         "it inherits \"LightKey\" from " + Function1,
         [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[1].name, L"Light text"); }},
        {"NoFlag", File::Defaults, R"(Flag="3" )", "", "inherited-attribute", Function2,
         "it inherits \"1\" from " + Function1,
         [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[1].flag, 1); }},
        {"NoNameAtAll", File::Defaults, R"(Name="LightKey" )", "", "missing-attribute", Function1,
         "the library uses an empty string",
         [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[0].name, L""); }},
        {"NoTypeAtAll", File::Defaults, R"(Type="2" )", "", "missing-attribute", Function1,
         "the library uses 0", [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[0].type, 0); }},
        {"NoOption", File::Defaults, R"( Option="20")", "", "inherited-attribute",
         Function1 + "/Display/AC/DisplayItem[2]",
         "it inherits \"100\" from " + Function1 + "/Display/AC/DisplayItem[1]",
         [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[0].ac[1].first, 100); }},
        {"NoSpecInfo", File::Defaults, R"( SpecInfo1="Off")", "", "inherited-attribute",
         Function1 + "/Commands/CommandItem[2]", "it inherits \"Dim\" from " + Command1,
         [](DoctorTest& test) { EXPECT_STREQ(test.Commands(Balanced)[1].specInfo1, L"Dim"); }},
        {"TooLongName", File::Defaults, "SleepKey", TooLong, "text-too-long", Function2, Rejected,
         ExpectNoCatalogue},
        {"TooLongLabel", File::Defaults, "SoonKey", TooLong, "text-too-long",
         Function2 + "/Display/AC/DisplayItem[1]", Rejected, ExpectNoCatalogue},
        {"TooLongSpecInfo", File::Defaults, "Dim", TooLong, "truncated-text", Command1,
         "the library truncates it in the command",
         [](DoctorTest& test) {
             EXPECT_EQ(test.Commands(Balanced)[0].specInfo1, std::wstring(TextCapacity - 1, L't'));
         }},
        {"NoDisplay", File::Defaults, R"(<Display>
    <AC><DisplayItem Label="SoonKey" Option="60"/><DisplayItem Label="NeverKey" Option="0"/></AC>
    <DC/></Display>)",
         "", "missing-display", Function2, Rejected, ExpectNoCatalogue},
        {"NoCommands", File::Defaults, "<Commands/>", "", "missing-commands", Function2, Rejected,
         ExpectNoCatalogue},
        {"CommandOfInvalidPowerSource", File::Defaults, R"(Flag="13" State="14" ParamIndex1="0")",
         R"(Flag="13" State="14" ParamIndex1="2")", "invalid-power-source", Command1,
         "the command uses the option on battery",
         [](DoctorTest& test) { ExpectOptions(test, Balanced, 80, 80); }},
    };
}

std::vector<Flaw> FlawsOfDefaultParameters() {
    const std::string item =
        R"(<DefaultItem GUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c" ACParamIndex="1" DCParamIndex="0"/>)";
    const std::string rest = "this function and the following ones have no default parameters";
    return {
        {"NoDefault", File::Defaults,
         R"(<Default ACParamIndex="0" DCParamIndex="1">
      )" + item +
             "</Default>",
         "", "missing-default", Function1, rest, [](DoctorTest& test) { ExpectDefaults(test, {}, {}); }},
        {"NoDefaultOfTheLast", File::Defaults, R"(<Default ACParamIndex="0" DCParamIndex="0"/>)", "",
         "missing-default", Function2, rest,
         [](DoctorTest& test) {
             ExpectDefaults(test, {{1, {1, 0}}}, {{1, {0, 1}}});
         }},
        {"NoIndex", File::Defaults, R"(<Default ACParamIndex="0" DCParamIndex="1">)",
         R"(<Default ACParamIndex="0">)", "missing-parameter", Function1 + "/Default",
         "in all schemes without an item, " + rest,
         [](DoctorTest& test) { ExpectDefaults(test, DefaultsOfHighPerformance, {}); }},
        {"NoIndexInAScheme", File::Defaults, R"(ACParamIndex="1" )", "", "missing-parameter", DefaultItem1,
         "in its scheme, " + rest, [](DoctorTest& test) { ExpectDefaults(test, {}, DefaultsOfBalanced); }},
        {"NoGuid", File::Defaults, R"(GUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c" )", "", "missing-guid",
         DefaultItem1, "in all schemes without an earlier item, " + rest,
         [](DoctorTest& test) { ExpectDefaults(test, {}, {}); }},
        {"BracedGuid", File::Defaults, "8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c",
         "{8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c}", "malformed-guid", DefaultItem1, Ignored,
         [](DoctorTest& test) { ExpectDefaults(test, DefaultsOfBalanced, DefaultsOfBalanced); }},
        {"SameGuid", File::Defaults, item,
         item +
             R"(<DefaultItem GUID="8C5E7FDA-E8BF-4A96-9A85-A6E23A8C635C" ACParamIndex="0" DCParamIndex="0"/>)",
         "duplicate-guid", DefaultItem1 + "[2]", OnlyTheFirst,
         [](DoctorTest& test) { ExpectDefaults(test, DefaultsOfHighPerformance, DefaultsOfBalanced); }},
        {"IndexAfterTheOptions", File::Defaults, R"(<Default ACParamIndex="0" DCParamIndex="1">)",
         R"(<Default ACParamIndex="2" DCParamIndex="1">)", "index-out-of-range", Function1 + "/Default",
         SelectsNone, [](DoctorTest& test) { ExpectOptions(test, PowerSaver, 0, 10); }},
        {"NegativeIndex", File::Defaults, R"(<Default ACParamIndex="0" DCParamIndex="1">)",
         R"(<Default ACParamIndex="0" DCParamIndex="-1">)", "index-out-of-range", Function1 + "/Default",
         SelectsNone, [](DoctorTest& test) { ExpectOptions(test, PowerSaver, 100, 0); }},
        {"IndexOfAFunctionWithoutOptions", File::Defaults, R"(<Default ACParamIndex="0" DCParamIndex="0"/>)",
         R"(<Default ACParamIndex="0" DCParamIndex="1"/>)", "index-out-of-range", Function2 + "/Default",
         SelectsNone,
         [](DoctorTest& test) {
             EXPECT_TRUE(test.Dll().TEVGetParam(&PowerSaver));
             FuncCurValue value = {9, 9, 9};
             EXPECT_TRUE(test.Dll().GetFuncCurValue(1, &value));
             EXPECT_EQ(value.DCValue, 9u);
         }},
    };
}

std::vector<Flaw> FlawsOfTheDefaultsDocument() {
    return {
        {"NoFunctions", File::Defaults, "", "<ZOTDefault/>", "missing-section", "/ZOTDefault", Rejected,
         ExpectNoCatalogue},
        {"MoreFunctions", File::Defaults, "</Functions>", "</Functions><Functions><Function/></Functions>",
         "duplicate-element", "/ZOTDefault/Functions[2]", OnlyTheFirst, ExpectTwoFunctions},
        {"MoreCommonSettings", File::Defaults, "</Functions>", R"(</Functions><CommonSettings More="1"/>)",
         "duplicate-element", "/ZOTDefault/CommonSettings[2]", OnlyTheFirst,
         [](DoctorTest& test) { EXPECT_EQ(test.Setting(L"More"), L"none"); }},
        {"FunctionInLowerCase", File::Defaults, "</Functions>", R"(<function ID="3"/></Functions>)",
         "unknown-element", "/ZOTDefault/Functions/function", IgnoredWithAll, ExpectTwoFunctions},
        {"FunctionWithANamespace", File::Defaults, "</Functions>",
         R"(<Function ID="3" xmlns="urn:other"/></Functions>)", "unknown-element",
         "/ZOTDefault/Functions/Function[3]", IgnoredWithAll, ExpectTwoFunctions},
        {"UnknownSection", File::Defaults, "</Functions>", "</Functions><SpecSchemes/>", "unknown-element",
         "/ZOTDefault/SpecSchemes", IgnoredWithAll, ExpectTwoFunctions},
        {"CommandsInAFamily", File::Defaults, "<Commands/>",
         R"(<Commands><CommandFamily><CommandItem ID="21"/></CommandFamily></Commands>)", "unknown-element",
         Function2 + "/Commands/CommandFamily", IgnoredWithAll,
         [](DoctorTest& test) { EXPECT_EQ(test.Commands(Balanced).size(), 2u); }},
        {"NameInLowerCase", File::Defaults, R"(Name="SleepKey")", R"(Name="SleepKey" name="LightKey")",
         "unknown-attribute", Function2, Ignored,
         [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[1].name, L"Sleep text"); }},
        {"SecondDisplay", File::Defaults, "<Commands/>",
         R"(<Display><AC><DisplayItem Label="DarkKey" Option="1"/></AC></Display><Commands/>)",
         "duplicate-element", Function2 + "/Display[2]", OnlyTheFirst,
         [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[1].ac.size(), 2u); }},
        {"SettingAsElement", File::Defaults, R"(<CommonSettings Warning="10"/>)",
         R"(<CommonSettings Warning="10"><Setting Name="Eco" Value="1"/></CommonSettings>)",
         "setting-as-element", "/ZOTDefault/CommonSettings/Setting", Ignored,
         [](DoctorTest& test) { EXPECT_EQ(test.Setting(L"Eco"), L"none"); }},
        {"TooLongSetting", File::Defaults, R"(Warning="10")", R"(Warning="10" Shift=")" + TooLong + "\"",
         "setting-too-long", "/ZOTDefault/CommonSettings",
         "the library uses the setting of the base catalogue",
         [](DoctorTest& test) { EXPECT_EQ(test.Setting(L"Shift"), L"0"); }},
        {"NameWithoutTranslation", File::Defaults, "SleepKey", "NapKey", "missing-translation", Function2,
         "the user sees the key",
         [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[1].name, L"NapKey"); }},
        {"LabelWithoutTranslation", File::Defaults, R"(Label="NeverKey")", R"(Label="NoneKey")",
         "missing-translation", Function2 + "/Display/AC/DisplayItem[2]",
         "the user sees the key, or an empty text in a list of differences",
         [](DoctorTest& test) {
             EXPECT_EQ(test.GetFunctionInfo()[1].ac[1].second, L"NoneKey");
             Text names = {};
             Text values = {};
             EXPECT_TRUE(test.Dll().GetDiffFuncList(&HighPerformance, &Balanced, 1, names, values));
             EXPECT_STREQ(names, L"- Sleep text\n\r");
             EXPECT_STREQ(values, L"\n\r");
         }},
    };
}

// ---- The user settings file ----

std::size_t StoredSchemes(const DoctorTest& test) {
    const std::string settings = test.UserSettings();
    std::size_t count = 0;
    for (std::size_t at = 0; (at = settings.find("<PowerScheme GUID", at)) != std::string::npos; ++at)
        ++count;
    return count;
}

void ExpectBalancedIgnored(DoctorTest& test) {
    EXPECT_EQ(test.GetParameter(Balanced), DefaultsOfBalanced);
    EXPECT_EQ(test.GetParameter(HighPerformance), StoredForHighPerformance);
}

void ExpectNothingStored(DoctorTest& test) {
    const std::string before = test.UserSettings();
    EXPECT_TRUE(test.SetParameter(Balanced, {{1, {0, 0}}}));
    EXPECT_EQ(test.UserSettings(), before);
}

std::vector<Flaw> FlawsOfUserSchemes() {
    const std::string first = R"(<Function ID="1" ACParamIndex="1" DCParamIndex="0"/>)";
    const std::string second = R"(<Function ID="2" ACParamIndex="1" DCParamIndex="0"/>)";
    const std::string empty = "the library treats the scheme as empty and does not add the defaults";
    const std::string rest =
        "in this scheme, the library uses the defaults of this function and of the following ones";
    return {
        {"NoGuid", File::UserSettings, R"( GUID="381b4222-f694-41f0-9685-ff5bb260df2e")", "", "missing-guid",
         UserScheme1,
         "the library finds neither this scheme nor the following ones, and adds the defaults of such a "
         "scheme at each use",
         [](DoctorTest& test) {
             EXPECT_EQ(test.GetParameter(HighPerformance), DefaultsOfHighPerformance);
             EXPECT_EQ(test.GetParameter(HighPerformance), DefaultsOfHighPerformance);
             EXPECT_EQ(StoredSchemes(test), 3u) << "the one that is not found, and two new ones";
         }},
        {"BracedGuid", File::UserSettings, "381b4222-f694-41f0-9685-ff5bb260df2e",
         "{381b4222-f694-41f0-9685-ff5bb260df2e}", "malformed-guid", UserScheme1, Ignored,
         ExpectBalancedIgnored},
        {"NoHyphensInAGuid", File::UserSettings, "381b4222-f694-41f0-9685-ff5bb260df2e",
         "381b4222f69441f09685ff5bb260df2e", "malformed-guid", UserScheme1, Ignored, ExpectBalancedIgnored},
        {"SameGuid", File::UserSettings, "8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c",
         "381B4222-F694-41F0-9685-FF5BB260DF2E", "duplicate-guid",
         "/OrloPowerCfg/PowerSchemes/PowerScheme[2]", OnlyTheFirst,
         [](DoctorTest& test) { EXPECT_EQ(test.GetParameter(Balanced), StoredForBalanced); }},
        {"NoId", File::UserSettings, first, R"(<Function ACParamIndex="1" DCParamIndex="0"/>)", "missing-id",
         UserScheme1 + "/Function[1]", empty + "; it cannot store values in the scheme",
         [](DoctorTest& test) {
             EXPECT_EQ(test.GetParameter(Balanced), Params{});
             ExpectNothingStored(test);
         }},
        {"NoIdAfterOthers", File::UserSettings, second, R"(<Function ACParamIndex="1" DCParamIndex="0"/>)",
         "missing-id", UserScheme1 + "/Function[2]", rest + "; it cannot store values in the scheme",
         [](DoctorTest& test) {
             EXPECT_EQ(test.GetParameter(Balanced), (Params{{1, {1, 0}}, {2, {0, 0}}}));
             ExpectNothingStored(test);
         }},
        {"NoIndex", File::UserSettings, first, R"(<Function ID="1" DCParamIndex="0"/>)", "missing-parameter",
         UserScheme1 + "/Function[1]", empty,
         [](DoctorTest& test) { EXPECT_EQ(test.GetParameter(Balanced), Params{}); }},
        {"NoIndexAfterOthers", File::UserSettings, second, R"(<Function ID="2" ACParamIndex="1"/>)",
         "missing-parameter", UserScheme1 + "/Function[2]", rest + ", and stores them",
         [](DoctorTest& test) {
             EXPECT_EQ(test.GetParameter(Balanced), (Params{{1, {1, 0}}, {2, {0, 0}}}));
             EXPECT_NE(test.UserSettings().find(R"(<Function ID="2" ACParamIndex="0" DCParamIndex="0"/>)"),
                       std::string::npos);
         }},
        {"NoFunctions", File::UserSettings, "</PowerSchemes>",
         R"(<PowerScheme GUID="a1841308-3541-4fab-bc81-f71556f20b4a"/></PowerSchemes>)", "empty-scheme",
         "/OrloPowerCfg/PowerSchemes/PowerScheme[3]", empty,
         [](DoctorTest& test) { EXPECT_EQ(test.GetParameter(PowerSaver), Params{}); }},
        {"UnknownFunction", File::UserSettings, first,
         first + R"(<Function ID="3" ACParamIndex="7" DCParamIndex="7"/>)", "unknown-function",
         UserScheme1 + "/Function[2]", "the library lists its parameters, but no command applies them",
         [](DoctorTest& test) {
             EXPECT_EQ(test.GetParameter(Balanced), (Params{{1, {1, 0}}, {2, {1, 0}}, {3, {7, 7}}}));
             EXPECT_EQ(test.Commands(Balanced).size(), 2u);
         }},
        {"SameId", File::UserSettings, first,
         first + R"(<Function ID="1" ACParamIndex="0" DCParamIndex="1"/>)", "duplicate-id",
         UserScheme1 + "/Function[2]", "the library uses the first one",
         [](DoctorTest& test) { EXPECT_EQ(test.GetParameter(Balanced), StoredForBalanced); }},
        {"IndexAfterTheOptions", File::UserSettings, first,
         R"(<Function ID="1" ACParamIndex="2" DCParamIndex="0"/>)", "index-out-of-range",
         UserScheme1 + "/Function[1]", SelectsNone,
         [](DoctorTest& test) { ExpectOptions(test, Balanced, 0, 80); }},
        {"IndexThatIsNoNumber", File::UserSettings, first,
         R"(<Function ID="1" ACParamIndex="" DCParamIndex="0"/>)", "invalid-number",
         UserScheme1 + "/Function[1]", "the library reads it as 0",
         [](DoctorTest& test) { ExpectOptions(test, Balanced, 100, 80); }},
        {"UnknownAttribute", File::UserSettings, first,
         R"(<Function ID="1" ACParamIndex="1" DCParamIndex="0" AC="0"/>)", "unknown-attribute",
         UserScheme1 + "/Function[1]", Ignored,
         [](DoctorTest& test) { EXPECT_EQ(test.GetParameter(Balanced), StoredForBalanced); }},
    };
}

std::vector<Flaw> FlawsOfTheUserDocument() {
    return {
        {"UnknownScheme", File::UserSettings, "</PowerSchemes>",
         R"(<Scheme GUID="a1841308-3541-4fab-bc81-f71556f20b4a"/></PowerSchemes>)", "unknown-element",
         "/OrloPowerCfg/PowerSchemes/Scheme", IgnoredWithAll,
         [](DoctorTest& test) { EXPECT_EQ(test.GetParameter(PowerSaver), DefaultsOfBalanced); }},
        {"MoreSchemes", File::UserSettings, "</PowerSchemes>",
         R"(</PowerSchemes><PowerSchemes><PowerScheme GUID="a1841308-3541-4fab-bc81-f71556f20b4a"/></PowerSchemes>)",
         "duplicate-element", "/OrloPowerCfg/PowerSchemes[2]", OnlyTheFirst,
         [](DoctorTest& test) {
             EXPECT_EQ(test.GetParameter(PowerSaver), DefaultsOfBalanced);
             EXPECT_EQ(StoredSchemes(test), 4u) << "two of before, the one that is not read, and a new one";
         }},
        {"SettingAsElement", File::UserSettings, R"(<CommonSettings Warning="15"/>)",
         R"(<CommonSettings Warning="15"><Shift>1</Shift></CommonSettings>)", "setting-as-element",
         "/OrloPowerCfg/CommonSettings/Shift", Ignored,
         [](DoctorTest& test) { EXPECT_EQ(test.Setting(L"Shift"), L"0") << "of the base catalogue"; }},
        {"TooLongSetting", File::UserSettings, R"(Warning="15")", "Warning=\"" + TooLong + "\"",
         "setting-too-long", "/OrloPowerCfg/CommonSettings", "the library uses the default",
         [](DoctorTest& test) { EXPECT_EQ(test.Setting(L"Warning"), L"10"); }},
    };
}

// ---- The string table ----

std::vector<Flaw> FlawsOfTheStringTable() {
    const std::string never = Entry("NeverKey", "Never");
    return {
        {"NoKey", File::StringTable, never, never + "<data><value>Lost</value></data>", "missing-name",
         "/root/data[11]", "the library does not find the text",
         [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[1].ac[1].second, L"Never"); }},
        {"NoText", File::StringTable, never, R"(<data name="NeverKey"/>)", "missing-text", "/root/data[10]",
         "the library has no text for the key, even if a later entry has one",
         [](DoctorTest& test) {
             WriteFile(test.PathOf(File::StringTable),
                       StringTable(R"(<data name="NeverKey"/>)" + Entry("NeverKey", "Never")));
             EXPECT_EQ(test.GetFunctionInfo()[1].ac[1].second, L"NeverKey");
         }},
        {"SameKey", File::StringTable, never, Entry("NEVERKEY", "Always") + never, "duplicate-key",
         "/root/data[11]", "the library finds only the first one",
         [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[1].ac[1].second, L"Always"); }},
        {"TooLongText", File::StringTable, never, Entry("NeverKey", TooLong), "truncated-text",
         "/root/data[10]/value", "the library truncates it",
         [](DoctorTest& test) {
             EXPECT_EQ(test.GetFunctionInfo()[1].ac[1].second, std::wstring(TextCapacity - 1, L't'));
         }},
        {"SecondText", File::StringTable, never,
         R"(<data name="NeverKey"><value>Never</value><value>Always</value></data>)", "duplicate-element",
         "/root/data[10]/value[2]", OnlyTheFirst,
         [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[1].ac[1].second, L"Never"); }},
        {"EntryInUpperCase", File::StringTable, never, never + R"(<DATA name="Other"/>)", "unknown-element",
         "/root/DATA", IgnoredWithAll,
         [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[1].ac[1].second, L"Never"); }},
    };
}

}  // namespace

TEST_P(DoctorFindingTest, DefectIsReported) {
    WriteFlaw();
    const auto& [name, file, healthy, flawed, kind, element, consequence, check] = GetParam();
    EXPECT_EQ(WithoutProblems(FindingsWith(1)), Json::array({FindingIn(file, element, kind, consequence)}));
}

TEST_P(DoctorFindingTest, LibraryBehavesAsFindingStates) {
    WriteFlaw();
    GetParam().check(*this);
}

INSTANTIATE_TEST_SUITE_P(Functions, DoctorFindingTest, testing::ValuesIn(FlawsOfFunctions()), CaseName<Flaw>);
INSTANTIATE_TEST_SUITE_P(DefaultParameters, DoctorFindingTest, testing::ValuesIn(FlawsOfDefaultParameters()),
                         CaseName<Flaw>);
INSTANTIATE_TEST_SUITE_P(DefaultsDocument, DoctorFindingTest, testing::ValuesIn(FlawsOfTheDefaultsDocument()),
                         CaseName<Flaw>);
INSTANTIATE_TEST_SUITE_P(UserSchemes, DoctorFindingTest, testing::ValuesIn(FlawsOfUserSchemes()),
                         CaseName<Flaw>);
INSTANTIATE_TEST_SUITE_P(UserDocument, DoctorFindingTest, testing::ValuesIn(FlawsOfTheUserDocument()),
                         CaseName<Flaw>);
INSTANTIATE_TEST_SUITE_P(StringTable, DoctorFindingTest, testing::ValuesIn(FlawsOfTheStringTable()),
                         CaseName<Flaw>);

}  // namespace ZOTDam::Test
