// Tests of GetSpecScheme, which enumerates the Windows power settings that the base catalogue prescribes.
#include "support/DomDocuments.h"
#include "support/HeapAllocations.h"
#include "support/NumberTexts.h"
#include "support/RawRecords.h"
#include "support/SettingsTest.h"
#include "support/SpecScheme.h"
#include "support/UnreadableValue.h"

namespace ZOTDam::Test {

namespace {

using Schemes = std::vector<SpecScheme>;

const std::string A = "aaaaaaaa-0000-4000-8000-00000000000a";
const std::string B = "bbbbbbbb-0000-4000-8000-00000000000b";
const std::string C = "cccccccc-0000-4000-8000-00000000000c";
const std::string D = "dddddddd-0000-4000-8000-00000000000d";
const std::string NoGuid = "{aaaaaaaa-0000-4000-8000-00000000000a}";

constexpr char AllZero[] = "00000000-0000-0000-0000-000000000000";

// Returns a section with several different elements on each level.
std::string FullSection() {
    return SchemeXml(A, SubGroupXml(B, SettingXml(C, "1", "2") + SettingXml(D, "3", "4")) +
                            SubGroupXml(C, SettingXml(D, "5", "6"))) +
           SchemeXml(B, SubGroupXml(A, SettingXml(B, "-7", "-8")));
}

const Schemes FullSchemes = {{A, {{B, {{C, 1, 2}, {D, 3, 4}}}, {C, {{D, 5, 6}}}}}, {B, {{A, {{B, -7, -8}}}}}};

// Returns the usual cases and more malformed GUIDs.
std::vector<GuidCase> MoreGuidCases() {
    std::vector<GuidCase> cases = GuidCases();
    for (const auto& [name, guid] : std::vector<std::pair<std::string, std::string>>{
             {"MisplacedHyphens", "381b422-2f694-41f0-9685-ff5bb260df2e"},
             {"UnderscoresInsteadOfHyphens", "381b4222_f694_41f0_9685_ff5bb260df2e"},
             {"NonHexadecimalLetter", "381b4222-f694-41f0-9685-ff5bb260df2g"},
             {"SpaceInsteadOfDigit", "381b4222-f694-41f0-9685-ff5bb260df2 "},
             {"SignInsteadOfDigit", "+81b4222-f694-41f0-9685-ff5bb260df2e"},
             {"FullWidthDigit",
              "\xef\xbc\x93"
              "81b4222-f694-41f0-9685-ff5bb260df2e"},
             {"AdditionalDigit", "381b4222-f694-41f0-9685-ff5bb260df2e0"},
             {"TwoGuids", "381b4222-f694-41f0-9685-ff5bb260df2e 381b4222-f694-41f0-9685-ff5bb260df2e"},
             {"SpaceOnly", "                                    "}})
        cases.push_back({name, guid, false});
    return cases;
}

}  // namespace

class SpecSchemeTest : public SettingsTest {
protected:
    static std::string FileWith(const std::string& schemes) {
        return "<ZOTBase><SpecSchemes>" + schemes + "</SpecSchemes></ZOTBase>";
    }

    // Returns the enumerated schemes. Fails the test if the export returns false.
    Schemes GetSpecScheme() {
        Schemes schemes;
        auto collect = MakeCallback<IGetSpecSchemeCallback>(
            [&](const SpecSchemeRecord* record) { schemes.push_back(CopyOf(*record)); });
        EXPECT_TRUE(Dll().GetSpecScheme(&collect));
        return schemes;
    }

    Schemes SchemesOf(const std::string& schemes) {
        WriteBase(FileWith(schemes));
        return GetSpecScheme();
    }

    // Returns the schemes of a section with these subgroups in the first scheme, followed by a second scheme.
    Schemes SchemesWithSubGroups(const std::string& subGroups) {
        return SchemesOf(SchemeXml(A, subGroups) + SchemeXml(B));
    }

    // Does the same with these settings in the only subgroup of the first scheme.
    Schemes SchemesWithSettings(const std::string& settings) {
        return SchemesWithSubGroups(SubGroupXml(A, settings));
    }

