// Tests of GetParameter, which enumerates the user's values, completed from the defaults.
#include "support/NumberTexts.h"
#include "support/SettingsTest.h"

namespace ZOTDam::Test {

namespace {

// Different defaults for the functions 1 to 3.
constexpr char ThreeDefaults[] = R"(
    <Function ID="1"><Display/><Commands/><Default ACParamIndex="11" DCParamIndex="12"/></Function>
    <Function ID="2"><Display/><Commands/><Default ACParamIndex="21" DCParamIndex="22"/></Function>
    <Function ID="3"><Display/><Commands/><Default ACParamIndex="31" DCParamIndex="32"/></Function>)";

// Returns the functions as they are written for a scheme that is read for the first time.
std::string ThreeNewFunctions() {
    return NewFunction(1, 11, 12) + NewFunction(2, 21, 22) + NewFunction(3, 31, 32);
}

const Params ThreeDefaultParams{{1, {11, 12}}, {2, {21, 22}}, {3, {31, 32}}};

}  // namespace

class SchemeReadingTest : public SettingsTest {
protected:
    // Returns the parameters of the stored schemes only. The catalogue is empty, so no function is added.
    Params ReadSchemes(const std::string& schemes) {
        WriteFunctions("");
        WriteSchemes(schemes);
        return GetParameter(Balanced);
    }

    Params ReadBalanced(const std::string& functions) {
        return ReadSchemes(OldScheme(BalancedText, functions));
    }

    // Returns the parameters of a stored scheme, completed from the defaults of the functions 1 to 3.
    Params CompleteSchemes(const std::string& schemes) {
        WriteFunctions(ThreeDefaults);
        WriteSchemes(schemes);
        return GetParameter(Balanced);
    }

    Params CompleteBalanced(const std::string& functions) {
        return CompleteSchemes(OldScheme(BalancedText, functions));
    }
};

// ---- Reading a stored scheme ----

TEST_F(SchemeReadingTest, StoredValuesAreReturned) {
    EXPECT_EQ(ReadBalanced(OldFunction(1, 2, 3) + OldFunction(4, 5, 6)), (Params{{1, {2, 3}}, {4, {5, 6}}}));
}

TEST_F(SchemeReadingTest, StoredValuesOverrideDefaults) {
    EXPECT_EQ(CompleteBalanced(OldFunction(1, 4, 5) + OldFunction(2, 6, 7) + OldFunction(3, 8, 9)),
              (Params{{1, {4, 5}}, {2, {6, 7}}, {3, {8, 9}}}));
}

TEST_F(SchemeReadingTest, FileOfCompleteSchemeIsUnchanged) {
    const std::string settings = R"(<OrloPowerCfg>
  <PowerSchemes><PowerScheme  GUID='381B4222-F694-41F0-9685-FF5BB260DF2E'>
    <Function DCParamIndex="3" ACParamIndex="2" ID="1" ></Function>
  </PowerScheme></PowerSchemes>
</OrloPowerCfg>)";
    WriteFunctions(Functions({1}));
    WriteUserSettings(settings);
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {2, 3}}}));
    EXPECT_EQ(UserSettings(), settings);
}

TEST_F(SchemeReadingTest, FunctionsMissingInCatalogueAreReturned) {
    WriteFunctions(Functions({1}));
    WriteBalanced(OldFunction(99, 2, 3) + OldFunction(1, 4, 5));
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {4, 5}}, {99, {2, 3}}}));
}

TEST_F(SchemeReadingTest, FunctionsAreReturnedByAscendingSignedId) {
    EXPECT_EQ(ReadBalanced(OldFunction(20, 0, 0) + OldFunction(0, 0, 0) + OldFunction(3, 0, 0) +
                           OldFunction(-1, 0, 0) + OldFunction(-20, 0, 0)),
              (Params{{-20, {}}, {-1, {}}, {0, {}}, {3, {}}, {20, {}}}));
}

TEST_F(SchemeReadingTest, FirstFunctionWithSameIdIsReturned) {
    EXPECT_EQ(ReadBalanced(OldFunction(1, 2, 3) + OldFunction(4, 5, 6) + OldFunction(1, 7, 8)),
              (Params{{1, {2, 3}}, {4, {5, 6}}}));
}

