// Tests of the functions 7 and 8, which switch between two refresh rates and are hidden if the display does
// not support both. The first two AC items are the rates, so reading the items' options is tested here too.
#include <climits>
#include <cstring>

#include "support/FakeDisplay.h"
#include "support/FunctionMarkup.h"
#include "support/NumberTexts.h"

namespace ZOTDam::Test {

namespace {

// Returns a function with the given display items and the default {1, 2}.
std::string RateFunction(std::int32_t id, const std::string& acItems, const std::string& dcItems = {}) {
    return FunctionWith(id, {.acItems = acItems, .dcItems = dcItems, .defaults = {1, 2}});
}

std::string PlainFunction(std::int32_t id) {
    return RateFunction(id, "");
}

}  // namespace

class RefreshRateTest : public SettingsTest {
protected:
    FakeDisplay& Display(const std::vector<DWORD>& rates) { return display.emplace(Dll().Handle(), rates); }

    // Returns whether function 7, which the scheme contains, is shown.
    bool IsShown(const std::string& acItems, const std::vector<DWORD>& rates) {
        return AreShown(RateFunction(7, acItems), rates);
    }

    bool AreShown(const std::string& functions, const std::vector<DWORD>& rates) {
        Display(rates);
        WriteFunctions(functions);
        WriteBalanced(OldFunction(7, 1, 2));
        return GetParameter(Balanced) == Params{{7, {1, 2}}};
    }

    // Returns the parameters of a stored scheme, completed if necessary, on a display with only 60 Hz.
    Params OnA60HzDisplay(const std::string& functions, const std::string& stored) {
        Display({60});
        WriteFunctions(functions);
        WriteBalanced(stored);
        return GetParameter(Balanced);
    }

    void TearDown() override { display.reset(); }

