// Tests of TEVGetParam, which loads the parameters of a scheme, and of GetFuncCurValue, which returns the
// options that they select for one function.
#include <array>
#include <climits>
#include <cstdlib>

#include "support/FakeDisplay.h"
#include "support/FunctionMarkup.h"

namespace ZOTDam::Test {

namespace {

// A function with options. The digits of an option are the function, the power source and the position:
// function 1 has 110, 111 and 112 for AC, and 120, 121 and 122 for DC.
FunctionParts OptionParts(std::int32_t id, const ParamValue& defaults = {}) {
    const std::string digits = std::to_string(id);
    return {.acItems = Options({digits + "10", digits + "11", digits + "12"}),
            .dcItems = Options({digits + "20", digits + "21", digits + "22"}),
            .defaults = defaults};
}

std::string OptionFunction(std::int32_t id, const ParamValue& defaults = {}) {
    return FunctionWith(id, OptionParts(id, defaults));
}

// A refresh-rate function that a display with only 60 Hz does not support.
std::string UnsupportedRateFunction(std::int32_t id, const ParamValue& defaults = {}) {
    return FunctionWith(
        id, {.acItems = Options({"60", "48"}), .dcItems = Options({"61", "49"}), .defaults = defaults});
}

void* NoMemory(std::size_t) {
    return nullptr;
}

}  // namespace

class CurrentValuesTest : public SettingsTest {
protected:
    // The id and the two options.
    using Values = std::array<std::uint32_t, 3>;
    static constexpr Values Untouched = {91, 92, 93};

    // Reads into a record that already contains other values.
    Values CurrentValue(std::uint32_t position) { return Read(position, true); }

    void ExpectNoValue(std::uint32_t position) { EXPECT_EQ(Read(position, false), Untouched) << position; }

    // Stores a scheme with the given values and loads it.
    void Load(const std::string& functions, const std::string& stored) {
        WriteFunctions(functions);
        WriteBalanced(stored);
        EXPECT_TRUE(Dll().TEVGetParam(&Balanced));
    }

    // Loads the defaults of a scheme that is not stored.
    void LoadDefaults(const std::string& functions) {
        WriteFunctions(functions);
        EXPECT_TRUE(Dll().TEVGetParam(&Balanced));
    }