    const Schemes onlyTheOther = {{B}};

private:
    ComScope com;  // for the DOM that the test itself uses
};

// ---- All levels ----

TEST_F(SpecSchemeTest, AllLevelsAreReturnedInFileOrder) {
    EXPECT_EQ(SchemesOf(FullSection()), FullSchemes);
}

TEST_F(SpecSchemeTest, EachCallReturnsSameSchemes) {
    EXPECT_EQ(SchemesOf(FullSection()), FullSchemes);
    EXPECT_EQ(GetSpecScheme(), FullSchemes);
}

TEST_F(SpecSchemeTest, SchemeCanHaveNoSubGroups) {
    EXPECT_EQ(SchemesOf(SchemeXml(A)), (Schemes{{A}}));
}

TEST_F(SpecSchemeTest, SubGroupCanHaveNoSettings) {
    EXPECT_EQ(SchemesOf(SchemeXml(A, SubGroupXml(B) + SubGroupXml(C))), (Schemes{{A, {{B}, {C}}}}));
}

TEST_F(SpecSchemeTest, DuplicateGuidsAreReturnedOnEachLevel) {
    const std::string settings = SettingXml(A, "1", "2") + SettingXml(A, "3", "4");
    const std::string scheme = SchemeXml(A, SubGroupXml(A, settings) + SubGroupXml(A));
    const SpecScheme expected = {A, {{A, {{A, 1, 2}, {A, 3, 4}}}, {A}}};
    EXPECT_EQ(SchemesOf(scheme + scheme), (Schemes{expected, expected}));
}

TEST_F(SpecSchemeTest, AllZeroGuidIsValidOnEachLevel) {
    EXPECT_EQ(SchemesOf(SchemeXml(AllZero, SubGroupXml(AllZero, SettingXml(AllZero, "1", "2")))),
              (Schemes{{AllZero, {{AllZero, {{AllZero, 1, 2}}}}}}));
}

TEST_F(SpecSchemeTest, NothingIsInheritedFromPreviousElement) {
    EXPECT_EQ(SchemesOf(FullSection() + SchemeXml(C, SubGroupXml(D))).back(), (SpecScheme{C, {{D}}}));
}

TEST_F(SpecSchemeTest, ManyElementsAreAllReturned) {
    std::string settings;
    std::string subGroups;
    std::string schemes;
    SpecSubGroup subGroup = {B};
    for (int i = 0; i < 20; ++i) {
        settings += SettingXml(C, std::to_string(i), "0");
        subGroup.powerSettings.push_back({C, i, 0});
    }
    for (int i = 0; i < 20; ++i)
        subGroups += SubGroupXml(B, settings);
    for (int i = 0; i < 20; ++i)
        schemes += SchemeXml(A, subGroups);
    EXPECT_EQ(SchemesOf(schemes), Schemes(20, {A, std::vector<SpecSubGroup>(20, subGroup)}));
}

TEST_F(SpecSchemeTest, UnknownAttributesAndNodesAreIgnored) {
    EXPECT_EQ(SchemesOf(R"(<!--a-->text<?b c?><Other/><SchemeItem Name="n" SchemeGUID=")" + A +
                        R"("><!--a-->text<![CDATA[d]]><Other/><SubGroup Name="n" SubGroupGUID=")" + B +
                        R"("><!--a-->text<Other/>)" +
                        R"(<PowerSetting Name="n" DCValue="2" ACValue="1" PowerSettingGUID=")" + C +
                        R"(">text<Other/></PowerSetting></SubGroup></SchemeItem>)"),
              (Schemes{{A, {{B, {{C, 1, 2}}}}}}));
}

// Elements at other levels or in other elements are ignored.
TEST_F(SpecSchemeTest, OnlyDirectChildrenAreReadOnEachLevel) {
    const std::string setting = SettingXml(C, "1", "2");
    EXPECT_EQ(SchemesOf("<All>" + SchemeXml(B) + "</All>" + SubGroupXml(B, setting) + setting +
                        SchemeXml(A, SchemeXml(B) + setting + "<All>" + SubGroupXml(B) + "</All>" +
                                         SubGroupXml(D, SubGroupXml(B) + "<All>" + setting + "</All>"))),
              (Schemes{{A, {{D}}}}));
}

