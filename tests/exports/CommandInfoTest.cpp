// Tests of GetCommandInfo, which enumerates the commands of all functions with the options that a scheme's
// parameters select.
#include <array>
#include <climits>
#include <cstring>

#include "support/FakeDisplay.h"
#include "support/FunctionMarkup.h"
#include "support/NumberTexts.h"

namespace ZOTDam::Test {

namespace {

constexpr std::size_t LongestText = TextCapacity - 1;

// A command whose first option is the one for AC and whose second option is the one for DC.
std::string CommandItem(std::int32_t id) {
    return "<CommandItem ID=\"" + std::to_string(id) + "\" ParamIndex1=\"0\" ParamIndex2=\"1\"/>";
}

// A function with commands and options. The digits of an option are the function, the power source and the
// position: function 1 has 110, 111 and 112 for AC, and 120 and 121 for DC.
std::string CommandingFunction(std::int32_t id, const std::string& commands,
                               const ParamValue& defaults = {}) {
    const std::string digits = std::to_string(id);
    return FunctionWith(id, {.acItems = Options({digits + "10", digits + "11", digits + "12"}),
                             .dcItems = Options({digits + "20", digits + "21"}),
                             .commands = commands,
                             .defaults = defaults});
}

// A refresh-rate function whose options are two rates.
std::string RateFunctionWithCommands(std::int32_t id, const std::string& commands) {
    return FunctionWith(id, {.acItems = Options({"60", "48"}), .commands = commands});
}

std::string TextOf(const Text& text) {
    return Utf8(std::filesystem::path{text});
}

}  // namespace

class CommandInfoTest : public SettingsTest {
protected:
    std::vector<CommandInfoRecord> GetCommandInfo(const GUID& scheme = Balanced) {
        std::vector<CommandInfoRecord> commands;
        auto collect = MakeCallback<IGetCommandInfoCallback>(
            [&](const CommandInfoRecord* command) { commands.push_back(*command); });
        EXPECT_TRUE(Dll().GetCommandInfo(&scheme, &collect));
        return commands;
    }

    std::vector<std::int32_t> CommandIds(const GUID& scheme = Balanced) {
        std::vector<std::int32_t> ids;
        for (const CommandInfoRecord& command : GetCommandInfo(scheme))
            ids.push_back(command.id);
        return ids;
    }

    // The id and the two options of each command, in the order of the enumeration.
    using Resolved = std::vector<std::array<std::int32_t, 3>>;
    Resolved ResolveCommands(const GUID& scheme = Balanced) {
        Resolved resolved;
        for (const CommandInfoRecord& command : GetCommandInfo(scheme))
            resolved.push_back({command.id, command.option1, command.option2});
        return resolved;
    }

    // Returns the ids of a catalogue's commands.
    std::vector<std::int32_t> IdsOf(const std::string& functions) {
        WriteFunctions(functions);
        return CommandIds();
    }

    // Returns the only command of function 1, which has different options for AC and DC.
    CommandInfoRecord CommandOf(const std::string& attributes, const ParamValue& stored = {}) {
        WriteFunctions(CommandingFunction(1, "<CommandItem " + attributes + "/>"));
        WriteBalanced(OldFunction(1, stored.ACParamIndex, stored.DCParamIndex));
        const std::vector<CommandInfoRecord> commands = GetCommandInfo();
        EXPECT_EQ(commands.size(), 1u);
        return commands.at(0);
    }