    // Loads a scheme and hides its function 7, the second function of the catalogue.
    void LoadWithHiddenFunction() {
        const FakeDisplay display{Dll().Handle(), {60}};
        Load(OptionFunction(1) + UnsupportedRateFunction(7), OldFunction(1, 1, 1) + OldFunction(7, 1, 1));
    }

private:
    Values Read(std::uint32_t position, bool expectedResult) {
        FuncCurValue value = {Untouched[0], Untouched[1], Untouched[2]};
        EXPECT_EQ(Dll().GetFuncCurValue(position, &value), expectedResult) << position;
        return {value.FunctionId, value.ACValue, value.DCValue};
    }
};

// ---- The options ----

TEST_F(CurrentValuesTest, StoredPositionsSelectOptions) {
    Load(OptionFunction(1), OldFunction(1, 2, 1));
    EXPECT_EQ(CurrentValue(0), (Values{1, 112, 121}));
}

TEST_F(CurrentValuesTest, StoredPositionsOverrideDefaults) {
    Load(OptionFunction(1, {1, 1}), OldFunction(1, 2, 0));
    EXPECT_EQ(CurrentValue(0), (Values{1, 112, 120}));
}

TEST_F(CurrentValuesTest, FunctionMissingFromSchemeUsesDefaults) {
    Load(OptionFunction(1) + OptionFunction(2, {1, 2}), OldFunction(1, 2, 0));
    EXPECT_EQ(CurrentValue(1), (Values{2, 211, 222}));
}

TEST_F(CurrentValuesTest, UnstoredSchemeUsesDefaults) {
    LoadDefaults(OptionFunction(1, {1, 2}));
    EXPECT_EQ(CurrentValue(0), (Values{1, 111, 122}));
}

TEST_F(CurrentValuesTest, NegativeOptionsAreReturned) {
    LoadDefaults(FunctionWith(1, {.acItems = Options({"-1"}), .dcItems = Options({"-2147483648"})}));
    EXPECT_EQ(CurrentValue(0), (Values{1, 0xFFFFFFFF, 0x80000000}));
}

TEST_F(CurrentValuesTest, ZeroOptionsAreReturned) {
    LoadDefaults(FunctionWith(1, {.acItems = "<DisplayItem/>", .dcItems = Options({"0"})}));
    EXPECT_EQ(CurrentValue(0), (Values{1, 0, 0}));
}

struct IndexCase {
    std::string name;
    std::int32_t index;
};

void PrintTo(const IndexCase& index, std::ostream* out) {
    *out << index.index;
}

class InvalidOptionIndexTest : public CurrentValuesTest, public testing::WithParamInterface<IndexCase> {};

TEST_P(InvalidOptionIndexTest, InvalidAcIndexLeavesAcValueUnchanged) {
    Load(OptionFunction(1), OldFunction(1, GetParam().index, 1));
    EXPECT_EQ(CurrentValue(0), (Values{1, Untouched[1], 121}));
}

TEST_P(InvalidOptionIndexTest, InvalidDcIndexLeavesDcValueUnchanged) {
    Load(OptionFunction(1), OldFunction(1, 1, GetParam().index));
    EXPECT_EQ(CurrentValue(0), (Values{1, 111, Untouched[2]}));
}

TEST_P(InvalidOptionIndexTest, InvalidIndicesLeaveBothValuesUnchanged) {
    Load(OptionFunction(1), OldFunction(1, GetParam().index, GetParam().index));
    EXPECT_EQ(CurrentValue(0), (Values{1, Untouched[1], Untouched[2]}));
}

INSTANTIATE_TEST_SUITE_P(Indices, InvalidOptionIndexTest,
                         testing::Values(IndexCase{"PastLast", 3}, IndexCase{"Maximum", INT_MAX},
                                         IndexCase{"Negative", -1}, IndexCase{"Minimum", INT_MIN}),
                         CaseName<IndexCase>);

TEST_F(CurrentValuesTest, PowerSourceWithoutItemsLeavesItsValueUnchanged) {
    LoadDefaults(FunctionWith(1, {.dcItems = Options({"20"})}) +
                 FunctionWith(2, {.acItems = Options({"10"})}));
    EXPECT_EQ(CurrentValue(0), (Values{1, Untouched[1], 20}));
    EXPECT_EQ(CurrentValue(1), (Values{2, 10, Untouched[2]}));
}

// ---- The position ----

TEST_F(CurrentValuesTest, PositionsCountFunctionsByAscendingId) {
    LoadDefaults(OptionFunction(300) + OptionFunction(4) + OptionFunction(20));
    EXPECT_EQ(CurrentValue(0), (Values{4, 410, 420}));
    EXPECT_EQ(CurrentValue(1), (Values{20, 2010, 2020}));
    EXPECT_EQ(CurrentValue(2), (Values{300, 30010, 30020}));
    ExpectNoValue(3);
}

TEST_F(CurrentValuesTest, PositionsCountCatalogueAndNotScheme) {
    Load(OptionFunction(5) + OptionFunction(10),
         OldFunction(-1, 0, 0) + OldFunction(7, 0, 0) + OldFunction(10, 1, 1) + OldFunction(99, 0, 0));
    EXPECT_EQ(CurrentValue(0), (Values{5, 510, 520}));
    EXPECT_EQ(CurrentValue(1), (Values{10, 1011, 1021}));
    ExpectNoValue(2);
}

TEST_F(CurrentValuesTest, FirstFunctionWithSameIdProvidesValues) {
    LoadDefaults(OptionFunction(1) + FunctionWith(1, OptionParts(9)) + OptionFunction(2));
    EXPECT_EQ(CurrentValue(0), (Values{1, 110, 120}));
    EXPECT_EQ(CurrentValue(1), (Values{2, 210, 220}));
    ExpectNoValue(2);
}

TEST_F(CurrentValuesTest, SingleFunctionIsAtPositionZeroOnly) {
    LoadDefaults(OptionFunction(1));
    EXPECT_EQ(CurrentValue(0), (Values{1, 110, 120}));
    for (const std::uint32_t position : {1u, 2u, 0x7FFFFFFFu, 0x80000000u, 0x80000001u, 0xFFFFFFFFu})
        ExpectNoValue(position);
}

TEST_F(CurrentValuesTest, PositionPastLastFunctionFails) {
    LoadDefaults(OptionFunction(1) + OptionFunction(2));
    for (const std::uint32_t position : {2u, 3u, 0x7FFFFFFFu})
        ExpectNoValue(position);
}

TEST_F(CurrentValuesTest, NegativePositionSelectsFirstOfTwoFunctions) {
    LoadDefaults(OptionFunction(2) + OptionFunction(1));
    for (const std::uint32_t position : {0x80000000u, 0x80000001u, 0xFFFFFFFEu, 0xFFFFFFFFu})
        EXPECT_EQ(CurrentValue(position), (Values{1, 110, 120})) << position;
}

TEST_F(CurrentValuesTest, NegativePositionSelectsFirstOfManyFunctions) {
    std::string functions;
    for (std::int32_t id = 1; id <= 100; ++id)
        functions += OptionFunction(id);
    LoadDefaults(functions);
    EXPECT_EQ(CurrentValue(99), (Values{100, 10010, 10020}));
    ExpectNoValue(100);
    for (const std::uint32_t position : {0x80000000u, 0xFFFFFFFFu})
        EXPECT_EQ(CurrentValue(position), (Values{1, 110, 120})) << position;
}

TEST_F(CurrentValuesTest, EmptyCatalogueHasNoValues) {
    Load("", OldFunction(1, 0, 0));
    for (const std::uint32_t position : {0u, 1u, 0x80000000u, 0xFFFFFFFFu})
        ExpectNoValue(position);
}

// The catalogue requires "Commands", but the default parameters do not.
TEST_F(CurrentValuesTest, LoadedDefaultsWithoutCatalogueHaveNoValues) {
    LoadDefaults(R"(<Function ID="1"><Display/><Default ACParamIndex="2" DCParamIndex="3"/></Function>)");
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
    EXPECT_FALSE(HasUserSettings());
    for (const std::uint32_t position : {0u, 1u, 0x80000000u, 0xFFFFFFFFu})
        ExpectNoValue(position);
}

// ---- The id ----

TEST_F(CurrentValuesTest, FunctionEightReportsIdSeven) {
    const FakeDisplay display{Dll().Handle(), {60, 48}};
    LoadDefaults(UnsupportedRateFunction(8, {1, 0}));
    EXPECT_EQ(CurrentValue(0), (Values{7, 48, 61}));
}

TEST_F(CurrentValuesTest, FunctionsSevenAndEightReportIdSeven) {
    const FakeDisplay display{Dll().Handle(), {60, 48}};
    LoadDefaults(UnsupportedRateFunction(7, {0, 1}) + UnsupportedRateFunction(8, {1, 0}));
    EXPECT_EQ(CurrentValue(0), (Values{7, 60, 49}));
    EXPECT_EQ(CurrentValue(1), (Values{7, 48, 61}));
}

TEST_F(CurrentValuesTest, OtherFunctionsReportTheirOwnIds) {
    LoadDefaults(OptionFunction(0) + OptionFunction(6) + OptionFunction(9) + OptionFunction(78) +
                 FunctionWith(INT_MAX, {.acItems = Options({"1"}), .dcItems = Options({"2"})}));
    EXPECT_EQ(CurrentValue(0)[0], 0u);
    EXPECT_EQ(CurrentValue(1)[0], 6u);
    EXPECT_EQ(CurrentValue(2)[0], 9u);
    EXPECT_EQ(CurrentValue(3)[0], 78u);
    EXPECT_EQ(CurrentValue(4), (Values{0x7FFFFFFF, 1, 2}));
}

// ---- Functions that are not in the scheme ----

TEST_F(CurrentValuesTest, HiddenFunctionHasItsFirstOptions) {
    LoadWithHiddenFunction();
    EXPECT_EQ(CurrentValue(0), (Values{1, 111, 121}));
    EXPECT_EQ(CurrentValue(1), (Values{7, 60, 61}));
    EXPECT_EQ(CurrentValue(1), (Values{7, 60, 61}));
}

TEST_F(CurrentValuesTest, HiddenFunctionDoesNotUseItsDefaults) {
    const FakeDisplay display{Dll().Handle(), {60}};
    LoadDefaults(OptionFunction(1) + UnsupportedRateFunction(8, {1, 1}));
    EXPECT_EQ(CurrentValue(1), (Values{7, 60, 61}));
}

TEST_F(CurrentValuesTest, HiddenFunctionAloneHasNoValues) {
    const FakeDisplay display{Dll().Handle(), {60}};
    LoadDefaults(UnsupportedRateFunction(7));
    ExpectNoValue(0);
}

// The first request for a function that is not in the scheme allocates its cache entry.
TEST_F(CurrentValuesTest, AllocationFailureFailsHiddenFunctionOnly) {
    LoadWithHiddenFunction();
    const ImportPatch noMemory{Dll().Handle(), "malloc", &NoMemory};
    ExpectNoValue(1);
    EXPECT_EQ(CurrentValue(0), (Values{1, 111, 121}));
}

TEST_F(CurrentValuesTest, KnownHiddenFunctionNeedsNoAllocation) {
    LoadWithHiddenFunction();
    CurrentValue(1);
    const ImportPatch noMemory{Dll().Handle(), "malloc", &NoMemory};
    EXPECT_EQ(CurrentValue(1), (Values{7, 60, 61}));
}

TEST_F(CurrentValuesTest, FunctionShownAtNextLoadUsesStoredValues) {
    LoadWithHiddenFunction();
    EXPECT_EQ(CurrentValue(1), (Values{7, 60, 61}));
    const FakeDisplay display{Dll().Handle(), {60, 48}};
    EXPECT_TRUE(Dll().TEVGetParam(&Balanced));
    EXPECT_EQ(CurrentValue(1), (Values{7, 48, 49}));
}

TEST_F(CurrentValuesTest, FunctionHiddenAtNextLoadUsesFirstOptions) {
    std::optional<FakeDisplay> display{std::in_place, Dll().Handle(), std::vector<DWORD>{60, 48}};
    Load(OptionFunction(1) + UnsupportedRateFunction(7), OldFunction(1, 1, 1) + OldFunction(7, 1, 1));
    EXPECT_EQ(CurrentValue(1), (Values{7, 48, 49}));
    display.reset();
    LoadWithHiddenFunction();
    EXPECT_EQ(CurrentValue(1), (Values{7, 60, 61}));
}

// ---- Loading ----

TEST_F(CurrentValuesTest, CallBeforeAnyLoadFails) {
    WriteDefaults(TwoFunctions);
    ExpectNoValue(0);
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    ExpectNoValue(0);
}

TEST_F(CurrentValuesTest, EmptySchemeHasNoValues) {
    Load(OptionFunction(1), "");
    ExpectNoValue(0);
}

TEST_F(CurrentValuesTest, FailedLoadLeavesNoValues) {
    EXPECT_FALSE(Dll().TEVGetParam(&Balanced));
    ExpectNoValue(0);
}

TEST_F(CurrentValuesTest, StoredSchemeWithoutCatalogueFailsToLoad) {
    WriteBalanced(OldFunction(1, 50, 51));
    EXPECT_FALSE(Dll().TEVGetParam(&Balanced));
    ExpectNoValue(0);
}

TEST_F(CurrentValuesTest, LoadStoresCompletedScheme) {
    WriteDefaults(TwoFunctions);
    WriteBalanced(OldFunction(1, 50, 51));
    EXPECT_TRUE(Dll().TEVGetParam(&Balanced));
    EXPECT_EQ(UserSettings(),
              SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(1, 50, 51) + NewFunction(2, 4, 5)))});
}

