// Tests of GetParameterDefault, which enumerates the default parameters of a power scheme.
#include "support/NumberTexts.h"
#include "support/SettingsTest.h"

namespace ZOTDam::Test {

class DefaultParametersTest : public SettingsTest {
protected:
    Params DefaultsOf(const std::string& functions) {
        WriteFunctions(functions);
        return GetParameterDefault(Balanced);
    }

    Params DefaultsInFile(std::string_view defaults) {
        WriteDefaults(defaults);
        return GetParameterDefault(Balanced);
    }
};

TEST_F(DefaultParametersTest, GenericDefaultIsReturned) {
    EXPECT_EQ(DefaultsOf(R"(<Function ID="1"><Default ACParamIndex="2" DCParamIndex="3"/></Function>)"),
              (Params{{1, {2, 3}}}));
}

TEST_F(DefaultParametersTest, ItemOfSchemeOverridesGenericDefault) {
    WriteFunctions(R"(<Function ID="1"><Default ACParamIndex="2" DCParamIndex="3">
        <DefaultItem GUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c" ACParamIndex="4" DCParamIndex="5"/>
        <DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="6" DCParamIndex="7"/>
    </Default></Function>)");
    EXPECT_EQ(GetParameterDefault(HighPerformance), (Params{{1, {4, 5}}}));
    EXPECT_EQ(GetParameterDefault(Balanced), (Params{{1, {6, 7}}}));
}

TEST_F(DefaultParametersTest, SchemeWithoutItemUsesGenericDefault) {
    WriteFunctions(R"(<Function ID="1"><Default ACParamIndex="2" DCParamIndex="3">
        <DefaultItem GUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c" ACParamIndex="4" DCParamIndex="5"/>
        <DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="6" DCParamIndex="7"/>
    </Default></Function>)");
    EXPECT_EQ(GetParameterDefault(PowerSaver), (Params{{1, {2, 3}}}));
}

TEST_F(DefaultParametersTest, EachFunctionSelectsItsOwnDefault) {
    EXPECT_EQ(DefaultsOf(R"(
        <Function ID="1"><Default ACParamIndex="2" DCParamIndex="3">
            <DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="4" DCParamIndex="5"/>
        </Default></Function>
        <Function ID="2"><Default ACParamIndex="6" DCParamIndex="7"/></Function>)"),
              (Params{{1, {4, 5}}, {2, {6, 7}}}));
}

TEST_F(DefaultParametersTest, FirstOfTwoItemsForSchemeIsUsed) {
    EXPECT_EQ(DefaultsOf(R"(<Function ID="1"><Default ACParamIndex="2" DCParamIndex="3">
        <DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="4" DCParamIndex="5"/>
        <DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="6" DCParamIndex="7"/>
    </Default></Function>)"),
              (Params{{1, {4, 5}}}));
}

TEST_F(DefaultParametersTest, ItemOfSchemeNeedsNoGenericDefault) {
    EXPECT_EQ(DefaultsOf(R"(<Function ID="1"><Default>
        <DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="4" DCParamIndex="5"/>
    </Default></Function>)"),
              (Params{{1, {4, 5}}}));
}

TEST_F(DefaultParametersTest, FirstOfTwoDefaultElementsIsUsed) {
    EXPECT_EQ(DefaultsOf(R"(<Function ID="1">
        <Default ACParamIndex="2" DCParamIndex="3"/>
        <Default ACParamIndex="4" DCParamIndex="5">
            <DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="6" DCParamIndex="7"/>
        </Default>
    </Function>)"),
              (Params{{1, {2, 3}}}));
}

TEST_F(DefaultParametersTest, FirstFunctionWithSameIdProvidesDefaults) {
    EXPECT_EQ(DefaultsOf(R"(
        <Function ID="1"><Default ACParamIndex="2" DCParamIndex="3"/></Function>
        <Function ID="1"><Default ACParamIndex="4" DCParamIndex="5"/></Function>)"),
              (Params{{1, {2, 3}}}));
}

TEST_F(DefaultParametersTest, ParametersAreOrderedBySignedId) {
    EXPECT_EQ(DefaultsOf(R"(
        <Function ID="20"><Default ACParamIndex="1" DCParamIndex="1"/></Function>
        <Function ID="0"><Default ACParamIndex="2" DCParamIndex="2"/></Function>
        <Function ID="-1"><Default ACParamIndex="3" DCParamIndex="3"/></Function>
        <Function ID="3"><Default ACParamIndex="4" DCParamIndex="4"/></Function>)"),
              (Params{{-1, {3, 3}}, {0, {2, 2}}, {3, {4, 4}}, {20, {1, 1}}}));
}

TEST_F(DefaultParametersTest, DefaultsAreReadDespiteInvalidCatalogue) {
    const Params expected{{1, {2, 3}}};
    EXPECT_EQ(DefaultsOf(R"(<Function ID="1"><Default ACParamIndex="2" DCParamIndex="3"/></Function>)"),
              expected);
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
    EXPECT_EQ(GetParameterDefault(Balanced), expected);
}

TEST_F(DefaultParametersTest, UserSettingsDoNotAffectDefaults) {
    WriteBalanced(R"(<Function ID="1" ACParamIndex="8" DCParamIndex="9"/>)");
    EXPECT_EQ(DefaultsOf(R"(<Function ID="1"><Default ACParamIndex="2" DCParamIndex="3"/></Function>)"),
              (Params{{1, {2, 3}}}));
}

TEST_F(DefaultParametersTest, ReadingDefaultsCreatesNoUserSettings) {
    DefaultsOf(R"(<Function ID="1"><Default ACParamIndex="2" DCParamIndex="3"/></Function>)");
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(DefaultParametersTest, ZeroSchemeHasNoDefaults) {
    WriteFunctions(R"(<Function ID="1"><Default ACParamIndex="2" DCParamIndex="3">
        <DefaultItem GUID="00000000-0000-0000-0000-000000000000" ACParamIndex="4" DCParamIndex="5"/>
    </Default></Function>)");
    EXPECT_EQ(GetParameterDefault(GUID{}), Params{});
}

// ---- The section ----

TEST_F(DefaultParametersTest, MissingFileHasNoDefaultsAndStaysMissing) {
    EXPECT_EQ(GetParameterDefault(Balanced), Params{});
    EXPECT_FALSE(std::filesystem::exists(installation.DefaultsFile()));
}

TEST_F(DefaultParametersTest, NotWellFormedFileHasNoDefaults) {
    EXPECT_EQ(DefaultsInFile(R"(<ZOTDefault><Functions>
        <Function ID="1"><Default ACParamIndex="2" DCParamIndex="3"/></Function></Functions>)"),
              Params{});
}

TEST_F(DefaultParametersTest, MissingSectionHasNoDefaults) {
    EXPECT_EQ(DefaultsInFile(R"(<ZOTDefault>
        <Function ID="1"><Default ACParamIndex="2" DCParamIndex="3"/></Function></ZOTDefault>)"),
              Params{});
}

TEST_F(DefaultParametersTest, EmptySectionHasNoDefaults) {
    EXPECT_EQ(DefaultsOf(""), Params{});
}

TEST_F(DefaultParametersTest, RootOfAnyNameIsAccepted) {
    EXPECT_EQ(DefaultsInFile(R"(<Settings><Functions>
        <Function ID="1"><Default ACParamIndex="2" DCParamIndex="3"/></Function></Functions></Settings>)"),
              (Params{{1, {2, 3}}}));
}

TEST_F(DefaultParametersTest, FirstOfTwoSectionsIsRead) {
    EXPECT_EQ(DefaultsInFile(R"(<ZOTDefault>
        <Functions><Function ID="1"><Default ACParamIndex="2" DCParamIndex="3"/></Function></Functions>
        <Functions><Function ID="4"><Default ACParamIndex="5" DCParamIndex="6"/></Function></Functions>
    </ZOTDefault>)"),
              (Params{{1, {2, 3}}}));
}

TEST_F(DefaultParametersTest, DefaultsStayWhenFileChanges) {
    DefaultsOf(R"(<Function ID="1"><Default ACParamIndex="2" DCParamIndex="3"/></Function>)");
    EXPECT_EQ(DefaultsOf(R"(<Function ID="1"><Default ACParamIndex="4" DCParamIndex="5"/></Function>)"),
              (Params{{1, {2, 3}}}));
}

TEST_F(DefaultParametersTest, ReloadedLibraryReadsFileAgain) {
    DefaultsOf(R"(<Function ID="1"><Default ACParamIndex="2" DCParamIndex="3"/></Function>)");
    Unload();
    EXPECT_EQ(DefaultsOf(R"(<Function ID="1"><Default ACParamIndex="4" DCParamIndex="5"/></Function>)"),
              (Params{{1, {4, 5}}}));
}

// ---- Numbers ----

class DefaultNumberTest : public DefaultParametersTest, public testing::WithParamInterface<NumberText> {};

TEST_P(DefaultNumberTest, NumberIsReadInGenericDefault) {
    const auto& [name, text, value] = GetParam();
    EXPECT_EQ(DefaultsOf("<Function ID=\"" + text + "\"><Default ACParamIndex=\"" + text +
                         "\" DCParamIndex=\"" + text + "\"/></Function>"),
              (Params{{value, {value, value}}}));
}

TEST_P(DefaultNumberTest, NumberIsReadInItemOfScheme) {
    const auto& [name, text, value] = GetParam();
    EXPECT_EQ(
        DefaultsOf("<Function ID=\"1\"><Default><DefaultItem GUID=\"" + std::string{BalancedText} +
                   "\" ACParamIndex=\"" + text + "\" DCParamIndex=\"" + text + "\"/></Default></Function>"),
        (Params{{1, {value, value}}}));
}

INSTANTIATE_TEST_SUITE_P(Numbers, DefaultNumberTest, testing::ValuesIn(NumberTexts()), CaseName<NumberText>);

// ---- Items ----

class DefaultItemGuidTest : public DefaultParametersTest, public testing::WithParamInterface<GuidCase> {};

TEST_P(DefaultItemGuidTest, GuidIsComparedAsString) {
    const ParamValue expected = GetParam().matches ? ParamValue{4, 5} : ParamValue{2, 3};
    EXPECT_EQ(
        DefaultsOf(R"(<Function ID="1"><Default ACParamIndex="2" DCParamIndex="3"><DefaultItem GUID=")" +
                   GetParam().guid + R"(" ACParamIndex="4" DCParamIndex="5"/></Default></Function>)"),
        (Params{{1, expected}}));
}

INSTANTIATE_TEST_SUITE_P(Guids, DefaultItemGuidTest, testing::ValuesIn(GuidCases()), CaseName<GuidCase>);

// ---- Functions that cannot be read ----

// The parameter is the second of three functions.
class InvalidDefaultTest : public DefaultParametersTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(InvalidDefaultTest, InvalidFunctionEndsReadingAndKeepsPrevious) {
    EXPECT_EQ(DefaultsOf(R"(<Function ID="1"><Default ACParamIndex="2" DCParamIndex="3"/></Function>)" +
                         GetParam().xml +
                         R"(<Function ID="3"><Default ACParamIndex="4" DCParamIndex="5"/></Function>)"),
              (Params{{1, {2, 3}}}));
}

INSTANTIATE_TEST_SUITE_P(
    Functions, InvalidDefaultTest,
    testing::Values(XmlCase{"WithoutId",
                            R"(<Function><Default ACParamIndex="6" DCParamIndex="7"/></Function>)"},
                    XmlCase{"WithoutDefault", R"(<Function ID="2"><Display/><Commands/></Function>)"},
                    XmlCase{"WithoutDefaultButWithIdOfFirst", R"(<Function ID="1"/>)"},
                    XmlCase{"WithoutAc", R"(<Function ID="2"><Default DCParamIndex="7"/></Function>)"},
                    XmlCase{"WithoutDc", R"(<Function ID="2"><Default ACParamIndex="6"/></Function>)"},
                    XmlCase{"WithParametersInNamespace", R"(<Function ID="2" xmlns:o="urn:other">
            <Default o:ACParamIndex="6" o:DCParamIndex="7"/></Function>)"},
                    XmlCase{"WithDefaultInDefaultNamespace", R"(<Function ID="2">
            <Default xmlns="urn:other" ACParamIndex="6" DCParamIndex="7"/></Function>)"},
                    XmlCase{"WithDefaultBelowAnotherElement", R"(<Function ID="2">
            <Display><Default ACParamIndex="6" DCParamIndex="7"/></Display></Function>)"},
                    XmlCase{"WithCommentInsteadOfDefault", R"(<Function ID="2">
            <!--<Default ACParamIndex="6" DCParamIndex="7"/>--></Function>)"},
                    XmlCase{"WithOnlyItemsOfOtherSchemes", R"(<Function ID="2"><Default>
            <DefaultItem GUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c" ACParamIndex="6" DCParamIndex="7"/>
            </Default></Function>)"}),
    CaseName<XmlCase>);

INSTANTIATE_TEST_SUITE_P(
    Items, InvalidDefaultTest,
    testing::Values(XmlCase{"WithoutAc", R"(<Function ID="2"><Default ACParamIndex="6" DCParamIndex="7">
            <DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" DCParamIndex="9"/>
            </Default></Function>)"},
                    XmlCase{"WithoutDc", R"(<Function ID="2"><Default ACParamIndex="6" DCParamIndex="7">
            <DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="8"/>
            </Default></Function>)"},
                    XmlCase{"WithoutGuidBeforeMatchingItem", R"(<Function ID="2">
            <Default ACParamIndex="6" DCParamIndex="7">
                <DefaultItem ACParamIndex="8" DCParamIndex="9"/>
                <DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="8" DCParamIndex="9"/>
            </Default></Function>)"},
                    XmlCase{"WithoutGuidAndWithoutMatchingItem", R"(<Function ID="2">
            <Default ACParamIndex="6" DCParamIndex="7">
                <DefaultItem GUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c" ACParamIndex="8" DCParamIndex="9"/>
                <DefaultItem ACParamIndex="8" DCParamIndex="9"/>
            </Default></Function>)"}),
    CaseName<XmlCase>);

TEST_F(DefaultParametersTest, ItemsAfterMatchingItemAreNotRead) {
    EXPECT_EQ(DefaultsOf(R"(
        <Function ID="1"><Default>
            <DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="2" DCParamIndex="3"/>
            <DefaultItem/>
        </Default></Function>
        <Function ID="2"><Default ACParamIndex="4" DCParamIndex="5"/></Function>)"),
              (Params{{1, {2, 3}}, {2, {4, 5}}}));
}

TEST_F(DefaultParametersTest, IncompleteItemOfOtherSchemeIsIgnored) {
    EXPECT_EQ(DefaultsOf(R"(<Function ID="1"><Default ACParamIndex="2" DCParamIndex="3">
        <DefaultItem GUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c"/>
    </Default></Function>)"),
              (Params{{1, {2, 3}}}));
}

TEST_F(DefaultParametersTest, InvalidFirstFunctionLeavesNoDefaults) {
    EXPECT_EQ(DefaultsOf(R"(
        <Function ID="1"/>
        <Function ID="2"><Default ACParamIndex="4" DCParamIndex="5"/></Function>)"),
              Params{});
}

// ---- Ignored nodes ----

TEST_F(DefaultParametersTest, OtherNodeTypesAreIgnored) {
    EXPECT_EQ(DefaultsOf(R"(<!--<Function ID="8"/>-->text<?Function ID="9"?>
        <Function ID="1"><?Default?><Default ACParamIndex="2" DCParamIndex="3"><![CDATA[text]]>
            <?DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="6" DCParamIndex="7"?>
            <!--<DefaultItem/>-->
            <DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="4" DCParamIndex="5"/>
        </Default></Function>)"),
              (Params{{1, {4, 5}}}));
}

TEST_F(DefaultParametersTest, ElementsInNamespacesAreIgnored) {
    EXPECT_EQ(DefaultsOf(R"(<Function xmlns="urn:other"/>
        <Function ID="1" xmlns:o="urn:other"><o:Default/><Default ACParamIndex="2" DCParamIndex="3">
            <DefaultItem xmlns="urn:other"/><o:DefaultItem/>
            <o:DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="4" DCParamIndex="5"/>
        </Default></Function>)"),
              (Params{{1, {2, 3}}}));
}

TEST_F(DefaultParametersTest, NestedElementsAreIgnored) {
    EXPECT_EQ(DefaultsOf(R"(<Group><Function/></Group>
        <Function ID="1"><Function/><Default ACParamIndex="2" DCParamIndex="3"><Group>
            <DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="4" DCParamIndex="5"/>
        </Group></Default></Function>)"),
              (Params{{1, {2, 3}}}));
}

TEST_F(DefaultParametersTest, ElementsInDifferentCaseAreIgnored) {
    EXPECT_EQ(DefaultsOf(R"(<function/>
        <Function ID="1"><default/><Default ACParamIndex="2" DCParamIndex="3"><Defaultitem/></Default>
        </Function>)"),
              (Params{{1, {2, 3}}}));
}

}  // namespace ZOTDam::Test
