// Tests of GetFunctionBase, which enumerates the base catalogue: its functions, their families, and functions
// that cannot be read.
#include "support/FunctionBaseTest.h"

#include "support/HeapAllocations.h"
#include "support/RawRecords.h"
#include "support/UnreadableValue.h"

namespace ZOTDam::Test {

namespace {

using IdList = std::vector<std::int32_t>;
using Records = std::vector<FunctionBase>;

// Functions with all attributes and elements. No two values are the same.
constexpr char DimAndRate[] = R"(
    <Function ID="3" Type="4" Flag="5" Name="Dim" Group="Display">
        <Display><AC><DisplayItem Label="Soon" Option="60"/></AC></Display>
        <Commands>
            <CommandFamily>
                <CommandItem ID="10" Event="11" State="12" ParamIndex1="13" ParamIndex2="14" Flag="15"
                             SpecInfo1="s1"/>
                <CommandItem ID="20" Event="21" State="22" ParamIndex1="23" ParamIndex2="24" Flag="25"
                             SpecInfo1="s2"/>
                <CheckExistItem CheckFlag="30" Param1="p31" Param2="p32" Param3="p33" Param4="p34"/>
            </CommandFamily>
            <CommandFamily>
                <CheckExistItem CheckFlag="40" Param1="p41" Param2="p42" Param3="p43" Param4="p44"/>
                <CheckExistItem CheckFlag="50" Param1="p51" Param2="p52" Param3="p53" Param4="p54"/>
            </CommandFamily>
        </Commands>
        <Default ACParamIndex="1" DCParamIndex="2"/>
    </Function>
    <Function ID="7" Type="-8" Flag="-9" Name="Rate" Group="Panel">
        <Commands>
            <CommandFamily>
                <CommandItem ID="-60" Event="-61" State="-62" ParamIndex1="-63" ParamIndex2="-64" Flag="-65"
                             SpecInfo1=""/>
            </CommandFamily>
        </Commands>
    </Function>)";

const Records DimAndRateRecords = {
    {3,
     4,
     5,
     L"Dim",
     L"Display",
     L"<Display><AC><DisplayItem Label=\"Soon\" Option=\"60\"/></AC></Display>",
     L"<Default ACParamIndex=\"1\" DCParamIndex=\"2\"/>",
     {{{{10, 11, 12, 13, 14, 15, L"s1"}, {20, 21, 22, 23, 24, 25, L"s2"}},
       {{30, L"p31", L"p32", L"p33", L"p34"}}},
      {{}, {{40, L"p41", L"p42", L"p43", L"p44"}, {50, L"p51", L"p52", L"p53", L"p54"}}}}},
    {7, -8, -9, L"Rate", L"Panel", {}, {}, {{{{-60, -61, -62, -63, -64, -65, L""}}, {}}}},
};

std::vector<Family> FamiliesOf(const Records& records) {
    return records.empty() ? std::vector<Family>{} : records.front().families;
}

IdList CommandIds(const Family& family) {
    IdList ids;
    for (const BaseCommand& command : family.commands)
        ids.push_back(command.id);
    return ids;
}

IdList CheckFlags(const Family& family) {
    IdList flags;
    for (const ExistCheck& check : family.checks)
        flags.push_back(check.checkFlag);
    return flags;
}

}  // namespace

// ---- Functions ----

TEST_F(FunctionBaseTest, RecordsContainEveryField) {
    EXPECT_EQ(RecordsOf(DimAndRate), DimAndRateRecords);
}

TEST_F(FunctionBaseTest, RepeatedCallsReturnSameRecords) {
    EXPECT_EQ(RecordsOf(DimAndRate), DimAndRateRecords);
    EXPECT_EQ(GetFunctionBase(), DimAndRateRecords);
    EXPECT_EQ(GetFunctionBase(), DimAndRateRecords);
}

TEST_F(FunctionBaseTest, RecordsFollowFileOrder) {
    EXPECT_EQ(IdsOf(BaseFunctions({30, 4, 200, 5})), (IdList{30, 4, 200, 5}));
}

TEST_F(FunctionBaseTest, NegativeIdsAreKept) {
    EXPECT_EQ(IdsOf(BaseFunctions({1, -1, -300, 2})), (IdList{1, -1, -300, 2}));
}

TEST_F(FunctionBaseTest, FunctionsWithSameIdAreAllKept) {
    const Records records = RecordsOf(R"(<Function ID="1" Name="First"><Commands/></Function>
        <Function ID="1" Name="Second"><Commands/></Function>)");
    EXPECT_EQ(records, (Records{{.id = 1, .name = L"First"}, {.id = 1, .name = L"Second"}}));
}