TEST_F(CurrentValuesTest, NextLoadReplacesValues) {
    WriteFunctions(OptionFunction(1));
    WriteSchemes(OldScheme(BalancedText, OldFunction(1, 1, 1)) +
                 OldScheme(HighPerformanceText, OldFunction(1, 2, 2)));
    EXPECT_TRUE(Dll().TEVGetParam(&Balanced));
    EXPECT_EQ(CurrentValue(0), (Values{1, 111, 121}));
    EXPECT_TRUE(Dll().TEVGetParam(&HighPerformance));
    EXPECT_EQ(CurrentValue(0), (Values{1, 112, 122}));
}

TEST_F(CurrentValuesTest, LoadOfEmptySchemeDiscardsValues) {
    WriteFunctions(OptionFunction(1));
    WriteSchemes(OldScheme(BalancedText, OldFunction(1, 1, 1)) + OldScheme(HighPerformanceText, ""));
    EXPECT_TRUE(Dll().TEVGetParam(&Balanced));
    EXPECT_TRUE(Dll().TEVGetParam(&HighPerformance));
    ExpectNoValue(0);
}

TEST_F(CurrentValuesTest, FailedLoadDiscardsValues) {
    Load(R"(<Function ID="1"><Display/><Commands/></Function>)", OldFunction(1, 1, 1));
    EXPECT_EQ(CurrentValue(0)[0], 1u);
    EXPECT_FALSE(Dll().TEVGetParam(&HighPerformance));
    ExpectNoValue(0);
}

