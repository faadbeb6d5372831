// Tests of the fields in the records of the base catalogue: numbers, strings, values inherited from the
// previous element, and nodes.
#include <cstring>

#include "support/FunctionBaseTest.h"
#include "support/NumberTexts.h"

namespace ZOTDam::Test {

namespace {

using Families = std::vector<Family>;
using Node = CountedPointer<IXMLDOMNode>;

std::string FunctionWith(const std::string& attributes, const std::string& families = {}) {
    return "<Function " + attributes + "><Commands>" + families + "</Commands></Function>";
}

// Returns characters of two UTF-16 code units each.
std::string SurrogatePairs(std::size_t count) {
    std::string text;
    while (count-- > 0)
        text += "\U0001F50B";
    return text;
}

std::wstring WideSurrogatePairs(std::size_t count) {
    std::wstring text;
    while (count-- > 0)
        text += L"\U0001F50B";
    return text;
}

}  // namespace

class FunctionBaseRecordTest : public FunctionBaseTest {
protected:
    Families FamiliesOf(const std::string& families) {
        return OnlyRecordOf(BaseFunction(1, families)).families;
    }
};

// ---- Numbers ----

class BaseNumberTest : public FunctionBaseRecordTest, public testing::WithParamInterface<NumberText> {};

TEST_P(BaseNumberTest, NumberIsReadInEveryAttribute) {
    const std::string is = "=\"" + GetParam().text + "\" ";
    const std::int32_t number = GetParam().value;
    const FunctionBase record = OnlyRecordOf(FunctionWith(
        "ID" + is + "Type" + is + "Flag" + is,
        CommandFamilies("<CommandItem ID" + is + "Event" + is + "State" + is + "ParamIndex1" + is +
                        "ParamIndex2" + is + "Flag" + is + "/><CheckExistItem CheckFlag" + is + "/>")));
    EXPECT_EQ(record, (FunctionBase{.id = number,
                                    .type = number,
                                    .flag = number,
                                    .families = {{{{number, number, number, number, number, number, L""}},
                                                  {{.checkFlag = number}}}}}));
}

INSTANTIATE_TEST_SUITE_P(, BaseNumberTest, testing::ValuesIn(NumberTexts()), CaseName<NumberText>);

TEST_F(FunctionBaseRecordTest, MissingAttributesYieldZerosAndEmptyStrings) {
    EXPECT_EQ(OnlyRecordOf(FunctionWith("", CommandFamilies("<CommandItem/><CheckExistItem/>"))),
              (FunctionBase{.families = {{{{}}, {{}}}}}));
}

TEST_F(FunctionBaseRecordTest, AttributesInDifferentCaseAreIgnored) {
    EXPECT_EQ(
        OnlyRecordOf(FunctionWith(R"(Id="1" name="n")", CommandFamilies(R"(<CommandItem Id="1" Specinfo1="s"/>
                                                           <CheckExistItem Checkflag="1" param1="p"/>)"))),
        (FunctionBase{.families = {{{{}}, {{}}}}}));
}

TEST_F(FunctionBaseRecordTest, AttributesInNamespaceAreIgnored) {
    EXPECT_EQ(
        OnlyRecordOf(FunctionWith(R"(xmlns:o="urn:other" o:ID="1" o:Name="n")",
                                  CommandFamilies("<CommandItem o:ID=\"1\" o:SpecInfo1=\"s\"/>"
                                                  "<CheckExistItem o:CheckFlag=\"1\" o:Param1=\"p\"/>"))),
        (FunctionBase{.families = {{{{}}, {{}}}}}));
}

// ---- Strings ----

class BaseStringTest : public FunctionBaseRecordTest, public testing::WithParamInterface<TextField> {
protected:
    std::wstring TextOf(const std::string& text) {
        return GetParam().find(OnlyRecordOf(GetParam().Function(text)));
    }

    bool IsRead(const std::string& text) { return !RecordsOf(GetParam().Function(text)).empty(); }
};

TEST_P(BaseStringTest, StringIsReturnedUnchanged) {
    EXPECT_EQ(TextOf("  a&#9;&lt;b&gt; \xc3\xa4\xe2\x82\xac  "), L"  a\t<b> \u00e4\u20ac  ");
}

TEST_P(BaseStringTest, EmptyStringIsReturned) {
    EXPECT_EQ(TextOf(""), L"");
}

TEST_P(BaseStringTest, StringOf259UnitsFits) {
    EXPECT_EQ(TextOf(std::string(259, 't')), std::wstring(259, L't'));
}

TEST_P(BaseStringTest, StringOf129PairsPlusOneUnitFits) {
    EXPECT_EQ(TextOf(SurrogatePairs(129) + "t"), WideSurrogatePairs(129) + L"t");
}

TEST_P(BaseStringTest, StringOf260UnitsIsRejected) {
    EXPECT_FALSE(IsRead(std::string(260, 't')));
}

TEST_P(BaseStringTest, StringOf130SurrogatePairsIsRejected) {
    EXPECT_FALSE(IsRead(SurrogatePairs(130)));
}

TEST_P(BaseStringTest, SurrogatePairAcrossLimitIsRejected) {
    EXPECT_FALSE(IsRead(std::string(258, 't') + SurrogatePairs(1)));
}

TEST_P(BaseStringTest, StringOf10000UnitsIsRejected) {
    EXPECT_FALSE(IsRead(std::string(10000, 't')));
}

INSTANTIATE_TEST_SUITE_P(, BaseStringTest, testing::ValuesIn(TextFields()), CaseName<TextField>);

// ---- Values inherited from the previous element ----

TEST_F(FunctionBaseRecordTest, FunctionWithoutAttributesInheritsAll) {
    const FunctionBase full = {.id = 1, .type = 2, .flag = 3, .name = L"n", .group = L"g"};
    EXPECT_EQ(RecordsOf(FunctionWith(R"(ID="1" Type="2" Flag="3" Name="n" Group="g")") + FunctionWith("") +
                        FunctionWith("")),
              (std::vector<FunctionBase>{full, full, full}));
}

TEST_F(FunctionBaseRecordTest, FunctionInheritsEachMissingAttribute) {
    EXPECT_EQ(
        RecordsOf(FunctionWith(R"(ID="1" Type="2" Flag="3" Name="n" Group="g")") + FunctionWith(R"(ID="4")") +
                  FunctionWith(R"(Type="5")") + FunctionWith(R"(Flag="6")") + FunctionWith(R"(Name="m")") +
                  FunctionWith(R"(Group="h")")),
        (std::vector<FunctionBase>{{.id = 1, .type = 2, .flag = 3, .name = L"n", .group = L"g"},
                                   {.id = 4, .type = 2, .flag = 3, .name = L"n", .group = L"g"},
                                   {.id = 4, .type = 5, .flag = 3, .name = L"n", .group = L"g"},
                                   {.id = 4, .type = 5, .flag = 6, .name = L"n", .group = L"g"},
                                   {.id = 4, .type = 5, .flag = 6, .name = L"m", .group = L"g"},
                                   {.id = 4, .type = 5, .flag = 6, .name = L"m", .group = L"h"}}));
}

TEST_F(FunctionBaseRecordTest, EmptyStringReplacesInheritedString) {
    EXPECT_EQ(RecordsOf(FunctionWith(R"(ID="1" Name="n" Group="g")") +
                        FunctionWith(R"(ID="2" Name="" Group="")") + FunctionWith(R"(ID="3")")),
              (std::vector<FunctionBase>{{.id = 1, .name = L"n", .group = L"g"}, {.id = 2}, {.id = 3}}));
}

TEST_F(FunctionBaseRecordTest, ShorterStringReplacesLongerString) {
    EXPECT_EQ(RecordsOf(FunctionWith(R"(Name="longer")") + FunctionWith(R"(Name="short")")),
              (std::vector<FunctionBase>{{.name = L"longer"}, {.name = L"short"}}));
}

TEST_F(FunctionBaseRecordTest, CommandInheritsEachMissingAttribute) {
    const BaseCommand full = {1, 2, 3, 4, 5, 6, L"s"};
    EXPECT_EQ(FamiliesOf(CommandFamilies(R"(
                  <CommandItem ID="1" Event="2" State="3" ParamIndex1="4" ParamIndex2="5" Flag="6"
                               SpecInfo1="s"/>
                  <CommandItem/><CommandItem ID="11"/><CommandItem Event="12"/><CommandItem State="13"/>
                  <CommandItem ParamIndex1="14"/><CommandItem ParamIndex2="15"/><CommandItem Flag="16"/>
                  <CommandItem SpecInfo1="t"/>)")),
              (Families{{{full,
                          full,
                          {11, 2, 3, 4, 5, 6, L"s"},
                          {11, 12, 3, 4, 5, 6, L"s"},
                          {11, 12, 13, 4, 5, 6, L"s"},
                          {11, 12, 13, 14, 5, 6, L"s"},
                          {11, 12, 13, 14, 15, 6, L"s"},
                          {11, 12, 13, 14, 15, 16, L"s"},
                          {11, 12, 13, 14, 15, 16, L"t"}},
                         {}}}));
}

TEST_F(FunctionBaseRecordTest, CheckInheritsEachMissingAttribute) {
    const ExistCheck full = {1, L"a", L"b", L"c", L"d"};
    EXPECT_EQ(FamiliesOf(CommandFamilies(R"(
                  <CheckExistItem CheckFlag="1" Param1="a" Param2="b" Param3="c" Param4="d"/>
                  <CheckExistItem/><CheckExistItem CheckFlag="2"/><CheckExistItem Param1="e"/>
                  <CheckExistItem Param2="f"/><CheckExistItem Param3="g"/><CheckExistItem Param4="h"/>)")),
              (Families{{{},
                         {full,
                          full,
                          {2, L"a", L"b", L"c", L"d"},
                          {2, L"e", L"b", L"c", L"d"},
                          {2, L"e", L"f", L"c", L"d"},
                          {2, L"e", L"f", L"g", L"d"},
                          {2, L"e", L"f", L"g", L"h"}}}}));
}

TEST_F(FunctionBaseRecordTest, ItemsInheritFromPreviousFamily) {
    EXPECT_EQ(FamiliesOf(CommandFamilies(R"(<CommandItem ID="1" SpecInfo1="s"/>
                                            <CheckExistItem CheckFlag="2" Param3="x"/>)") +
                         CommandFamilies("") + CommandFamilies("<CommandItem/><CheckExistItem/>")),
              (Families{{{{.id = 1, .specInfo1 = L"s"}}, {{.checkFlag = 2, .param3 = L"x"}}},
                        {},
                        {{{.id = 1, .specInfo1 = L"s"}}, {{.checkFlag = 2, .param3 = L"x"}}}}));
}

TEST_F(FunctionBaseRecordTest, ItemsInheritFromPreviousFunction) {
    const Families families = {{{{.event = 1, .specInfo1 = L"s"}}, {{.checkFlag = 2, .param3 = L"x"}}}};
    EXPECT_EQ(
        RecordsOf(BaseFunction(1, CommandFamilies(R"(<CommandItem Event="1" SpecInfo1="s"/>
                                                           <CheckExistItem CheckFlag="2" Param3="x"/>)")) +
                  BaseFunction(2) + BaseFunction(3, CommandFamilies("<CommandItem/><CheckExistItem/>"))),
        (std::vector<FunctionBase>{
            {.id = 1, .families = families}, {.id = 2}, {.id = 3, .families = families}}));
}

TEST_F(FunctionBaseRecordTest, ElementsInheritOnlyFromSameKind) {
    EXPECT_EQ(OnlyRecordOf(FunctionWith(R"(ID="1" Flag="2" Name="n")",
                                        CommandFamilies(R"(<CommandItem Event="3" SpecInfo1="s"/>
                                                           <CheckExistItem Param1="p"/><CommandItem/>)"))),
              (FunctionBase{.id = 1,
                            .flag = 2,
                            .name = L"n",
                            .families = {{{{.event = 3, .specInfo1 = L"s"}, {.event = 3, .specInfo1 = L"s"}},
                                          {{.param1 = L"p"}}}}}));
}

TEST_F(FunctionBaseRecordTest, NextCallInheritsNothing) {
    const std::vector<FunctionBase> expected = {
        {.id = 0}, {.id = 1, .name = L"n", .families = {{{{.id = 2}}, {{.checkFlag = 3}}}}}};
    const std::string items = R"(<CommandItem ID="2"/><CheckExistItem CheckFlag="3"/>)";
    EXPECT_EQ(RecordsOf(FunctionWith("") + FunctionWith(R"(ID="1" Name="n")", CommandFamilies(items))),
              expected);
    EXPECT_EQ(GetFunctionBase(), expected);
}

TEST_F(FunctionBaseRecordTest, ElementInNamespacePassesOnNoAttributes) {
    EXPECT_EQ(
        RecordsOf(FunctionWith(R"(ID="1" Name="n")") +
                  R"(<Function xmlns="urn:other" ID="2" Name="m"><Commands/></Function>)" + FunctionWith("")),
        (std::vector<FunctionBase>{{.id = 1, .name = L"n"}, {.id = 1, .name = L"n"}}));
}

TEST_F(FunctionBaseRecordTest, NodesAndFamiliesAreNotInherited) {
    EXPECT_EQ(
        RecordsOf(R"(<Function ID="1"><Display/><Default/><Commands><CommandFamily/></Commands></Function>)" +
                  FunctionWith("")),
        (std::vector<FunctionBase>{
            {.id = 1, .display = L"<Display/>", .defaults = L"<Default/>", .families = {{}}}, {.id = 1}}));
}

// ---- Nodes ----

class BaseNodeTest : public FunctionBaseRecordTest {
protected:
    static constexpr char Display[] =
        R"(<Display A="a"><AC><DisplayItem Label="Soon" Option="60"/>text</AC><!--c--><DC/></Display>)";
    static constexpr char Default[] = R"(<Default ACParamIndex="1"><DefaultItem GUID="g"/></Default>)";

    void SetUp() override {
        WriteBaseFunctions("<Function ID=\"1\">" + std::string{Display} + "<Commands/>" + Default +
                           "</Function>");
    }

    // Calls the export with an OnItem that calls the given function with the record.
    template <class Action>
    void OnRecord(Action&& action) {
        int records = 0;
        auto callback = MakeCallback<IGetFunctionBaseCallback>([&](const FunctionBaseRecord* record) {
            ++records;
            action(*record);
        });
        EXPECT_TRUE(Dll().GetFunctionBase(&callback));
        EXPECT_EQ(records, 1);
    }

    // Returns both nodes with references to them, like a client that keeps the record.
    std::vector<Node> HeldNodes() {
        std::vector<Node> nodes;
        OnRecord([&](const FunctionBaseRecord& record) { nodes = {record.displayNode, record.defaultNode}; });
        return nodes;
    }

    static std::wstring Wide(const char* ascii) { return {ascii, ascii + std::strlen(ascii)}; }

    static std::wstring Selected(const Node& node, const wchar_t* path) {
        const std::unique_ptr<OLECHAR, FreeBstr> query{SysAllocString(path)};
        IXMLDOMNode* selected = nullptr;
        if (node.get() == nullptr || node.get()->selectSingleNode(query.get(), &selected) != S_OK)
            return L"nothing";
        const std::unique_ptr<IXMLDOMNode, ReleaseInterface> owner{selected};
        BSTR text = nullptr;
        EXPECT_EQ(selected->get_text(&text), S_OK);
        return std::unique_ptr<OLECHAR, FreeBstr>{text}.get();
    }

    static void ExpectContent(const std::vector<Node>& nodes) {
        ASSERT_EQ(nodes.size(), 2u);
        EXPECT_EQ(XmlOf(nodes[0].get()), Wide(Display));
        EXPECT_EQ(XmlOf(nodes[1].get()), Wide(Default));
    }

    static void ExpectOneReferenceEach(const std::vector<Node>& nodes) {
        for (const Node& node : nodes)
            EXPECT_EQ(References(node.get()), 1u);
    }
};

TEST_F(BaseNodeTest, NodesAreElementsOfFile) {
    OnRecord([](const FunctionBaseRecord& record) {
        ExpectContent({record.displayNode, record.defaultNode});
    });
}

TEST_F(BaseNodeTest, NodeAttributesAndChildrenAreReadable) {
    OnRecord([](const FunctionBaseRecord& record) {
        EXPECT_EQ(Selected(record.displayNode, L"@A"), L"a");
        EXPECT_EQ(Selected(record.displayNode, L"AC/DisplayItem/@Label"), L"Soon");
        EXPECT_EQ(Selected(record.defaultNode, L"DefaultItem/@GUID"), L"g");
    });
}

TEST_F(BaseNodeTest, RecordHoldsOneReferencePerNode) {
    OnRecord([](const FunctionBaseRecord& record) {
        EXPECT_EQ(References(record.displayNode.get()), 1u);
        EXPECT_EQ(References(record.defaultNode.get()), 1u);
    });
}

TEST_F(BaseNodeTest, RecordReleasesEachNodeOnce) {
    ExpectOneReferenceEach(HeldNodes());
}

TEST_F(BaseNodeTest, ExceptionInOnItemReleasesNodes) {
    std::vector<Node> nodes;
    auto callback = MakeCallback<IGetFunctionBaseCallback>([&](const FunctionBaseRecord* record) {
        nodes = {record->displayNode, record->defaultNode};
        throw 1;
    });
    EXPECT_THROW(Dll().GetFunctionBase(&callback), int);
    ExpectOneReferenceEach(nodes);
    ExpectContent(nodes);
}

TEST_F(BaseNodeTest, UnreadableLaterFunctionReleasesNodes) {
    WriteBaseFunctions("<Function><Display/><Commands/><Default/></Function><Function/>");
    ExpectOneReferenceEach(HeldNodes());
}

TEST_F(BaseNodeTest, NodesAreReadableAfterCall) {
    ExpectContent(HeldNodes());
}

TEST_F(BaseNodeTest, NodesAreReadableAfterFurtherCalls) {
    const std::vector<Node> nodes = HeldNodes();
    HeldNodes();
    GetFunctionBase();
    ExpectContent(nodes);
    ExpectOneReferenceEach(nodes);
}

TEST_F(BaseNodeTest, NodesAreReadableAfterExit) {
    const std::vector<Node> nodes = HeldNodes();
    EXPECT_TRUE(Dll().ZOTDamExit());
    ExpectContent(nodes);
    ExpectOneReferenceEach(nodes);
}

TEST_F(BaseNodeTest, NodesAreReadableAfterUnload) {
    const std::vector<Node> nodes = HeldNodes();
    Unload();
    ExpectContent(nodes);
}

TEST_F(BaseNodeTest, HeldNodeDoesNotAffectReloadedLibrary) {
    const std::vector<Node> nodes = HeldNodes();
    Unload();
    WriteBaseFunctions("<Function><Display New=\"1\"/><Commands/></Function>");
    OnRecord([](const FunctionBaseRecord& record) {
        EXPECT_EQ(XmlOf(record.displayNode.get()), L"<Display New=\"1\"/>");
    });
    ExpectContent(nodes);
}

TEST_F(BaseNodeTest, MissingElementsYieldNullNodes) {
    WriteBaseFunctions(BaseFunction(1));
    OnRecord([](const FunctionBaseRecord& record) {
        EXPECT_EQ(record.displayNode.get(), nullptr);
        EXPECT_EQ(record.defaultNode.get(), nullptr);
    });
}

TEST_F(BaseNodeTest, OneMissingElementYieldsOneNullNode) {
    EXPECT_EQ(RecordsOf(R"(<Function ID="1"><Default/><Commands/></Function>
                           <Function ID="2"><Display/><Commands/></Function>)"),
              (std::vector<FunctionBase>{{.id = 1, .defaults = L"<Default/>"},
                                         {.id = 2, .display = L"<Display/>"}}));
}

TEST_F(BaseNodeTest, FirstElementOfEachNameIsUsed) {
    EXPECT_EQ(OnlyRecordOf(R"(<Function ID="1"><Display N="1"/><Display N="2"/><Commands/>
                              <Default N="3"/><Default N="4"/></Function>)"),
              (FunctionBase{.id = 1, .display = L"<Display N=\"1\"/>", .defaults = L"<Default N=\"3\"/>"}));
}

TEST_F(BaseNodeTest, ElementsOfOtherNamesOrPlacesAreIgnored) {
    EXPECT_EQ(OnlyRecordOf(R"(<Function ID="1" Display="" xmlns:o="urn:other"><Display xmlns="urn:other"/>
                              <o:Default/><!--<Display/>--><?Default?><display/><DEFAULT/>
                              <All><Display/><Default/></All><Commands><Display/><Default/></Commands>
                              </Function>)"),
              (FunctionBase{.id = 1}));
}

TEST_F(BaseNodeTest, ElementsAfterNamespacedOnesAreUsed) {
    EXPECT_EQ(OnlyRecordOf(R"(<Function ID="1"><Display xmlns="urn:other"/><Default xmlns="urn:other"/>
                              <Commands/><Display N="1"/><Default N="2"/></Function>)"),
              (FunctionBase{.id = 1, .display = L"<Display N=\"1\"/>", .defaults = L"<Default N=\"2\"/>"}));
}

TEST_F(BaseNodeTest, NodesStayInDocumentUnderFunction) {
    OnRecord([](const FunctionBaseRecord& record) {
        EXPECT_EQ(Selected(record.displayNode, L"../@ID"), L"1");
        EXPECT_EQ(Selected(record.displayNode, L"../Default/@ACParamIndex"), L"1");
    });
}

}  // namespace ZOTDam::Test