TEST_F(SpecSchemeTest, ElementsInNamespacesAreIgnoredOnEachLevel) {
    const std::string setting = "<o:PowerSetting/><PowerSetting xmlns=\"urn:other\"/><!--<PowerSetting/>-->";
    const std::string subGroup = "<o:SubGroup/><SubGroup xmlns=\"urn:other\"/><![CDATA[<SubGroup/>]]>";
    WriteBase("<ZOTBase xmlns:o=\"urn:other\"><o:SpecSchemes/><SpecSchemes>" + SchemeXml(A, subGroup) +
              "<o:SchemeItem/><SchemeItem xmlns=\"urn:other\"/>" + SchemeXml(B, SubGroupXml(C, setting)) +
              "</SpecSchemes></ZOTBase>");
    EXPECT_EQ(GetSpecScheme(), (Schemes{{A}, {B, {{C}}}}));
}

TEST_F(SpecSchemeTest, ElementsInOtherCaseAreIgnored) {
    EXPECT_EQ(SchemesOf("<Schemeitem/>" + SchemeXml(A, "<Subgroup/>" + SubGroupXml(B, "<Powersetting/>"))),
              (Schemes{{A, {{B}}}}));
}

// ---- The section ----

class MissingSpecSchemesTest : public SpecSchemeTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(MissingSpecSchemesTest, NoSchemesAreReturnedAndFileIsUnchanged) {
    WriteBase(GetParam().xml);
    EXPECT_EQ(GetSpecScheme(), Schemes{});
    EXPECT_EQ(Content(installation.BaseFile()), GetParam().xml);
}

INSTANTIATE_TEST_SUITE_P(
    , MissingSpecSchemesTest,
    testing::Values(XmlCase{"EmptyFile", ""},
                    XmlCase{"NotWellFormed", "<ZOTBase><SpecSchemes>" + SchemeXml(A) + "</SpecSchemes>"},
                    XmlCase{"RootWithoutSections", "<ZOTBase/>"},
                    XmlCase{"RootWithOtherSections", "<ZOTBase><CommonSettings/><Functions/></ZOTBase>"},
                    XmlCase{"EmptySection", "<ZOTBase><SpecSchemes/></ZOTBase>"},
                    XmlCase{"SectionAsRoot", "<SpecSchemes>" + SchemeXml(A) + "</SpecSchemes>"},
                    XmlCase{"SchemesOutsideSection", "<ZOTBase>" + SchemeXml(A) + "</ZOTBase>"},
                    XmlCase{"SchemesInSecondSection", "<ZOTBase><SpecSchemes/><SpecSchemes>" + SchemeXml(A) +
                                                          "</SpecSchemes></ZOTBase>"},
                    XmlCase{"NestedSection",
                            "<ZOTBase><All><SpecSchemes>" + SchemeXml(A) + "</SpecSchemes></All></ZOTBase>"},
                    XmlCase{"SectionInOtherCase",
                            "<ZOTBase><Specschemes>" + SchemeXml(A) + "</Specschemes></ZOTBase>"},
                    XmlCase{"SectionInNamespace", "<ZOTBase xmlns=\"urn:other\"><SpecSchemes>" +
                                                      SchemeXml(A) + "</SpecSchemes></ZOTBase>"}),
    CaseName<XmlCase>);

TEST_F(SpecSchemeTest, MissingFileReturnsNoSchemes) {
    EXPECT_EQ(GetSpecScheme(), Schemes{});
    EXPECT_FALSE(std::filesystem::exists(installation.BaseFile()));
}

TEST_F(SpecSchemeTest, FirstSectionOfAnyRootIsRead) {
    WriteBase("<Any><SpecSchemes>" + SchemeXml(A) + "</SpecSchemes><SpecSchemes>" + SchemeXml(B) +
              "</SpecSchemes></Any>");
    EXPECT_EQ(GetSpecScheme(), (Schemes{{A}}));
}

TEST_F(SpecSchemeTest, UnreadableFunctionsDoNotAffectSchemes) {
    WriteBase("<ZOTBase><Functions><Function/></Functions><SpecSchemes>" + SchemeXml(A) +
              "</SpecSchemes></ZOTBase>");
    EXPECT_EQ(GetSpecScheme(), (Schemes{{A}}));
}

// ---- Numbers ----

class SpecNumberTest : public SpecSchemeTest, public testing::WithParamInterface<NumberText> {};

TEST_P(SpecNumberTest, NumberIsReadInAcAndDcValue) {
    const auto& [name, text, number] = GetParam();
    EXPECT_EQ(SchemesOf(SchemeXml(A, SubGroupXml(A, SettingXml(C, text, "1") + SettingXml(D, "2", text)))),
              (Schemes{{A, {{A, {{C, number, 1}, {D, 2, number}}}}}}));
}