TEST_F(CurrentValuesTest, FailedLoadKeepsDefaultsAlreadyRead) {
    WriteFunctions(OptionFunction(1, {1, 2}) + R"(<Function ID="2"><Display/><Commands/></Function>)");
    EXPECT_FALSE(Dll().TEVGetParam(&Balanced));
    EXPECT_EQ(CurrentValue(0), (Values{1, 111, 122}));
}

// A function without "ID" cannot be matched, so the completed scheme cannot be stored. The defaults then add
// the missing functions, here the one that the display hides.
TEST_F(CurrentValuesTest, DefaultsCompleteSchemeThatCannotBeStored) {
    const FakeDisplay display{Dll().Handle(), {60}};
    const std::string stored = OldFunction(1, 2, 1) + R"(<Function ACParamIndex="0" DCParamIndex="0"/>)";
    Load(OptionFunction(1) + OptionFunction(2, {1, 2}) + UnsupportedRateFunction(7, {1, 1}), stored);
    EXPECT_EQ(CurrentValue(0), (Values{1, 112, 121}));
    EXPECT_EQ(CurrentValue(1), (Values{2, 211, 222}));
    EXPECT_EQ(CurrentValue(2), (Values{7, 48, 49}));
    EXPECT_EQ(UserSettings(), SavedXml{OldUserFile(OldScheme(BalancedText, stored))});
}

