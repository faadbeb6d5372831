// Tests of AddFunctionDefault, which writes records to the defaults file and replaces its functions.
#include <limits>

#include "support/FunctionDefaultsTest.h"

namespace ZOTDam::Test {

// ---- The written form ----

class WrittenFormTest : public FunctionDefaultsTest {
protected:
    // Returns a record whose numbers and strings are all different.
    static FunctionBaseRecord DistinctRecord() {
        FunctionBaseRecord record;
        record.id = 11;
        record.type = 12;
        record.flag = 13;
        Assign(record.name, L"name");
        Assign(record.group, L"group");
        CommandFamily family;
        family.commandItems.push_back({21, 22, 23, 24, 25, 26, L"first"});
        family.commandItems.push_back({31, 32, 33, 34, 35, 36, L"second"});
        record.commandFamilies.push_back(family);
        return record;
    }

    inline static const std::string Distinct =
        "<Function ID=\"11\" Flag=\"13\" Type=\"12\" Name=\"name\" Group=\"group\">\n\t<Commands>\n\t"
        "<CommandItem ID=\"21\" Event=\"22\" Flag=\"26\" State=\"23\" ParamIndex1=\"24\" ParamIndex2=\"25\" "
        "SpecInfo1=\"first\">\n\t</CommandItem>"
        "<CommandItem ID=\"31\" Event=\"32\" Flag=\"36\" State=\"33\" ParamIndex1=\"34\" ParamIndex2=\"35\" "
        "SpecInfo1=\"second\">\n\t</CommandItem></Commands></Function>";
};

TEST_F(WrittenFormTest, RecordIsWrittenToNewFile) {
    RemoveDefaults();
    Replace({DistinctRecord()});
    EXPECT_EQ(Defaults(), SavedXml{NewDefaults(Distinct)});
}

TEST_F(WrittenFormTest, RecordIsWrittenToExistingFile) {
    Replace({DistinctRecord()});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Distinct)});
}

TEST_F(WrittenFormTest, RecordsAreWrittenInListOrder) {
    Replace({Record(3), Record(1), Record(2)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(3) + Written(1) + Written(2))});
}

TEST_F(WrittenFormTest, ExtremeNumbersAreWrittenInDecimal) {
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();
    FunctionBaseRecord record = Record(largest);
    record.flag = smallest;
    record.type = -1;
    Replace({record});
    EXPECT_NE(Defaults().find(R"(<Function ID="2147483647" Flag="-2147483648" Type="-1" )"),
              std::string::npos);
    EXPECT_NE(Defaults().find(R"(<CommandItem ID="2147483647" )"), std::string::npos);
}

TEST_F(WrittenFormTest, FamiliesAreMergedIntoOneCommandsElement) {
    Replace({RecordWith(1, {FamilyWith({1, 2, 3}), FamilyWith({6, 5, 4})})});
    std::string commands;
    for (const std::int32_t id : {1, 2, 3, 6, 5, 4})
        commands += WrittenCommand(id);
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(WrittenWith(1, commands))});
}

TEST_F(WrittenFormTest, EqualCommandsAreAllWritten) {
    Replace({RecordWith(1, {FamilyWith({7, 7}), FamilyWith({7})})});
    EXPECT_EQ(
        Defaults(),
        SavedXml{OldDefaults(WrittenWith(1, WrittenCommand(7) + WrittenCommand(7) + WrittenCommand(7)))});
}

TEST_F(WrittenFormTest, ChecksAreNotWritten) {
    CommandFamily family = FamilyWith({1});
    family.checkExistItems.push_back({5, L"check", L"check", L"check", L"check"});
    Replace({RecordWith(1, {family, family})});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(WrittenWith(1, WrittenCommand(1) + WrittenCommand(1)))});
}

// ---- Nodes ----

class WrittenNodesTest : public FunctionDefaultsTest {
protected:
    static FunctionBaseRecord RecordWithNodes(std::int32_t id, const Node& display, const Node& defaults) {
        FunctionBaseRecord record = Record(id);
        record.displayNode = display;
        record.defaultNode = defaults;
        return record;
    }

    const XmlTree client = XmlTree::OfText(LR"(<C><Display A="1"><AC/></Display><Default B="2"/></C>)");
    const Node display = client.Find(L"/C/Display");
    const Node defaults = client.Find(L"/C/Default");

    inline static const std::string WrittenDisplay = R"(<Display A="1"><AC/></Display>)";
    inline static const std::string WrittenDefault = R"(<Default B="2"/>)";
};

