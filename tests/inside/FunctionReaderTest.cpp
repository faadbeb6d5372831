// Tests of reading the catalogue from its section, including fields that no export returns.
#include "catalogue/FunctionReader.h"

#include <gtest/gtest.h>

#include "support/Markup.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Test {

class FunctionReaderTest : public testing::Test {
protected:
    bool Load(const std::wstring& functions) {
        return LoadFunctionTable(Markup{L"<Functions>" + functions + L"</Functions>"}.Root(), table);
    }
    std::wstring Name(std::int32_t id) const { return table.functions.at(id).name; }

    ComScope com;
    CFunctionTable table;
};

TEST_F(FunctionReaderTest, AllFieldsOfFunctionAreRead) {
    ASSERT_TRUE(
        Load(LR"(<Function ID="3" Flag="4" Type="5" Name="n" Group="g">
        <Display><AC><DisplayItem Label="a" Option="6"/></AC><DC><DisplayItem Label="d" Option="7"/></DC></Display>
        <Commands><CommandItem Event="1" Flag="2" ID="3" State="4" ParamIndex1="5" ParamIndex2="6" SpecInfo1="s"/>
        </Commands></Function>)"));
    const FunctionRecord& function = table.functions.at(3);
    EXPECT_EQ(function.flag, 4);
    EXPECT_EQ(function.type, 5);
    EXPECT_STREQ(function.name, L"n");
    EXPECT_STREQ(function.group, L"g");
    EXPECT_EQ(function.acDisplayItems.begin()->option, 6);
    EXPECT_STREQ(function.acDisplayItems.begin()->label, L"a");
    EXPECT_EQ(function.dcDisplayItems.begin()->option, 7);
    EXPECT_STREQ(function.dcDisplayItems.begin()->label, L"d");
    const CommandItem& command = table.commands.at(3).at(0);
    EXPECT_EQ(command.preset0, 0);
    EXPECT_EQ(command.preset1, 1);
    EXPECT_EQ(command.event, 1);
    EXPECT_EQ(command.flag, 2);
    EXPECT_EQ(command.id, 3);
    EXPECT_EQ(command.state, 4);
    EXPECT_EQ(command.paramIndex1, 5);
    EXPECT_EQ(command.paramIndex2, 6);
    EXPECT_EQ(command.specInfo1, L"s");
}

TEST_F(FunctionReaderTest, MissingAttributeInheritsFromPreviousFunction) {
    ASSERT_TRUE(
        Load(LR"(<Function ID="1"><Display/><Commands/></Function>
        <Function ID="2" Flag="4" Type="5" Name="A" Group="g"><Display/><Commands/></Function>
        <Function ID="3"><Display/><Commands/></Function>)"));
    EXPECT_EQ(Name(1), L"");
    EXPECT_EQ(Name(3), L"A");
    EXPECT_STREQ(table.functions.at(3).group, L"g");
    EXPECT_EQ(table.functions.at(3).flag, 4);
    EXPECT_EQ(table.functions.at(3).type, 5);
}

TEST_F(FunctionReaderTest, ChildListsAreNotInherited) {
    ASSERT_TRUE(
        Load(LR"(<Function ID="1"><Display><AC><DisplayItem/></AC><DC><DisplayItem/></DC></Display>
        <Commands><CommandItem/></Commands></Function>
        <Function ID="2"><Display><AC/></Display><Commands/></Function>)"));
    EXPECT_EQ(table.functions.at(1).acDisplayItems.size(), 1u);
    EXPECT_TRUE(table.functions.at(2).acDisplayItems.empty());
    EXPECT_TRUE(table.functions.at(2).dcDisplayItems.empty());
    EXPECT_TRUE(table.commands.at(2).empty());
}

TEST_F(FunctionReaderTest, MissingAttributeInheritsFromPreviousItem) {
    ASSERT_TRUE(
        Load(LR"(<Function ID="1">
        <Display><AC><DisplayItem Label="a" Option="6"/><DisplayItem/></AC><DC><DisplayItem/></DC></Display>
        <Commands><CommandItem Event="7" SpecInfo1="x"/><CommandItem/></Commands></Function>)"));
    const FunctionRecord& function = table.functions.at(1);
    EXPECT_STREQ((++function.acDisplayItems.begin())->label, L"a");
    EXPECT_EQ((++function.acDisplayItems.begin())->option, 6);
    EXPECT_STREQ(function.dcDisplayItems.begin()->label, L"");
    EXPECT_EQ(table.commands.at(1).at(1).specInfo1, L"x");
    EXPECT_EQ(table.commands.at(1).at(1).event, 7);
}

TEST_F(FunctionReaderTest, DuplicateIdKeepsFirstFunction) {
    ASSERT_TRUE(
        Load(LR"(
        <Function ID="1" Name="first"><Display/><Commands><CommandItem ID="10"/></Commands></Function>
        <Function ID="1" Name="second"><Display/><Commands><CommandItem ID="20"/></Commands></Function>)"));
    EXPECT_EQ(table.functions.size(), 1u);
    EXPECT_EQ(Name(1), L"first");
    EXPECT_EQ(table.commands.at(1).at(0).id, 10);
}

TEST_F(FunctionReaderTest, FailedLoadEmptiesTable) {
    ASSERT_TRUE(Load(LR"(<Function ID="1"><Display/><Commands/></Function>)"));
    EXPECT_FALSE(Load(LR"(<Function ID="2"><Display/><Commands/></Function><Function ID="3"/>)"));
    EXPECT_TRUE(table.functions.empty());
    EXPECT_TRUE(table.commands.empty());
}

TEST_F(FunctionReaderTest, NullElementReadsNothing) {
    FunctionRecord record;
    List<DisplayItem> items;
    std::vector<CommandItem> commands;
    EXPECT_FALSE(LoadFunctionTable(nullptr, table));
    EXPECT_EQ(ReadFunctionElement(nullptr, record), -1);
    EXPECT_FALSE(ReadDisplayItems(nullptr, items));
    EXPECT_FALSE(ReadCommandItems(nullptr, commands));
}

}  // namespace ZOTDam::Test