INSTANTIATE_TEST_SUITE_P(, SpecNumberTest, testing::ValuesIn(NumberTexts()), CaseName<NumberText>);

// ---- GUIDs ----

// The parameter is a GUID. If it is malformed, only its element is omitted.
class SpecGuidTest : public SpecSchemeTest, public testing::WithParamInterface<GuidCase> {
protected:
    // Returns two valid elements, with the given element between them if its GUID is valid.
    template <class Element>
    static std::vector<Element> WithOthers(const Element& element) {
        if (GetParam().matches)
            return {{A}, element, {B}};
        return {{A}, {B}};
    }
};

TEST_P(SpecGuidTest, SchemeRequiresValidGuid) {
    EXPECT_EQ(SchemesOf(SchemeXml(A) + SchemeXml(GetParam().guid, SubGroupXml(C)) + SchemeXml(B)),
              WithOthers(SpecScheme{BalancedText, {{C}}}));
}

TEST_P(SpecGuidTest, SubGroupRequiresValidGuid) {
    EXPECT_EQ(SchemesOf(SchemeXml(D, SubGroupXml(A) + SubGroupXml(GetParam().guid, SettingXml(C, "1", "2")) +
                                         SubGroupXml(B))),
              (Schemes{{D, WithOthers(SpecSubGroup{BalancedText, {{C, 1, 2}}})}}));
}

TEST_P(SpecGuidTest, SettingRequiresValidGuid) {
    EXPECT_EQ(SchemesOf(SchemeXml(
                  D, SubGroupXml(C, SettingXml(A, "0", "0") + SettingXml(GetParam().guid, "0", "0") +
                                        SettingXml(B, "0", "0")))),
              (Schemes{{D, {{C, WithOthers(SpecPowerSetting{BalancedText})}}}}));
}

INSTANTIATE_TEST_SUITE_P(, SpecGuidTest, testing::ValuesIn(MoreGuidCases()), CaseName<GuidCase>);

TEST_F(SpecSchemeTest, MalformedGuidsOmitOnlyTheirElements) {
    EXPECT_EQ(
        SchemesOf(SchemeXml(NoGuid, SubGroupXml(NoGuid, SettingXml(NoGuid, "1", "2"))) +
                  SchemeXml(A, SubGroupXml(NoGuid, SettingXml(NoGuid, "1", "2")) +
                                   SubGroupXml(B, SettingXml(NoGuid, "1", "2") + SettingXml(C, "3", "4")))),
        (Schemes{{A, {{B, {{C, 3, 4}}}}}}));
}

TEST_F(SpecSchemeTest, SchemesWithoutValidGuidAreNotReturned) {
    EXPECT_EQ(SchemesOf(SchemeXml(NoGuid) + SchemeXml("")), Schemes{});
}

// ---- Missing attributes ----

// The parameter is an invalid setting among valid ones. It fails its subgroup and therefore the scheme.
class InvalidSettingTest : public SpecSchemeTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(InvalidSettingTest, InvalidSettingOmitsItsScheme) {
    const std::string sound = SettingXml(C, "1", "2");
    EXPECT_EQ(SchemesWithSettings(GetParam().xml), onlyTheOther);
    Unload();
    EXPECT_EQ(SchemesWithSettings(sound + GetParam().xml + sound), onlyTheOther);
}

TEST_P(InvalidSettingTest, InvalidSettingOmitsAllSubGroupsOfScheme) {
    const std::string sound = SubGroupXml(B, SettingXml(C, "1", "2"));
    EXPECT_EQ(SchemesWithSubGroups(sound + SubGroupXml(C, GetParam().xml) + sound), onlyTheOther);
}

TEST_P(InvalidSettingTest, InvalidSettingInMalformedSubGroupOmitsScheme) {
    EXPECT_EQ(SchemesWithSubGroups(SubGroupXml(B) + SubGroupXml(NoGuid, GetParam().xml)), onlyTheOther);
}

TEST_P(InvalidSettingTest, InvalidSettingOmitsNoOtherScheme) {
    WriteBase(FileWith(FullSection() + SchemeXml(D, SubGroupXml(A, GetParam().xml)) + SchemeXml(C)));
    Schemes expected = FullSchemes;
    expected.push_back({C});
    EXPECT_EQ(GetSpecScheme(), expected);
}