TEST_F(WrittenNodesTest, NodesAreCopiedBeforeCommands) {
    Replace({RecordWithNodes(1, display, defaults)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1, WrittenDisplay + WrittenDefault))});
}

TEST_F(WrittenNodesTest, MissingDisplayNodeIsOmitted) {
    Replace({RecordWithNodes(1, {}, defaults)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1, WrittenDefault))});
}

TEST_F(WrittenNodesTest, MissingDefaultNodeIsOmitted) {
    Replace({RecordWithNodes(1, display, {})});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1, WrittenDisplay))});
}

TEST_F(WrittenNodesTest, RecordWithoutNodesContainsCommandsOnly) {
    Replace({RecordWithNodes(1, {}, {})});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1))});
}

TEST_F(WrittenNodesTest, NodesOfAnyElementAreCopied) {
    Replace({RecordWithNodes(1, client.Root(), client.Find(L"//AC"))});
    EXPECT_EQ(Defaults(),
              SavedXml{OldDefaults(Written(1, "<C>" + WrittenDisplay + WrittenDefault + "</C><AC/>"))});
}

TEST_F(WrittenNodesTest, NodesSharedByTwoRecordsAreCopiedTwice) {
    Replace({RecordWithNodes(1, display, defaults), RecordWithNodes(2, display, defaults)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1, WrittenDisplay + WrittenDefault) +
                                               Written(2, WrittenDisplay + WrittenDefault))});
}

TEST_F(WrittenNodesTest, OneNodeCanBeDisplayAndDefault) {
    Replace({RecordWithNodes(1, display, display)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1, WrittenDisplay + WrittenDisplay))});
}

TEST_F(WrittenNodesTest, SourceDocumentIsUnchanged) {
    const std::wstring before = Describe(client.Root().get());
    Replace({RecordWithNodes(1, display, defaults)});
    EXPECT_EQ(Describe(client.Root().get()), before);
}

TEST_F(WrittenNodesTest, NodesCanBeReleasedAfterCall) {
    Replace({RecordWithDefault(1, 2, 3)});
    EXPECT_EQ(GetParameterDefault(Balanced), (Params{{1, {2, 3}}}));
    WriteBase("<B><CommonSettings C=\"c\"/></B>");
    EXPECT_TRUE(Dll().InitCommonSetting());
    EXPECT_NE(Defaults().find(Written(1, R"(<Default ACParamIndex="2" DCParamIndex="3"/>)")),
              std::string::npos);
}

TEST_F(WrittenNodesTest, NamespaceDeclaredOnAncestorIsPreserved) {
    const XmlTree source = XmlTree::OfText(
        LR"(<S xmlns:p="urn:p"><Display p:A="1"><p:Inner/></Display><p:Default p:B="2"/></S>)");
    const Node first = source.Find(L"/S/*[1]");
    const Node second = source.Find(L"/S/*[2]");
    Replace({RecordWithNodes(1, first, second)});
    const XmlTree file = XmlTree::OfFile(installation.DefaultsFile());
    EXPECT_EQ(Describe(file.Find(L"//Function/*[1]").get()), Describe(first.get()));
    EXPECT_EQ(Describe(file.Find(L"//Function/*[2]").get()), Describe(second.get()));
}

// ---- Nodes of the base catalogue ----

// The nodes' subtrees contain each kind of XML node.
constexpr char RichBase[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<Base>
    <Functions>
        <Function ID="1" Type="2" Flag="3" Name="One" Group="A">
            <Display Unknown="&lt;&amp;&quot;&#10;&#9;&gt;"><!-- of the maker -->
                <AC><DisplayItem Option="10" Label="Dim"/><DisplayItem Option="20" Label="Off"/></AC>
                <DC><DisplayItem Option="30" Label="&#xe4;&#x20ac;&#x1f600;"/></DC>
            </Display>
            <Default ACParamIndex="1" DCParamIndex="0">
                <DefaultItem GUID="381b4222-f694-41f0-9685-ff5bb260df2e" ACParamIndex="0" DCParamIndex="0"/>
            </Default>
            <Commands><CommandFamily><CommandItem ID="1" SpecInfo1="x"/></CommandFamily></Commands>
        </Function>
        <Function ID="2" Name="Two">
            <Display><?tool x="1"?>text <b>with</b> elements<![CDATA[a < b & c]]><Deep><Deep><Deep
                A="1" B="2" C=""/></Deep></Deep></Display>
            <Default xmlns:x="urn:x" x:A="1"><x:Item/><Item xmlns="urn:y"><Inner/></Item></Default>
            <Commands><CommandFamily><CommandItem ID="2"/></CommandFamily></Commands>
        </Function>
        <Function ID="3" Name="Three">
            <Commands><CommandFamily><CommandItem ID="3"/></CommandFamily></Commands>
        </Function>
    </Functions>
</Base>)";