TEST_F(FunctionBaseTest, DefaultsFileDoesNotAffectRecords) {
    WriteFunctions(Function(1));
    EXPECT_EQ(IdsOf(BaseFunctions({1, 2})), (IdList{1, 2}));
}

class ManyBaseFunctionsTest : public FunctionBaseTest, public testing::WithParamInterface<std::int32_t> {};

TEST_P(ManyBaseFunctionsTest, AllFunctionsAreEnumeratedInOrder) {
    std::string functions;
    IdList ids;
    for (std::int32_t id = GetParam(); id > 0; --id) {
        functions += BaseFunction(id);
        ids.push_back(id);
    }
    EXPECT_EQ(IdsOf(functions), ids);
}

INSTANTIATE_TEST_SUITE_P(, ManyBaseFunctionsTest, testing::Values(1000, 10000));

// The parameter is an unusual but valid function between two others. It has the id 2 and no families.
class UnusualBaseFunctionTest : public FunctionBaseTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(UnusualBaseFunctionTest, UnusualFunctionYieldsRecordWithoutFamilies) {
    const Records records = RecordsOf(BaseFunction(1) + GetParam().xml + BaseFunction(3));
    EXPECT_EQ(Ids(records), (IdList{1, 2, 3}));
    for (const FunctionBase& record : records)
        EXPECT_EQ(record.families, std::vector<Family>{});
}

INSTANTIATE_TEST_SUITE_P(
    , UnusualBaseFunctionTest,
    testing::Values(
        XmlCase{"WithoutDisplay", R"(<Function ID="2"><Default/><Commands/></Function>)"},
        XmlCase{"WithoutDefault", R"(<Function ID="2"><Display/><Commands/></Function>)"},
        XmlCase{"WithEmptyCommands", R"(<Function ID="2"><Commands></Commands></Function>)"},
        XmlCase{"WithCommandsFirst", R"(<Function ID="2"><Commands/><Default/><Display/></Function>)"},
        XmlCase{"WithItemsOutsideFamily",
                R"(<Function ID="2"><Commands><CommandItem/><CheckExistItem/></Commands></Function>)"},
        XmlCase{"WithFamilyOutsideCommands",
                R"(<Function ID="2"><CommandFamily/><Commands/><CommandFamily/></Function>)"},
        XmlCase{"WithFamilyInSecondCommands",
                R"(<Function ID="2"><Commands/><Commands><CommandFamily/></Commands></Function>)"},
        XmlCase{
            "WithFamilyInNamespacedCommands",
            R"(<Function ID="2"><Commands xmlns="urn:o"><CommandFamily/></Commands><Commands/></Function>)"},
        XmlCase{"WithFamiliesInNamespace", R"(<Function ID="2"><Commands xmlns:o="urn:other">
            <o:CommandFamily/><CommandFamily xmlns="urn:other"/></Commands></Function>)"},
        XmlCase{"WithFamilyInDifferentCase",
                R"(<Function ID="2"><Commands><Commandfamily/></Commands></Function>)"},
        XmlCase{"WithFamilyInComment",
                R"(<Function ID="2"><Commands><!--<CommandFamily/>--></Commands></Function>)"},
        XmlCase{"WithFamilyAsText",
                R"(<Function ID="2"><Commands><![CDATA[<CommandFamily/>]]></Commands></Function>)"},
        XmlCase{"WithUnknownAttributesAndChildren",
                R"(<Function Colour="red" ID="2"><Icon/><Commands A="1"><Command/></Commands></Function>)"},
        XmlCase{"WithAttributesInNamespace",
                R"(<Function xmlns:o="urn:other" o:ID="5" ID="2" o:Name="n"><Commands/></Function>)"},
        XmlCase{
            "WithOtherNodeTypes",
            R"(<Function ID="2"><!--a-->b<?c d?><![CDATA[e]]><Commands>f<!--g--></Commands>h</Function>)"},
        XmlCase{"WithLongUnknownAttributes", "<Function ID=\"2\" Text=\"" + std::string(10000, 't') +
                                                 "\"><Display Name=\"" + std::string(10000, 't') +
                                                 "\"/><Commands/></Function>"}),
    CaseName<XmlCase>);

