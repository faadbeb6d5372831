// Tests that zotdamctl doctor reports each flaw of the base catalogue, and that the library behaves as
// reported.
#include "client/Flaws.h"

namespace ZOTDam::Test {

namespace {

const std::string BaseFunction1 = "/ZOTBase/Functions/Function[1]";
const std::string BaseFunction2 = "/ZOTBase/Functions/Function[2]";
const std::string Command2 = BaseFunction2 + "/Commands/CommandFamily/CommandItem";
const std::string SpecScheme1 = "/ZOTBase/SpecSchemes/SchemeItem[1]";
const std::string SubGroup1 = SpecScheme1 + "/SubGroup[1]";

const std::string ReadingEnds =
    "the library reads neither this function nor the following ones, and lists no unsupported functions";
const std::string RejectedWhenAdopted = "if the function is adopted, the library cannot load the catalogue";
const std::string SchemeLeftOut = "the library skips the whole spec scheme";

// Writes a catalogue that makes the functions of the base catalogue unsupported.
void WriteOtherCatalogue(const DoctorTest& test) {
    WriteFile(test.PathOf(File::Defaults),
              "<ZOTDefault><Functions><Function "
              "ID=\"9\"><Display/><Commands/></Function></Functions></ZOTDefault>");
}

void ExpectTwoBaseFunctions(DoctorTest& test) {
    EXPECT_EQ(test.BaseFunctions().size(), 2u);
    WriteOtherCatalogue(test);
    EXPECT_EQ(test.UnsupportedFunctions().size(), 2u);
}

void ExpectReadingEndsAtSecond(DoctorTest& test) {
    EXPECT_EQ(test.BaseFunctions().size(), 1u);
    WriteOtherCatalogue(test);
    EXPECT_EQ(test.UnsupportedFunctions().size(), 0u);
}

void ExpectNoCatalogueAfterAdopt(DoctorTest& test) {
    test.AdoptAll();
    EXPECT_EQ(test.Dll().GetFuncCount(), CatalogueUnavailable);
}

const FunctionBaseRecord& Second(const List<FunctionBaseRecord>& records) {
    EXPECT_EQ(records.size(), 2u);
    return *++records.begin();
}

std::vector<Flaw> FlawsOfBaseFunctions() {
    return {
        {"NameWithoutTranslation", File::Base, "SleepKey", "NapKey", "missing-translation", BaseFunction2,
         "if the function is adopted, the user sees the key",
         [](DoctorTest& test) {
             test.AdoptAll();
             EXPECT_EQ(test.GetFunctionInfo()[1].name, L"NapKey");
         }},
        {"LabelWithoutTranslation", File::Base, R"(Label="DarkKey")", R"(Label="DimKey")",
         "missing-translation", BaseFunction1 + "/Display/AC/DisplayItem[2]",
         "if the function is adopted, the user sees the key, or an empty text in a list of differences",
         [](DoctorTest& test) {
             test.AdoptAll();
             EXPECT_EQ(test.GetFunctionInfo()[0].ac[1].second, L"DimKey");
         }},
        {"NoId", File::Base, R"(ID="2" )", "", "inherited-attribute", BaseFunction2,
         "it inherits \"1\" from " + BaseFunction1,
         [](DoctorTest& test) { EXPECT_EQ(Second(test.BaseFunctions()).id, 1); }},
        {"NoIdAtAll", File::Base, R"(ID="1" )", "", "missing-attribute", BaseFunction1, "the library uses 0",
         [](DoctorTest& test) { EXPECT_EQ(test.BaseFunctions().begin()->id, 0); }},
        {"NegativeId", File::Base, R"(ID="2" )", R"(ID="-2" )", "negative-id", BaseFunction2,
         RejectedWhenAdopted, ExpectNoCatalogueAfterAdopt},
        {"SameId", File::Base, R"(ID="2" )", R"(ID="1" )", "duplicate-id", BaseFunction2,
         "the library lists both; if both are adopted, it drops this one",
         [](DoctorTest& test) {
             EXPECT_EQ(Second(test.BaseFunctions()).id, 1);
             test.AdoptAll();
             ASSERT_EQ(test.Dll().GetFuncCount(), 1u);
             EXPECT_EQ(test.GetFunctionInfo()[0].name, L"Light text");
         }},
        {"IdWithATail", File::Base, R"(ID="2" )", R"(ID="2;" )", "invalid-number", BaseFunction2,
         "the library reads it as 2",
         [](DoctorTest& test) { EXPECT_EQ(Second(test.BaseFunctions()).id, 2); }},
        {"NoGroup", File::Base, R"( Group="PowerKey")", "", "inherited-attribute", BaseFunction2,
         "it inherits \"ScreenKey\" from " + BaseFunction1,
         [](DoctorTest& test) { EXPECT_STREQ(Second(test.BaseFunctions()).group, L"ScreenKey"); }},
        {"NoEventOfACommand", File::Base, R"( Event="22")", "", "inherited-attribute", Command2,
         "it inherits \"12\" from " + BaseFunction1 + "/Commands/CommandFamily/CommandItem",
         [](DoctorTest& test) {
             const auto records = test.BaseFunctions();
             EXPECT_EQ(Second(records).commandFamilies.begin()->commandItems.begin()->event, 12);
         }},
        {"NoParamOfACheck", File::Base, R"( Param2="f")", "", "inherited-attribute",
         BaseFunction2 + "/Commands/CommandFamily/CheckExistItem",
         "it inherits \"b\" from " + BaseFunction1 + "/Commands/CommandFamily/CheckExistItem",
         [](DoctorTest& test) {
             const auto records = test.BaseFunctions();
             EXPECT_STREQ(Second(records).commandFamilies.begin()->checkExistItems.begin()->param2, L"b");
         }},
        {"TooLongName", File::Base, "SleepKey", TooLong, "text-too-long", BaseFunction2, ReadingEnds,
         ExpectReadingEndsAtSecond},
        {"TooLongSpecInfo", File::Base, "Doze", TooLong, "text-too-long", Command2, ReadingEnds,
         ExpectReadingEndsAtSecond},
        {"TooLongParam", File::Base, R"(Param4="h")", "Param4=\"" + TooLong + "\"", "text-too-long",
         BaseFunction2 + "/Commands/CommandFamily/CheckExistItem", ReadingEnds, ExpectReadingEndsAtSecond},
        {"TooLongLabel", File::Base, "DarkKey", TooLong, "text-too-long",
         BaseFunction1 + "/Display/AC/DisplayItem[2]", RejectedWhenAdopted, ExpectNoCatalogueAfterAdopt},
        {"NoDisplay", File::Base, "<Display><AC/><DC/></Display>", "", "missing-display", BaseFunction2,
         RejectedWhenAdopted, ExpectNoCatalogueAfterAdopt},
        {"NoDefault", File::Base, R"(<Default ACParamIndex="0" DCParamIndex="1"/>)", "", "missing-default",
         BaseFunction1,
         "if the function is adopted, this function and the following ones have no default parameters",
         [](DoctorTest& test) {
             EXPECT_EQ(test.GetParameterDefault(Balanced), DefaultsOfBalanced);
             test.Unload();
             test.AdoptAll();
             EXPECT_EQ(test.GetParameterDefault(Balanced), Params{});
         }},
        {"CommandOfInvalidPowerSource", File::Base, R"(State="24" ParamIndex1="0")",
         R"(State="24" ParamIndex1="-1")", "invalid-power-source", Command2,
         "the command uses the option on battery",
         [](DoctorTest& test) {
             const auto records = test.BaseFunctions();
             EXPECT_EQ(Second(records).commandFamilies.begin()->commandItems.begin()->paramIndex1, -1);
         }},
        {"NoCommandItem", File::Base,
         R"(<CommandItem ID="21" Event="22" Flag="23" State="24" ParamIndex1="0" ParamIndex2="1" SpecInfo1="Doze"/>)",
         "", "empty-commands", BaseFunction2 + "/Commands",
         "if the function is adopted, the library skips it",
         [](DoctorTest& test) {
             test.AdoptAll();
             EXPECT_EQ(test.Dll().GetFuncCount(), 1u);
         }},
        {"CommandBesideTheFamilies", File::Base, "<CommandFamily>\n      <CommandItem ID=\"21\"",
         "<CommandItem ID=\"20\"/><CommandFamily>\n      <CommandItem ID=\"21\"", "unknown-element",
         BaseFunction2 + "/Commands/CommandItem", IgnoredWithAll,
         [](DoctorTest& test) {
             const auto records = test.BaseFunctions();
             EXPECT_EQ(Second(records).commandFamilies.begin()->commandItems.size(), 1u);
         }},
        {"UnknownAttribute", File::Base, R"(Param4="h")", R"(Param4="h" Param5="i")", "unknown-attribute",
         BaseFunction2 + "/Commands/CommandFamily/CheckExistItem", Ignored, ExpectTwoBaseFunctions},
    };
}

std::vector<Flaw> FlawsOfTheBaseDocument() {
    const std::string functions = "<Functions/>";
    const std::string settings = R"(<CommonSettings Warning="5"/>)";
    const std::string specSchemes = "<SpecSchemes/>";
    return {
        {"NoFunctions", File::Base, "", "<ZOTBase>" + settings + specSchemes + "</ZOTBase>",
         "missing-section", "/ZOTBase", "the library has no base functions",
         [](DoctorTest& test) { EXPECT_TRUE(test.BaseFunctions().empty()); }},
        {"NoSpecSchemes", File::Base, "", "<ZOTBase>" + settings + functions + "</ZOTBase>",
         "missing-section", "/ZOTBase", "the library has no spec schemes",
         [](DoctorTest& test) { EXPECT_TRUE(test.SpecSchemes().empty()); }},
        {"NoCommonSettings", File::Base, "", "<ZOTBase>" + functions + specSchemes + "</ZOTBase>",
         "missing-section", "/ZOTBase", "the library cannot initialise the common settings",
         [](DoctorTest& test) { EXPECT_FALSE(test.Dll().InitCommonSetting()); }},
        {"SettingAsElement", File::Base, R"(<CommonSettings Warning="5" Shift="0"/>)",
         R"(<CommonSettings Warning="5" Shift="0"><Eco/></CommonSettings>)", "setting-as-element",
         "/ZOTBase/CommonSettings/Eco", Ignored,
         [](DoctorTest& test) { EXPECT_EQ(test.Setting(L"Eco"), L"none"); }},
        {"TooLongSetting", File::Base, R"(Shift="0")", "Shift=\"" + TooLong + "\"", "setting-too-long",
         "/ZOTBase/CommonSettings", "the library does not find the setting",
         [](DoctorTest& test) { EXPECT_EQ(test.Setting(L"Shift"), L"none"); }},
        {"MoreSpecSchemes", File::Base, "</SpecSchemes>",
         R"(</SpecSchemes><SpecSchemes><SchemeItem SchemeGUID="a1841308-3541-4fab-bc81-f71556f20b4a"/></SpecSchemes>)",
         "duplicate-element", "/ZOTBase/SpecSchemes[2]", OnlyTheFirst,
         [](DoctorTest& test) { EXPECT_EQ(test.SpecSchemes().size(), 2u); }},
        {"NoCommandsElement", File::Base, "",
         "<ZOTBase>" + settings + R"(<Functions>
            <Function ID="1" Name="" Group="" Type="0" Flag="0"><Display/>
                <Default ACParamIndex="0" DCParamIndex="0"/></Function></Functions>)" +
             specSchemes + "</ZOTBase>",
         "missing-commands", "/ZOTBase/Functions/Function", ReadingEnds,
         [](DoctorTest& test) {
             EXPECT_TRUE(test.BaseFunctions().empty());
             EXPECT_TRUE(test.UnsupportedFunctions().empty());
         }},
    };
}

// The first spec scheme has two subgroups. The first subgroup has two settings.
void ExpectFirstSchemeSkipped(DoctorTest& test) {
    const auto schemes = test.SpecSchemes();
    ASSERT_EQ(schemes.size(), 1u);
    EXPECT_EQ(schemes.begin()->scheme, HighPerformance);
}

std::vector<Flaw> FlawsOfSpecSchemes() {
    const std::string setting1 = SubGroup1 + "/PowerSetting[1]";
    return {
        {"NoSchemeGuid", File::Base, R"( SchemeGUID="381b4222-f694-41f0-9685-ff5bb260df2e")", "",
         "missing-guid", SpecScheme1, SchemeLeftOut, ExpectFirstSchemeSkipped},
        {"NoSubGroupGuid", File::Base, R"( SubGroupGUID="238c9fa8-0aad-41ed-83f4-97be242c8f20")", "",
         "missing-guid", SpecScheme1 + "/SubGroup[2]", SchemeLeftOut, ExpectFirstSchemeSkipped},
        {"NoPowerSettingGuid", File::Base, R"( PowerSettingGUID="3c0bc021-c8a8-4e07-a973-6b14cbcb2b7e")", "",
         "missing-guid", setting1, SchemeLeftOut, ExpectFirstSchemeSkipped},
        {"NoValue", File::Base, R"( DCValue="120")", "", "missing-value", setting1, SchemeLeftOut,
         ExpectFirstSchemeSkipped},
        {"BracedSchemeGuid", File::Base, "381b4222-f694-41f0-9685-ff5bb260df2e",
         "{381b4222-f694-41f0-9685-ff5bb260df2e}", "malformed-guid", SpecScheme1, Ignored,
         ExpectFirstSchemeSkipped},
        {"MalformedSubGroupGuid", File::Base, "238c9fa8-0aad-41ed-83f4-97be242c8f20",
         "238c9fa8-0aad-41ed-83f4-97be242c8f2g", "malformed-guid", SpecScheme1 + "/SubGroup[2]", Ignored,
         [](DoctorTest& test) {
             const auto schemes = test.SpecSchemes();
             ASSERT_EQ(schemes.size(), 2u);
             EXPECT_EQ(schemes.begin()->subGroups.size(), 1u);
         }},
        {"ShortPowerSettingGuid", File::Base, "3c0bc021-c8a8-4e07-a973-6b14cbcb2b7e", "3c0bc021",
         "malformed-guid", setting1, Ignored,
         [](DoctorTest& test) {
             const auto schemes = test.SpecSchemes();
             ASSERT_EQ(schemes.size(), 2u);
             EXPECT_EQ(schemes.begin()->subGroups.begin()->powerSettings.size(), 1u);
         }},
        {"ValueThatIsNoNumber", File::Base, R"(ACValue="300")", R"(ACValue="0x12C")", "invalid-number",
         setting1, "the library reads it as 0",
         [](DoctorTest& test) {
             const auto schemes = test.SpecSchemes();
             ASSERT_EQ(schemes.size(), 2u);
             EXPECT_EQ(schemes.begin()->subGroups.begin()->powerSettings.begin()->acValue, 0);
         }},
        {"UnknownSetting", File::Base, R"(<PowerSetting PowerSettingGUID="aded5e82)",
         R"(<Setting/><PowerSetting PowerSettingGUID="aded5e82)", "unknown-element", SubGroup1 + "/Setting",
         IgnoredWithAll, [](DoctorTest& test) { EXPECT_EQ(test.SpecSchemes().size(), 2u); }},
    };
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(BaseFunctions, DoctorFindingTest, testing::ValuesIn(FlawsOfBaseFunctions()),
                         CaseName<Flaw>);
INSTANTIATE_TEST_SUITE_P(BaseDocument, DoctorFindingTest, testing::ValuesIn(FlawsOfTheBaseDocument()),
                         CaseName<Flaw>);
INSTANTIATE_TEST_SUITE_P(SpecSchemes, DoctorFindingTest, testing::ValuesIn(FlawsOfSpecSchemes()),
                         CaseName<Flaw>);

}  // namespace ZOTDam::Test