TEST_F(SchemeReadingTest, FirstSchemeWithSameGuidIsReturned) {
    EXPECT_EQ(ReadSchemes(OldScheme(BalancedText, OldFunction(1, 2, 3)) +
                          OldScheme(BalancedText, OldFunction(1, 4, 5) + OldFunction(6, 7, 8))),
              (Params{{1, {2, 3}}}));
}

TEST_F(SchemeReadingTest, SchemeAfterOthersIsFound) {
    EXPECT_EQ(ReadSchemes(OldScheme(HighPerformanceText, OldFunction(1, 2, 3)) +
                          OldScheme(BalancedText, OldFunction(1, 4, 5))),
              (Params{{1, {4, 5}}}));
}

TEST_F(SchemeReadingTest, EachSchemeHasItsOwnValues) {
    ReadSchemes(OldScheme(HighPerformanceText, OldFunction(1, 2, 3)) +
                OldScheme(BalancedText, OldFunction(4, 5, 6)));
    EXPECT_EQ(GetParameter(HighPerformance), (Params{{1, {2, 3}}}));
    EXPECT_EQ(GetParameter(Balanced), (Params{{4, {5, 6}}}));
}

TEST_F(SchemeReadingTest, AllZeroGuidReturnsNothing) {
    const std::string schemes = OldScheme("00000000-0000-0000-0000-000000000000", OldFunction(1, 2, 3));
    WriteFunctions(ThreeDefaults);
    WriteSchemes(schemes);
    EXPECT_EQ(GetParameter(GUID{}), Params{});
    EXPECT_EQ(UserSettings(), SavedXml{OldUserFile(schemes)});
}

TEST_F(SchemeReadingTest, AllZeroGuidCreatesNoFile) {
    WriteFunctions(ThreeDefaults);
    GetParameter(GUID{});
    EXPECT_FALSE(HasUserSettings());
}

class StoredNumberTest : public SchemeReadingTest, public testing::WithParamInterface<NumberText> {};

TEST_P(StoredNumberTest, NumberIsReadInEveryAttribute) {
    const auto& [name, text, value] = GetParam();
    EXPECT_EQ(ReadBalanced("<Function ID=\"" + text + "\" ACParamIndex=\"" + text + "\" DCParamIndex=\"" +
                           text + "\"/>"),
              (Params{{value, {value, value}}}));
}

INSTANTIATE_TEST_SUITE_P(Numbers, StoredNumberTest, testing::ValuesIn(NumberTexts()), CaseName<NumberText>);

class StoredGuidTest : public SchemeReadingTest, public testing::WithParamInterface<GuidCase> {};

// A scheme that is not found is appended. It has no functions, because the catalogue is empty.
TEST_P(StoredGuidTest, GuidIsComparedAsString) {
    const std::string stored = OldScheme(GetParam().guid, OldFunction(1, 2, 3));
    EXPECT_EQ(ReadSchemes(stored), (GetParam().matches ? Params{{1, {2, 3}}} : Params{}));
    EXPECT_EQ(UserSettings(),
              SavedXml{OldUserFile(GetParam().matches ? stored : stored + NewScheme(BalancedText, ""))});
}

INSTANTIATE_TEST_SUITE_P(Guids, StoredGuidTest, testing::ValuesIn(GuidCases()), CaseName<GuidCase>);

// ---- Ignored nodes ----

TEST_F(SchemeReadingTest, OtherKindsOfNodesAreIgnored) {
    EXPECT_EQ(
        ReadSchemes("<?PowerScheme?>text<!--<PowerScheme/>-->" +
                    OldScheme(BalancedText, "<?Function?><![CDATA[<Function/>]]>" + OldFunction(1, 2, 3) +
                                                "<!--<Function/>-->text" + OldFunction(4, 5, 6))),
        (Params{{1, {2, 3}}, {4, {5, 6}}}));
}

TEST_F(SchemeReadingTest, ElementsInNamespacesAreIgnored) {
    EXPECT_EQ(ReadSchemes(R"(<PowerScheme xmlns="urn:other"/><o:PowerScheme xmlns:o="urn:other"/>)" +
                          OldScheme(BalancedText, R"(<Function xmlns="urn:other"/>)" + OldFunction(1, 2, 3) +
                                                      R"(<o:Function xmlns:o="urn:other"/>)" +
                                                      OldFunction(4, 5, 6))),
              (Params{{1, {2, 3}}, {4, {5, 6}}}));
}