TEST_F(FunctionBaseTest, NodesOtherThanFunctionsAreIgnored) {
    EXPECT_EQ(IdsOf(BaseFunction(1) + "<!--" + BaseFunction(2) + "-->text<![CDATA[" + BaseFunction(3) +
                    "]]><?Function?><function/><Functions>" + BaseFunction(4) +
                    R"(</Functions><Function xmlns="urn:other"/><o:Function xmlns:o="urn:other"/>)" +
                    BaseFunction(5)),
              (IdList{1, 5}));
}

// ---- Families ----

TEST_F(FunctionBaseTest, FamiliesFollowFileOrder) {
    const FunctionBase record = OnlyRecordOf(BaseFunction(1, CommandFamilies("<CommandItem ID=\"9\"/>") +
                                                                 CommandFamilies("<CommandItem ID=\"7\"/>") +
                                                                 CommandFamilies("<CommandItem ID=\"8\"/>")));
    ASSERT_EQ(record.families.size(), 3u);
    EXPECT_EQ(CommandIds(record.families[0]), IdList{9});
    EXPECT_EQ(CommandIds(record.families[1]), IdList{7});
    EXPECT_EQ(CommandIds(record.families[2]), IdList{8});
}

TEST_F(FunctionBaseTest, MixedItemsFollowFileOrderPerKind) {
    const FunctionBase record = OnlyRecordOf(BaseFunction(1, CommandFamilies(R"(
        <CheckExistItem CheckFlag="5"/><CommandItem ID="4"/><CheckExistItem CheckFlag="3"/>
        <CommandItem ID="2"/><CommandItem ID="6"/><CheckExistItem CheckFlag="1"/>)")));
    ASSERT_EQ(record.families.size(), 1u);
    EXPECT_EQ(CommandIds(record.families[0]), (IdList{4, 2, 6}));
    EXPECT_EQ(CheckFlags(record.families[0]), (IdList{5, 3, 1}));
}

TEST_F(FunctionBaseTest, FamilyWithoutCommandsIsKept) {
    EXPECT_EQ(FamiliesOf(RecordsOf(BaseFunction(1, CommandFamilies("<CheckExistItem CheckFlag=\"1\"/>")))),
              (std::vector<Family>{{{}, {{1, L"", L"", L"", L""}}}}));
}

TEST_F(FunctionBaseTest, FamilyWithoutChecksIsKept) {
    EXPECT_EQ(FamiliesOf(RecordsOf(BaseFunction(1, CommandFamilies("<CommandItem ID=\"1\"/>")))),
              (std::vector<Family>{{{{.id = 1}}, {}}}));
}

TEST_F(FunctionBaseTest, EmptyFamiliesAreKept) {
    EXPECT_EQ(FamiliesOf(RecordsOf(BaseFunction(1, "<CommandFamily/>" + CommandFamilies("")))),
              (std::vector<Family>(2)));
}

TEST_F(FunctionBaseTest, NextFunctionDoesNotInheritFamilies) {
    const Records records = RecordsOf(BaseFunction(1, "<CommandFamily/><CommandFamily/>") + BaseFunction(2) +
                                      BaseFunction(3, "<CommandFamily/>"));
    ASSERT_EQ(records.size(), 3u);
    EXPECT_EQ(records[0].families.size(), 2u);
    EXPECT_EQ(records[1].families.size(), 0u);
    EXPECT_EQ(records[2].families.size(), 1u);
}

TEST_F(FunctionBaseTest, NextFamilyDoesNotInheritItems) {
    const FunctionBase record = OnlyRecordOf(
        BaseFunction(1, CommandFamilies("<CommandItem/><CheckExistItem/>") + CommandFamilies("")));
    EXPECT_EQ(record.families, (std::vector<Family>{{{{}}, {{}}}, {}}));
}

TEST_F(FunctionBaseTest, OnlyFirstCommandsElementIsRead) {
    const FunctionBase record = OnlyRecordOf(R"(<Function ID="1"><Commands><CommandFamily/></Commands>
        <Commands><CommandFamily/><CommandFamily/></Commands></Function>)");
    EXPECT_EQ(record.families.size(), 1u);
}

TEST_F(FunctionBaseTest, NodesOtherThanItemsAreIgnored) {
    const FunctionBase record = OnlyRecordOf(BaseFunction(1, CommandFamilies(R"(
        <!--<CommandItem ID="1"/>-->text<commanditem ID="2"/><CommandItem xmlns="urn:other" ID="3"/>
        <CommandFamily><CommandItem ID="4"/></CommandFamily><CommandItem ID="5"/>
        <o:CheckExistItem xmlns:o="urn:other" CheckFlag="6"/><![CDATA[<CheckExistItem CheckFlag="7"/>]]>
        <CheckExistItem CheckFlag="8"><CheckExistItem CheckFlag="9"/></CheckExistItem>)")));
    ASSERT_EQ(record.families.size(), 1u);
    EXPECT_EQ(CommandIds(record.families[0]), IdList{5});
    EXPECT_EQ(CheckFlags(record.families[0]), IdList{8});
}

TEST_F(FunctionBaseTest, ManyFamiliesAndItemsAreKept) {
    std::string items;
    for (std::int32_t i = 0; i < 20; ++i)
        items += "<CommandItem ID=\"" + std::to_string(i) + "\"/><CheckExistItem/>";
    std::string families;
    for (std::int32_t i = 0; i < 50; ++i)
        families += CommandFamilies(items);
    const FunctionBase record = OnlyRecordOf(BaseFunction(1, families));
    EXPECT_EQ(record.families.size(), 50u);
    for (const Family& family : record.families) {
        EXPECT_EQ(family.commands.size(), 20u);
        EXPECT_EQ(family.commands.back().id, 19);
        EXPECT_EQ(family.checks.size(), 20u);
    }
}

// ---- Functions that cannot be read ----

class UnreadableBaseFunctionTest : public FunctionBaseTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(UnreadableBaseFunctionTest, UnreadableFunctionEndsEnumerationAfterPreviousOnes) {
    EXPECT_EQ(IdsOf(BaseFunctions({1, -4}) + GetParam().xml + BaseFunction(3)), (IdList{1, -4}));
}

TEST_P(UnreadableBaseFunctionTest, UnreadableFirstFunctionYieldsNoRecords) {
    EXPECT_EQ(IdsOf(GetParam().xml + BaseFunction(3)), IdList{});
}

TEST_P(UnreadableBaseFunctionTest, UnreadableFunctionKeepsPreviousRecordsComplete) {
    EXPECT_EQ(RecordsOf(DimAndRate + GetParam().xml), DimAndRateRecords);
    EXPECT_EQ(GetFunctionBase(), DimAndRateRecords);
}

INSTANTIATE_TEST_SUITE_P(, UnreadableBaseFunctionTest, testing::ValuesIn(UnreadableFunctions()),
                         CaseName<XmlCase>);

class BaseStringReadFailureTest : public FunctionBaseTest, public testing::WithParamInterface<TextField> {};

TEST_P(BaseStringReadFailureTest, ReadFailureEndsOnlyCurrentEnumeration) {
    const std::string functions = BaseFunction(1) + GetParam().Function("fails") + BaseFunction(3);
    {
        const UnreadableValue failure{L"fails"};
        EXPECT_EQ(IdsOf(functions), IdList{1});
    }
    EXPECT_EQ(IdsOf(functions), (IdList{1, 2, 3}));
}

INSTANTIATE_TEST_SUITE_P(, BaseStringReadFailureTest, testing::ValuesIn(TextFields()), CaseName<TextField>);

// ---- The records as bytes ----

TEST_F(FunctionBaseTest, RecordLayoutMatchesRawOffsets) {
    WriteBaseFunctions(DimAndRate);
    std::vector<const FunctionBaseRecord*> records;
    auto walk = MakeCallback<IGetFunctionBaseCallback>([&](const FunctionBaseRecord* record) {
        records.push_back(record);
        if (records.size() > 1)
            return;
        EXPECT_EQ(At<std::int32_t>(record, 0), 3);
        EXPECT_EQ(At<std::int32_t>(record, 4), 4);
        EXPECT_EQ(At<std::int32_t>(record, 8), 5);
        EXPECT_STREQ(TextAt(record, 12), L"Dim");
        EXPECT_STREQ(TextAt(record, 532), L"Display");
        EXPECT_EQ(XmlOf(At<IXMLDOMNode*>(record, 1056)), DimAndRateRecords[0].display);
        EXPECT_EQ(XmlOf(At<IXMLDOMNode*>(record, 1064)), DimAndRateRecords[0].defaults);
        const std::vector<const void*> families = ListAt(record, 1072);
        ASSERT_EQ(families.size(), 2u);
        const std::vector<const void*> commands = ListAt(families[0], 0);
        ASSERT_EQ(commands.size(), 2u);
        for (std::size_t field = 0; field < 6; ++field)
            EXPECT_EQ(At<std::int32_t>(commands[1], 4 * field), 20 + static_cast<std::int32_t>(field));
        EXPECT_STREQ(TextAt(commands[1], 24), L"s2");
        EXPECT_EQ(ListAt(families[0], 16).size(), 1u);
        EXPECT_EQ(ListAt(families[1], 0).size(), 0u);
        const std::vector<const void*> checks = ListAt(families[1], 16);
        ASSERT_EQ(checks.size(), 2u);
        EXPECT_EQ(At<std::int32_t>(checks[1], 0), 50);
        EXPECT_STREQ(TextAt(checks[1], 4), L"p51");
        EXPECT_STREQ(TextAt(checks[1], 524), L"p52");
        EXPECT_STREQ(TextAt(checks[1], 1044), L"p53");
        EXPECT_STREQ(TextAt(checks[1], 1564), L"p54");
    });
    EXPECT_TRUE(Dll().GetFunctionBase(&walk));
    EXPECT_EQ(records.size(), 2u);
}

TEST_F(FunctionBaseTest, MinimalFunctionHasNullNodesAndEmptyList) {
    WriteBaseFunctions(BaseFunction(1));
    auto look = MakeCallback<IGetFunctionBaseCallback>([](const FunctionBaseRecord* record) {
        EXPECT_EQ(At<void*>(record, 1056), nullptr);
        EXPECT_EQ(At<void*>(record, 1064), nullptr);
        EXPECT_EQ(ListAt(record, 1072).size(), 0u);
    });
    EXPECT_TRUE(Dll().GetFunctionBase(&look));
}

// ---- OnItem ----

class BaseOnItemTest : public FunctionBaseTest {
protected:
    struct ClientFailure {};

    void SetUp() override { WriteBaseFunctions(DimAndRate); }

    // Performs the action in OnItem at the first item. Returns all items.
    template <class Action>
    Records RecordsWhile(Action&& atFirstItem) {
        Records records;
        auto callback = MakeCallback<IGetFunctionBaseCallback>([&](const FunctionBaseRecord* record) {
            if (records.empty())
                atFirstItem();
            records.push_back(CopyOf(*record));
        });
        EXPECT_TRUE(Dll().GetFunctionBase(&callback));
        return records;
    }

    void ThrowAtItem(int failingItem) {
        auto callback = MakeCallback<IGetFunctionBaseCallback>([&](const FunctionBaseRecord*) {
            if (--failingItem == 0)
                throw ClientFailure{};
        });
        EXPECT_THROW(Dll().GetFunctionBase(&callback), ClientFailure);
        EXPECT_EQ(failingItem, 0);
    }
};

TEST_F(BaseOnItemTest, CallbackMayEnumerateAgain) {
    EXPECT_EQ(RecordsWhile([this] { EXPECT_EQ(GetFunctionBase(), DimAndRateRecords); }), DimAndRateRecords);
}

TEST_F(BaseOnItemTest, CallbackMayCallOtherExports) {
    EXPECT_EQ(RecordsWhile([this] {
                  EXPECT_EQ(GetFunctionBaseUnSupported(), Records{});
                  EXPECT_TRUE(SetParameter(Balanced, {{3, {1, 0}}}));
                  EXPECT_FALSE(Dll().InitCommonSetting());
              }),
              DimAndRateRecords);
}

TEST_F(BaseOnItemTest, ExitDuringEnumerationKeepsRemainingItems) {
    EXPECT_EQ(RecordsWhile([this] { EXPECT_TRUE(Dll().ZOTDamExit()); }), DimAndRateRecords);
    EXPECT_FALSE(Dll().ResetDefault());
}

TEST_F(BaseOnItemTest, ExceptionReachesClientAndEndsEnumeration) {
    ThrowAtItem(1);
    ThrowAtItem(2);
    EXPECT_EQ(GetFunctionBase(), DimAndRateRecords);
}

TEST_F(BaseOnItemTest, ExceptionInOnItemLeaksNoAllocations) {
    GetFunctionBase();
    HeapAllocations::Track(Dll().Handle());
    ThrowAtItem(1);
    ThrowAtItem(2);
    RecordsWhile([this] { GetFunctionBase(); });
    EXPECT_EQ(HeapAllocations::Count(), 0u);
}

TEST_F(BaseOnItemTest, UnreadableFunctionLeaksNoAllocations) {
    RecordsOf(DimAndRate + std::string{"<Function><Display/><Default/></Function>"});
    HeapAllocations::Track(Dll().Handle());
    GetFunctionBase();
    EXPECT_EQ(HeapAllocations::Count(), 0u);
}

}  // namespace ZOTDam::Test
