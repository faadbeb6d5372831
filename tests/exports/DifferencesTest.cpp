// Tests of GetDiffFuncList: the functions whose parameters differ between two schemes, the order of the list,
// and the schemes that the call stores.
#include "support/DifferencesTest.h"

#include "support/FakeDisplay.h"

namespace ZOTDam::Test {

namespace {

constexpr GUID AllZero = {};
constexpr char AllZeroText[] = "00000000-0000-0000-0000-000000000000";

// A refresh-rate function that a display with only 60 Hz supports.
std::string SupportedRateFunction(std::int32_t id) {
    return FunctionWith(id, {.attributes = R"(Name="Rate")", .acItems = Options({"60", "60"})});
}

}  // namespace

// ---- The power source ----

TEST_F(DifferencesTest, OnlyDifferencesOfPowerSourceAreListed) {
    WriteFunctions(NamedFunction(1, "Dim") + NamedFunction(2, "Sound"));
    Store(OldFunction(1, 0, 0) + OldFunction(2, 0, 0), OldFunction(1, 1, 0) + OldFunction(2, 0, 1));
    Translate({{"AcOn", "Plugged in"}, {"DcOn", "On battery"}});
    EXPECT_EQ(Compare(Ac), (Difference{true, L"- Dim\n\r", L"Plugged in\n\r"}));
    EXPECT_EQ(Compare(Dc), (Difference{true, L"- Sound\n\r", L"On battery\n\r"}));
}

TEST_F(DifferencesTest, BatteryDifferenceShowsDcLabel) {
    WriteFunctions(NamedFunction(1, "Dim"));
    Store(OldFunction(1, 0, 1), OldFunction(1, 1, 0));
    Translate({{"AcOn", "wrong"}, {"AcOff", "wrong"}, {"DcOn", "wrong"}, {"DcOff", "Off"}});
    EXPECT_EQ(Compare(Dc).values, L"Off\n\r");
}

class UnknownModeTest : public DifferencesTest, public testing::WithParamInterface<std::uint32_t> {};

TEST_P(UnknownModeTest, UnknownModeListsNothingButLoadsSchemes) {
    WriteDifferentDefaults();
    EXPECT_EQ(Compare(GetParam()), None);
    EXPECT_EQ(UserSettings(), SavedXml{BothAdopted()});
}

TEST_P(UnknownModeTest, UnknownModeTranslatesNoName) {
    WriteDifferentDim();
    Translate({{"Dim", "Dark"}, {"Dark", "Black"}});
    Compare(GetParam());
    EXPECT_EQ(CompareNames(), L"- Dark\n\r");
}

INSTANTIATE_TEST_SUITE_P(Modes, UnknownModeTest,
                         testing::Values(0u, 3u, 0x101u, 0x80000001u, 0xFFFFFFFEu, 0xFFFFFFFFu));

// ---- Differences ----

TEST_F(DifferencesTest, EqualSchemesHaveNoDifferences) {
    WriteFunctions(NamedFunction(1, "Dim") + NamedFunction(2, "Sound"));
    Store(OldFunction(1, 1, 0) + OldFunction(2, 0, 1), OldFunction(2, 0, 1) + OldFunction(1, 1, 0));
    EXPECT_EQ(Compare(Ac), None);
    EXPECT_EQ(Compare(Dc), None);
}

TEST_F(DifferencesTest, SchemeDoesNotDifferFromItself) {
    WriteDifferentDim();
    EXPECT_EQ(Compare(Ac, Balanced, Balanced), None);
}

TEST_F(DifferencesTest, AdoptedSchemeDoesNotDifferFromItself) {
    WriteDifferentDefaults();
    EXPECT_EQ(Compare(Ac, HighPerformance, HighPerformance), None);
    EXPECT_EQ(UserSettings(), SavedXml{NewUserFile(NewScheme(HighPerformanceText, NewFunction(1, 1, 1)))});
}

TEST_F(DifferencesTest, PositionsAreComparedAndNotOptions) {
    WriteFunctions(FunctionWith(1, {.attributes = R"(Name="Dim")",
                                    .acItems = R"(<DisplayItem Option="5" Label="Same"/><DisplayItem/>)"}));
    StoreDifferent({1});
    Translate({{"Same", "The same"}});
    EXPECT_EQ(Compare(), (Difference{true, L"- Dim\n\r", L"The same\n\r"}));
}

TEST_F(DifferencesTest, SchemesAreReadAgainForEachCall) {
    WriteDifferentDim();
    EXPECT_EQ(CompareNames(), L"- Dim\n\r");
    WriteDimAt(0);
    EXPECT_EQ(Compare(), None);
}

TEST_F(DifferencesTest, ZeroSchemeIsComparedLikeAnyOther) {
    WriteFunctions(NamedFunction(1, "Dim"));
    WriteSchemes(OldScheme(BalancedText, OldFunction(1, 0, 0)) +
                 OldScheme(AllZeroText, OldFunction(1, 1, 1)));
    EXPECT_EQ(Compare(Ac, Balanced, AllZero).names, L"- Dim\n\r");
    EXPECT_EQ(Compare(Ac, AllZero, Balanced).names, L"- Dim\n\r");
}

TEST_F(DifferencesTest, ZeroSchemeIsAdoptedAndStored) {
    WriteDifferentDefaults();
    EXPECT_EQ(Compare(Ac, AllZero, HighPerformance).names, L"- Dim\n\r");
    EXPECT_EQ(UserSettings(), SavedXml{BothAdopted(AllZeroText)});
}

TEST_F(DifferencesTest, FunctionMissingFromCatalogueIsNotListed) {
    WriteFunctions(NamedFunction(1, "Dim"));
    StoreDifferent({-1, 1, 99});
    EXPECT_EQ(CompareNames(), L"- Dim\n\r");
}

TEST_F(DifferencesTest, EmptyCatalogueHasNoDifferences) {
    WriteFunctions("");
    StoreDifferent({1});
    EXPECT_EQ(Compare(), None);
}

TEST_F(DifferencesTest, EmptyFirstSchemeHasNoDifferences) {
    WriteFunctions(NamedFunction(1, "Dim"));
    Store("", OldFunction(1, 1, 1));
    EXPECT_EQ(Compare(), None);
}

TEST_F(DifferencesTest, EmptySecondSchemeHasNoDifferences) {
    WriteFunctions(NamedFunction(1, "Dim"));
    Store(OldFunction(1, 1, 1), "");
    EXPECT_EQ(Compare(), None);
}

TEST_F(DifferencesTest, FunctionHiddenByDisplayIsNotListed) {
    const FakeDisplay display{Dll().Handle(), {}};
    WriteFunctions(NamedFunction(1, "Dim") + SupportedRateFunction(7));
    StoreDifferent({1, 7});
    EXPECT_EQ(CompareNames(), L"- Dim\n\r");
}

TEST_F(DifferencesTest, FunctionSupportedByDisplayIsListed) {
    const FakeDisplay display{Dll().Handle(), {60}};
    WriteFunctions(NamedFunction(1, "Dim") + SupportedRateFunction(7));
    StoreDifferent({1, 7});
    EXPECT_EQ(CompareNames(), L"- Dim\n\r- Rate\n\r");
}

// The display changes after the first scheme is read.
TEST_F(DifferencesTest, FunctionOnlyInSecondSchemeIsNotListed) {
    FakeDisplay display{Dll().Handle(), {}};
    display.ChangeAfterFirstMode({60});
    WriteFunctions(NamedFunction(1, "Dim") + SupportedRateFunction(7));
    StoreDifferent({1, 7});
    EXPECT_EQ(CompareNames(), L"- Dim\n\r");
    EXPECT_EQ(display.QueriedNumbers(), (std::vector<DWORD>{0, 0}));
}

TEST_F(DifferencesTest, FunctionOnlyInFirstSchemeIsNotListed) {
    FakeDisplay display{Dll().Handle(), {60}};
    display.ChangeAfterFirstMode({});
    WriteFunctions(NamedFunction(1, "Dim") + SupportedRateFunction(7));
    StoreDifferent({1, 7});
    EXPECT_EQ(CompareNames(), L"- Dim\n\r");
    EXPECT_EQ(display.QueriedNumbers(), (std::vector<DWORD>{0, 0}));
}

// ---- The order ----

TEST_F(DifferencesTest, LeadingGroupIsListedFirst) {
    WriteFunctions(NamedFunction(1, "Dim") + NamedFunction(2, "Sound", LeadingGroup));
    StoreDifferent({1, 2});
    EXPECT_EQ(CompareNames(), L"- Sound\n\r- Dim\n\r");
}

TEST_F(DifferencesTest, ValuesFollowOrderOfNames) {
    WriteFunctions(NamedFunction(1, "Dim") + NamedFunction(2, "Sound", LeadingGroup));
    Store(OldFunction(1, 0, 0) + OldFunction(2, 1, 1), OldFunction(1, 1, 1) + OldFunction(2, 0, 0));
    Translate({{"AcOn", "On"}, {"AcOff", "Off"}});
    EXPECT_EQ(CompareValues(), L"Off\n\rOn\n\r");
}

TEST_F(DifferencesTest, BothGroupsAreOrderedByAscendingId) {
    WriteFunctions(NamedFunction(300, "C", LeadingGroup) + NamedFunction(40, "B", LeadingGroup) +
                   NamedFunction(5, "A", LeadingGroup) + NamedFunction(200, "F") + NamedFunction(30, "E") +
                   NamedFunction(4, "D"));
    StoreDifferent({40, 200, 4, 5, 30, 300});
    EXPECT_EQ(CompareNames(), L"- A\n\r- B\n\r- C\n\r- D\n\r- E\n\r- F\n\r");
}

TEST_F(DifferencesTest, LeadingGroupMayContainAllFunctions) {
    WriteFunctions(NamedFunction(2, "Dim", LeadingGroup) + NamedFunction(1, "Sound", LeadingGroup));
    StoreDifferent({1, 2});
    EXPECT_EQ(CompareNames(), L"- Sound\n\r- Dim\n\r");
}

class NonLeadingGroupTest : public DifferencesTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(NonLeadingGroupTest, OtherGroupIsNotListedFirst) {
    WriteFunctions(NamedFunction(1, "Dim") + NamedFunction(2, "Sound", GetParam().xml));
    StoreDifferent({1, 2});
    EXPECT_EQ(CompareNames(), L"- Dim\n\r- Sound\n\r");
}

INSTANTIATE_TEST_SUITE_P(Groups, NonLeadingGroupTest,
                         testing::Values(XmlCase{"None", ""}, XmlCase{"LowerCase", "group1name"},
                                         XmlCase{"UpperCase", "GROUP1NAME"},
                                         XmlCase{"LeadingSpace", " Group1Name"},
                                         XmlCase{"TrailingSpace", "Group1Name "},
                                         XmlCase{"Shorter", "Group1Nam"}, XmlCase{"Longer", "Group1Name2"},
                                         XmlCase{"OtherNumber", "Group2Name"}),
                         CaseName<XmlCase>);

TEST_F(DifferencesTest, GroupIsComparedBeforeTranslation) {
    WriteFunctions(NamedFunction(1, "Dim", "Displays") + NamedFunction(2, "Sound", LeadingGroup));
    StoreDifferent({1, 2});
    Translate({{"Displays", "Group1Name"}, {"Group1Name", "Other"}});
    EXPECT_EQ(CompareNames(), L"- Sound\n\r- Dim\n\r");
}

TEST_F(DifferencesTest, FunctionWithoutGroupInheritsPreviousGroup) {
    WriteFunctions(NamedFunction(3, "Sound", LeadingGroup) +
                   FunctionWith(4, {.attributes = R"(Name="Rate")"}) + NamedFunction(1, "Dim"));
    StoreDifferent({1, 3, 4});
    EXPECT_EQ(CompareNames(), L"- Sound\n\r- Rate\n\r- Dim\n\r");
}

// ---- Null buffers ----

TEST_F(DifferencesTest, NullNamesBufferFailsButValuesAreWritten) {
    WriteDifferentDim();
    Translate({{"AcOn", "On"}});
    GuardedBuffer values;
    EXPECT_FALSE(Dll().GetDiffFuncList(&Balanced, &HighPerformance, Ac, nullptr, values.text));
    EXPECT_EQ(TextIn(values), L"On\n\r");
}

TEST_F(DifferencesTest, NullValuesBufferFailsButNamesAreWritten) {
    WriteDifferentDim();
    GuardedBuffer names;
    EXPECT_FALSE(Dll().GetDiffFuncList(&Balanced, &HighPerformance, Ac, names.text, nullptr));
    EXPECT_EQ(TextIn(names), L"- Dim\n\r");
}

TEST_F(DifferencesTest, EqualSchemesLeaveOtherBufferUnchanged) {
    WriteDimAt(0);
    GuardedBuffer buffer;
    EXPECT_FALSE(Dll().GetDiffFuncList(&Balanced, &HighPerformance, Ac, buffer.text, nullptr));
    EXPECT_FALSE(Dll().GetDiffFuncList(&Balanced, &HighPerformance, Ac, nullptr, buffer.text));
    EXPECT_EQ(TextIn(buffer), L"untouched");
}

TEST_F(DifferencesTest, NullBuffersStillStoreBothSchemes) {
    WriteDifferentDefaults();
    EXPECT_FALSE(Dll().GetDiffFuncList(&Balanced, &HighPerformance, Ac, nullptr, nullptr));
    EXPECT_EQ(UserSettings(), SavedXml{BothAdopted()});
}

TEST_F(DifferencesTest, NullBuffersStillTranslateNames) {
    WriteDifferentDim();
    Translate({{"Dim", "Dark"}, {"Dark", "Black"}});
    EXPECT_FALSE(Dll().GetDiffFuncList(&Balanced, &HighPerformance, Dc, nullptr, nullptr));
    EXPECT_EQ(CompareNames(), L"- Black\n\r");
}

// ---- Loading the schemes ----

TEST_F(DifferencesTest, BothMissingSchemesAreAdoptedAndStored) {
    WriteDifferentDefaults();
    EXPECT_EQ(CompareNames(), L"- Dim\n\r");
    EXPECT_EQ(UserSettings(), SavedXml{BothAdopted()});
}

TEST_F(DifferencesTest, BothIncompleteSchemesAreCompletedAndStored) {
    WriteFunctions(NamedFunction(1, "Dim") +
                   FunctionWith(2, {.attributes = R"(Name="Sound")",
                                    .defaultItems = DefaultItem(BalancedText, {3, 3})}));
    Store(OldFunction(1, 0, 0), OldFunction(1, 0, 0));
    EXPECT_EQ(CompareNames(), L"- Sound\n\r");
    EXPECT_EQ(
        UserSettings(),
        SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(1, 0, 0) + OldFunction(2, 3, 3)) +
                             OldScheme(HighPerformanceText, OldFunction(1, 0, 0) + NewFunction(2, 0, 0)))});
}