INSTANTIATE_TEST_SUITE_P(
    , InvalidSettingTest,
    testing::Values(XmlCase{"NoAttributes", "<PowerSetting/>"},
                    XmlCase{"NoGuid", R"(<PowerSetting ACValue="1" DCValue="2"/>)"},
                    XmlCase{"NoAcValue", "<PowerSetting PowerSettingGUID=\"" + C + "\" DCValue=\"2\"/>"},
                    XmlCase{"NoDcValue", "<PowerSetting PowerSettingGUID=\"" + C + "\" ACValue=\"1\"/>"},
                    XmlCase{"NoValues", "<PowerSetting PowerSettingGUID=\"" + C + "\"/>"},
                    XmlCase{"MalformedGuidAndNoAcValue",
                            "<PowerSetting PowerSettingGUID=\"" + NoGuid + "\" DCValue=\"2\"/>"},
                    XmlCase{"MalformedGuidAndNoDcValue",
                            "<PowerSetting PowerSettingGUID=\"" + NoGuid + "\" ACValue=\"1\"/>"},
                    XmlCase{"EmptyGuidAndNoValues", R"(<PowerSetting PowerSettingGUID=""/>)"},
                    XmlCase{"GuidAttributeInOtherCase",
                            "<PowerSetting PowerSettingGuid=\"" + C + "\" ACValue=\"1\" DCValue=\"2\"/>"},
                    XmlCase{"AcValueInNamespace", "<PowerSetting xmlns:o=\"urn:other\" PowerSettingGUID=\"" +
                                                      C + "\" o:ACValue=\"1\" DCValue=\"2\"/>"},
                    XmlCase{"ValuesAsElements",
                            "<PowerSetting PowerSettingGUID=\"" + C +
                                "\"><ACValue>1</ACValue><DCValue>2</DCValue></PowerSetting>"}),
    CaseName<XmlCase>);

// The parameter is an invalid subgroup among valid ones. It fails the whole scheme.
class InvalidSubGroupTest : public SpecSchemeTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(InvalidSubGroupTest, InvalidSubGroupOmitsItsScheme) {
    const std::string sound = SubGroupXml(B, SettingXml(C, "1", "2"));
    EXPECT_EQ(SchemesWithSubGroups(GetParam().xml), onlyTheOther);
    Unload();
    EXPECT_EQ(SchemesWithSubGroups(sound + GetParam().xml + sound), onlyTheOther);
}

INSTANTIATE_TEST_SUITE_P(
    , InvalidSubGroupTest,
    testing::Values(
        XmlCase{"NoGuid", "<SubGroup>" + SettingXml(C, "1", "2") + "</SubGroup>"},
        XmlCase{"EmptyElement", "<SubGroup/>"},
        XmlCase{"GuidAttributeInOtherCase", "<SubGroup SubgroupGUID=\"" + C + "\"/>"},
        XmlCase{"NoGuidAndMalformedSettingGuid", "<SubGroup>" + SettingXml(NoGuid, "1", "2") + "</SubGroup>"},
        XmlCase{"MalformedGuidAndSettingWithoutDcValue",
                SubGroupXml(NoGuid, "<PowerSetting PowerSettingGUID=\"" + C + "\" ACValue=\"1\"/>")},
        XmlCase{"MalformedGuidsAndSettingWithoutAcValue",
                SubGroupXml(NoGuid, "<PowerSetting PowerSettingGUID=\"\" DCValue=\"1\"/>")}),
    CaseName<XmlCase>);

// The parameter is an invalid scheme between two valid ones. Only the invalid scheme is omitted.
class InvalidSchemeTest : public SpecSchemeTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(InvalidSchemeTest, OnlyInvalidSchemeIsOmitted) {
    const std::string sound = SubGroupXml(B, SettingXml(C, "1", "2"));
    EXPECT_EQ(SchemesOf(SchemeXml(A, sound) + GetParam().xml + SchemeXml(D, sound)),
              (Schemes{{A, {{B, {{C, 1, 2}}}}}, {D, {{B, {{C, 1, 2}}}}}}));
}