TEST_F(SchemeReadingTest, NestedElementsAreIgnored) {
    EXPECT_EQ(ReadSchemes("<Group><PowerScheme/></Group>" +
                          OldScheme(BalancedText, "<Group><Function/></Group>" + FunctionAttributes(1, 2, 3) +
                                                      "><Function/></Function>" + OldFunction(4, 5, 6))),
              (Params{{1, {2, 3}}, {4, {5, 6}}}));
}

TEST_F(SchemeReadingTest, ElementsInOtherCaseAreIgnored) {
    EXPECT_EQ(ReadSchemes("<powerscheme/><Powerscheme/>" +
                          OldScheme(BalancedText, "<function/>" + OldFunction(1, 2, 3))),
              (Params{{1, {2, 3}}}));
}

TEST_F(SchemeReadingTest, UnknownAttributesAreIgnored) {
    EXPECT_EQ(ReadSchemes(R"(<PowerScheme Name="Balanced" GUID="381b4222-f694-41f0-9685-ff5bb260df2e">
        <Function Name="a" ID="1" acparamindex="9" ACParamIndex="2" DCParamIndex="3" Flag="4"/>
    </PowerScheme>)"),
              (Params{{1, {2, 3}}}));
}

// ---- The section ----

TEST_F(SchemeReadingTest, RootCanHaveAnyName) {
    WriteFunctions("");
    WriteUserSettings("<o:Settings xmlns:o=\"urn:other\"><PowerSchemes>" +
                      OldScheme(BalancedText, OldFunction(1, 2, 3)) + "</PowerSchemes></o:Settings>");
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {2, 3}}}));
}

TEST_F(SchemeReadingTest, FirstOfTwoSectionsIsRead) {
    WriteFunctions("");
    WriteUserSettings("<OrloPowerCfg><PowerSchemes>" + OldScheme(BalancedText, OldFunction(1, 2, 3)) +
                      "</PowerSchemes><PowerSchemes>" + OldScheme(BalancedText, OldFunction(4, 5, 6)) +
                      "</PowerSchemes></OrloPowerCfg>");
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {2, 3}}}));
}

TEST_F(SchemeReadingTest, MissingSectionIsAdded) {
    WriteDefaults(TwoFunctions);
    WriteUserSettings(R"(<Settings><CommonSettings Language="en"/></Settings>)");
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {2, 3}}, {2, {4, 5}}}));
    EXPECT_EQ(UserSettings(), SavedXml{"<Settings><CommonSettings Language=\"en\"/><PowerSchemes>" +
                                       NewScheme(BalancedText, NewFunction(1, 2, 3) + NewFunction(2, 4, 5)) +
                                       "</PowerSchemes></Settings>\n"});
}

TEST_F(SchemeReadingTest, SectionIsAddedAfterOneInNamespace) {
    WriteFunctions("");
    WriteUserSettings("<OrloPowerCfg><PowerSchemes xmlns=\"urn:other\"/></OrloPowerCfg>");
    GetParameter(Balanced);
    EXPECT_EQ(UserSettings(), SavedXml{"<OrloPowerCfg><PowerSchemes xmlns=\"urn:other\"/><PowerSchemes>" +
                                       NewScheme(BalancedText, "") + "</PowerSchemes></OrloPowerCfg>\n"});
}

// ---- When the files are read ----

TEST_F(SchemeReadingTest, EachCallReadsUserSettingsAgain) {
    ReadBalanced(OldFunction(1, 2, 3));
    EXPECT_EQ(ReadBalanced(OldFunction(1, 4, 5)), (Params{{1, {4, 5}}}));
}

TEST_F(SchemeReadingTest, DefaultsAreNotReadAgain) {
    WriteFunctions(ThreeDefaults);
    GetParameter(Balanced);
    WriteDefaults(TwoFunctions);
    EXPECT_EQ(GetParameter(HighPerformance), ThreeDefaultParams);
}

TEST_F(SchemeReadingTest, DefaultsAreReturnedAfterFileDeletion) {
    EXPECT_EQ(CompleteBalanced(OldFunction(1, 2, 3) + OldFunction(9, 9, 9)),
              (Params{{1, {2, 3}}, {2, {21, 22}}, {3, {31, 32}}, {9, {9, 9}}}));
    std::filesystem::remove(installation.UserFile());
    EXPECT_EQ(GetParameter(Balanced), ThreeDefaultParams);
}