TEST_F(DifferencesTest, FailedFirstSchemeSkipsSecondScheme) {
    WriteFunctions(
        FunctionWith(1, {.defaultItems = "<DefaultItem GUID=\"" + std::string{BalancedText} + "\"/>"}));
    EXPECT_EQ(Compare(), None);
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(DifferencesTest, FailedSecondSchemeYieldsNoDifferences) {
    WriteFunctions(FunctionWith(
        1, {.defaultItems = "<DefaultItem GUID=\"" + std::string{HighPerformanceText} + "\"/>"}));
    EXPECT_EQ(Compare(), None);
    EXPECT_EQ(UserSettings(), SavedXml{NewUserFile(NewScheme(BalancedText, NewFunction(1, 0, 0)))});
}

// A function without "ID" cannot be matched, so the completed scheme cannot be stored.
TEST_F(DifferencesTest, SchemeThatCannotBeStoredYieldsNoDifferences) {
    const std::string nameless = R"(<Function ACParamIndex="0" DCParamIndex="0"/>)";
    WriteFunctions(NamedFunction(1, "Dim") + NamedFunction(2, "Sound"));
    Store(OldFunction(1, 0, 0) + nameless, OldFunction(1, 1, 1) + OldFunction(2, 0, 0));
    EXPECT_EQ(Compare(Ac, Balanced, HighPerformance), None);
    EXPECT_EQ(Compare(Ac, HighPerformance, Balanced), None);
}

TEST_F(DifferencesTest, MissingCatalogueYieldsNoDifferences) {
    StoreDifferent({1});
    EXPECT_EQ(Compare(), None);
}

TEST_F(DifferencesTest, BusyFileStillYieldsDifferences) {
    WriteDifferentDefaults();
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_EQ(CompareNames(), L"- Dim\n\r");
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(DifferencesTest, CallAfterExitYieldsAndStoresNothing) {
    WriteDifferentDefaults();
    EXPECT_EQ(Dll().GetFuncCount(), 1u);
    EXPECT_TRUE(Dll().ZOTDamExit());
    EXPECT_EQ(Compare(), None);
    EXPECT_FALSE(HasUserSettings());
}

}  // namespace ZOTDam::Test