TEST_F(CurrentValuesTest, ZeroSchemeIsLoadedLikeAnyOther) {
    constexpr GUID allZero = {};
    WriteFunctions(OptionFunction(1));
    WriteSchemes(OldScheme("00000000-0000-0000-0000-000000000000", OldFunction(1, 2, 1)));
    EXPECT_TRUE(Dll().TEVGetParam(&allZero));
    EXPECT_EQ(CurrentValue(0), (Values{1, 112, 121}));
}

TEST_F(CurrentValuesTest, BusyFileDoesNotPreventLoad) {
    const SecondProcess other{HoldMutex, {UserMarker}};
    LoadDefaults(OptionFunction(1, {1, 2}));
    EXPECT_EQ(CurrentValue(0), (Values{1, 111, 122}));
    EXPECT_FALSE(HasUserSettings());
}

// ---- Between the loads ----

TEST_F(CurrentValuesTest, ValuesStayWhenFileChanges) {
    Load(OptionFunction(1), OldFunction(1, 1, 1));
    WriteBalanced(OldFunction(1, 2, 2));
    EXPECT_EQ(CurrentValue(0), (Values{1, 111, 121}));
}

TEST_F(CurrentValuesTest, ValuesStayWhenSchemeIsSet) {
    Load(OptionFunction(1), OldFunction(1, 1, 1));
    EXPECT_TRUE(SetParameter(Balanced, {{1, {2, 2}}}));
    EXPECT_EQ(CurrentValue(0), (Values{1, 111, 121}));
}

TEST_F(CurrentValuesTest, ValuesStayWhenOtherSchemesAreRead) {
    Load(OptionFunction(1), OldFunction(1, 1, 1));
    GetParameter(HighPerformance);
    EXPECT_TRUE(Dll().ResetDefault());
    GetParameter(Balanced);
    EXPECT_EQ(CurrentValue(0), (Values{1, 111, 121}));
}

TEST_F(CurrentValuesTest, ValuesAreReturnedWithoutReadingFiles) {
    Load(OptionFunction(1), OldFunction(1, 1, 1));
    std::filesystem::remove(installation.UserFile());
    std::filesystem::remove(installation.DefaultsFile());
    EXPECT_EQ(CurrentValue(0), (Values{1, 111, 121}));
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(CurrentValuesTest, ExitDiscardsValues) {
    Load(OptionFunction(1) + OptionFunction(2), OldFunction(1, 1, 1));
    EXPECT_TRUE(Dll().ZOTDamExit());
    for (const std::uint32_t position : {0u, 1u, 0x80000000u})
        ExpectNoValue(position);
}

TEST_F(CurrentValuesTest, ReloadedLibraryHasNoValues) {
    Load(OptionFunction(1), OldFunction(1, 1, 1));
    Unload();
    EXPECT_EQ(Dll().GetFuncCount(), 1u);
    ExpectNoValue(0);
}

}  // namespace ZOTDam::Test