class BaseCatalogueCopyTest : public FunctionDefaultsTest {
protected:
    BaseCatalogueCopyTest() { WriteBase(RichBase); }

    // Describes the given child of a function in the file.
    static std::wstring In(const std::filesystem::path& file, int id, const std::wstring& name) {
        return Describe(
            XmlTree::OfFile(file).Find(L"//Function[@ID='" + std::to_wstring(id) + L"']/" + name).get());
    }
};

TEST_F(BaseCatalogueCopyTest, DisplayAndDefaultElementsMatchBaseCatalogue) {
    Replace(Base());
    for (const int id : {1, 2, 3})
        for (const wchar_t* const name : {L"Display", L"Default"})
            EXPECT_EQ(In(installation.DefaultsFile(), id, name), In(installation.BaseFile(), id, name));
}

TEST_F(BaseCatalogueCopyTest, FunctionElementsAreWrittenOnceInFixedOrder) {
    Replace(Base());
    const XmlTree file = XmlTree::OfFile(installation.DefaultsFile());
    EXPECT_NE(file.Find(L"//Function[1][@ID='1'][*[1][self::Display]][*[2][self::Default]]"
                        L"[*[3][self::Commands]][count(*)=3]")
                  .get(),
              nullptr);
    EXPECT_NE(file.Find(L"//Function[3][@ID='3'][*[1][self::Commands]][count(*)=1]").get(), nullptr);
    EXPECT_EQ(file.Find(L"//CommandFamily").get(), nullptr);
}

TEST_F(BaseCatalogueCopyTest, BaseCatalogueIsUnchanged) {
    const FunctionBaseHolder base = Base();
    const std::wstring display = Describe(base.records.begin()->displayNode.get());
    Replace(base);
    EXPECT_EQ(ReadFile(installation.BaseFile()), RichBase);
    EXPECT_EQ(Describe(Base().records.begin()->displayNode.get()), display);
}

TEST_F(BaseCatalogueCopyTest, SecondCopyEqualsFirst) {
    Replace(Base());
    const std::string once = Defaults();
    Replace(Base());
    EXPECT_EQ(Defaults(), once);
}

TEST_F(BaseCatalogueCopyTest, RecordsCanBeWrittenDuringEnumeration) {
    auto replace =
        MakeCallback<IGetFunctionBaseCallback>([&](const FunctionBaseRecord* record) { Replace({*record}); });
    EXPECT_TRUE(Dll().GetFunctionBase(&replace));
    EXPECT_EQ(In(installation.DefaultsFile(), 2, L"Display"), L"nothing");
    EXPECT_NE(In(installation.DefaultsFile(), 3, L"Commands"), L"nothing");
}

TEST_F(BaseCatalogueCopyTest, RecordsRemainValidAfterUnload) {
    const FunctionBaseHolder base = Base();
    Unload();
    Replace(base);
    EXPECT_EQ(In(installation.DefaultsFile(), 1, L"Display"), In(installation.BaseFile(), 1, L"Display"));
}

// ---- Records without commands ----

class RecordWithoutCommandsTest : public FunctionDefaultsTest {
protected:
    static FunctionBaseRecord WithoutCommands(std::int32_t id) { return RecordWith(id, {FamilyWith({})}); }
};

TEST_F(RecordWithoutCommandsTest, FirstRecordWithoutCommandsIsOmitted) {
    Replace({WithoutCommands(1), Record(2), Record(3)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(2) + Written(3))});
}

TEST_F(RecordWithoutCommandsTest, MiddleRecordWithoutCommandsIsOmitted) {
    Replace({Record(1), WithoutCommands(2), Record(3)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1) + Written(3))});
}

TEST_F(RecordWithoutCommandsTest, LastRecordWithoutCommandsIsOmitted) {
    Replace({Record(1), Record(2), WithoutCommands(3)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1) + Written(2))});
}

TEST_F(RecordWithoutCommandsTest, SectionIsEmptyIfAllRecordsAreOmitted) {
    Replace({WithoutCommands(1), WithoutCommands(2)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults("")});
    EXPECT_EQ(Dll().GetFuncCount(), 0u);
}