TEST_F(SchemeReadingTest, OldContentIsDroppedAfterFileDeletion) {
    WriteFunctions(ThreeDefaults);
    WriteUserSettings("<OrloPowerCfg><CommonSettings Language=\"en\"><Old/></CommonSettings><PowerSchemes>" +
                      OldScheme(HighPerformanceText, OldFunction(1, 2, 3)) +
                      "</PowerSchemes></OrloPowerCfg>");
    GetParameter(Balanced);
    std::filesystem::remove(installation.UserFile());
    GetParameter(Balanced);
    EXPECT_EQ(UserSettings(),
              SavedXml{"<OrloPowerCfg><CommonSettings/><PowerSchemes>" +
                       NewScheme(BalancedText, ThreeNewFunctions()) + "</PowerSchemes></OrloPowerCfg>\n"});
}

// ---- Adopting the defaults ----

TEST_F(SchemeReadingTest, FirstReadStoresDefaults) {
    WriteDefaults(R"(<ZOTDefault><Functions>
        <Function ID="1"><Display/><Commands/><Default ACParamIndex="2" DCParamIndex="3"/></Function>
    </Functions></ZOTDefault>)");
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {2, 3}}}));
    EXPECT_EQ(
        UserSettings(),
        SavedXml{"<?xml version='1.0' encoding='UTF-8'?>\n<OrloPowerCfg><PowerSchemes>"
                 "<PowerScheme GUID=\"381b4222-f694-41f0-9685-ff5bb260df2e\">\n\t"
                 "<Function ID=\"1\" ACParamIndex=\"2\" DCParamIndex=\"3\">\n\t</Function></PowerScheme>"
                 "</PowerSchemes></OrloPowerCfg>\n"});
}

TEST_F(SchemeReadingTest, DefaultsAreStoredByAscendingId) {
    WriteFunctions(R"(
        <Function ID="30"><Display/><Commands/><Default ACParamIndex="1" DCParamIndex="2"/></Function>
        <Function ID="4"><Display/><Commands/><Default ACParamIndex="-5" DCParamIndex="0"/></Function>)");
    EXPECT_EQ(GetParameter(Balanced), (Params{{4, {-5, 0}}, {30, {1, 2}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{NewUserFile(NewScheme(BalancedText, NewFunction(4, -5, 0) + NewFunction(30, 1, 2)))});
}

TEST_F(SchemeReadingTest, DefaultItemOfSchemeOverridesDefault) {
    WriteFunctions(R"(<Function ID="1"><Display/><Commands/><Default ACParamIndex="2" DCParamIndex="3">
        <DefaultItem GUID="381B4222-F694-41F0-9685-FF5BB260DF2E" ACParamIndex="4" DCParamIndex="5"/>
    </Default></Function>)");
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {4, 5}}}));
    EXPECT_EQ(GetParameter(HighPerformance), (Params{{1, {2, 3}}}));
}

TEST_F(SchemeReadingTest, SecondReadDoesNotStoreDefaultsAgain) {
    WriteFunctions(ThreeDefaults);
    GetParameter(Balanced);
    EXPECT_EQ(GetParameter(Balanced), ThreeDefaultParams);
    EXPECT_EQ(UserSettings(), SavedXml{NewUserFile(NewScheme(BalancedText, ThreeNewFunctions()))});
}

TEST_F(SchemeReadingTest, NewSchemeIsAppendedAfterStoredSchemes) {
    const std::string stored = OldScheme(HighPerformanceText, OldFunction(1, 2, 3));
    EXPECT_EQ(CompleteSchemes(stored), ThreeDefaultParams);
    EXPECT_EQ(UserSettings(), SavedXml{OldUserFile(stored + NewScheme(BalancedText, ThreeNewFunctions()))});
}

TEST_F(SchemeReadingTest, EmptyDefaultsAreStoredAsEmptyScheme) {
    WriteFunctions("");
    EXPECT_EQ(GetParameter(Balanced), Params{});
    EXPECT_EQ(UserSettings(), SavedXml{NewUserFile(NewScheme(BalancedText, ""))});
}