    std::optional<FakeDisplay> display;
};

// ---- Which functions are hidden ----

TEST_F(RefreshRateTest, FunctionIsShownIfDisplaySupportsBothRates) {
    EXPECT_TRUE(IsShown(Options({"60", "48"}), {60, 48}));
}

TEST_F(RefreshRateTest, MissingSecondRateHidesFunction) {
    EXPECT_FALSE(IsShown(Options({"60", "48"}), {60, 59}));
}

TEST_F(RefreshRateTest, MissingFirstRateHidesFunction) {
    EXPECT_FALSE(IsShown(Options({"60", "48"}), {48, 75}));
}

TEST_F(RefreshRateTest, DisplayWithoutModesHidesFunction) {
    EXPECT_FALSE(IsShown(Options({"60", "60"}), {}));
}

TEST_F(RefreshRateTest, BothRateFunctionsCanBeHidden) {
    const std::string rates = Options({"60", "48"});
    EXPECT_EQ(OnA60HzDisplay(RateFunction(7, rates) + RateFunction(8, rates),
                             OldFunction(1, 3, 4) + OldFunction(7, 3, 4) + OldFunction(8, 3, 4)),
              (Params{{1, {3, 4}}}));
}

TEST_F(RefreshRateTest, EachFunctionIsCheckedWithItsOwnRates) {
    EXPECT_EQ(OnA60HzDisplay(RateFunction(7, Options({"60", "48"})) + RateFunction(8, Options({"60", "60"})),
                             OldFunction(7, 3, 4) + OldFunction(8, 3, 4)),
              (Params{{8, {3, 4}}}));
}

TEST_F(RefreshRateTest, RatesAreFoundInAnyModeOrder) {
    EXPECT_TRUE(IsShown(Options({"60", "48"}), {75, 48, 100, 60}));
}

TEST_F(RefreshRateTest, RatesCanComeFromDifferentModes) {
    EXPECT_TRUE(IsShown(Options({"60", "48"}), {60, 75, 75, 48}));
}

TEST_F(RefreshRateTest, OneModeCanMatchBothRates) {
    EXPECT_TRUE(IsShown(Options({"60", "58"}), {59}));
}

TEST_F(RefreshRateTest, RateOfThirdItemIsNotRequired) {
    EXPECT_TRUE(IsShown(Options({"60", "48", "144"}), {60, 48}));
}

TEST_F(RefreshRateTest, RateOfThirdItemDoesNotReplaceSecond) {
    EXPECT_FALSE(IsShown(Options({"60", "48", "144"}), {60, 144}));
}

TEST_F(RefreshRateTest, DefaultsAreNotHidden) {
    Display({60});
    WriteFunctions(RateFunction(7, Options({"60", "48"})));
    EXPECT_EQ(GetParameterDefault(Balanced), (Params{{7, {1, 2}}}));
    EXPECT_TRUE(display->Calls().empty());
}

struct DifferenceCase {
    std::string name;
    std::int32_t option;
    DWORD rate;
    bool matches;
};

void PrintTo(const DifferenceCase& difference, std::ostream* out) {
    *out << difference.option << " and a mode of " << difference.rate << " Hz";
}

class RateDifferenceTest : public RefreshRateTest, public testing::WithParamInterface<DifferenceCase> {};

TEST_P(RateDifferenceTest, RatesMatchIfDifferenceIsAtMostOne) {
    const std::string option = std::to_string(GetParam().option);
    EXPECT_EQ(IsShown(Options({option, option}), {GetParam().rate}), GetParam().matches);
}

INSTANTIATE_TEST_SUITE_P(
    Rates, RateDifferenceTest,
    testing::Values(DifferenceCase{"Same", 60, 60, true}, DifferenceCase{"OneLess", 60, 59, true},
                    DifferenceCase{"OneMore", 60, 61, true}, DifferenceCase{"TwoLess", 60, 58, false},
                    DifferenceCase{"TwoMore", 60, 62, false}, DifferenceCase{"ZeroAndOne", 0, 1, true},
                    DifferenceCase{"ZeroAndTwo", 0, 2, false}, DifferenceCase{"OneAndZero", 1, 0, true},
                    DifferenceCase{"OppositeSigns", -60, 60, false}),
    CaseName<DifferenceCase>);

// The difference of two rates wraps around at 32 bits.
INSTANTIATE_TEST_SUITE_P(
    Wrapping, RateDifferenceTest,
    testing::Values(DifferenceCase{"MinusOneAndZero", -1, 0, true},
                    DifferenceCase{"MinusOneAndTheLastRate", -1, 0xFFFFFFFF, true},
                    DifferenceCase{"ZeroAndTheLastRate", 0, 0xFFFFFFFF, true},
                    DifferenceCase{"OneAndTheLastRate", 1, 0xFFFFFFFF, false},
                    DifferenceCase{"LargestAndItself", INT_MAX, 0x7FFFFFFF, true},
                    DifferenceCase{"LargestAndTheNext", INT_MAX, 0x80000000, true},
                    DifferenceCase{"LargestAndTheNextButOne", INT_MAX, 0x80000001, false},
                    DifferenceCase{"SmallestAndItself", INT_MIN, 0x80000000, true},
                    DifferenceCase{"SmallestAndTheOneBefore", INT_MIN, 0x7FFFFFFF, true},
                    DifferenceCase{"SmallestAndTheOneBeforeThat", INT_MIN, 0x7FFFFFFE, false},
                    DifferenceCase{"SmallestAndOne", INT_MIN, 1, false}),
    CaseName<DifferenceCase>);

// ---- Queries to the display ----

TEST_F(RefreshRateTest, PrimaryDisplayIsQueried) {
    IsShown(Options({"60", "48"}), {60, 48});
    for (const FakeDisplay::Call& call : display->Calls())
        EXPECT_EQ(call.device, L"");
}

TEST_F(RefreshRateTest, MissingRateQueriesEveryMode) {
    IsShown(Options({"60", "48"}), {60, 75, 100});
    EXPECT_EQ(display->QueriedNumbers(), (std::vector<DWORD>{0, 1, 2, 3}));
}

TEST_F(RefreshRateTest, QueriesStopWhenBothRatesAreFound) {
    IsShown(Options({"60", "48"}), {60, 48, 75});
    EXPECT_EQ(display->QueriedNumbers(), (std::vector<DWORD>{0, 1}));
}

TEST_F(RefreshRateTest, QueriesStopAtModeMatchingBothRates) {
    IsShown(Options({"60", "60"}), {60, 48, 75});
    EXPECT_EQ(display->QueriedNumbers(), (std::vector<DWORD>{0}));
}

TEST_F(RefreshRateTest, ModesAreQueriedPerFunctionByAscendingId) {
    OnA60HzDisplay(RateFunction(8, Options({"60", "60"})) + RateFunction(7, Options({"60", "48"})),
                   OldFunction(7, 3, 4) + OldFunction(8, 3, 4));
    EXPECT_EQ(display->QueriedNumbers(), (std::vector<DWORD>{0, 1, 0}));
}

TEST_F(RefreshRateTest, EachCallQueriesModesAgain) {
    EXPECT_TRUE(IsShown(Options({"60", "48"}), {60, 48}));
    display.reset();
    Display({60});
    EXPECT_EQ(GetParameter(Balanced), Params{});
}

// The size stays 0, because drivers use it to decide which fields to fill, and some return other modes for
// another size.
TEST_F(RefreshRateTest, FirstQueryPerFunctionPassesZeroedStructure) {
    OnA60HzDisplay(RateFunction(7, Options({"60", "48"})) + RateFunction(8, Options({"60", "48"})),
                   OldFunction(7, 3, 4) + OldFunction(8, 3, 4));
    ASSERT_EQ(display->QueriedNumbers(), (std::vector<DWORD>{0, 1, 0, 1}));
    const DEVMODEW zeros = {};
    for (const std::size_t first : {0, 2}) {
        const DEVMODEW& received = display->Calls()[first].received;
        EXPECT_EQ(received.dmSize, 0);
        EXPECT_EQ(std::memcmp(&received, &zeros, sizeof zeros), 0);
    }
}

TEST_F(RefreshRateTest, StructureIsNotClearedBetweenModes) {
    IsShown(Options({"60", "48"}), {60, 75, 100});
    const auto& calls = display->Calls();
    ASSERT_EQ(calls.size(), 4u);
    for (std::size_t i = 1; i < calls.size(); ++i) {
        EXPECT_EQ(calls[i].structure, calls[0].structure);
        EXPECT_EQ(calls[i].received.dmSize, 0);
        EXPECT_EQ(calls[i].received.dmPelsWidth, 999 + i);
    }
    EXPECT_EQ(calls[3].received.dmDisplayFrequency, 100u);
}

TEST_F(RefreshRateTest, ModeWithoutRateInheritsPreviousRate) {
    EXPECT_FALSE(IsShown(Options({"60", "0"}), {60, FakeDisplay::UnsetRate}));
}

// ---- Which functions are checked ----

struct UnjudgedCase {
    std::string name;
    std::int32_t id;
    std::string acItems;
    std::string dcItems;
};

void PrintTo(const UnjudgedCase& unjudged, std::ostream* out) {
    *out << RateFunction(unjudged.id, unjudged.acItems, unjudged.dcItems);
}

class UncheckedFunctionTest : public RefreshRateTest, public testing::WithParamInterface<UnjudgedCase> {};

TEST_P(UncheckedFunctionTest, FunctionIsShownWithoutQueryingDisplay) {
    const auto& [name, id, acItems, dcItems] = GetParam();
    EXPECT_EQ(OnA60HzDisplay(RateFunction(id, acItems, dcItems), OldFunction(id, 3, 4)),
              (Params{{id, {3, 4}}}));
    EXPECT_TRUE(display->Calls().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Functions, UncheckedFunctionTest,
    testing::Values(UnjudgedCase{"Id6", 6, Options({"60", "48"}), ""},
                    UnjudgedCase{"Id9", 9, Options({"60", "48"}), ""},
                    UnjudgedCase{"Id0", 0, Options({"60", "48"}), ""},
                    UnjudgedCase{"Id78", 78, Options({"60", "48"}), ""}, UnjudgedCase{"NoItems", 7, "", ""},
                    UnjudgedCase{"OneAcItem", 7, Options({"48"}), ""},
                    UnjudgedCase{"OneAcItemAndTwoDcItems", 8, Options({"48"}), Options({"60", "48"})},
                    UnjudgedCase{"DcItemsOnly", 8, "", Options({"60", "48"})}),
    CaseName<UnjudgedCase>);

TEST_F(RefreshRateTest, DcItemsDoNotAffectVisibility) {
    EXPECT_TRUE(AreShown(RateFunction(7, Options({"60", "60"}), Options({"60", "48"})), {60}));
}

// ---- Options of the AC items ----

TEST_F(RefreshRateTest, ItemWithoutOptionInheritsPreviousOption) {
    EXPECT_TRUE(IsShown(R"(<DisplayItem Option="48"/><DisplayItem Label="x"/>)", {48}));
}

TEST_F(RefreshRateTest, FirstItemWithoutOptionHasOptionZero) {
    EXPECT_TRUE(IsShown(R"(<DisplayItem/><DisplayItem Option="48"/>)", {0, 48}));
    EXPECT_EQ(display->QueriedNumbers(), (std::vector<DWORD>{0, 1}));
}

TEST_F(RefreshRateTest, AllItemsWithoutOptionHaveOptionZero) {
    EXPECT_FALSE(IsShown("<DisplayItem/><DisplayItem/>", {60}));
}

TEST_F(RefreshRateTest, OptionIsNotInheritedFromPreviousFunction) {
    EXPECT_EQ(OnA60HzDisplay(RateFunction(7, Options({"60", "60"}), Options({"60"})) +
                                 RateFunction(8, R"(<DisplayItem/><DisplayItem Option="60"/>)"),
                             OldFunction(7, 3, 4) + OldFunction(8, 3, 4)),
              (Params{{7, {3, 4}}}));
}

TEST_F(RefreshRateTest, ItemsAreNotInheritedFromPreviousFunction) {
    EXPECT_EQ(OnA60HzDisplay(RateFunction(7, Options({"60", "60"})) + RateFunction(8, Options({"48"})),
                             OldFunction(7, 3, 4) + OldFunction(8, 3, 4)),
              (Params{{7, {3, 4}}, {8, {3, 4}}}));
}

TEST_F(RefreshRateTest, FunctionWithoutAcInheritsNoItems) {
    EXPECT_EQ(OnA60HzDisplay(RateFunction(7, Options({"60", "48"})) + Function(8),
                             OldFunction(7, 3, 4) + OldFunction(8, 3, 4)),
              (Params{{8, {3, 4}}}));
}

TEST_F(RefreshRateTest, FirstFunctionWithSameIdProvidesRates) {
    EXPECT_TRUE(
        AreShown(RateFunction(7, Options({"60", "60"})) + RateFunction(7, Options({"60", "48"})), {60}));
    EXPECT_EQ(display->QueriedNumbers(), (std::vector<DWORD>{0}));
}

TEST_F(RefreshRateTest, FirstAcListProvidesRates) {
    EXPECT_TRUE(AreShown("<Function ID=\"7\"><Display><AC>" + Options({"60", "60"}) + "</AC><AC>" +
                             Options({"48", "48"}) + "</AC></Display><Commands/></Function>",
                         {60}));
}

TEST_F(RefreshRateTest, FirstDisplayElementProvidesRates) {
    EXPECT_TRUE(AreShown("<Function ID=\"7\"><Display><AC>" + Options({"60", "60"}) +
                             "</AC></Display><Display><AC>" + Options({"48", "48"}) +
                             "</AC></Display><Commands/></Function>",
                         {60}));
}

TEST_F(RefreshRateTest, OtherNodesAreNotDisplayItems) {
    EXPECT_TRUE(IsShown(R"(text<!--<DisplayItem Option="48"/>--><DisplayItem Option="60"/>
        <?DisplayItem Option="48"?><![CDATA[<DisplayItem Option="48"/>]]>
        <DisplayItem xmlns="urn:other" Option="48"/><o:DisplayItem xmlns:o="urn:other" Option="48"/>
        <displayitem Option="48"/><Group><DisplayItem Option="48"/></Group>
        <DisplayItem option="48" Option="60"><DisplayItem Option="48"/></DisplayItem>)",
                        {60}));
    EXPECT_EQ(display->QueriedNumbers(), (std::vector<DWORD>{0}));
}

class OptionNumberTest : public RefreshRateTest, public testing::WithParamInterface<NumberText> {};

TEST_P(OptionNumberTest, OptionIsUsedAsRate) {
    const auto& [name, text, value] = GetParam();
    const auto rate = static_cast<DWORD>(value);
    EXPECT_TRUE(IsShown(Options({text, "1000"}), {rate, 1000}));
    EXPECT_EQ(display->QueriedNumbers(), (std::vector<DWORD>{0, 1}));
}

TEST_P(OptionNumberTest, RatesThatDifferByTwoDoNotMatch) {
    const auto& [name, text, value] = GetParam();
    const auto rate = static_cast<DWORD>(value);
    EXPECT_FALSE(IsShown(Options({text, text}), {rate - 2, rate + 2}));
}

INSTANTIATE_TEST_SUITE_P(Numbers, OptionNumberTest, testing::ValuesIn(NumberTexts()), CaseName<NumberText>);

// ---- Hidden functions and the user settings ----

TEST_F(RefreshRateTest, DefaultsOfHiddenFunctionAreStored) {
    Display({60});
    WriteFunctions(PlainFunction(1) + RateFunction(7, Options({"60", "48"})));
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {1, 2}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{NewUserFile(NewScheme(BalancedText, NewFunction(1, 1, 2) + NewFunction(7, 1, 2)))});
}

