// Tests of zotdamctl setting.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

class SettingCommandTest : public ClientTest {
protected:
    void WriteUserSetting(const std::string& attributes) const {
        WriteUserSettings("<OrloPowerCfg><CommonSettings " + attributes + "/></OrloPowerCfg>");
    }
    void WriteDefaultSetting(const std::string& attributes) const {
        WriteDefaults("<ZOTDefault><CommonSettings " + attributes + "/><Functions/></ZOTDefault>");
    }
    void WriteBaseSetting(const std::string& attributes) const {
        WriteBase("<ZOTBase><CommonSettings " + attributes + "/></ZOTBase>");
    }

    std::string Get(const std::wstring& name) const {
        return JsonOutput({L"setting", L"get", name})["value"];
    }

    // Stores a value and checks that `setting get` returns it.
    void ExpectStored(const std::wstring& value) const {
        Output({L"setting", L"set", L"Warning", L"--", value});
        EXPECT_EQ(Get(L"Warning"), Utf8(value));
    }
};

using SettingGetTest = SettingCommandTest;

TEST_F(SettingGetTest, ValueOfSettingIsPrinted) {
    WriteUserSetting(R"(Warning="15 %")");
    EXPECT_EQ(Output({L"setting", L"get", L"Warning"}), "15 %\n");
}

TEST_F(SettingGetTest, JsonHasNameAndValueInOrder) {
    WriteUserSetting(R"(Warning="15 %")");
    EXPECT_EQ(Output({L"setting", L"get", L"Warning", L"--json"}), R"({
  "name": "Warning",
  "value": "15 %",
  "source": "user"
}
)");
}

TEST_F(SettingGetTest, UserPrecedesDefaultsAndDefaultsPrecedeBase) {
    WriteUserSetting(R"(A="user")");
    WriteDefaultSetting(R"(A="default" B="default")");
    WriteBaseSetting(R"(A="base" B="base" C="base")");
    EXPECT_EQ(Get(L"A"), "user");
    EXPECT_EQ(Get(L"B"), "default");
    EXPECT_EQ(Get(L"C"), "base");
}

TEST_F(SettingGetTest, EmptyUserValueHidesBaseValue) {
    WriteUserSetting(R"(Warning="")");
    WriteBaseSetting(R"(Warning="10")");
    EXPECT_EQ(Output({L"setting", L"get", L"Warning"}), "\n");
}

TEST_F(SettingGetTest, NonAsciiNameAndValueAreFound) {
    WriteUserSetting("Größe=\"日本 \U0001F50B\"");
    EXPECT_EQ(Output({L"setting", L"get", L"Größe"}), "日本 \U0001F50B\n");
    EXPECT_EQ(Get(L"Größe"), "日本 \U0001F50B");
}

TEST_F(SettingGetTest, LongestValueIsFound) {
    WriteUserSetting("Warning=\"" + std::string(259, '1') + "\"");
    EXPECT_EQ(Get(L"Warning"), std::string(259, '1'));
}

TEST_F(SettingGetTest, UnknownSettingIsAnError) {
    WriteUserSetting(R"(Warning="15")");
    ExpectError({L"setting", L"get", L"Icon"}, Failure, "There is no common setting \"Icon\".");
    ExpectError({L"setting", L"get", L""}, Failure, "There is no common setting \"\".");
}

TEST_F(SettingGetTest, SimilarNameIsSuggested) {
    WriteUserSetting(R"(Warning="15" Icon="1")");
    ExpectError({L"setting", L"get", L"warning"}, Failure,
                "There is no common setting \"warning\". Did you mean \"Warning\"?");
    ExpectJsonError({L"setting", L"get", L"warnin"}, "unknown-setting", nullptr);
}

TEST_F(SettingGetTest, ListShowsEffectiveValuesWithSource) {
    WriteUserSetting(R"(A="user")");
    WriteDefaultSetting(R"(A="default" B="default")");
    WriteBaseSetting(R"(A="base" B="base" C="base")");
    EXPECT_EQ(Output({L"setting", L"list"}),
              "Name  Value    Source\n"
              "A     user     user\n"
              "B     default  default\n"
              "C     base     base\n");
    EXPECT_EQ(JsonOutput({L"setting", L"list"})["settings"][1],
              Json({{"name", "B"}, {"value", "default"}, {"source", "default"}}));
}

TEST_F(SettingGetTest, ListStatesWhyThereAreNoUserSettings) {
    WriteUserSettings("<OrloPowerCfg>");
    EXPECT_EQ(Output({L"setting", L"list"}),
              "Name  Value  Source\n\n"
              "There are no user settings: the user settings file " +
                  Utf8(installation.UserFile()) + " is not well-formed.\n");
}