TEST_F(SchemeReadingTest, MalformedUserSettingsAreReplacedByDefaults) {
    WriteFunctions(ThreeDefaults);
    WriteUserSettings("<OrloPowerCfg><PowerSchemes>" + OldScheme(BalancedText, OldFunction(1, 2, 3)));
    EXPECT_EQ(GetParameter(Balanced), ThreeDefaultParams);
    EXPECT_EQ(UserSettings(), SavedXml{NewUserFile(NewScheme(BalancedText, ThreeNewFunctions()))});
}

TEST_F(SchemeReadingTest, DefaultsAreReturnedEvenIfSaveFails) {
    std::filesystem::remove_all(installation.UserFile().parent_path());
    WriteFunctions(ThreeDefaults);
    EXPECT_EQ(GetParameter(Balanced), ThreeDefaultParams);
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(SchemeReadingTest, SchemeWithoutGuidHidesLaterSchemes) {
    const std::string stored = "<PowerScheme/>" + OldScheme(BalancedText, OldFunction(1, 2, 3));
    EXPECT_EQ(CompleteSchemes(stored), ThreeDefaultParams);
    EXPECT_EQ(UserSettings(), SavedXml{OldUserFile(stored + NewScheme(BalancedText, ThreeNewFunctions()))});
}

TEST_F(SchemeReadingTest, HiddenSchemeIsAppendedByEveryCall) {
    WriteFunctions(R"(<Function ID="1"><Display/><Commands/><Default ACParamIndex="2" DCParamIndex="3"/>
        </Function>)");
    WriteSchemes("<PowerScheme/>");
    GetParameter(Balanced);
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {2, 3}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{OldUserFile("<PowerScheme/>" + OldScheme(BalancedText, OldFunction(1, 2, 3)) +
                                   NewScheme(BalancedText, NewFunction(1, 2, 3)))});
}

TEST_F(SchemeReadingTest, GuidInNamespaceCountsAsMissing) {
    const std::string stored = "<PowerScheme xmlns:o=\"urn:other\" o:GUID=\"" +
                               std::string{HighPerformanceText} + "\"/>" +
                               OldScheme(BalancedText, OldFunction(1, 2, 3));
    EXPECT_EQ(CompleteSchemes(stored), ThreeDefaultParams);
}

TEST_F(SchemeReadingTest, SchemeWithoutGuidDoesNotHideEarlierSchemes) {
    EXPECT_EQ(ReadSchemes(OldScheme(BalancedText, OldFunction(1, 2, 3)) + "<PowerScheme/>"),
              (Params{{1, {2, 3}}}));
}

// ---- Defaults that cannot be read ----

