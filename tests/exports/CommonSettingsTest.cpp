// Tests of GetCommonSetting, which returns the user's value, or else the default, or else the value of the
// base catalogue.
#include "support/CommonSettingsTest.h"

#include "support/DataFiles.h"
#include "support/DomMethods.h"
#include "support/ListedDeclarations.h"
#include "support/NullValues.h"

namespace ZOTDam::Test {

// ---- The order of the sources ----

TEST_F(CommonSettingsTest, UserValueOverridesDefaultAndBase) {
    WriteUserValues(R"(Name="user")");
    WriteDefaultValues(R"(Name="default")");
    WriteBaseValues(R"(Name="base")");
    EXPECT_EQ(Setting(L"Name"), L"user");
}

TEST_F(CommonSettingsTest, DefaultOverridesBaseCatalogue) {
    WriteUserValues(R"(Other="user")");
    WriteDefaultValues(R"(Name="default")");
    WriteBaseValues(R"(Name="base")");
    EXPECT_EQ(Setting(L"Name"), L"default");
}

TEST_F(CommonSettingsTest, BaseCatalogueIsSearchedLast) {
    WriteUserValues(R"(Other="user")");
    WriteDefaultValues(R"(Another="default")");
    WriteBaseValues(R"(Name="base")");
    EXPECT_EQ(Setting(L"Name"), L"base");
}

TEST_F(CommonSettingsTest, EachNameIsLookedUpSeparately) {
    WriteUserValues(R"(A="user")");
    WriteDefaultValues(R"(A="default" B="default")");
    WriteBaseValues(R"(A="base" B="base" C="base")");
    EXPECT_EQ(Setting(L"A"), L"user");
    EXPECT_EQ(Setting(L"B"), L"default");
    EXPECT_EQ(Setting(L"C"), L"base");
    EXPECT_EQ(Setting(L"D"), Missing);
}

TEST_F(CommonSettingsTest, EmptyUserValueHidesDefault) {
    WriteUserValues(R"(Name="")");
    WriteDefaultValues(R"(Name="default")");
    EXPECT_EQ(Setting(L"Name"), L"");
}

TEST_F(CommonSettingsTest, EmptyDefaultHidesBaseValue) {
    WriteDefaultValues(R"(Name="")");
    WriteBaseValues(R"(Name="base")");
    EXPECT_EQ(Setting(L"Name"), L"");
}

TEST_F(CommonSettingsTest, NameInDifferentCaseHidesNothing) {
    WriteUserValues(R"(name="user")");
    WriteDefaultValues(R"(NAME="default")");
    WriteBaseValues(R"(Name="base")");
    EXPECT_EQ(Setting(L"Name"), L"base");
}

TEST_F(CommonSettingsTest, UserValueOf259UnitsHidesDefault) {
    WriteUserValues("Name=\"" + std::string(259, 'x') + "\"");
    WriteDefaultValues(R"(Name="default")");
    EXPECT_EQ(Setting(L"Name"), std::wstring(259, L'x'));
}

TEST_F(CommonSettingsTest, UserValueOf260UnitsYieldsDefault) {
    WriteUserValues("Name=\"" + std::string(260, 'x') + "\"");
    WriteDefaultValues(R"(Name="default")");
    EXPECT_EQ(Setting(L"Name"), L"default");
}

TEST_F(CommonSettingsTest, DefaultOf260UnitsYieldsBaseValue) {
    WriteDefaultValues("Name=\"" + std::string(260, 'x') + "\"");
    WriteBaseValues(R"(Name="base")");
    EXPECT_EQ(Setting(L"Name"), L"base");
}

TEST_F(CommonSettingsTest, DomFailureCountsAsMissingSetting) {
    WriteUserValues(R"(Name="user")");
    WriteDefaultValues(R"(Name="default")");
    {
        const FailingDomMethod failure{DomMethod::GetNamedItem};
        EXPECT_EQ(Setting(L"Name"), Missing);
    }
    EXPECT_EQ(Setting(L"Name"), L"user");
}

// Only the look-up in the user settings fails.
TEST_F(CommonSettingsTest, FailureInOneSourceYieldsNextSource) {
    using GetNamedItem = HRESULT WINAPI(IXMLDOMNamedNodeMap*, BSTR, IXMLDOMNode**);
    static int lookUps;
    static const DomMethodPatch* lookUp;
    WriteUserValues(R"(Name="user")");
    WriteDefaultValues(R"(Name="default")");
    lookUps = 0;
    const DomMethodPatch patch{
        DomMethod::GetNamedItem, [](IXMLDOMNamedNodeMap* map, BSTR name, IXMLDOMNode** item) -> HRESULT {
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
class CommonSettingSourceTest : public CommonSettingsTest, public testing::WithParamInterface<Source> {
protected:
    std::filesystem::path File() const { return (installation.*GetParam().file)(); }
    void Write(std::string_view xml) const { WriteFile(File(), xml); }
    void WriteValues(const std::string& settings) const { Write(FileWith(settings)); }
};

INSTANTIATE_TEST_SUITE_P(, CommonSettingSourceTest,
                         testing::Values(Source{"UserSettings", &Installation::UserFile},
                                         Source{"Defaults", &Installation::DefaultsFile},
                                         Source{"BaseCatalogue", &Installation::BaseFile}),
                         [](const auto& info) { return info.param.name; });

TEST_P(CommonSettingSourceTest, StoredValueIsReturned) {
    WriteValues(R"(A="1" Name="value" B="2")");
    EXPECT_EQ(Setting(L"Name"), L"value");
}

TEST_P(CommonSettingSourceTest, EmptyValueIsReturned) {
    WriteValues(R"(Name="")");
    EXPECT_EQ(Setting(L"Name"), L"");
}

TEST_P(CommonSettingSourceTest, EmptyValueIsReturnedIfTypedNull) {
    const NullValues nulls;
    WriteValues(R"(Name="")");
    EXPECT_EQ(Setting(L"Name"), L"");
}

TEST_P(CommonSettingSourceTest, NamespaceDeclarationIsMissing) {
    for (const wchar_t* const name : {L"xmlns", L"xmlns:p"}) {
        const ListedDeclarations declarations{name};
        WriteValues(R"(xmlns:p="urn:p" Name="value")");
        EXPECT_EQ(Setting(name), Missing);
        EXPECT_EQ(Setting(L"Name"), L"value");
    }
}

TEST_P(CommonSettingSourceTest, RepeatedReadReturnsSameValue) {
    WriteValues(R"(Name="value")");
    EXPECT_EQ(Setting(L"Name"), L"value");
    EXPECT_EQ(Setting(L"Name"), L"value");
}

TEST_P(CommonSettingSourceTest, ValueOf259UnitsIsReturnedWhole) {
    WriteValues("Name=\"" + std::string(259, 'x') + "\"");
    EXPECT_EQ(Setting(L"Name"), std::wstring(259, L'x'));
}

TEST_P(CommonSettingSourceTest, ValueOf260UnitsIsMissing) {
    WriteValues("Name=\"" + std::string(260, 'x') + "\"");
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_P(CommonSettingSourceTest, VeryLongValueIsMissing) {
    WriteValues("Name=\"" + std::string(100000, 'x') + "\" B=\"2\"");
    EXPECT_EQ(Setting(L"Name"), Missing);
    EXPECT_EQ(Setting(L"B"), L"2");
}

TEST_P(CommonSettingSourceTest, SurrogatePairCountsAsTwoUnits) {
    const std::string pair = "\xf0\x9f\x98\x80";
    WriteValues("Fits=\"" + std::string(257, 'x') + pair + "\" Long=\"" + std::string(258, 'x') + pair +
                "\"");
    EXPECT_EQ(Setting(L"Fits"), std::wstring(257, L'x') + L"\xd83d\xde00");
    EXPECT_EQ(Setting(L"Long"), Missing);
}

TEST_P(CommonSettingSourceTest, CharacterReferenceCountsAsOneUnit) {
    std::string references;
    for (int i = 0; i < 259; ++i)
        references += "&#x4e2d;";
    WriteValues("Name=\"" + references + "\"");
    EXPECT_EQ(Setting(L"Name"), std::wstring(259, L'\x4e2d'));
}

TEST_P(CommonSettingSourceTest, NamesAreCaseSensitive) {
    WriteValues(R"(Name="1" name="2" NAME="3")");
    EXPECT_EQ(Setting(L"NAME"), L"3");
    EXPECT_EQ(Setting(L"name"), L"2");
    EXPECT_EQ(Setting(L"Name"), L"1");
    EXPECT_EQ(Setting(L"nAME"), Missing);
}

TEST_P(CommonSettingSourceTest, SimilarNamesAreNotFound) {
    WriteValues(R"(Name="1")");
    EXPECT_EQ(Setting(L"Nam"), Missing);
    EXPECT_EQ(Setting(L"Names"), Missing);
    EXPECT_EQ(Setting(L"Name "), Missing);
    EXPECT_EQ(Setting(L" Name"), Missing);
}

TEST_P(CommonSettingSourceTest, NonAsciiNamesAreFound) {
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

TEST_P(CommonSettingSourceTest, SpacesInValueAreKept) {
    WriteValues(R"(Name="  a  b  " Blank="   ")");
    EXPECT_EQ(Setting(L"Name"), L"  a  b  ");
    EXPECT_EQ(Setting(L"Blank"), L"   ");
}

TEST_P(CommonSettingSourceTest, WhiteSpaceFromReferencesIsKept) {
    WriteValues(R"(Name="&#9;a&#10;b&#13;&#10;c&#9;")");
    EXPECT_EQ(Setting(L"Name"), L"\ta\nb\r\nc\t");
}

// XML parsers normalise white space in attributes.
TEST_P(CommonSettingSourceTest, PlainTabsAndLineBreaksBecomeSpaces) {
    WriteValues("Name=\"a\tb\nc\"");
    EXPECT_EQ(Setting(L"Name"), L"a b c");
}

TEST_P(CommonSettingSourceTest, EntitiesAreResolved) {
    WriteValues(R"(Name="&lt;&amp;&gt;&quot;&apos;&#65;&#x42;&amp;lt;")");
    EXPECT_EQ(Setting(L"Name"), L"<&>\"'AB&lt;");
}

TEST_P(CommonSettingSourceTest, CharactersOfEveryPlaneAreReturned) {
    WriteValues("Name=\"\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80&#x10FFFF;\xef\xbf\xbd\"");
    EXPECT_EQ(Setting(L"Name"), L"\xe4\x20ac\xd83d\xde00\xdbff\xdfff\xfffd");
}

TEST_P(CommonSettingSourceTest, RootOfAnyNameIsAccepted) {
    Write(R"(<x:Root xmlns:x="urn:x"><CommonSettings Name="value"/></x:Root>)");
    EXPECT_EQ(Setting(L"Name"), L"value");
}

TEST_P(CommonSettingSourceTest, OnlyFirstSectionIsRead) {
    Write(R"(<R><Other B="0"/><CommonSettings A="1"/><CommonSettings A="2" B="2"/></R>)");
    EXPECT_EQ(Setting(L"A"), L"1");
    EXPECT_EQ(Setting(L"B"), Missing);
}

TEST_P(CommonSettingSourceTest, SectionsInNamespaceAreIgnored) {
    Write(R"(<R xmlns:x="urn:x"><x:CommonSettings A="1" B="1"/><CommonSettings xmlns="urn:x" A="2" B="2"/>)"
          R"(<CommonSettings A="3"/></R>)");
    EXPECT_EQ(Setting(L"A"), L"3");
    EXPECT_EQ(Setting(L"B"), Missing);
}

TEST_P(CommonSettingSourceTest, AttributesInNamespaceAreIgnored) {
    Write(R"(<R xmlns:x="urn:x"><CommonSettings x:A="1" x:B="1" B="2"/></R>)");
    EXPECT_EQ(Setting(L"A"), Missing);
    EXPECT_EQ(Setting(L"B"), L"2");
}

TEST_P(CommonSettingSourceTest, OnlySectionAttributesAreSettings) {
    Write(R"(<R A="1"><commonsettings A="2"/><X><CommonSettings A="3"/></X><CommonSettings><A>4</A>)"
          R"(<CommonSettings A="5"/>A</CommonSettings></R>)");
    EXPECT_EQ(Setting(L"A"), Missing);
}

TEST_P(CommonSettingSourceTest, RootNamedCommonSettingsIsNotSection) {
    Write(R"(<CommonSettings Name="value"/>)");
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_P(CommonSettingSourceTest, MissingSectionHasNoSettings) {
    Write(R"(<R Name="value"><PowerSchemes/><Functions/></R>)");
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_P(CommonSettingSourceTest, NotWellFormedFileHasNoSettings) {
    Write(R"(<R><CommonSettings Name="value"/>)");
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_P(CommonSettingSourceTest, FolderNamedLikeFileHasNoSettings) {
    std::filesystem::create_directory(File());
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_P(CommonSettingSourceTest, ReadingChangesAndCreatesNoFile) {
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

TEST_P(CommonSettingSourceTest, InvalidNamesAreNotFound) {
    WriteValues(R"(A="1" B="2")");
    for (const wchar_t* const name :
         {L"",  L" ",  L"1",  L"A B", L"A=",    L"<A>",   L"&",  L"*",       L"@A",     L".",     L"A/",
          L":", L":A", L"A:", L"A:B", L"xmlns", L"xml:A", L"\n", L"A\xd83d", L"\xde00", L"\xffff"})
        EXPECT_EQ(Setting(name), Missing) << testing::PrintToString(std::wstring{name});
}

TEST_P(CommonSettingSourceTest, LongMissingNameIsNotFound) {
    WriteValues(R"(A="1")");
    EXPECT_EQ(Setting(std::wstring(100000, L'A')), Missing);
}

TEST_P(CommonSettingSourceTest, LongExistingNameIsFound) {
    WriteValues(std::string(20000, 'A') + "=\"1\"");
    EXPECT_EQ(Setting(std::wstring(20000, L'A')), L"1");
}

// ---- When the files are read ----

TEST_F(CommonSettingsTest, MissingFilesHaveNoSettingsAndStayMissing) {
    EXPECT_EQ(Setting(L"Name"), Missing);
    Unload();
    EXPECT_FALSE(HasUserFile());
    EXPECT_FALSE(HasDefaultsFile());
    EXPECT_FALSE(std::filesystem::exists(installation.BaseFile()));
}

TEST_F(CommonSettingsTest, MissingFoldersHaveNoSettings) {
    std::filesystem::remove_all(installation.ProgramData());
    std::filesystem::remove_all(installation.ProgramFiles());
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_F(CommonSettingsTest, UserSettingsAreReadAtEachCall) {
    EXPECT_EQ(Setting(L"Name"), Missing);
    WriteUserValues(R"(Name="1")");
    EXPECT_EQ(Setting(L"Name"), L"1");
    WriteUserValues(R"(Name="2")");
    EXPECT_EQ(Setting(L"Name"), L"2");
    WriteUserValues("");
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_F(CommonSettingsTest, DefaultsAndBaseCatalogueAreReadOnce) {
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
TEST_F(CommonSettingsTest, DefaultsAndBaseAreReadWhenFirstSearched) {
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

TEST_F(CommonSettingsTest, BaseCatalogueCreatedLaterIsIgnored) {
    EXPECT_EQ(Setting(L"Name"), Missing);
    WriteBaseValues(R"(Name="base")");
    EXPECT_EQ(Setting(L"Name"), Missing);
}

TEST_F(CommonSettingsTest, UserSettingsThatBecomeUnreadableYieldDefaults) {
    WriteUserValues(R"(Name="user")");
    WriteDefaultValues(R"(Name="default")");
    EXPECT_EQ(Setting(L"Name"), L"user");
    WriteUserSettings("<broken");
    EXPECT_EQ(Setting(L"Name"), L"default");
    EXPECT_EQ(UserSettings(), "<broken");
}

TEST_F(CommonSettingsTest, DeletedUserSettingsWithSchemeYieldDefaults) {
    WriteDefaultValues(R"(Name="default")");
    WriteUserSettings(R"(<R><PowerSchemes><PowerScheme/></PowerSchemes><CommonSettings Name="user"/></R>)");
    EXPECT_EQ(Setting(L"Name"), L"user");
    std::filesystem::remove(installation.UserFile());
    EXPECT_EQ(Setting(L"Name"), L"default");
    EXPECT_FALSE(HasUserFile());
}

// Deliberate: without schemes to clear, clearing ends early and keeps the common settings.
TEST_F(CommonSettingsTest, DeletedUserSettingsWithoutSchemeStayKnown) {
    WriteDefaultValues(R"(Name="default")");
    WriteUserValues(R"(Name="user")");
    EXPECT_EQ(Setting(L"Name"), L"user");
    std::filesystem::remove(installation.UserFile());
    EXPECT_EQ(Setting(L"Name"), L"user");
}

TEST_F(CommonSettingsTest, NextSaveWritesSectionCreatedByRead) {
    EXPECT_EQ(Setting(L"Name"), Missing);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(
        UserSettings(),
        SavedXml{"<?xml version='1.0' encoding='UTF-8'?>\n<OrloPowerCfg><CommonSettings/><PowerSchemes>" +
                 NewScheme(BalancedText, NewFunction(1, 5, 6)) + "</PowerSchemes></OrloPowerCfg>\n"});
}

TEST_F(CommonSettingsTest, SettingReadDoesNotAffectCatalogue) {
    WriteDefaults(R"(<ZOTDefault><CommonSettings Name="default"/><Functions/></ZOTDefault>)");
    EXPECT_EQ(Setting(L"Name"), L"default");
    EXPECT_EQ(Dll().GetFuncCount(), 0u);
}

// ---- Busy files ----

TEST_F(CommonSettingsTest, UnreadBusyUserSettingsYieldDefaults) {
    WriteUserValues(R"(Name="user")");
    WriteDefaultValues(R"(Name="default")");
    {
        const SecondProcess other{HoldMutex, {UserMarker}};
        EXPECT_EQ(Setting(L"Name"), L"default");
    }
    EXPECT_EQ(Setting(L"Name"), L"user");
}

TEST_F(CommonSettingsTest, BusyUserSettingsReturnLastReadValue) {
    WriteUserValues(R"(Name="1")");
    EXPECT_EQ(Setting(L"Name"), L"1");
    WriteUserValues(R"(Name="2")");
    {
        const SecondProcess other{HoldMutex, {UserMarker}};
        EXPECT_EQ(Setting(L"Name"), L"1");
    }
    EXPECT_EQ(Setting(L"Name"), L"2");
}

TEST_F(CommonSettingsTest, DefaultsBusyAtFirstLoadYieldBaseValues) {
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

TEST_F(CommonSettingsTest, BaseCatalogueIsReadDespiteMarkers) {
    WriteBaseValues(R"(Name="base")");
    const SecondProcess user{HoldMutex, {UserMarker}};
    const SecondProcess defaults{HoldMutex, {DefaultsMarker}};
    EXPECT_EQ(Setting(L"Name"), L"base");
}

}  // namespace ZOTDam::Test
