// Tests of zotdamctl commands.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

// A function with two options on each power source, and with two commands.
constexpr char BrightnessWithCommands[] = R"(<Function ID="1" Name="Brightness"><Display>
    <AC><DisplayItem Option="1000" Label="Bright"/><DisplayItem Option="-20" Label="Dark"/></AC>
    <DC><DisplayItem Option="30" Label="Dim"/><DisplayItem Option="40" Label="Off"/></DC>
</Display><Commands>
    <CommandItem ID="21" Event="-1" State="2" Flag="300" ParamIndex1="0" ParamIndex2="1" SpecInfo1="明るさ"/>
    <CommandItem ID="-5" Event="1" State="0" Flag="0" ParamIndex1="1" ParamIndex2="0" SpecInfo1=""/>
</Commands><Default ACParamIndex="1" DCParamIndex="1"/></Function>)";

class CommandsTest : public ClientTest {
protected:
    CommandsTest() { WriteFunctions(BrightnessWithCommands); }

    Json Commands() const { return JsonOutput({L"commands", L"balanced"})["commands"]; }
};

TEST_F(CommandsTest, TableListsCommands) {
    WriteBalanced(OldFunction(1, 1, 0));
    EXPECT_EQ(Output({L"commands", L"balanced"}),
              "Scheme: balanced (381b4222-f694-41f0-9685-ff5bb260df2e)\n"
              "Source: user settings\n"
              "\n"
              "ID  Function    Command  Event  State  Option1     Option2     Flag  SpecInfo1\n"
              " 1  Brightness       21     -1      2  Dark (-20)  Dim (30)     300  明るさ\n"
              " 1  Brightness       -5      1      0  Dim (30)    Dark (-20)     0\n");
}

TEST_F(CommandsTest, JsonListsCommandsWithFieldsInOrder) {
    WriteBalanced(OldFunction(1, 0, 1));
    EXPECT_EQ(Output({L"commands", L"balanced", L"--json"}), R"({
  "scheme": "381b4222-f694-41f0-9685-ff5bb260df2e",
  "schemeName": "balanced",
  "source": "user",
  "commands": [
    {
      "id": 1,
      "name": "Brightness",
      "commandId": 21,
      "event": -1,
      "state": 2,
      "option1": 1000,
      "label1": "Bright",
      "option2": 40,
      "label2": "Off",
      "flag": 300,
      "specInfo1": "\u660e\u308b\u3055"
    },
    {
      "id": 1,
      "name": "Brightness",
      "commandId": -5,
      "event": 1,
      "state": 0,
      "option1": 40,
      "label1": "Off",
      "option2": 1000,
      "label2": "Bright",
      "flag": 0,
      "specInfo1": ""
    }
  ]
}
)");
}

TEST_F(CommandsTest, CommandsNameTheirFunctions) {
    WriteFunctions(R"(<Function ID="2" Name="Sleep"><Display/><Commands><CommandItem ID="7"/></Commands>
        <Default ACParamIndex="0" DCParamIndex="0"/></Function>)" +
                   std::string{BrightnessWithCommands} +
                   Function(3, R"(<Default ACParamIndex="0" DCParamIndex="0"/>)"));
    const Json commands = Commands();
    ASSERT_EQ(commands.size(), 3);
    EXPECT_EQ(commands[1]["name"], "Brightness");
    EXPECT_EQ(commands[2]["name"], "Sleep");
    EXPECT_EQ(commands[2]["id"], 2);
    EXPECT_EQ(commands[2]["commandId"], 7);
}

TEST_F(CommandsTest, EmptySchemeNamesFunctionOfItsCommands) {
    WriteFunctions(R"(<Function ID="2" Name="Sleep"><Display/><Commands><CommandItem ID="7"/></Commands>
        <Default ACParamIndex="0" DCParamIndex="0"/></Function>)" +
                   std::string{BrightnessWithCommands});
    WriteBalanced("");
    const Json commands = Commands();
    ASSERT_EQ(commands.size(), 2);
    EXPECT_EQ(commands[0]["name"], "Brightness");
    EXPECT_EQ(commands[0]["label1"], "Bright");
}

TEST_F(CommandsTest, SchemeWithoutNameIsShownByGuid) {
    EXPECT_TRUE(Output({L"commands", L"0a1b2c3d-1111-2222-3333-444455556666"})
                    .starts_with("Scheme: 0a1b2c3d-1111-2222-3333-444455556666\n"));
}

TEST_F(CommandsTest, UnsetSchemeUsesDefaults) {
    EXPECT_EQ(Commands()[0]["option1"], -20);
    EXPECT_EQ(Commands()[0]["option2"], 40);
}

TEST_F(CommandsTest, InvalidIndexReturnsOptionZero) {
    WriteBalanced(OldFunction(1, 2, -1));
    EXPECT_EQ(Commands()[0]["option1"], 0);
    EXPECT_EQ(Commands()[0]["option2"], 0);
    EXPECT_EQ(Commands()[0]["label1"], nullptr);
}

TEST_F(CommandsTest, FunctionsWithoutCommandsListNone) {
    WriteDefaults(ThreeFunctions);
    EXPECT_EQ(Output({L"commands", L"balanced"}),
              "Scheme: balanced (381b4222-f694-41f0-9685-ff5bb260df2e)\n"
              "Source: not stored: defaults (the user settings file " +
                  Utf8(installation.UserFile()) +
                  " does not exist)\n"
                  "\n"
                  "ID  Function  Command  Event  State  Option1  Option2  Flag  SpecInfo1\n");
    EXPECT_EQ(Commands(), Json::array());
}

TEST_F(CommandsTest, EmptyCatalogueHasNoCommands) {
    WriteFunctions("");
    EXPECT_EQ(Commands(), Json::array());
}

TEST_F(CommandsTest, UnavailableCatalogueIsAnError) {
    ExpectNeedsCatalogue({L"commands", L"balanced"});
}

TEST_F(CommandsTest, UserSettingsInUseAreAnError) {
    WriteBalanced(OldFunction(1, 1, 1));
    ExpectNeedsUserSettings({L"commands", L"balanced"});
}

TEST_F(CommandsTest, InvalidSchemeIsRejected) {
    ExpectUnknownScheme({L"commands", L"balanced "}, "balanced ", ". Did you mean \"balanced\"?");
}

}  // namespace ZOTDam::Test