TEST_F(SchemeReadingTest, DefaultsBeforeFailureAreReturnedButNotStored) {
    WriteFunctions(R"(
        <Function ID="1"><Display/><Commands/><Default ACParamIndex="2" DCParamIndex="3"/></Function>
        <Function ID="2"><Display/><Commands/></Function>
        <Function ID="3"><Display/><Commands/><Default ACParamIndex="4" DCParamIndex="5"/></Function>)");
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {2, 3}}}));
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(SchemeReadingTest, UnreadableDefaultsReturnAndStoreNothing) {
    WriteFunctions(Functions({1, 2}));
    EXPECT_EQ(GetParameter(Balanced), Params{});
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(SchemeReadingTest, MissingDefaultsFileReturnsAndStoresNothing) {
    EXPECT_EQ(GetParameter(Balanced), Params{});
    EXPECT_FALSE(HasUserSettings());
}

class UnavailableCatalogueTest : public SchemeReadingTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(UnavailableCatalogueTest, UnavailableCatalogueHidesStoredScheme) {
    const std::string schemes = OldScheme(BalancedText, OldFunction(1, 2, 3));
    WriteDefaults(GetParam().xml);
    WriteSchemes(schemes);
    EXPECT_EQ(GetParameter(Balanced), Params{});
    EXPECT_EQ(UserSettings(), SavedXml{OldUserFile(schemes)});
}

TEST_P(UnavailableCatalogueTest, UnavailableCatalogueStoresNoDefaults) {
    WriteDefaults(GetParam().xml);
    EXPECT_EQ(GetParameter(Balanced), Params{});
    EXPECT_FALSE(HasUserSettings());
}

INSTANTIATE_TEST_SUITE_P(Defaults, UnavailableCatalogueTest,
                         testing::Values(XmlCase{"NotWellFormed", "<ZOTDefault>"},
                                         XmlCase{"NoFunctions", "<ZOTDefault><CommonSettings/></ZOTDefault>"},
                                         XmlCase{"FunctionWithoutCommands",
                                                 R"(<ZOTDefault><Functions><Function ID="1"><Display/>
                        <Default ACParamIndex="4" DCParamIndex="5"/></Function></Functions></ZOTDefault>)"}),
                         CaseName<XmlCase>);

// ---- Completion ----

TEST_F(SchemeReadingTest, MissingFunctionsAreCompletedFromDefaults) {
    EXPECT_EQ(CompleteBalanced(OldFunction(2, 5, 6)), (Params{{1, {11, 12}}, {2, {5, 6}}, {3, {31, 32}}}));
}

TEST_F(SchemeReadingTest, CompletedFunctionsAreStored) {
    CompleteBalanced(OldFunction(2, 5, 6));
    EXPECT_EQ(UserSettings(),
              SavedXml{OldUserFile(OldScheme(
                  BalancedText, OldFunction(2, 5, 6) + NewFunction(1, 11, 12) + NewFunction(3, 31, 32)))});
}

TEST_F(SchemeReadingTest, FileCreatedByLibraryCanBeCompleted) {
    WriteDefaults(TwoFunctions);
    GetParameter(Balanced);
    Unload();
    WriteFunctions(ThreeDefaults);
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {2, 3}}, {2, {4, 5}}, {3, {31, 32}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{RewrittenUserFile(OldScheme(
                  BalancedText, OldFunction(1, 2, 3) + OldFunction(2, 4, 5) + NewFunction(3, 31, 32)))});
}

TEST_F(SchemeReadingTest, CompletionKeepsAllOtherContent) {
    const std::string before =
        "<OrloPowerCfg><!--mine--><CommonSettings Language=\"en\"/><PowerSchemes>" +
        OldScheme(HighPerformanceText, OldFunction(1, 2, 3)) +
        R"(<PowerScheme GUID="381b4222-f694-41f0-9685-ff5bb260df2e" Name="Balanced">)" +
        R"(<Function Name="a" ID="1" ACParamIndex="5" DCParamIndex="6"/><Note>kept</Note>)" +
        OldFunction(99, 7, 8);
    const std::string after = "</PowerScheme></PowerSchemes><Other/></OrloPowerCfg>\n";
    WriteFunctions(ThreeDefaults);
    WriteUserSettings(before + after);
    GetParameter(Balanced);
    EXPECT_EQ(UserSettings(), SavedXml{before + NewFunction(2, 21, 22) + NewFunction(3, 31, 32) + after});
}

TEST_F(SchemeReadingTest, CompletionUsesDefaultItemOfScheme) {
    WriteFunctions(R"(<Function ID="1"><Display/><Commands/><Default ACParamIndex="2" DCParamIndex="3">
        <DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="4" DCParamIndex="5"/>
    </Default></Function>)");
    WriteBalanced(OldFunction(9, 9, 9));
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {4, 5}}, {9, {9, 9}}}));
}

TEST_F(SchemeReadingTest, MissingDefaultAndLaterDefaultsCountAsZero) {
    WriteFunctions(R"(
        <Function ID="1"><Display/><Commands/><Default ACParamIndex="2" DCParamIndex="3"/></Function>
        <Function ID="2"><Display/><Commands/></Function>
        <Function ID="3"><Display/><Commands/><Default ACParamIndex="4" DCParamIndex="5"/></Function>)");
    WriteBalanced(OldFunction(9, 9, 9));
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {2, 3}}, {2, {0, 0}}, {3, {0, 0}}, {9, {9, 9}}}));
    EXPECT_EQ(
        UserSettings(),
        SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(9, 9, 9) + NewFunction(1, 2, 3) +
                                                         NewFunction(2, 0, 0) + NewFunction(3, 0, 0)))});
}

TEST_F(SchemeReadingTest, CompletionUsesFirstFunctionWithSameId) {
    WriteFunctions(R"(
        <Function ID="1"><Display/><Commands/><Default ACParamIndex="2" DCParamIndex="3"/></Function>
        <Function ID="1"><Display/><Commands/><Default ACParamIndex="4" DCParamIndex="5"/></Function>)");
    WriteBalanced(OldFunction(9, 9, 9));
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {2, 3}}, {9, {9, 9}}}));
}