TEST_F(RefreshRateTest, StoredHiddenFunctionStaysInFile) {
    OnA60HzDisplay(PlainFunction(1) + RateFunction(7, Options({"60", "48"})),
                   OldFunction(1, 3, 4) + OldFunction(7, 3, 4));
    EXPECT_EQ(UserSettings(),
              SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(1, 3, 4) + OldFunction(7, 3, 4)))});
}

TEST_F(RefreshRateTest, CompletedHiddenFunctionIsNotStored) {
    EXPECT_EQ(OnA60HzDisplay(PlainFunction(2) + RateFunction(7, Options({"60", "48"})) +
                                 RateFunction(8, Options({"60", "60"})) + PlainFunction(9),
                             OldFunction(1, 3, 4)),
              (Params{{1, {3, 4}}, {2, {1, 2}}, {8, {1, 2}}, {9, {1, 2}}}));
    EXPECT_EQ(
        UserSettings(),
        SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(1, 3, 4) + NewFunction(2, 1, 2) +
                                                         NewFunction(8, 1, 2) + NewFunction(9, 1, 2)))});
}

TEST_F(RefreshRateTest, FileIsSavedIfCompletedFunctionsAreHidden) {
    Display({60});
    WriteFunctions(RateFunction(7, Options({"60", "48"})));
    WriteUserSettings(R"(<OrloPowerCfg>
        <PowerSchemes><PowerScheme GUID="381b4222-f694-41f0-9685-ff5bb260df2e">
            <Function ID="1" ACParamIndex="+3" DCParamIndex="04"></Function>
        </PowerScheme></PowerSchemes></OrloPowerCfg>)");
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {3, 4}}}));
    EXPECT_EQ(UserSettings(), SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(1, 3, 4)))});
}