TEST_F(SettingGetTest, TooLongUserValueIsNotEffective) {
    WriteUserSetting("A=\"" + std::string(260, '1') + "\"");
    WriteBaseSetting(R"(A="base")");
    EXPECT_EQ(JsonOutput({L"setting", L"list"})["settings"][0]["value"], "base");
    EXPECT_EQ(JsonOutput({L"setting", L"get", L"A"})["source"], "base");
}

TEST_F(SettingGetTest, ListOfNoSettingsIsEmpty) {
    EXPECT_EQ(JsonOutput({L"setting", L"list"}), Json({{"settings", Json::array()}}));
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(SettingGetTest, MissingFilesAreAnErrorAndNotCreated) {
    ExpectError({L"setting", L"get", L"Warning"}, Failure, "There is no common setting \"Warning\".");
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(SettingGetTest, UserSettingsInUseAreAnError) {
    WriteUserSetting(R"(Warning="15")");
    WriteBaseSetting(R"(Warning="10")");
    ExpectNeedsUserSettings({L"setting", L"get", L"Warning"});
}

TEST_F(SettingGetTest, DefaultsInUseAreAnError) {
    WriteDefaultSetting(R"(Warning="15")");
    WriteBaseSetting(R"(Warning="10")");
    const SecondProcess other{HoldMutex, {DefaultsMarker}};
    ExpectError({L"setting", L"get", L"Warning"}, InUse, DefaultsTitle() + " is in use by another program.");
}

class SettingSetTest : public SettingCommandTest {
protected:
    void ExpectNotStored(const std::wstring& name, const std::wstring& value,
                         const std::string& sentence) const {
        ExpectError({L"setting", L"set", name, value}, Failure, sentence);
    }

    void ExpectInvalidName(const std::wstring& name) const {
        ExpectNotStored(name, L"15",
                        "\"" + Utf8(name) +
                            "\" is not a valid name: a name begins with a letter or \"_\", and has only "
                            "letters, digits, \".\", \"-\" and \"_\".");
    }

    void ExpectTooLong(const std::wstring& value) const {
        ExpectError({L"setting", L"set", L"Warning", value}, WrongUsage,
                    "The value is too long: a setting can have at most 259 characters.");
    }
};

TEST_F(SettingSetTest, NewValueIsStoredAndConfirmed) {
    EXPECT_EQ(Output({L"setting", L"set", L"Warning", L"15 %"}), "Warning is now \"15 %\".\n");
    EXPECT_EQ(Get(L"Warning"), "15 %");
}

TEST_F(SettingSetTest, JsonHasNameAndValueInOrder) {
    EXPECT_EQ(Output({L"setting", L"set", L"Warning", L"15 %", L"--json"}), R"({
  "name": "Warning",
  "value": "15 %"
}
)");
}

TEST_F(SettingSetTest, OtherSettingsAndSchemesStayUnchanged) {
    WriteUserSettings("<OrloPowerCfg><CommonSettings Warning=\"10\" Icon=\"1\"/><PowerSchemes>" +
                      OldScheme(BalancedText, OldFunction(1, 5, 6)) + "</PowerSchemes></OrloPowerCfg>");
    Output({L"setting", L"set", L"Warning", L"15"});
    EXPECT_EQ(Get(L"Warning"), "15");
    EXPECT_EQ(Get(L"Icon"), "1");
    EXPECT_NE(UserSettings().find(OldScheme(BalancedText, OldFunction(1, 5, 6))), std::string::npos);
}

TEST_F(SettingSetTest, NonAsciiNameAndValueAreStored) {
    EXPECT_EQ(Output({L"setting", L"set", L"Größe", L"日本 \U0001F50B"}),
              "Größe is now \"日本 \U0001F50B\".\n");
    EXPECT_EQ(Get(L"Größe"), "日本 \U0001F50B");
}

TEST_F(SettingSetTest, ValuesWithSpecialSyntaxAreStoredUnchanged) {
    for (const wchar_t* const value : {L"", L" ", L"-5", L"--json", L"/x", L"[a,b]", L"[[aabb]]", L"{}",
                                       L"reset", L"<&'>", L"%ProgramFiles%", L"a\tb\r\nc"})
        ExpectStored(value);
}

TEST_F(SettingSetTest, NegativeNumberIsAValueNotAnOption) {
    EXPECT_EQ(Output({L"setting", L"set", L"Warning", L"-5"}), "Warning is now \"-5\".\n");
}

TEST_F(SettingSetTest, LongestValueIsStored) {
    ExpectStored(std::wstring(259, L'1'));
}

TEST_F(SettingSetTest, TooLongValueIsRejectedWithoutChange) {
    WriteUserSetting(R"(Warning="10")");
    ExpectTooLong(std::wstring(260, L'1'));
    EXPECT_EQ(Get(L"Warning"), "10");
}

TEST_F(SettingSetTest, LengthIsCountedInUtf16CodeUnits) {
    std::wstring value(257, L'1');
    ExpectStored(value += L"\U0001F50B");
    ExpectTooLong(value += L"1");
}

TEST_F(SettingSetTest, InvalidNameIsAnError) {
    for (const wchar_t* const name : {L"", L"a b", L"1st", L"a:b"})
        ExpectInvalidName(name);
    ExpectNotStored(L"xmlns", L"15", "The name \"xmlns\" is reserved by XML.");
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(SettingSetTest, CharacterInvalidInXmlIsAnError) {
    ExpectNotStored(L"Warning", L"a\x01", "The value contains a character that XML does not allow.");
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(SettingSetTest, ReadOnlyUserSettingsAreAnError) {
    WriteUserSetting(R"(Warning="10")");
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_READONLY);
    ExpectNotStored(L"Warning", L"15", UserFile() + " cannot be written.");
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(Get(L"Warning"), "10");
}

TEST_F(SettingSetTest, MissingUserSettingsFolderIsAnError) {
    std::filesystem::remove(installation.UserFile().parent_path());
    ExpectNotStored(L"Warning", L"15", UserFile() + " cannot be written.");
}

TEST_F(SettingSetTest, UserSettingsInUseAreAnError) {
    WriteUserSetting(R"(Warning="10")");
    ExpectNeedsUserSettings({L"setting", L"set", L"Warning", L"15"});
    EXPECT_EQ(Get(L"Warning"), "10");
}

class SettingInitTest : public SettingCommandTest {
protected:
    SettingInitTest() {
        WriteDefaultSetting(R"(Warning="5" Icon="1")");
        WriteBaseSetting(R"(Warning="10")");
    }

    void ExpectFailure(const std::string& sentence, DWORD exitStatus = Failure) const {
        const std::string before = Defaults();
        ExpectError({L"setting", L"init"}, exitStatus, sentence);
        EXPECT_EQ(Defaults(), before);
    }

    std::string NotInitialised() const {
        return "The common settings could not be initialised: the base catalogue " +
               Utf8(installation.BaseFile()) + " contains none, or the defaults file " +
               Utf8(installation.DefaultsFile()) + " cannot be written.";
    }
};

TEST_F(SettingInitTest, BaseSettingsReplaceDefaultSettings) {
    EXPECT_EQ(Output({L"setting", L"init"}),
              "The default settings were replaced with those of the base catalogue.\n");
    EXPECT_EQ(Get(L"Warning"), "10");
    ExpectError({L"setting", L"get", L"Icon"}, Failure, "There is no common setting \"Icon\".");
}

TEST_F(SettingInitTest, JsonReportsInitialisation) {
    EXPECT_EQ(JsonOutput({L"setting", L"init"}), Json({{"initialised", true}}));
}

TEST_F(SettingInitTest, FunctionsAndUserSettingsStayUnchanged) {
    WriteDefaults(ThreeFunctions);
    Output({L"setting", L"init"});
    EXPECT_EQ(JsonOutput({L"count"}), Json({{"count", 3}}));
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(SettingInitTest, MissingBaseCatalogueIsAnError) {
    std::filesystem::remove(installation.BaseFile());
    ExpectFailure(NotInitialised());
}

TEST_F(SettingInitTest, MalformedBaseCatalogueIsAnError) {
    WriteBase("<ZOTBase>");
    ExpectFailure(NotInitialised());
}

TEST_F(SettingInitTest, BaseCatalogueWithoutSettingsIsAnError) {
    WriteBase("<ZOTBase><Functions/></ZOTBase>");
    ExpectFailure(NotInitialised());
}

TEST_F(SettingInitTest, ReadOnlyDefaultsAreAnError) {
    SetFileAttributesW(installation.DefaultsFile().c_str(), FILE_ATTRIBUTE_READONLY);
    ExpectFailure(NotInitialised());
    SetFileAttributesW(installation.DefaultsFile().c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(SettingInitTest, DefaultsInUseAreAnError) {
    const SecondProcess other{HoldMutex, {DefaultsMarker}};
    ExpectFailure(DefaultsTitle() + " is in use by another program.", InUse);
}

}  // namespace ZOTDam::Test
