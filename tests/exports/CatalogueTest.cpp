// Tests of loading the catalogue from the defaults file, through GetFuncCount and GetParameter.
#include "support/NumberTexts.h"
#include "support/SettingsTest.h"

namespace ZOTDam::Test {

namespace {

constexpr std::size_t LongestText = TextCapacity - 1;

std::string CodeUnits(std::size_t count) {
    std::string units(count, 'n');
    return units;
}

// Returns characters of two UTF-16 code units each.
std::string SurrogatePairs(std::size_t count) {
    std::string text;
    while (count-- > 0)
        text += "\U0001F50B";
    return text;
}

std::string FunctionWithName(const std::string& name) {
    return "<Function ID=\"2\" Name=\"" + name + "\"><Display/><Commands/></Function>";
}

std::string FunctionWithGroup(const std::string& group) {
    return "<Function ID=\"2\" Group=\"" + group + "\"><Display/><Commands/></Function>";
}

std::string FunctionWithLabel(const std::string& source, const std::string& label) {
    return "<Function ID=\"2\"><Display><" + source + "><DisplayItem Label=\"" + label + "\"/></" + source +
           "></Display><Commands/></Function>";
}

}  // namespace

class CatalogueTest : public SettingsTest {
protected:
    std::uint32_t CountOf(const std::string& functions) {
        WriteFunctions(functions);
        return Dll().GetFuncCount();
    }