INSTANTIATE_TEST_SUITE_P(
    , InvalidSchemeTest,
    testing::Values(XmlCase{"NoGuid", "<SchemeItem>" + SubGroupXml(B) + "</SchemeItem>"},
                    XmlCase{"EmptyElement", "<SchemeItem/>"},
                    XmlCase{"GuidAttributeInOtherCase", "<SchemeItem SchemeGuid=\"" + B + "\"/>"},
                    XmlCase{"GuidInNamespace",
                            "<SchemeItem xmlns:o=\"urn:other\" o:SchemeGUID=\"" + B + "\"/>"},
                    XmlCase{"MalformedGuid", SchemeXml(NoGuid, SubGroupXml(B))},
                    XmlCase{"SubGroupWithoutGuid", SchemeXml(B, "<SubGroup/>")},
                    XmlCase{"MalformedGuidAndSubGroupWithoutGuid", SchemeXml(NoGuid, "<SubGroup/>")}),
    CaseName<XmlCase>);

// ---- Failures of the DOM ----

class FailingSpecReadTest : public SpecSchemeTest {
protected:
    // Enumerates while reads of attributes with the value "fails" fail. Tests then enumerate again without
    // the failure, to show that only the failure omits elements.
    Schemes WhileReadsFail(const std::string& schemes) {
        const UnreadableValue failure{L"fails"};
        return SchemesOf(SchemeXml(B) + schemes + SchemeXml(C));
    }

    const Schemes bothOthers = {{B}, {C}};
};

TEST_F(FailingSpecReadTest, FailedReadOfValueOmitsScheme) {
    EXPECT_EQ(WhileReadsFail(SchemeXml(A, SubGroupXml(A, SettingXml(A, "fails", "2")))), bothOthers);
    EXPECT_EQ(GetSpecScheme(), (Schemes{{B}, {A, {{A, {{A, 0, 2}}}}}, {C}}));
}

TEST_F(FailingSpecReadTest, FailedReadOfSettingGuidOmitsScheme) {
    EXPECT_EQ(WhileReadsFail(SchemeXml(A, SubGroupXml(A, SettingXml("fails", "1", "2")))), bothOthers);
    EXPECT_EQ(GetSpecScheme(), (Schemes{{B}, {A, {{A}}}, {C}}));
}

TEST_F(FailingSpecReadTest, FailedReadOfSubGroupGuidOmitsScheme) {
    EXPECT_EQ(WhileReadsFail(SchemeXml(A, SubGroupXml("fails"))), bothOthers);
    EXPECT_EQ(GetSpecScheme(), (Schemes{{B}, {A}, {C}}));
}

TEST_F(FailingSpecReadTest, FailedReadOfSchemeGuidOmitsAllSchemes) {
    EXPECT_EQ(WhileReadsFail(SchemeXml("fails")), Schemes{});
    EXPECT_EQ(GetSpecScheme(), bothOthers);
}

// ---- When the file is read ----

TEST_F(SpecSchemeTest, ChangedFileIsIgnoredUntilReload) {
    EXPECT_EQ(SchemesOf(FullSection()), FullSchemes);
    EXPECT_EQ(SchemesOf(SchemeXml(C)), FullSchemes);
    Unload();
    EXPECT_EQ(GetSpecScheme(), (Schemes{{C}}));
}

TEST_F(SpecSchemeTest, FileCreatedLaterIsNotRead) {
    EXPECT_EQ(GetSpecScheme(), Schemes{});
    EXPECT_EQ(SchemesOf(SchemeXml(C)), Schemes{});
}

TEST_F(SpecSchemeTest, DocumentIsSharedWithGetFunctionBase) {
    WriteBase(FileWith(FullSection()));
    DomDocuments documents{Dll().Handle()};
    EXPECT_EQ(GetSpecScheme(), FullSchemes);
    EXPECT_EQ(GetSpecScheme(), FullSchemes);
    auto ignore = MakeCallback<IGetFunctionBaseCallback>([](const FunctionBaseRecord*) {});
    EXPECT_TRUE(Dll().GetFunctionBase(&ignore));
    EXPECT_EQ(documents.CreatedCount(), 1u);
}

TEST_F(SpecSchemeTest, NullCallbackCreatesNoDocument) {
    WriteBase(FileWith(FullSection()));
    DomDocuments documents{Dll().Handle()};
    EXPECT_FALSE(Dll().GetSpecScheme(nullptr));
    EXPECT_EQ(documents.CreatedCount(), 0u);
}

TEST_F(SpecSchemeTest, FailedDomCreationReturnsNoSchemes) {
    WriteBase(FileWith(FullSection()));
    DomDocuments documents{Dll().Handle()};
    documents.Fail(E_OUTOFMEMORY);
    EXPECT_EQ(GetSpecScheme(), Schemes{});
}