TEST_F(SchemeReadingTest, SchemeIsCompletedEvenIfSaveFails) {
    WriteFunctions(ThreeDefaults);
    WriteBalanced(OldFunction(1, 2, 3));
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {2, 3}}, {2, {21, 22}}, {3, {31, 32}}}));
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_NORMAL);
}

class EmptySchemeTest : public SchemeReadingTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(EmptySchemeTest, SchemeWithoutReadableFunctionsIsNotCompleted) {
    const std::string scheme = OldScheme(BalancedText, GetParam().xml);
    EXPECT_EQ(CompleteSchemes(scheme), Params{});
    EXPECT_EQ(UserSettings(), SavedXml{OldUserFile(scheme)});
}

INSTANTIATE_TEST_SUITE_P(
    Functions, EmptySchemeTest,
    testing::Values(
        XmlCase{"NoFunction", ""}, XmlCase{"OnlyComment", "<!--none-->"},
        XmlCase{"OnlyFunctionInNamespace",
                R"(<Function xmlns="urn:other" ID="1" ACParamIndex="2" DCParamIndex="3"/>)"},
        XmlCase{"OnlyNestedFunction", "<Group>" + OldFunction(1, 2, 3) + "</Group>"},
        XmlCase{"FirstFunctionWithoutId",
                R"(<Function ACParamIndex="2" DCParamIndex="3"/>)" + OldFunction(2, 5, 6)},
        XmlCase{"FirstFunctionWithoutAc", R"(<Function ID="1" DCParamIndex="3"/>)" + OldFunction(2, 5, 6)},
        XmlCase{"FirstFunctionWithoutDc", R"(<Function ID="1" ACParamIndex="2"/>)" + OldFunction(2, 5, 6)}),
    CaseName<XmlCase>);

TEST_F(SchemeReadingTest, DeletedSchemeIsReadFromDefaults) {
    EXPECT_EQ(CompleteSchemes(OldScheme(BalancedText, "")), Params{});
    EXPECT_EQ(CompleteSchemes(""), ThreeDefaultParams);
}

// ---- Functions that are missing an attribute ----

TEST_F(SchemeReadingTest, FunctionWithoutDcReplacesRestWithDefaults) {
    EXPECT_EQ(CompleteBalanced(OldFunction(1, 2, 3) + R"(<Function ID="2" ACParamIndex="4"/>)" +
                               OldFunction(3, 5, 6) + OldFunction(9, 9, 9)),
              (Params{{1, {2, 3}}, {2, {21, 22}}, {3, {31, 32}}}));
    EXPECT_EQ(
        UserSettings(),
        SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(1, 2, 3) + OldFunction(2, 21, 22) +
                                                         OldFunction(3, 31, 32) + OldFunction(9, 9, 9)))});
}

TEST_F(SchemeReadingTest, FunctionWithoutAcReplacesRestWithDefaults) {
    EXPECT_EQ(CompleteBalanced(OldFunction(1, 2, 3) + R"(<Function ID="2" DCParamIndex="4"/>)" +
                               OldFunction(3, 5, 6)),
              (Params{{1, {2, 3}}, {2, {21, 22}}, {3, {31, 32}}}));
    EXPECT_EQ(
        UserSettings(),
        SavedXml{OldUserFile(OldScheme(
            BalancedText, OldFunction(1, 2, 3) + R"(<Function ID="2" DCParamIndex="22" ACParamIndex="21"/>)" +
                              OldFunction(3, 31, 32)))});
}

TEST_F(SchemeReadingTest, FunctionWithoutIdPreventsStoringOfDefaults) {
    const std::string scheme =
        OldScheme(BalancedText, OldFunction(1, 2, 3) + R"(<Function ACParamIndex="4" DCParamIndex="5"/>)" +
                                    OldFunction(3, 6, 7));
    EXPECT_EQ(CompleteSchemes(scheme), (Params{{1, {2, 3}}, {2, {21, 22}}, {3, {31, 32}}}));
    EXPECT_EQ(UserSettings(), SavedXml{OldUserFile(scheme)});
}

TEST_F(SchemeReadingTest, AttributeInNamespaceCountsAsMissing) {
    EXPECT_EQ(ReadBalanced(OldFunction(1, 2, 3) + R"(<Function xmlns:o="urn:other" o:ID="2"
        ACParamIndex="4" DCParamIndex="5"/>)" +
                           OldFunction(3, 6, 7)),
              (Params{{1, {2, 3}}}));
}

}  // namespace ZOTDam::Test
