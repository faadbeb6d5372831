// Tests of commands in tables that cannot be loaded from a file. In a loaded table, each function with
// commands also has a record.
#include "params/CommandInfo.h"

#include <gtest/gtest.h>

namespace ZOTDam::Test {

TEST(CommandResolutionTest, FunctionMissingFromTableIsAddedWithoutOptions) {
    CFunctionTable table;
    table.commands[3].resize(1);
    ParamMap params{{3, {0, 0}}};
    List<CommandInfoRecord> commands;
    ResolveCommands(table, params, commands);
    ASSERT_EQ(commands.size(), 1u);
    EXPECT_EQ(commands.begin()->option1, 0);
    EXPECT_EQ(commands.begin()->option2, 0);
    EXPECT_TRUE(table.functions.contains(3));
}

TEST(CommandResolutionTest, FunctionWithoutCommandItemsAddsNothing) {
    CFunctionTable table;
    table.commands[3] = {};
    ParamMap params;
    List<CommandInfoRecord> commands;
    ResolveCommands(table, params, commands);
    EXPECT_TRUE(commands.empty());
    EXPECT_TRUE(params.empty());
    EXPECT_TRUE(table.functions.empty());
}

TEST(CommandResolutionTest, EmptyParametersReceiveFirstFunctionWithCommands) {
    CFunctionTable table;
    table.commands[2] = {};
    table.commands[3].resize(2);
    table.commands[4].resize(1);
    ParamMap params;
    List<CommandInfoRecord> commands;
    ResolveCommands(table, params, commands);
    EXPECT_EQ(commands.size(), 2u);
    EXPECT_EQ(params, (ParamMap{{3, {0, 0}}}));
}

}  // namespace ZOTDam::Test