TEST_F(SpecSchemeTest, BusyMarkersDoNotPreventRead) {
    const SecondProcess one{HoldMutex, {DefaultsMarker}};
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_EQ(SchemesOf(FullSection()), FullSchemes);
}

TEST_F(SpecSchemeTest, EnumerationWritesNoFile) {
    SchemesOf(FullSection());
    Unload();
    EXPECT_EQ(Content(installation.BaseFile()), FileWith(FullSection()));
    EXPECT_FALSE(std::filesystem::exists(installation.DefaultsFile()));
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(SpecSchemeTest, EnumerationLeaksNoHeapAllocation) {
    SchemesOf(FullSection() + SchemeXml(A, SubGroupXml(B, "<PowerSetting/>")));
    HeapAllocations::Track(Dll().Handle());
    EXPECT_EQ(GetSpecScheme(), FullSchemes);
    EXPECT_EQ(HeapAllocations::Count(), 0u);
}

// ---- The records as bytes ----

TEST_F(SpecSchemeTest, RecordLayoutMatchesBinaryInterface) {
    const std::string scheme = "00010203-0405-0607-0809-0a0b0c0d0e0f";
    WriteBase(
        FileWith(SchemeXml(scheme, SubGroupXml(A, SettingXml(B, "1", "2") + SettingXml(scheme, "3", "4")) +
                                       SubGroupXml(scheme))));
    const std::vector<std::uint8_t> guid = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    const auto bytesAt = [](const void* record, std::size_t offset) {
        const auto* const bytes = static_cast<const std::uint8_t*>(record) + offset;
        return std::vector<std::uint8_t>{bytes, bytes + 16};
    };
    auto walk = MakeCallback<IGetSpecSchemeCallback>([&](const SpecSchemeRecord* record) {
        EXPECT_EQ(bytesAt(record, 0), guid);
        const std::vector<const void*> subGroups = ListAt(record, 1592);
        ASSERT_EQ(subGroups.size(), 2u);
        EXPECT_EQ(bytesAt(subGroups[1], 0), guid);
        EXPECT_EQ(ListAt(subGroups[1], 16).size(), 0u);
        const std::vector<const void*> settings = ListAt(subGroups[0], 16);
        ASSERT_EQ(settings.size(), 2u);
        EXPECT_EQ(At<std::int32_t>(settings[1], 0), 3);
        EXPECT_EQ(At<std::int32_t>(settings[1], 4), 4);
        EXPECT_EQ(bytesAt(settings[1], 8), guid);
    });
    EXPECT_TRUE(Dll().GetSpecScheme(&walk));
}

// ---- OnItem ----

class SpecOnItemTest : public SpecSchemeTest {
protected:
    void SetUp() override { WriteBase(FileWith(FullSection())); }

    template <class Action>
    Schemes SchemesWhile(Action&& atFirstItem) {
        Schemes schemes;
        auto callback = MakeCallback<IGetSpecSchemeCallback>([&](const SpecSchemeRecord* record) {
            if (schemes.empty())
                atFirstItem();
            schemes.push_back(CopyOf(*record));
        });
        EXPECT_TRUE(Dll().GetSpecScheme(&callback));
        return schemes;
    }
};

TEST_F(SpecOnItemTest, CallbackCanCallExportsAndEnumerateAgain) {
    EXPECT_EQ(SchemesWhile([this] {
                  EXPECT_EQ(GetSpecScheme(), FullSchemes);
                  EXPECT_TRUE(SetParameter(Balanced, {{1, {2, 3}}}));
                  EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
              }),
              FullSchemes);
}

TEST_F(SpecOnItemTest, ExitInOnItemDoesNotEndEnumeration) {
    EXPECT_EQ(SchemesWhile([this] { EXPECT_TRUE(Dll().ZOTDamExit()); }), FullSchemes);
    EXPECT_FALSE(Dll().ResetDefault());
}

TEST_F(SpecOnItemTest, ExceptionReachesClientWithoutHeapLeak) {
    GetSpecScheme();
    HeapAllocations::Track(Dll().Handle());
    auto fail = MakeCallback<IGetSpecSchemeCallback>([](const SpecSchemeRecord*) { throw 1; });
    EXPECT_THROW(Dll().GetSpecScheme(&fail), int);
    EXPECT_EQ(GetSpecScheme(), FullSchemes);
    EXPECT_EQ(HeapAllocations::Count(), 0u);
}

}  // namespace ZOTDam::Test
