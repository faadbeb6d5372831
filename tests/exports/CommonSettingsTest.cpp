// Tests of GetCommonSetting, which returns the user's value, or else the default, or else the value of the
// base catalogue.
#include "support/CommonSettingsTest.h"

#include "support/DataFiles.h"
#include "support/DomMethods.h"

namespace ZOTDam::Test {

// ---- The order of the sources ----

TEST_F(CommonSettingsTest, TheUsersValueComesFirst) {
    WriteUserValues(R"(Name="user")");
    WriteDefaultValues(R"(Name="default")");
    WriteBaseValues(R"(Name="base")");
    EXPECT_EQ(Setting(L"Name"), L"user");
}

TEST_F(CommonSettingsTest, TheDefaultComesBeforeTheBaseCatalogue) {
    WriteUserValues(R"(Other="user")");
    WriteDefaultValues(R"(Name="default")");
    WriteBaseValues(R"(Name="base")");
    EXPECT_EQ(Setting(L"Name"), L"default");
}

TEST_F(CommonSettingsTest, TheBaseCatalogueIsAskedLast) {
    WriteUserValues(R"(Other="user")");
    WriteDefaultValues(R"(Another="default")");
    WriteBaseValues(R"(Name="base")");
    EXPECT_EQ(Setting(L"Name"), L"base");
}

TEST_F(CommonSettingsTest, EachNameIsLookedUpByItself) {
    WriteUserValues(R"(A="user")");
    WriteDefaultValues(R"(A="default" B="default")");
    WriteBaseValues(R"(A="base" B="base" C="base")");
    EXPECT_EQ(Setting(L"A"), L"user");
    EXPECT_EQ(Setting(L"B"), L"default");
    EXPECT_EQ(Setting(L"C"), L"base");
    EXPECT_EQ(Setting(L"D"), Missing);
}

TEST_F(CommonSettingsTest, AnEmptyValueOfTheUserHidesTheDefault) {
    WriteUserValues(R"(Name="")");
    WriteDefaultValues(R"(Name="default")");
    EXPECT_EQ(Setting(L"Name"), L"");
}

TEST_F(CommonSettingsTest, AnEmptyDefaultHidesTheBaseCatalogue) {
    WriteDefaultValues(R"(Name="")");
    WriteBaseValues(R"(Name="base")");
    EXPECT_EQ(Setting(L"Name"), L"");
}

TEST_F(CommonSettingsTest, ANameInOtherLettersHidesNothing) {
    WriteUserValues(R"(name="user")");
    WriteDefaultValues(R"(NAME="default")");
    WriteBaseValues(R"(Name="base")");
    EXPECT_EQ(Setting(L"Name"), L"base");
}

TEST_F(CommonSettingsTest, AValueOf259UnitsHidesTheNextSource) {
    WriteUserValues("Name=\"" + std::string(259, 'x') + "\"");
    WriteDefaultValues(R"(Name="default")");
    EXPECT_EQ(Setting(L"Name"), std::wstring(259, L'x'));
}

TEST_F(CommonSettingsTest, AUsersValueOf260UnitsLetsTheDefaultAnswer) {
    WriteUserValues("Name=\"" + std::string(260, 'x') + "\"");
    WriteDefaultValues(R"(Name="default")");
    EXPECT_EQ(Setting(L"Name"), L"default");
}

TEST_F(CommonSettingsTest, ADefaultOf260UnitsLetsTheBaseCatalogueAnswer) {
    WriteDefaultValues("Name=\"" + std::string(260, 'x') + "\"");
    WriteBaseValues(R"(Name="base")");
    EXPECT_EQ(Setting(L"Name"), L"base");
}

TEST_F(CommonSettingsTest, AFailureOfTheDomCountsAsAMiss) {
    WriteUserValues(R"(Name="user")");
    WriteDefaultValues(R"(Name="default")");
    {
        const FailingDomMethod failure{DomMethod::GetNamedItem};
        EXPECT_EQ(Setting(L"Name"), Missing);
    }
    EXPECT_EQ(Setting(L"Name"), L"user");
}

// Only the look-up in the user settings fails.
TEST_F(CommonSettingsTest, AFailureInOneSourceLetsTheNextAnswer) {
    using GetNamedItem = HRESULT WINAPI(IXMLDOMNamedNodeMap*, BSTR, IXMLDOMNode**);
    static int lookUps;
    static const DomMethodPatch* lookUp;
    WriteUserValues(R"(Name="user")");
    WriteDefaultValues(R"(Name="default")");
    lookUps = 0;
    const DomMethodPatch patch{
        DomMethod::GetNamedItem,
        +[](IXMLDOMNamedNodeMap* map, BSTR name, IXMLDOMNode** item) WINAPI -> HRESULT {
            return ++lookUps == 1 ? E_FAIL : lookUp->Original<GetNamedItem>()(map, name, item);
        }};
    lookUp = &patch;
    EXPECT_EQ(Setting(L"Name"), L"default");
}

// ---- Each source ----

struct Source {
    const char* name;
    std::filesystem::path (Installation::*file)() const;
};

void PrintTo(const Source& source, std::ostream* out) {
    *out << source.name;
}

// Tests each of the three files while the other two do not exist.
class EachSourceTest : public CommonSettingsTest, public testing::WithParamInterface<Source> {
protected:
    std::filesystem::path File() const { return (installation.*GetParam().file)(); }
    void Write(std::string_view xml) const { WriteFile(File(), xml); }
    void WriteValues(const std::string& settings) const { Write(FileWith(settings)); }
};

INSTANTIATE_TEST_SUITE_P(Of, EachSourceTest,
                         testing::Values(Source{"TheUser", &Installation::UserFile},
                                         Source{"TheDefaults", &Installation::DefaultsFile},
                                         Source{"TheBaseCatalogue", &Installation::BaseFile}),
                         [](const auto& info) { return info.param.name; });

TEST_P(EachSourceTest, GivesAValue) {
    WriteValues(R"(A="1" Name="value" B="2")");
    EXPECT_EQ(Setting(L"Name"), L"value");
}

TEST_P(EachSourceTest, GivesAnEmptyValue) {
    WriteValues(R"(Name="")");
    EXPECT_EQ(Setting(L"Name"), L"");
}

TEST_P(EachSourceTest, GivesTheValueNextTimeToo) {
    WriteValues(R"(Name="value")");
    EXPECT_EQ(Setting(L"Name"), L"value");
    EXPECT_EQ(Setting(L"Name"), L"value");
}

TEST_P(EachSourceTest, GivesAValueOf259UnitsWhole) {
    WriteValues("Name=\"" + std::string(259, 'x') + "\"");
    EXPECT_EQ(Setting(L"Name"), std::wstring(259, L'x'));
}

TEST_P(EachSourceTest, HasNoValueOf260Units) {
    WriteValues("Name=\"" + std::string(260, 'x') + "\"");
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_P(EachSourceTest, HasNoValueThatIsFarTooLong) {
    WriteValues("Name=\"" + std::string(100000, 'x') + "\" B=\"2\"");
    EXPECT_EQ(Setting(L"Name"), Missing);
    EXPECT_EQ(Setting(L"B"), L"2");
}

TEST_P(EachSourceTest, CountsASurrogatePairAsTwoUnits) {
    const std::string pair = "\xf0\x9f\x98\x80";
    WriteValues("Fits=\"" + std::string(257, 'x') + pair + "\" Long=\"" + std::string(258, 'x') + pair +
                "\"");
    EXPECT_EQ(Setting(L"Fits"), std::wstring(257, L'x') + L"\xd83d\xde00");
    EXPECT_EQ(Setting(L"Long"), Missing);
}

TEST_P(EachSourceTest, CountsACharacterReferenceAsOneUnit) {
    std::string references;
    for (int i = 0; i < 259; ++i)
        references += "&#x4e2d;";
    WriteValues("Name=\"" + references + "\"");
    EXPECT_EQ(Setting(L"Name"), std::wstring(259, L'\x4e2d'));
}

TEST_P(EachSourceTest, TellsUpperFromLowerCase) {
    WriteValues(R"(Name="1" name="2" NAME="3")");
    EXPECT_EQ(Setting(L"NAME"), L"3");
    EXPECT_EQ(Setting(L"name"), L"2");
    EXPECT_EQ(Setting(L"Name"), L"1");
    EXPECT_EQ(Setting(L"nAME"), Missing);
}

TEST_P(EachSourceTest, KnowsNoPartOfAName) {
    WriteValues(R"(Name="1")");
    EXPECT_EQ(Setting(L"Nam"), Missing);
    EXPECT_EQ(Setting(L"Names"), Missing);
    EXPECT_EQ(Setting(L"Name "), Missing);
    EXPECT_EQ(Setting(L" Name"), Missing);
}

TEST_P(EachSourceTest, KnowsNamesOfEveryScript) {
    WriteValues(
        "Gr\xc3\xb6\xc3\x9f"
        "e=\"1\" \xe4\xb8\xad\xe6\x96\x87=\"2\" \xd0\x98\xd0\xbc\xd1\x8f=\"3\" _.-0=\"4\"");
    EXPECT_EQ(Setting(L"Gr\xf6\xdf"
                      L"e"),
              L"1");
    EXPECT_EQ(Setting(L"\x4e2d\x6587"), L"2");
    EXPECT_EQ(Setting(L"\x418\x43c\x44f"), L"3");
    EXPECT_EQ(Setting(L"_.-0"), L"4");
}

TEST_P(EachSourceTest, LeavesTheSpacesOfAValue) {
    WriteValues(R"(Name="  a  b  " Blank="   ")");
    EXPECT_EQ(Setting(L"Name"), L"  a  b  ");
    EXPECT_EQ(Setting(L"Blank"), L"   ");
}

TEST_P(EachSourceTest, LeavesTabsAndLineBreaksThatAreWrittenAsReferences) {
    WriteValues(R"(Name="&#9;a&#10;b&#13;&#10;c&#9;")");
    EXPECT_EQ(Setting(L"Name"), L"\ta\nb\r\nc\t");
}

// XML parsers normalise white space in attributes.
TEST_P(EachSourceTest, TurnsPlainTabsAndLineBreaksIntoSpaces) {
    WriteValues("Name=\"a\tb\nc\"");
    EXPECT_EQ(Setting(L"Name"), L"a b c");
}

TEST_P(EachSourceTest, ResolvesEntities) {
    WriteValues(R"(Name="&lt;&amp;&gt;&quot;&apos;&#65;&#x42;&amp;lt;")");
    EXPECT_EQ(Setting(L"Name"), L"<&>\"'AB&lt;");
}

TEST_P(EachSourceTest, GivesCharactersOfEveryPlane) {
    WriteValues("Name=\"\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80&#x10FFFF;\xef\xbf\xbd\"");
    EXPECT_EQ(Setting(L"Name"), L"\xe4\x20ac\xd83d\xde00\xdbff\xdfff\xfffd");
}

TEST_P(EachSourceTest, TakesARootOfAnyName) {
    Write(R"(<x:Root xmlns:x="urn:x"><CommonSettings Name="value"/></x:Root>)");
    EXPECT_EQ(Setting(L"Name"), L"value");
}

TEST_P(EachSourceTest, ReadsTheFirstSectionOnly) {
    Write(R"(<R><Other B="0"/><CommonSettings A="1"/><CommonSettings A="2" B="2"/></R>)");
    EXPECT_EQ(Setting(L"A"), L"1");
    EXPECT_EQ(Setting(L"B"), Missing);
}

TEST_P(EachSourceTest, IgnoresSectionsInANamespace) {
    Write(R"(<R xmlns:x="urn:x"><x:CommonSettings A="1" B="1"/><CommonSettings xmlns="urn:x" A="2" B="2"/>)"
          R"(<CommonSettings A="3"/></R>)");
    EXPECT_EQ(Setting(L"A"), L"3");
    EXPECT_EQ(Setting(L"B"), Missing);
}

TEST_P(EachSourceTest, IgnoresAttributesInANamespace) {
    Write(R"(<R xmlns:x="urn:x"><CommonSettings x:A="1" x:B="1" B="2"/></R>)");
    EXPECT_EQ(Setting(L"A"), Missing);
    EXPECT_EQ(Setting(L"B"), L"2");
}

TEST_P(EachSourceTest, HasNoSettingElsewhereThanInTheAttributesOfTheSection) {
    Write(R"(<R A="1"><commonsettings A="2"/><X><CommonSettings A="3"/></X><CommonSettings><A>4</A>)"
          R"(<CommonSettings A="5"/>A</CommonSettings></R>)");
    EXPECT_EQ(Setting(L"A"), Missing);
}

TEST_P(EachSourceTest, HasNoSettingsInARootOfThatName) {
    Write(R"(<CommonSettings Name="value"/>)");
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_P(EachSourceTest, WithoutASectionHasNoSettings) {
    Write(R"(<R Name="value"><PowerSchemes/><Functions/></R>)");
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_P(EachSourceTest, ThatIsNoXmlHasNoSettings) {
    Write(R"(<R><CommonSettings Name="value"/>)");
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_P(EachSourceTest, ThatIsAFolderHasNoSettings) {
    std::filesystem::create_directory(File());
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_P(EachSourceTest, IsUnchangedByReadsWhichCreateNoOtherFileEither) {
    const std::string files[] = {"<R/>", R"(<R><CommonSettings Name="value"/></R>)", "broken"};
    for (const std::string& file : files) {
        Write(file);
        Setting(L"Name");
        Setting(L"Missing");
        Unload();
        EXPECT_EQ(ReadFile(File()), file);
        for (const auto& other :
             {installation.UserFile(), installation.DefaultsFile(), installation.BaseFile()})
            EXPECT_EQ(std::filesystem::exists(other), other == File()) << other;
    }
}

TEST_P(EachSourceTest, KnowsNothingByANameThatIsNone) {
    WriteValues(R"(A="1" B="2")");
    for (const wchar_t* const name :
         {L"",  L" ",  L"1",  L"A B", L"A=",    L"<A>",   L"&",  L"*",       L"@A",     L".",     L"A/",
          L":", L":A", L"A:", L"A:B", L"xmlns", L"xml:A", L"\n", L"A\xd83d", L"\xde00", L"\xffff"})
        EXPECT_EQ(Setting(name), Missing) << testing::PrintToString(std::wstring{name});
}

TEST_P(EachSourceTest, KnowsNothingByANameOfAnyLengthThatItLacks) {
    WriteValues(R"(A="1")");
    EXPECT_EQ(Setting(std::wstring(100000, L'A')), Missing);
}

TEST_P(EachSourceTest, KnowsANameOfAnyLength) {
    WriteValues(std::string(20000, 'A') + "=\"1\"");
    EXPECT_EQ(Setting(std::wstring(20000, L'A')), L"1");
}

// ---- When the files are read ----

TEST_F(CommonSettingsTest, WithoutAnyFileThereIsNoSettingAndNoFileIsCreated) {
    EXPECT_EQ(Setting(L"Name"), Missing);
    Unload();
    EXPECT_FALSE(HasUserFile());
    EXPECT_FALSE(HasDefaultsFile());
    EXPECT_FALSE(std::filesystem::exists(installation.BaseFile()));
}

TEST_F(CommonSettingsTest, WithoutAnyFolderThereIsNoSetting) {
    std::filesystem::remove_all(installation.ProgramData());
    std::filesystem::remove_all(installation.ProgramFiles());
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_F(CommonSettingsTest, TheUserSettingsAreReadAtEachCall) {
    EXPECT_EQ(Setting(L"Name"), Missing);
    WriteUserValues(R"(Name="1")");
    EXPECT_EQ(Setting(L"Name"), L"1");
    WriteUserValues(R"(Name="2")");
    EXPECT_EQ(Setting(L"Name"), L"2");
    WriteUserValues("");
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_F(CommonSettingsTest, TheDefaultsAndTheBaseCatalogueAreReadOnce) {
    WriteDefaultValues(R"(A="1")");
    WriteBaseValues(R"(B="1")");
    EXPECT_EQ(Setting(L"Missing"), Missing);
    WriteDefaultValues(R"(A="2")");
    WriteBaseValues(R"(B="2")");
    EXPECT_EQ(Setting(L"A"), L"1");
    EXPECT_EQ(Setting(L"B"), L"1");
    Unload();
    EXPECT_EQ(Setting(L"A"), L"2");
    EXPECT_EQ(Setting(L"B"), L"2");
}

// A source is not opened before a setting is looked up in it.
TEST_F(CommonSettingsTest, TheDefaultsAndTheBaseCatalogueAreReadWhenTheyAreFirstAsked) {
    WriteUserValues(R"(Name="user")");
    WriteDefaultValues(R"(A="1")");
    WriteBaseValues(R"(B="1")");
    EXPECT_EQ(Setting(L"Name"), L"user");
    WriteDefaultValues(R"(A="2")");
    WriteBaseValues(R"(B="2")");
    EXPECT_EQ(Setting(L"A"), L"2");
    WriteBaseValues(R"(B="3")");
    EXPECT_EQ(Setting(L"B"), L"3");
}

TEST_F(CommonSettingsTest, ABaseCatalogueThatAppearsLaterIsNotSeen) {
    EXPECT_EQ(Setting(L"Name"), Missing);
    WriteBaseValues(R"(Name="base")");
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_F(CommonSettingsTest, UserSettingsThatBecomeUnreadableFallThroughToTheDefaults) {
    WriteUserValues(R"(Name="user")");
    WriteDefaultValues(R"(Name="default")");
    EXPECT_EQ(Setting(L"Name"), L"user");
    WriteUserSettings("<broken");
    EXPECT_EQ(Setting(L"Name"), L"default");
    EXPECT_EQ(UserSettings(), "<broken");
}

TEST_F(CommonSettingsTest, DeletedUserSettingsFallThroughToTheDefaultsIfTheyHadASchemeToo) {
    WriteDefaultValues(R"(Name="default")");
    WriteUserSettings(R"(<R><PowerSchemes><PowerScheme/></PowerSchemes><CommonSettings Name="user"/></R>)");
    EXPECT_EQ(Setting(L"Name"), L"user");
    std::filesystem::remove(installation.UserFile());
    EXPECT_EQ(Setting(L"Name"), L"default");
    EXPECT_FALSE(HasUserFile());
}

// Deliberate: without schemes to clear, clearing ends early and keeps the common settings.
TEST_F(CommonSettingsTest, DeletedUserSettingsWithoutASchemeAreStillKnown) {
    WriteDefaultValues(R"(Name="default")");
    WriteUserValues(R"(Name="user")");
    EXPECT_EQ(Setting(L"Name"), L"user");
    std::filesystem::remove(installation.UserFile());
    EXPECT_EQ(Setting(L"Name"), L"user");
}

TEST_F(CommonSettingsTest, TheSectionThatAReadCreatesReachesTheDiskWithTheNextSave) {
    EXPECT_EQ(Setting(L"Name"), Missing);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(UserSettings(),
              "<?xml version='1.0' encoding='UTF-8'?>\n<OrloPowerCfg><CommonSettings/><PowerSchemes>" +
                  NewScheme(BalancedText, NewFunction(1, 5, 6)) + "</PowerSchemes></OrloPowerCfg>\n");
}

TEST_F(CommonSettingsTest, AReadNeedsNoCatalogueAndTouchesNone) {
    WriteDefaults(R"(<ZOTDefault><CommonSettings Name="default"/><Functions/></ZOTDefault>)");
    EXPECT_EQ(Setting(L"Name"), L"default");
    EXPECT_EQ(Dll().GetFuncCount(), 0u);
}

// ---- Busy files ----

TEST_F(CommonSettingsTest, BusyUserSettingsThatWereNotReadFallThroughToTheDefaults) {
    WriteUserValues(R"(Name="user")");
    WriteDefaultValues(R"(Name="default")");
    {
        const SecondProcess other{HoldMutex, {UserMarker}};
        EXPECT_EQ(Setting(L"Name"), L"default");
    }
    EXPECT_EQ(Setting(L"Name"), L"user");
}

TEST_F(CommonSettingsTest, BusyUserSettingsAreKnownAsTheyWereReadLast) {
    WriteUserValues(R"(Name="1")");
    EXPECT_EQ(Setting(L"Name"), L"1");
    WriteUserValues(R"(Name="2")");
    {
        const SecondProcess other{HoldMutex, {UserMarker}};
        EXPECT_EQ(Setting(L"Name"), L"1");
    }
    EXPECT_EQ(Setting(L"Name"), L"2");
}

TEST_F(CommonSettingsTest, DefaultsThatAreBusyAtTheirOnlyLoadFallThroughToTheBaseCatalogue) {
    WriteDefaultValues(R"(Name="default")");
    WriteBaseValues(R"(Name="base")");
    {
        const SecondProcess other{HoldMutex, {DefaultsMarker}};
        EXPECT_EQ(Setting(L"Name"), L"base");
    }
    EXPECT_EQ(Setting(L"Name"), L"base");
    Unload();
    EXPECT_EQ(Setting(L"Name"), L"default");
}

TEST_F(CommonSettingsTest, TheBaseCatalogueIsReadWithoutAMarker) {
    WriteBaseValues(R"(Name="base")");
    const SecondProcess user{HoldMutex, {UserMarker}};
    const SecondProcess defaults{HoldMutex, {DefaultsMarker}};
    EXPECT_EQ(Setting(L"Name"), L"base");
}

}  // namespace ZOTDam::Test
