// Tests of zotdamctl functions.
#include <map>

#include "client/ClientTest.h"

namespace ZOTDam::Test {

// A file that no other program can open.
class LockedFile {
public:
    explicit LockedFile(const std::filesystem::path& file)
        : handle{CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr)} {}
    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;
    ~LockedFile() { CloseHandle(handle); }

private:
    HANDLE handle;
};

class FunctionsTest : public ClientTest {
protected:
    FunctionsTest() {
        WriteFunctions(R"(
            <Function ID="20" Type="3" Flag="4" Name="SleepKey" Group="PowerKey">
                <Display><AC/><DC/></Display><Commands/>
            </Function>
            <Function ID="1" Type="-1" Flag="-2" Name="LightKey" Group="ScreenKey"><Display>
                <AC><DisplayItem Label="BrightKey" Option="100"/><DisplayItem Label="DarkKey" Option="-20"/></AC>
                <DC><DisplayItem Label="DarkKey" Option="-20"/></DC>
            </Display><Commands/></Function>)");
        WriteEntries(Entry("SleepKey", "Sleep after") + Entry("PowerKey", "Power") +
                     Entry("LightKey", "Brightness") + Entry("ScreenKey", "Display") +
                     Entry("BrightKey", "Bright") + Entry("DarkKey", "Very dark"));
    }

    std::string FirstName(Arguments arguments) const {
        arguments.insert(arguments.begin(), L"functions");
        return JsonOutput(arguments)["functions"][0]["name"];
    }
};

TEST_F(FunctionsTest, TextListsFunctionsWithOptions) {
    EXPECT_EQ(Output({L"functions"}),
              "1  Brightness\n"
              "    Group       Display\n"
              "    Plugged in  0: Bright (100)  1: Very dark (-20)\n"
              "    On battery  0: Very dark (-20)\n"
              "\n"
              "20  Sleep after\n"
              "    Group       Power\n"
              "    Plugged in  none\n"
              "    On battery  none\n");
}

TEST_F(FunctionsTest, JsonListsFunctionsWithFieldsInOrder) {
    EXPECT_EQ(Output({L"functions", L"--json"}), R"({
  "functions": [
    {
      "id": 1,
      "name": "Brightness",
      "group": "Display",
      "type": -1,
      "flag": -2,
      "acOptions": [
        {
          "index": 0,
          "option": 100,
          "label": "Bright"
        },
        {
          "index": 1,
          "option": -20,
          "label": "Very dark"
        }
      ],
      "dcOptions": [
        {
          "index": 0,
          "option": -20,
          "label": "Very dark"
        }
      ]
    },
    {
      "id": 20,
      "name": "Sleep after",
      "group": "Power",
      "type": 3,
      "flag": 4,
      "acOptions": [],
      "dcOptions": []
    }
  ]
}
)");
}

TEST_F(FunctionsTest, IdsSelectFunctions) {
    EXPECT_TRUE(Output({L"functions", L"20"}).starts_with("20  Sleep after\n"));
    EXPECT_EQ(JsonOutput({L"functions", L"20", L"1"}), JsonOutput({L"functions"}));
}

TEST_F(FunctionsTest, UnknownIdIsAnError) {
    ExpectError({L"functions", L"1", L"3"}, Failure,
                "The catalogue " + Utf8(installation.DefaultsFile()) + " has no function 3.");
    ExpectJsonError({L"functions", L"3"}, "unknown-function", Utf8(installation.DefaultsFile()));
}

TEST_F(FunctionsTest, JsonHasOnlyAsciiCharacters) {
    WriteEntries(Entry("LightKey", "画面 \U0001F50B"));
    const std::string json = Output({L"functions", L"1", L"--json"});
    EXPECT_NE(json.find(R"("name": "\u753b\u9762 \ud83d\udd0b")"), std::string::npos) << json;
}

TEST_F(FunctionsTest, MissingTranslationShowsKey) {
    WriteEntries(Entry("DarkKey", "Very dark"));
    EXPECT_TRUE(Output({L"functions"})
                    .starts_with("1  LightKey\n"
                                 "    Group       ScreenKey\n"
                                 "    Plugged in  0: BrightKey (100)  1: Very dark (-20)\n"));
}

TEST_F(FunctionsTest, MissingStringTableShowsKeys) {
    std::filesystem::remove(installation.StringTableFile());
    EXPECT_EQ(FirstName({}), "LightKey");
}

TEST_F(FunctionsTest, NonAsciiTextsAreWrittenAsUtf8) {
    WriteEntries(Entry("LightKey", "画面の明るさ \U0001F50B") + Entry("BrightKey", "größer"));
    EXPECT_TRUE(Output({L"functions"})
                    .starts_with("1  画面の明るさ \U0001F50B\n"
                                 "    Group       ScreenKey\n"
                                 "    Plugged in  0: größer (100)  1: DarkKey (-20)\n"));
    EXPECT_EQ(FirstName({}), "画面の明るさ \U0001F50B");
}

TEST_F(FunctionsTest, EmptyCatalogueHasNoFunctions) {
    WriteFunctions("");
    EXPECT_EQ(JsonOutput({L"functions"}), Json({{"functions", Json::array()}}));
    EXPECT_EQ(Output({L"functions"}), "The catalogue has no functions.\n");
}