TEST_F(RefreshRateTest, CompletionEndsOnceAllFunctionsAreHidden) {
    const std::string stored = OldFunction(7, 3, 4);
    EXPECT_EQ(OnA60HzDisplay(RateFunction(7, Options({"60", "48"})) + PlainFunction(9), stored), Params{});
    EXPECT_EQ(UserSettings(), SavedXml{OldUserFile(OldScheme(BalancedText, stored))});
}

TEST_F(RefreshRateTest, CompletionContinuesWhileVisibleFunctionsRemain) {
    EXPECT_EQ(OnA60HzDisplay(PlainFunction(1) + RateFunction(7, Options({"60", "48"})) + PlainFunction(9),
                             OldFunction(7, 3, 4)),
              (Params{{1, {1, 2}}, {9, {1, 2}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{OldUserFile(OldScheme(
                  BalancedText, OldFunction(7, 3, 4) + NewFunction(1, 1, 2) + NewFunction(9, 1, 2)))});
}

TEST_F(RefreshRateTest, ChecksContinueOnceAllFunctionsAreHidden) {
    const std::string rates = Options({"60", "48"});
    OnA60HzDisplay(RateFunction(7, rates) + RateFunction(8, rates), OldFunction(7, 3, 4));
    EXPECT_EQ(display->QueriedNumbers(), (std::vector<DWORD>{0, 1, 0, 1}));
}

TEST_F(RefreshRateTest, DisplayIsQueriedForEmptyScheme) {
    EXPECT_EQ(OnA60HzDisplay(RateFunction(7, Options({"60", "48"})), ""), Params{});
    EXPECT_EQ(display->QueriedNumbers(), (std::vector<DWORD>{0, 1}));
}

TEST_F(RefreshRateTest, SchemeIsUnchangedIfAllFunctionsAreHidden) {
    const std::string rates = Options({"60", "48"});
    EXPECT_EQ(OnA60HzDisplay(RateFunction(7, rates) + RateFunction(8, rates), OldFunction(8, 3, 4)),
              Params{});
    EXPECT_EQ(UserSettings(), SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(8, 3, 4)))});
}

TEST_F(RefreshRateTest, FunctionMissingInCatalogueIsNotHidden) {
    EXPECT_EQ(OnA60HzDisplay(PlainFunction(1), OldFunction(1, 3, 4) + OldFunction(7, 3, 4)),
              (Params{{1, {3, 4}}, {7, {3, 4}}}));
    EXPECT_TRUE(display->Calls().empty());
}

}  // namespace ZOTDam::Test