    std::uint32_t CountInFile(std::string_view defaults) {
        WriteDefaults(defaults);
        return Dll().GetFuncCount();
    }
};

TEST_F(CatalogueTest, FunctionsOfDefaultsFileAreCounted) {
    WriteDefaults(R"(<ZOTDefault><Functions>
        <Function ID="1"><Display/><Commands/></Function>
        <Function ID="2"><Display/><Commands/></Function>
    </Functions></ZOTDefault>)");
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
}

TEST_F(CatalogueTest, ThousandFunctionsAreCounted) {
    std::string functions;
    for (std::int32_t id = 0; id < 1000; ++id)
        functions += Function(id);
    EXPECT_EQ(CountOf(functions), 1000u);
}

// ---- The section ----

TEST_F(CatalogueTest, MissingDefaultsFileMakesCatalogueUnavailable) {
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

TEST_F(CatalogueTest, MissingDefaultsFileIsNotCreated) {
    Dll().GetFuncCount();
    EXPECT_FALSE(std::filesystem::exists(installation.DefaultsFile()));
}

TEST_F(CatalogueTest, MissingFolderMakesCatalogueUnavailable) {
    std::filesystem::remove_all(installation.ProgramFiles());
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

TEST_F(CatalogueTest, FolderNamedLikeFileMakesCatalogueUnavailable) {
    std::filesystem::create_directory(installation.DefaultsFile());
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

TEST_F(CatalogueTest, EmptyFileMakesCatalogueUnavailable) {
    EXPECT_EQ(CountInFile(""), CatalogueUnavailable);
}

TEST_F(CatalogueTest, NotWellFormedFileMakesCatalogueUnavailable) {
    EXPECT_EQ(CountInFile("<ZOTDefault><Functions>" + Function(1) + "</Functions>"), CatalogueUnavailable);
}

TEST_F(CatalogueTest, MissingSectionMakesCatalogueUnavailable) {
    EXPECT_EQ(CountInFile("<ZOTDefault><CommonSettings/></ZOTDefault>"), CatalogueUnavailable);
}

TEST_F(CatalogueTest, CatalogueWithoutSectionStaysUnavailable) {
    CountInFile("<ZOTDefault/>");
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

TEST_F(CatalogueTest, EmptySectionMakesCatalogueEmpty) {
    EXPECT_EQ(CountInFile("<ZOTDefault><Functions/></ZOTDefault>"), 0u);
}

TEST_F(CatalogueTest, RootOfAnyNameIsAccepted) {
    EXPECT_EQ(CountInFile("<Settings><Functions>" + Function(1) + "</Functions></Settings>"), 1u);
}

TEST_F(CatalogueTest, RootWithNamespacePrefixIsAccepted) {
    EXPECT_EQ(
        CountInFile("<o:Root xmlns:o=\"urn:other\"><Functions>" + Function(1) + "</Functions></o:Root>"), 1u);
}

TEST_F(CatalogueTest, RootNamedFunctionsIsNotReadAsSection) {
    EXPECT_EQ(CountInFile("<Functions>" + Function(1) + "</Functions>"), CatalogueUnavailable);
}

TEST_F(CatalogueTest, NestedSectionIsIgnored) {
    EXPECT_EQ(CountInFile("<ZOTDefault><All><Functions>" + Function(1) + "</Functions></All></ZOTDefault>"),
              CatalogueUnavailable);
}

TEST_F(CatalogueTest, FirstOfTwoSectionsIsRead) {
    EXPECT_EQ(CountInFile("<ZOTDefault><Functions>" + Function(1) + "</Functions><Functions>" +
                          Functions({2, 3}) + "</Functions></ZOTDefault>"),
              1u);
}

TEST_F(CatalogueTest, EmptyFirstSectionHidesSecondSection) {
    EXPECT_EQ(CountInFile("<ZOTDefault><Functions/><Functions>" + Function(1) + "</Functions></ZOTDefault>"),
              0u);
}

TEST_F(CatalogueTest, InvalidLaterSectionIsNotRead) {
    EXPECT_EQ(CountInFile("<ZOTDefault><Functions>" + Function(1) +
                          "</Functions><Functions><Function/></Functions></ZOTDefault>"),
              1u);
}

TEST_F(CatalogueTest, SectionInDifferentCaseIsIgnored) {
    EXPECT_EQ(CountInFile("<ZOTDefault><functions>" + Function(1) + "</functions></ZOTDefault>"),
              CatalogueUnavailable);
}

TEST_F(CatalogueTest, SectionInDefaultNamespaceIsIgnored) {
    EXPECT_EQ(CountInFile("<ZOTDefault xmlns=\"urn:other\"><Functions>" + Function(1) +
                          "</Functions></ZOTDefault>"),
              CatalogueUnavailable);
}

TEST_F(CatalogueTest, SectionWithNamespacePrefixIsIgnored) {
    EXPECT_EQ(CountInFile("<ZOTDefault xmlns:o=\"urn:other\"><o:Functions>" + Function(1) +
                          "</o:Functions></ZOTDefault>"),
              CatalogueUnavailable);
}

TEST_F(CatalogueTest, SectionAfterOneInNamespaceIsRead) {
    EXPECT_EQ(CountInFile("<ZOTDefault><Functions xmlns=\"urn:other\"/><Functions>" + Function(1) +
                          "</Functions></ZOTDefault>"),
              1u);
}

TEST_F(CatalogueTest, SectionOutsideRootNamespaceIsRead) {
    EXPECT_EQ(CountInFile("<ZOTDefault xmlns=\"urn:other\"><Functions xmlns=\"\">" + Function(1) +
                          "</Functions></ZOTDefault>"),
              1u);
}

TEST_F(CatalogueTest, InvalidBaseCatalogueDoesNotAffectFunctions) {
    WriteBase("<ZOTBase><Functions>");
    EXPECT_EQ(CountOf(Function(1)), 1u);
}

TEST_F(CatalogueTest, BaseCatalogueDoesNotReplaceMissingDefaults) {
    WriteBase("<ZOTBase><Functions>" + Function(1) + "</Functions></ZOTBase>");
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

// ---- When the catalogue is loaded ----

TEST_F(CatalogueTest, CatalogueStaysWhenFileChanges) {
    CountOf(Function(1));
    EXPECT_EQ(CountOf(Functions({1, 2})), 1u);
}

TEST_F(CatalogueTest, CatalogueStaysWhenFileIsDeleted) {
    CountOf(Function(1));
    std::filesystem::remove(installation.DefaultsFile());
    EXPECT_EQ(Dll().GetFuncCount(), 1u);
}

TEST_F(CatalogueTest, ReloadedLibraryReadsFileAgain) {
    CountOf(Function(1));
    Unload();
    EXPECT_EQ(CountOf(Functions({1, 2})), 2u);
}

TEST_F(CatalogueTest, EmptyCatalogueIsNotReadAgain) {
    CountOf("");
    EXPECT_EQ(CountOf(Function(1)), 0u);
}

TEST_F(CatalogueTest, UnreadableFileIsNotReadAgain) {
    CountInFile("<ZOTDefault>");
    EXPECT_EQ(CountOf(Function(1)), CatalogueUnavailable);
}

TEST_F(CatalogueTest, FileCreatedAfterFirstLoadIsIgnored) {
    Dll().GetFuncCount();
    EXPECT_EQ(CountOf(Function(1)), CatalogueUnavailable);
}

TEST_F(CatalogueTest, FailedLoadFailsAgainAtNextCall) {
    CountOf(Function(1) + Function(-3));
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

// ---- Functions ----

TEST_F(CatalogueTest, FunctionsWithSameIdCountOnce) {
    EXPECT_EQ(CountOf(Functions({1, 1, 2, 1})), 2u);
}

TEST_F(CatalogueTest, IdWithoutDigitsIsZero) {
    EXPECT_EQ(CountOf(R"(<Function ID="abc"><Display/><Commands/></Function>)" + Function(0)), 1u);
}

TEST_F(CatalogueTest, FunctionsAreEnumeratedByAscendingId) {
    WriteFunctions(Functions({300, 0, 20, 1}));
    WriteBalanced(R"(<Function ID="-1" ACParamIndex="0" DCParamIndex="0"/>)");
    EXPECT_EQ(GetParameter(Balanced), (Params{{-1, {}}, {0, {}}, {1, {}}, {20, {}}, {300, {}}}));
}

class CatalogueIdTest : public CatalogueTest, public testing::WithParamInterface<NumberText> {};

TEST_P(CatalogueIdTest, IdIsReadAsNumberUnlessNegative) {
    WriteFunctions("<Function ID=\"" + GetParam().text + "\"><Display/><Commands/></Function>");
    WriteBalanced(R"(<Function ID="-1" ACParamIndex="0" DCParamIndex="0"/>)");
    const std::int32_t id = GetParam().value;
    EXPECT_EQ(Dll().GetFuncCount(), id < 0 ? CatalogueUnavailable : 1u);
    EXPECT_EQ(GetParameter(Balanced), (id < 0 ? Params{} : Params{{-1, {}}, {id, {}}}));
}

INSTANTIATE_TEST_SUITE_P(Numbers, CatalogueIdTest, testing::ValuesIn(NumberTexts()), CaseName<NumberText>);

// The parameter is the second of three functions.
class InvalidCatalogueFunctionTest : public CatalogueTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(InvalidCatalogueFunctionTest, InvalidFunctionMakesCatalogueUnavailable) {
    EXPECT_EQ(CountOf(Function(1) + GetParam().xml + Function(3)), CatalogueUnavailable);
}

INSTANTIATE_TEST_SUITE_P(
    Structure, InvalidCatalogueFunctionTest,
    testing::Values(XmlCase{"WithoutId", "<Function><Display/><Commands/></Function>"},
                    XmlCase{"WithIdInDifferentCase", R"(<Function Id="2"><Display/><Commands/></Function>)"},
                    XmlCase{"WithIdInNamespace",
                            R"(<Function xmlns:o="urn:other" o:ID="2"><Display/><Commands/></Function>)"},
                    XmlCase{"WithNegativeId", Function(-3)}, XmlCase{"WithIdMinusOne", Function(-1)},
                    XmlCase{"WithoutDisplay", R"(<Function ID="2"><Commands/></Function>)"},
                    XmlCase{"WithoutCommands", R"(<Function ID="2"><Display/></Function>)"},
                    XmlCase{"WithoutCommandsButWithIdOfFirst", R"(<Function ID="1"><Display/></Function>)"},
                    XmlCase{"WithoutChildren", R"(<Function ID="2"/>)"},
                    XmlCase{"WithDisplayInDefaultNamespace",
                            R"(<Function ID="2"><Display xmlns="urn:other"/><Commands/></Function>)"},
                    XmlCase{"WithCommandsInPrefixedNamespace",
                            R"(<Function ID="2" xmlns:o="urn:other"><Display/><o:Commands/></Function>)"},
                    XmlCase{"WithDisplayBelowAnotherElement",
                            R"(<Function ID="2"><All><Display/></All><Commands/></Function>)"},
                    XmlCase{"WithCommandsBelowDisplay",
                            R"(<Function ID="2"><Display><Commands/></Display></Function>)"},
                    XmlCase{"WithProcessingInstructionInsteadOfDisplay",
                            R"(<Function ID="2"><?Display?><Commands/></Function>)"},
                    XmlCase{"WithCommentInsteadOfCommands",
                            R"(<Function ID="2"><Display/><!--<Commands/>--></Function>)"},
                    XmlCase{"WithTextInsteadOfCommands",
                            R"(<Function ID="2"><Display/><![CDATA[<Commands/>]]></Function>)"}),
    CaseName<XmlCase>);

INSTANTIATE_TEST_SUITE_P(
    OverlongStrings, InvalidCatalogueFunctionTest,
    testing::Values(XmlCase{"NameOf260Units", FunctionWithName(CodeUnits(LongestText + 1))},
                    XmlCase{"NameOf10000Units", FunctionWithName(CodeUnits(10000))},
                    XmlCase{"NameOf130SurrogatePairs", FunctionWithName(SurrogatePairs(130))},
                    XmlCase{"NameWithSurrogatePairAcrossLimit",
                            FunctionWithName(CodeUnits(LongestText - 1) + SurrogatePairs(1))},
                    XmlCase{"GroupOf260Units", FunctionWithGroup(CodeUnits(LongestText + 1))},
                    XmlCase{"GroupOf10000Units", FunctionWithGroup(CodeUnits(10000))},
                    XmlCase{"GroupOf130SurrogatePairs", FunctionWithGroup(SurrogatePairs(130))},
                    XmlCase{"AcLabelOf260Units", FunctionWithLabel("AC", CodeUnits(LongestText + 1))},
                    XmlCase{"AcLabelOf10000Units", FunctionWithLabel("AC", CodeUnits(10000))},
                    XmlCase{"DcLabelOf260Units", FunctionWithLabel("DC", CodeUnits(LongestText + 1))},
                    XmlCase{"DcLabelOf130SurrogatePairs", FunctionWithLabel("DC", SurrogatePairs(130))}),
    CaseName<XmlCase>);

// The parameter is an unusual but valid function between two others. All three are read.
class UnusualCatalogueFunctionTest : public CatalogueTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(UnusualCatalogueFunctionTest, UnusualFunctionIsCounted) {
    EXPECT_EQ(CountOf(Function(1) + GetParam().xml + Function(3)), 3u);
}

INSTANTIATE_TEST_SUITE_P(
    Structure, UnusualCatalogueFunctionTest,
    testing::Values(
        XmlCase{"WithDisplayAfterCommands", R"(<Function ID="2"><Commands/><Display/></Function>)"},
        XmlCase{"WithoutAcItems",
                R"(<Function ID="2"><Display><DC><DisplayItem/></DC></Display><Commands/></Function>)"},
        XmlCase{"WithoutDcItems",
                R"(<Function ID="2"><Display><AC><DisplayItem/></AC></Display><Commands/></Function>)"},
        XmlCase{"WithEmptyLists", R"(<Function ID="2"><Display><AC/><DC/></Display><Commands/></Function>)"},
        XmlCase{"WithCommand",
                R"(<Function ID="2"><Display/><Commands><CommandItem ID="1"/></Commands></Function>)"},
        XmlCase{"WithInvalidNumbers", R"(
            <Function ID="2" Type="x" Flag=""><Display/><Commands>
                <CommandItem Event="x" Flag="" ID="-" State="." ParamIndex1="one" ParamIndex2="99999999999"/>
            </Commands></Function>)"},
        XmlCase{"WithUnknownAttributesAndChildren", R"(
            <Function Colour="red" ID="2"><Icon/><Display><UPS/></Display><Commands><Command/></Commands>
            </Function>)"},
        XmlCase{"WithOtherNodeTypes", R"(
            <Function ID="2"><!--first-->text<?Display?><Display><![CDATA[AC]]></Display>
            <?Commands?><Commands>text<!--last--></Commands></Function>)"},
        XmlCase{"WithNamespacedElementsBeforeItsOwn", R"(
            <Function ID="2" xmlns:o="urn:other"><o:Display/><Display/><Commands xmlns="urn:other"/>
            <Commands/></Function>)"}),
    CaseName<XmlCase>);

INSTANTIATE_TEST_SUITE_P(
    LongStrings, UnusualCatalogueFunctionTest,
    testing::Values(
        XmlCase{"NameOf259Units", FunctionWithName(CodeUnits(LongestText))},
        XmlCase{"NameOf129SurrogatePairsAndOneUnit", FunctionWithName(SurrogatePairs(129) + CodeUnits(1))},
        XmlCase{"GroupOf259Units", FunctionWithGroup(CodeUnits(LongestText))},
        XmlCase{"GroupOf129SurrogatePairsAndOneUnit", FunctionWithGroup(SurrogatePairs(129) + CodeUnits(1))},
        XmlCase{"AcLabelOf259Units", FunctionWithLabel("AC", CodeUnits(LongestText))},
        XmlCase{"DcLabelOf259Units", FunctionWithLabel("DC", CodeUnits(LongestText))},
        XmlCase{"DcLabelOf129SurrogatePairsAndOneUnit",
                FunctionWithLabel("DC", SurrogatePairs(129) + CodeUnits(1))},
        XmlCase{"LabelInListOfAnotherName", FunctionWithLabel("UPS", CodeUnits(10000))},
        XmlCase{"LongUnknownAttribute", "<Function ID=\"2\" Description=\"" + CodeUnits(10000) +
                                            "\"><Display/><Commands/></Function>"},
        XmlCase{"SpecInfoOf10000Units", "<Function ID=\"2\"><Display/><Commands><CommandItem SpecInfo1=\"" +
                                            CodeUnits(10000) + "\"/></Commands></Function>"}),
    CaseName<XmlCase>);

// Further elements of the same name are not read, so an overlong label in them does not fail the load.
INSTANTIATE_TEST_SUITE_P(
    LaterDuplicates, UnusualCatalogueFunctionTest,
    testing::Values(XmlCase{"Display", "<Function ID=\"2\"><Display/><Display><AC><DisplayItem Label=\"" +
                                           CodeUnits(10000) + "\"/></AC></Display><Commands/></Function>"},
                    XmlCase{"Ac", "<Function ID=\"2\"><Display><AC/><AC><DisplayItem Label=\"" +
                                      CodeUnits(10000) + "\"/></AC></Display><Commands/></Function>"},
                    XmlCase{"Dc", "<Function ID=\"2\"><Display><DC/><DC><DisplayItem Label=\"" +
                                      CodeUnits(10000) + "\"/></DC></Display><Commands/></Function>"},
                    XmlCase{"Commands", R"(<Function ID="2"><Display/><Commands/><Commands/></Function>)"}),
    CaseName<XmlCase>);

// The parameter is located between two functions and adds no function.
class NonFunctionNodeTest : public CatalogueTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(NonFunctionNodeTest, NodeBetweenFunctionsIsIgnored) {
    EXPECT_EQ(CountOf(Function(1) + GetParam().xml + Function(3)), 2u);
}

INSTANTIATE_TEST_SUITE_P(
    Nodes, NonFunctionNodeTest,
    testing::Values(XmlCase{"Comment", "<!--" + Function(2) + "-->"},
                    XmlCase{"ProcessingInstruction", R"(<?Function ID="2"?>)"},
                    XmlCase{"CharacterData", "<![CDATA[" + Function(2) + "]]>"},
                    XmlCase{"Text", "Function ID=2"},
                    XmlCase{"FunctionWithNamespacePrefix",
                            R"(<o:Function xmlns:o="urn:other" ID="2"><Display/><Commands/></o:Function>)"},
                    XmlCase{"FunctionInDefaultNamespace",
                            R"(<Function xmlns="urn:other" ID="2"><Display/><Commands/></Function>)"},
                    XmlCase{"ElementInDifferentCase", R"(<function ID="2"><Display/><Commands/></function>)"},
                    XmlCase{"ElementWithLongerName",
                            R"(<Function2 ID="2"><Display/><Commands/></Function2>)"},
                    XmlCase{"FunctionBelowAnotherElement", "<Group>" + Function(2) + "</Group>"},
                    XmlCase{"FunctionBelowFunction", Function(3, Function(2))}),
    CaseName<XmlCase>);

}  // namespace ZOTDam::Test