TEST_F(FunctionsTest, UnavailableCatalogueIsAnError) {
    ExpectNeedsCatalogue({L"functions"});
}

TEST_F(FunctionsTest, UserSettingsInUseAreNotNeeded) {
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_EQ(FirstName({}), "Brightness");
    EXPECT_FALSE(HasUserSettings());
}

class LanguageOptionTest : public FunctionsTest {
protected:
    LanguageOptionTest() {
        WriteCopy(L"ja-JP", Entry("LightKey", "画面の明るさ"));
        std::filesystem::create_directory(TemporaryFolder());
        SetEnvironmentVariableW(L"TMP", TemporaryFolder().c_str());
    }
    ~LanguageOptionTest() override { SetEnvironmentVariableW(L"TMP", oldTemporaryFolder.c_str()); }

    std::filesystem::path TemporaryFolder() const { return installation.ProgramData() / L"Temp"; }

    // Returns the content of all files in the installation and in the temporary folder.
    std::map<std::filesystem::path, std::string> Everything() const {
        std::map<std::filesystem::path, std::string> everything;
        for (const std::filesystem::path& folder : {installation.ProgramFiles(), installation.ProgramData()})
            for (const auto& entry : std::filesystem::recursive_directory_iterator{folder})
                everything[entry.path()] = entry.is_directory() ? "" : ReadFile(entry.path());
        return everything;
    }

    void ExpectNoLanguage(const std::string& language) const {
        ExpectError({L"functions", L"--language", {language.begin(), language.end()}}, WrongUsage,
                    "\"" + language + "\" is not a language name: specify a name such as de-DE.");
    }

private:
    std::filesystem::path oldTemporaryFolder = std::filesystem::temp_directory_path();
};

TEST_F(LanguageOptionTest, TextUsesStringTableOfLanguage) {
    EXPECT_TRUE(Output({L"functions", L"--language", L"ja-JP"}).starts_with("1  画面の明るさ\n"));
}

TEST_F(LanguageOptionTest, JsonUsesStringTableOfLanguage) {
    EXPECT_EQ(FirstName({L"--language", L"ja-JP"}), "画面の明るさ");
}

TEST_F(LanguageOptionTest, LanguageNameIsCaseInsensitive) {
    EXPECT_EQ(FirstName({L"--language", L"JA-jp"}), "画面の明るさ");
}

TEST_F(LanguageOptionTest, UnknownIdErrorNamesRealFile) {
    ExpectError({L"functions", L"3", L"--language", L"ja-JP"}, Failure,
                "The catalogue " + Utf8(installation.DefaultsFile()) + " has no function 3.");
}

TEST_F(LanguageOptionTest, MissingTranslationInLanguageShowsKey) {
    EXPECT_EQ(JsonOutput({L"functions", L"--language", L"ja-JP"})["functions"][1]["name"], "SleepKey");
}

TEST_F(LanguageOptionTest, NeutralStringTableIsNotRequired) {
    std::filesystem::remove(installation.StringTableFile());
    EXPECT_EQ(FirstName({L"--language", L"ja-JP"}), "画面の明るさ");
}

TEST_F(LanguageOptionTest, SuccessfulCommandChangesNoFile) {
    const auto before = Everything();
    Output({L"functions", L"--language", L"ja-JP"});
    EXPECT_EQ(Everything(), before);
}

TEST_F(LanguageOptionTest, FailedCommandChangesNoFile) {
    WriteDefaults("<ZOTDefault>");
    const auto before = Everything();
    ExpectCatalogueThatIsNotWellFormed({L"functions", L"--language", L"ja-JP"});
    ExpectNoLanguage("..");
    EXPECT_EQ(Everything(), before);
}

TEST_F(LanguageOptionTest, UnavailableCatalogueErrorNamesRealFile) {
    ExpectNeedsCatalogue({L"functions", L"--language", L"ja-JP"});
}

TEST_F(LanguageOptionTest, LockedCatalogueErrorNamesRealFile) {
    const LockedFile locked{installation.DefaultsFile()};
    ExpectError({L"functions", L"--language", L"ja-JP"}, InUse, CatalogueInUse());
}

TEST_F(LanguageOptionTest, LockedStringTableErrorNamesRealFile) {
    const LockedFile locked{CopyFor(L"ja-JP")};
    ExpectError({L"functions", L"--language", L"ja-JP"}, Failure,
                "The string table " + Utf8(CopyFor(L"ja-JP")) + " cannot be read.");
}

TEST_F(LanguageOptionTest, LanguageWithoutStringTableIsAnError) {
    ExpectError(
        {L"functions", L"--language", L"de-DE"}, Failure,
        "There is no string table for de-DE: the file " + Utf8(CopyFor(L"de-DE")) + " does not exist.");
}

TEST_F(LanguageOptionTest, InvalidLanguageNameIsRejected) {
    for (const char* const language : {"", "../x", "..", "de_DE", "de-DE/../ja-JP", "C:", "ja JP"})
        ExpectNoLanguage(language);
    ExpectError({L"functions", L"--language", L"日本"}, WrongUsage,
                "\"日本\" is not a language name: specify a name such as de-DE.");
}

}  // namespace ZOTDam::Test