TEST_F(RecordWithoutCommandsTest, RecordWithoutFamiliesIsOmitted) {
    Replace({RecordWith(1, {}), Record(2)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(2))});
}

TEST_F(RecordWithoutCommandsTest, RecordWithOnlyChecksIsOmitted) {
    CommandFamily family;
    family.checkExistItems.push_back({});
    Replace({RecordWith(1, {family, family}), Record(2)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(2))});
}

TEST_F(RecordWithoutCommandsTest, RecordWithCommandInLastFamilyIsWritten) {
    Replace({RecordWith(1, {FamilyWith({}), FamilyWith({}), FamilyWith({5})})});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(WrittenWith(1, WrittenCommand(5)))});
}

TEST_F(RecordWithoutCommandsTest, NodesOfOmittedRecordAreNotWritten) {
    FunctionBaseRecord record = RecordWithDefault(1, 2, 3);
    record.displayNode = record.defaultNode;
    record.commandFamilies.clear();
    Replace({record, Record(2)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(2))});
}

// ---- Replacing ----

TEST_F(FunctionDefaultsTest, OneRecordReplacesAllFunctions) {
    Replace({Record(20)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(20))});
}

TEST_F(FunctionDefaultsTest, NextCallReplacesFunctionsOfPreviousCall) {
    Replace({Record(1), Record(2)});
    Replace({Record(3)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(3))});
}

TEST_F(FunctionDefaultsTest, EmptySectionIsFilled) {
    WriteFunctions("");
    Replace({Record(1)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1))});
}

TEST_F(FunctionDefaultsTest, EntireContentOfSectionIsRemoved) {
    WriteFunctions("text<!--note--><?tool x?><![CDATA[data]]><Other><Function/></Other>" + Function(1) +
                   "<x:Function xmlns:x=\"urn:x\"/>more");
    Replace({Record(2)});
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(2))});
}

TEST_F(FunctionDefaultsTest, ContentOutsideSectionIsPreserved) {
    const std::string before =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!--head-->\n<?tool x=\"1\"?>\n<Any A=\"&lt;a&gt;\">"
        "<CommonSettings B=\"b\"><Inner/></CommonSettings><!--note--><Other>text</Other>"
        "<Functions C=\"c\">";
    const std::string after = "</Functions><![CDATA[d < e]]><Function ID=\"9\"/><Last/></Any>\n<!--tail-->\n";
    WriteDefaults(before + Functions({1, 2}) + after);
    Replace({Record(3)});
    EXPECT_EQ(Defaults(), SavedXml{before + Written(3) + after});
}

TEST_F(FunctionDefaultsTest, OnlyFirstSectionIsReplaced) {
    const std::string second = "<Functions>" + Function(2) + "</Functions>";
    WriteDefaults("<R><Functions>" + Function(1) + "</Functions>" + second + "</R>");
    Replace({Record(3)});
    EXPECT_EQ(Defaults(), SavedXml{"<R><Functions>" + Written(3) +
                                   "</Functions><Functions><Function ID=\"2\">"
                                   "<Display/><Commands/></Function></Functions></R>\n"});
}

TEST_F(FunctionDefaultsTest, SectionInNamespaceIsIgnored) {
    WriteDefaults(R"(<R><Functions xmlns="urn:x"><Function/></Functions></R>)");
    Replace({Record(1)});
    EXPECT_EQ(Defaults(), SavedXml{"<R><Functions xmlns=\"urn:x\"><Function/></Functions><Functions>" +
                                   Written(1) + "</Functions></R>\n"});
}

TEST_F(FunctionDefaultsTest, MissingSectionIsAppended) {
    WriteDefaults("<R><CommonSettings A=\"a\"/></R>");
    Replace({Record(1)});
    EXPECT_EQ(Defaults(),
              SavedXml{"<R><CommonSettings A=\"a\"/><Functions>" + Written(1) + "</Functions></R>\n"});
}

TEST_F(FunctionDefaultsTest, OtherFilesAreNotWritten) {
    WriteBase(RichBase);
    Replace(Base());
    EXPECT_FALSE(HasUserSettings());
    EXPECT_EQ(ReadFile(installation.BaseFile()), RichBase);
    EXPECT_FALSE(std::filesystem::exists(KeptDefaults()));
    EXPECT_FALSE(std::filesystem::exists(TemporaryFileOf(installation.DefaultsFile())));
}

}  // namespace ZOTDam::Test