    std::string SpecInfoOf(const std::string& specInfo) {
        return TextOf(CommandOf("SpecInfo1=\"" + specInfo + "\"").specInfo1);
    }
};

// ---- The record ----

TEST_F(CommandInfoTest, CommandAttributesFillEveryField) {
    const CommandInfoRecord command = CommandOf(
        R"(ID="1" Event="2" State="3" ParamIndex1="0" ParamIndex2="1" Flag="4" SpecInfo1="sp&#233;cial")",
        {2, 1});
    EXPECT_EQ(command.id, 1);
    EXPECT_EQ(command.event, 2);
    EXPECT_EQ(command.state, 3);
    EXPECT_EQ(command.option1, 112);
    EXPECT_EQ(command.option2, 121);
    EXPECT_EQ(command.flag, 4);
    EXPECT_STREQ(command.specInfo1, L"sp\u00E9cial");
}

TEST_F(CommandInfoTest, MissingAttributesYieldZerosAndEmptyString) {
    WriteFunctions(FunctionWith(1, {.commands = "<CommandItem/>"}));
    const std::vector<CommandInfoRecord> commands = GetCommandInfo();
    ASSERT_EQ(commands.size(), 1u);
    const CommandInfoRecord zeros = {};
    EXPECT_EQ(std::memcmp(commands.data(), &zeros, sizeof zeros), 0);
}

TEST_F(CommandInfoTest, ShortStringOverwritesLongStringCompletely) {
    WriteFunctions(FunctionWith(1, {.commands = "<CommandItem SpecInfo1=\"" + std::string(200, 's') +
                                                R"("/><CommandItem SpecInfo1="s"/>)"}));
    const std::vector<CommandInfoRecord> commands = GetCommandInfo();
    ASSERT_EQ(commands.size(), 2u);
    const Text expected = L"s";
    EXPECT_EQ(std::memcmp(commands[1].specInfo1, expected, sizeof expected), 0);
}

class CommandNumberTest : public CommandInfoTest, public testing::WithParamInterface<NumberText> {};

TEST_P(CommandNumberTest, NumberIsReadInEveryAttribute) {
    const auto& [name, text, value] = GetParam();
    const CommandInfoRecord command =
        CommandOf("ID=\"" + text + "\" Event=\"" + text + "\" State=\"" + text + "\" Flag=\"" + text + "\"");
    EXPECT_EQ(command.id, value);
    EXPECT_EQ(command.event, value);
    EXPECT_EQ(command.state, value);
    EXPECT_EQ(command.flag, value);
}

TEST_P(CommandNumberTest, OnlyZeroParamIndexSelectsAc) {
    const auto& [name, text, value] = GetParam();
    const CommandInfoRecord command = CommandOf("ParamIndex1=\"" + text + "\" ParamIndex2=\"" + text + "\"");
    EXPECT_EQ(command.option1, value == 0 ? 110 : 120);
    EXPECT_EQ(command.option2, value == 0 ? 110 : 120);
}

INSTANTIATE_TEST_SUITE_P(Numbers, CommandNumberTest, testing::ValuesIn(NumberTexts()), CaseName<NumberText>);

TEST_F(CommandInfoTest, LongestStringIsNotTruncated) {
    EXPECT_EQ(SpecInfoOf(std::string(LongestText, 's')), std::string(LongestText, 's'));
}

TEST_F(CommandInfoTest, StringOneUnitTooLongIsTruncated) {
    EXPECT_EQ(SpecInfoOf(std::string(LongestText + 1, 's')), std::string(LongestText, 's'));
}

TEST_F(CommandInfoTest, MuchLongerStringIsTruncated) {
    EXPECT_EQ(SpecInfoOf(std::string(10000, 's')), std::string(LongestText, 's'));
}

TEST_F(CommandInfoTest, TruncationDropsIncompleteSurrogatePair) {
    const std::string start(LongestText - 1, 's');
    EXPECT_EQ(SpecInfoOf(start + "\U0001F50B"), start);
    Unload();
    EXPECT_EQ(SpecInfoOf(start + "\U0001F50B\U0001F50B"), start);
}

TEST_F(CommandInfoTest, TruncationKeepsCompleteSurrogatePair) {
    const std::string fitting = std::string(LongestText - 2, 's') + "\U0001F50B";
    EXPECT_EQ(SpecInfoOf(fitting), fitting);
    Unload();
    EXPECT_EQ(SpecInfoOf(fitting + "\U0001F50B"), fitting);
}

// ---- The options ----

struct PositionCase {
    std::string name;
    std::int32_t position;
    std::int32_t acOption;
    std::int32_t dcOption;
};

void PrintTo(const PositionCase& position, std::ostream* out) {
    *out << position.position;
}

class OptionPositionTest : public CommandInfoTest, public testing::WithParamInterface<PositionCase> {};

TEST_P(OptionPositionTest, StoredPositionSelectsOptionOrZero) {
    const auto& [name, position, acOption, dcOption] = GetParam();
    const CommandInfoRecord command = CommandOf(R"(ParamIndex1="0" ParamIndex2="1")", {position, position});
    EXPECT_EQ(command.option1, acOption);
    EXPECT_EQ(command.option2, dcOption);
}

INSTANTIATE_TEST_SUITE_P(
    Positions, OptionPositionTest,
    testing::Values(PositionCase{"First", 0, 110, 120}, PositionCase{"Second", 1, 111, 121},
                    PositionCase{"PastLastDcOption", 2, 112, 0}, PositionCase{"PastLast", 3, 0, 0},
                    PositionCase{"Maximum", INT_MAX, 0, 0}, PositionCase{"Negative", -1, 0, 0},
                    PositionCase{"Minimum", INT_MIN, 0, 0}),
    CaseName<PositionCase>);

TEST_F(CommandInfoTest, EachParamIndexSelectsItsOwnOption) {
    EXPECT_EQ(CommandOf(R"(ParamIndex1="0" ParamIndex2="1")", {2, 1}).option1, 112);
    Unload();
    const CommandInfoRecord command = CommandOf(R"(ParamIndex1="1" ParamIndex2="0")", {2, 1});
    EXPECT_EQ(command.option1, 121);
    EXPECT_EQ(command.option2, 112);
}

TEST_F(CommandInfoTest, ParamIndexIsNotUsedAsPosition) {
    const CommandInfoRecord command = CommandOf(R"(ParamIndex1="5" ParamIndex2="-1")", {0, 1});
    EXPECT_EQ(command.option1, 121);
    EXPECT_EQ(command.option2, 121);
}

TEST_F(CommandInfoTest, AcAndDcUseSeparateValuesAndItems) {
    const CommandInfoRecord command = CommandOf(R"(ParamIndex1="0" ParamIndex2="1")", {1, 0});
    EXPECT_EQ(command.option1, 111);
    EXPECT_EQ(command.option2, 120);
}

TEST_F(CommandInfoTest, MissingItemsYieldOptionZero) {
    WriteFunctions(FunctionWith(1, {.acItems = Options({"10"}), .commands = CommandItem(1)}) +
                   FunctionWith(2, {.dcItems = Options({"20"}), .commands = CommandItem(2)}));
    EXPECT_EQ(ResolveCommands(), (Resolved{{1, 10, 0}, {2, 0, 20}}));
}

TEST_F(CommandInfoTest, ExtremeOptionsAreReturnedUnchanged) {
    WriteFunctions(FunctionWith(1, {.acItems = Options({"-2147483648"}),
                                    .dcItems = Options({"2147483647"}),
                                    .commands = CommandItem(1)}));
    EXPECT_EQ(ResolveCommands(), (Resolved{{1, INT_MIN, INT_MAX}}));
}

TEST_F(CommandInfoTest, ItemWithoutOptionInheritsFromSamePowerSource) {
    WriteFunctions(FunctionWith(1, {.acItems = Options({"10"}) + "<DisplayItem/>",
                                    .dcItems = "<DisplayItem/>",
                                    .commands = CommandItem(1),
                                    .defaults = {1, 0}}));
    EXPECT_EQ(ResolveCommands(), (Resolved{{1, 10, 0}}));
}

// ---- Selection and order of the commands ----

TEST_F(CommandInfoTest, CommandsFollowFunctionIdThenFileOrder) {
    EXPECT_EQ(IdsOf(CommandingFunction(300, CommandItem(1)) +
                    CommandingFunction(0, CommandItem(9) + CommandItem(2)) +
                    CommandingFunction(20, CommandItem(8) + CommandItem(3) + CommandItem(5))),
              (std::vector<std::int32_t>{9, 2, 8, 3, 5, 1}));
}

TEST_F(CommandInfoTest, CommandHasOptionsOfItsFunction) {
    WriteFunctions(CommandingFunction(2, CommandItem(1) + CommandItem(2), {1, 1}) +
                   CommandingFunction(1, CommandItem(1), {2, 0}));
    EXPECT_EQ(ResolveCommands(), (Resolved{{1, 112, 120}, {1, 211, 221}, {2, 211, 221}}));
}

TEST_F(CommandInfoTest, DuplicateCommandsAreAllEnumerated) {
    EXPECT_EQ(IdsOf(CommandingFunction(1, CommandItem(4) + CommandItem(5) + CommandItem(4)) +
                    CommandingFunction(2, CommandItem(4))),
              (std::vector<std::int32_t>{4, 5, 4, 4}));
}

TEST_F(CommandInfoTest, FunctionWithoutCommandsAddsNothing) {
    EXPECT_EQ(IdsOf(CommandingFunction(1, CommandItem(1)) + CommandingFunction(2, "") +
                    CommandingFunction(3, CommandItem(3))),
              (std::vector<std::int32_t>{1, 3}));
}

TEST_F(CommandInfoTest, CommandsWithZeroOrNegativeFieldsAreEnumerated) {
    EXPECT_EQ(IdsOf(CommandingFunction(1, R"(<CommandItem ID="1" Event="-1" State="0" Flag="0" SpecInfo1=""/>
            <CommandItem ID="0"/><CommandItem ID="-1" Event="0" State="-1" Flag="-1"/>)")),
              (std::vector<std::int32_t>{1, 0, -1}));
}

TEST_F(CommandInfoTest, FirstFunctionWithSameIdProvidesCommands) {
    WriteFunctions(FunctionWith(1, {.acItems = Options({"10"}), .commands = CommandItem(1)}) +
                   CommandingFunction(1, CommandItem(2) + CommandItem(3)));
    EXPECT_EQ(ResolveCommands(), (Resolved{{1, 10, 0}}));
}

TEST_F(CommandInfoTest, FunctionMissingFromCatalogueAddsNoCommands) {
    WriteFunctions(CommandingFunction(1, CommandItem(1)));
    WriteBalanced(OldFunction(99, 0, 0) + OldFunction(1, 1, 1) + OldFunction(-1, 0, 0));
    EXPECT_EQ(ResolveCommands(), (Resolved{{1, 111, 121}}));
}

TEST_F(CommandInfoTest, NodesOtherThanCommandsAreIgnored) {
    EXPECT_EQ(IdsOf(FunctionWith(1, {.commands = R"(text<!--<CommandItem ID="2"/>--><commanditem ID="3"/>
        <CommandItem xmlns="urn:other" ID="4"/><Family><CommandItem ID="5"/></Family>)" +
                                                 CommandItem(1)})),
              (std::vector<std::int32_t>{1}));
}

// ---- Attributes that a command is missing ----

TEST_F(CommandInfoTest, CommandWithoutAttributesInheritsAllFromPrevious) {
    WriteFunctions(CommandingFunction(1, R"(<CommandItem ID="1" Event="2" State="3" ParamIndex1="1"
        ParamIndex2="1" Flag="4" SpecInfo1="special"/><CommandItem/><CommandItem/>)"));
    const std::vector<CommandInfoRecord> commands = GetCommandInfo();
    ASSERT_EQ(commands.size(), 3u);
    EXPECT_EQ(commands[0].option2, 120);
    EXPECT_EQ(std::memcmp(&commands[1], commands.data(), sizeof commands[0]), 0);
    EXPECT_EQ(std::memcmp(&commands[2], commands.data(), sizeof commands[0]), 0);
}

TEST_F(CommandInfoTest, EachAttributeIsInheritedSeparately) {
    WriteFunctions(CommandingFunction(1, R"(<CommandItem ID="1" Event="2" State="3" SpecInfo1="a"/>
        <CommandItem Event="5" SpecInfo1=""/><CommandItem ID="6" Flag="7"/>)"));
    const std::vector<CommandInfoRecord> commands = GetCommandInfo();
    ASSERT_EQ(commands.size(), 3u);
    EXPECT_EQ(commands[1].id, 1);
    EXPECT_EQ(commands[1].event, 5);
    EXPECT_EQ(commands[1].flag, 0);
    EXPECT_STREQ(commands[1].specInfo1, L"");
    EXPECT_EQ(commands[2].id, 6);
    EXPECT_EQ(commands[2].event, 5);
    EXPECT_EQ(commands[2].state, 3);
    EXPECT_EQ(commands[2].flag, 7);
    EXPECT_STREQ(commands[2].specInfo1, L"");
}

TEST_F(CommandInfoTest, AttributesAreNotInheritedAcrossFunctions) {
    WriteFunctions(CommandingFunction(1, R"(<CommandItem ID="1" Event="2" State="3" ParamIndex1="1"
        ParamIndex2="1" Flag="4" SpecInfo1="special"/>)") +
                   FunctionWith(2, {.commands = "<CommandItem/>"}));
    const std::vector<CommandInfoRecord> commands = GetCommandInfo();
    ASSERT_EQ(commands.size(), 2u);
    const CommandInfoRecord zeros = {};
    EXPECT_EQ(std::memcmp(&commands[1], &zeros, sizeof zeros), 0);
}

// ---- The scheme ----

TEST_F(CommandInfoTest, StoredSchemeValuesOverrideDefaults) {
    WriteFunctions(CommandingFunction(1, CommandItem(1), {1, 1}));
    WriteSchemes(OldScheme(HighPerformanceText, OldFunction(1, 0, 0)) +
                 OldScheme(BalancedText, OldFunction(1, 2, 0)));
    EXPECT_EQ(ResolveCommands(), (Resolved{{1, 112, 120}}));
    EXPECT_EQ(ResolveCommands(HighPerformance), (Resolved{{1, 110, 120}}));
}

TEST_F(CommandInfoTest, FirstReadOfSchemeAdoptsAndStoresDefaults) {
    WriteFunctions(CommandingFunction(1, CommandItem(1), {2, 1}));
    EXPECT_EQ(ResolveCommands(), (Resolved{{1, 112, 121}}));
    EXPECT_EQ(UserSettings(), SavedXml{NewUserFile(NewScheme(BalancedText, NewFunction(1, 2, 1)))});
}

TEST_F(CommandInfoTest, IncompleteSchemeIsCompletedAndStored) {
    WriteFunctions(CommandingFunction(1, CommandItem(1), {2, 1}) +
                   CommandingFunction(2, CommandItem(2), {2, 1}));
    WriteBalanced(OldFunction(1, 0, 0));
    EXPECT_EQ(ResolveCommands(), (Resolved{{1, 110, 120}, {2, 212, 221}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{OldUserFile(OldScheme(BalancedText, OldFunction(1, 0, 0) + NewFunction(2, 2, 1)))});
}

TEST_F(CommandInfoTest, SchemeIsReadAgainForEachCall) {
    WriteFunctions(CommandingFunction(1, CommandItem(1)));
    WriteBalanced(OldFunction(1, 1, 0));
    EXPECT_EQ(ResolveCommands(), (Resolved{{1, 111, 120}}));
    WriteBalanced(OldFunction(1, 2, 1));
    EXPECT_EQ(ResolveCommands(), (Resolved{{1, 112, 121}}));
}

TEST_F(CommandInfoTest, SchemeThatCannotBeSavedIsUsed) {
    std::filesystem::remove_all(installation.UserFile().parent_path());
    WriteFunctions(CommandingFunction(1, CommandItem(1), {2, 1}));
    EXPECT_EQ(ResolveCommands(), (Resolved{{1, 112, 121}}));
}

TEST_F(CommandInfoTest, BusyFileYieldsSettingsInMemory) {
    WriteFunctions(CommandingFunction(1, CommandItem(1)));
    WriteBalanced(OldFunction(1, 1, 0));
    CommandIds();
    const SecondProcess other{HoldMutex, {UserMarker}};
    WriteBalanced(OldFunction(1, 2, 1));
    EXPECT_EQ(ResolveCommands(), (Resolved{{1, 111, 120}}));
}

TEST_F(CommandInfoTest, BusyFileAdoptsDefaultsWithoutStoring) {
    WriteFunctions(CommandingFunction(1, CommandItem(1), {2, 1}));
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_EQ(ResolveCommands(), (Resolved{{1, 112, 121}}));
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(CommandInfoTest, MissingCatalogueYieldsNoCommands) {
    WriteBalanced(OldFunction(1, 0, 0));
    EXPECT_EQ(CommandIds(), std::vector<std::int32_t>{});
}

TEST_F(CommandInfoTest, InvalidCatalogueYieldsNoCommands) {
    WriteBalanced(OldFunction(1, 0, 0));
    EXPECT_EQ(IdsOf(CommandingFunction(1, CommandItem(1)) + R"(<Function ID="2"><Display/></Function>)"),
              std::vector<std::int32_t>{});
}

TEST_F(CommandInfoTest, UnreadableSchemeAndDefaultsYieldNoCommands) {
    EXPECT_EQ(IdsOf(CommandingFunction(1, CommandItem(1)) +
                    R"(<Function ID="2"><Display/><Commands/><Default ACParamIndex="0"/></Function>)"),
              std::vector<std::int32_t>{});
    EXPECT_FALSE(HasUserSettings());
}

// A function without "ID" cannot be matched, so the completed scheme cannot be stored.
TEST_F(CommandInfoTest, SchemeThatCannotBeCompletedYieldsNoCommands) {
    const std::string nameless = R"(<Function ACParamIndex="0" DCParamIndex="0"/>)";
    WriteFunctions(CommandingFunction(1, CommandItem(1)) + CommandingFunction(2, CommandItem(2)));
    WriteBalanced(OldFunction(1, 0, 0) + nameless);
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {}}, {2, {}}}));
    EXPECT_EQ(CommandIds(), std::vector<std::int32_t>{});
    WriteBalanced(OldFunction(1, 0, 0) + OldFunction(2, 0, 0) + nameless);
    EXPECT_EQ(CommandIds(), (std::vector<std::int32_t>{1, 2}));
}

// ---- Functions that are not in the scheme ----

TEST_F(CommandInfoTest, FunctionHiddenByDisplayAddsNoCommands) {
    const FakeDisplay display{Dll().Handle(), {60}};
    EXPECT_EQ(IdsOf(CommandingFunction(1, CommandItem(1)) + RateFunctionWithCommands(7, CommandItem(7)) +
                    RateFunctionWithCommands(8, CommandItem(8)) + CommandingFunction(9, CommandItem(9))),
              (std::vector<std::int32_t>{1, 9}));
}

TEST_F(CommandInfoTest, FunctionSupportedByDisplayAddsCommands) {
    const FakeDisplay display{Dll().Handle(), {60, 48}};
    EXPECT_EQ(IdsOf(CommandingFunction(1, CommandItem(1)) + RateFunctionWithCommands(7, CommandItem(7))),
              (std::vector<std::int32_t>{1, 7}));
}

TEST_F(CommandInfoTest, EmptySchemeSelectsFirstFunctionWithCommands) {
    const std::string scheme = OldScheme(BalancedText, "");
    WriteFunctions(CommandingFunction(1, "") +
                   CommandingFunction(2, CommandItem(4) + CommandItem(5), {2, 1}) +
                   CommandingFunction(3, CommandItem(6)));
    WriteSchemes(scheme);
    EXPECT_EQ(ResolveCommands(), (Resolved{{4, 210, 220}, {5, 210, 220}}));
    EXPECT_EQ(UserSettings(), SavedXml{OldUserFile(scheme)});
}

TEST_F(CommandInfoTest, EmptySchemeStaysEmpty) {
    WriteFunctions(CommandingFunction(1, CommandItem(1)) + CommandingFunction(2, CommandItem(2)));
    WriteSchemes(OldScheme(BalancedText, ""));
    CommandIds();
    EXPECT_EQ(CommandIds(), (std::vector<std::int32_t>{1}));
    EXPECT_EQ(GetParameter(Balanced), Params{});
}

TEST_F(CommandInfoTest, EmptySchemeAndNoCommandsYieldNothing) {
    WriteSchemes(OldScheme(BalancedText, ""));
    EXPECT_EQ(IdsOf(Functions({1, 2})), std::vector<std::int32_t>{});
}

// Without the hidden function, the scheme is empty. The commands of the first function are then enumerated,
// which is the hidden function itself.
TEST_F(CommandInfoTest, SchemeEmptiedByDisplaySelectsFirstFunction) {
    const FakeDisplay display{Dll().Handle(), {60}};
    WriteFunctions(RateFunctionWithCommands(7, CommandItem(7)) + CommandingFunction(9, CommandItem(9)));
    WriteBalanced(OldFunction(7, 1, 1));
    EXPECT_EQ(ResolveCommands(), (Resolved{{7, 60, 0}}));
}

// ---- The callback ----

TEST_F(CommandInfoTest, CallbackMayCallGetCommandInfo) {
    WriteFunctions(CommandingFunction(1, CommandItem(1) + CommandItem(2)));
    std::vector<std::int32_t> ids;
    auto callAgain = MakeCallback<IGetCommandInfoCallback>([&](const CommandInfoRecord* command) {
        EXPECT_EQ(CommandIds(HighPerformance), (std::vector<std::int32_t>{1, 2}));
        ids.push_back(command->id);
    });
    EXPECT_TRUE(Dll().GetCommandInfo(&Balanced, &callAgain));
    EXPECT_EQ(ids, (std::vector<std::int32_t>{1, 2}));
}

TEST_F(CommandInfoTest, CallbackMayCallZOTDamExit) {
    WriteFunctions(CommandingFunction(1, CommandItem(1) + CommandItem(2)));
    std::vector<std::int32_t> ids;
    auto exit = MakeCallback<IGetCommandInfoCallback>([&](const CommandInfoRecord* command) {
        Dll().ZOTDamExit();
        ids.push_back(command->id);
    });
    EXPECT_TRUE(Dll().GetCommandInfo(&Balanced, &exit));
    EXPECT_EQ(ids, (std::vector<std::int32_t>{1, 2}));
}

}  // namespace ZOTDam::Test
