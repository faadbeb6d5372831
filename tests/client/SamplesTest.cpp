// Tests of zotdamctl on a copy of the sample installation.
#include <set>

#include "client/ClientTest.h"

namespace ZOTDam::Test {

class SamplesTest : public ClientTest {
protected:
    SamplesTest() {
        const std::filesystem::path samples = ZOTDAM_SAMPLES;
        constexpr auto everything = std::filesystem::copy_options::recursive;
        std::filesystem::copy(samples / L"Program Files", installation.ProgramFiles(), everything);
        std::filesystem::copy(samples / L"ProgramData", installation.ProgramData(), everything);
    }

    // Replaces the neutral string table with the one of a language.
    void UseLanguage(const std::wstring& language) const { WriteStringTable(ReadFile(CopyFor(language))); }

    // Returns the keys that the string tables must translate: the texts that are shown without a string
    // table.
    std::set<std::string> Keys() const {
        std::filesystem::remove(installation.StringTableFile());
        return TextsOf(JsonOutput({L"functions"})["functions"]);
    }

    static std::set<std::string> TextsOf(const Json& functions) {
        std::set<std::string> texts;
        for (const Json& function : functions) {
            texts.insert({function["name"], function["group"]});
            for (const char* const source : {"acOptions", "dcOptions"})
                for (const Json& option : function[source])
                    texts.insert(option["label"]);
        }
        return texts;
    }

    void ExpectLabelledDifferences() const {
        for (const wchar_t* const from : Schemes)
            for (const wchar_t* const to : Schemes)
                if (from != to) {
                    const Json json = JsonOutput({L"diff", from, to});
                    ExpectLabels(json["acDifferences"]);
                    ExpectLabels(json["dcDifferences"]);
                }
    }

    static constexpr const wchar_t* Schemes[] = {L"balanced", L"high-performance", L"power-saver"};

private:
    static void ExpectLabels(const Json& differences) {
        EXPECT_FALSE(differences.empty());
        for (const Json& difference : differences) {
            EXPECT_TRUE(difference["fromLabel"].is_string()) << difference;
            EXPECT_TRUE(difference["toLabel"].is_string()) << difference;
            EXPECT_NE(difference["fromLabel"], difference["toLabel"]);
        }
    }
};

TEST_F(SamplesTest, CatalogueHasSixteenFunctions) {
    EXPECT_EQ(JsonOutput({L"count"}), Json({{"count", 16}}));
}

TEST_F(SamplesTest, EachSchemeHasDefaultsForEachFunction) {
    for (const wchar_t* const scheme : Schemes)
        EXPECT_EQ(JsonOutput({L"params", scheme, L"--default"})["parameters"].size(), 16) << scheme;
}

TEST_F(SamplesTest, DefaultsCompleteUserSettings) {
    const Json params = IndexesOf({L"params", L"balanced"});
    EXPECT_EQ(params[0], Param(1, 0, 3)) << "the user's choice";
    EXPECT_EQ(params[4], Param(5, 3, 1)) << "the default";
}

TEST_F(SamplesTest, StoredValueIsResetToDefault) {
    Output({L"set", L"balanced", L"1", L"4", L"4"});
    EXPECT_EQ(IndexesOf({L"params", L"balanced"})[0], Param(1, 4, 4));
    EXPECT_EQ(JsonOutput({L"reset"})["reset"], true);
    EXPECT_EQ(IndexesOf({L"params", L"balanced"})[0], Param(1, 1, 2));
}

TEST_F(SamplesTest, AllStringTablesHaveEachKey) {
    const std::string neutral = ReadFile(installation.StringTableFile());
    const std::set<std::string> keys = Keys();
    EXPECT_TRUE(keys.contains("BrightnessName"));
    for (const std::string& table : {neutral, ReadFile(CopyFor(L"de-DE")), ReadFile(CopyFor(L"ja-JP"))})
        for (const std::string& key : keys)
            EXPECT_NE(table.find("<data name=\"" + key + "\">"), std::string::npos) << key;
}

TEST_F(SamplesTest, OtherLanguagesShowNoKey) {
    const std::set<std::string> keys = Keys();
    for (const wchar_t* const language : {L"de-DE", L"ja-JP"})
        for (const std::string& text :
             TextsOf(JsonOutput({L"functions", L"--language", language})["functions"]))
            EXPECT_FALSE(keys.contains(text)) << text;
}

TEST_F(SamplesTest, FunctionHasEnglishTexts) {
    const Json function = JsonOutput({L"functions"})["functions"][0];
    EXPECT_EQ(function["name"], "Display brightness");
    EXPECT_EQ(function["group"], "Display");
    EXPECT_EQ(function["acOptions"][0], Json({{"index", 0}, {"option", 100}, {"label", "100%"}}));
}

TEST_F(SamplesTest, FunctionNamesAreTranslated) {
    EXPECT_EQ(JsonOutput({L"functions", L"--language", L"de-DE"})["functions"][0]["name"],
              "Bildschirmhelligkeit");
    EXPECT_EQ(JsonOutput({L"functions", L"--language", L"ja-JP"})["functions"][0]["name"], "画面の明るさ");
}

TEST_F(SamplesTest, EachSchemeSelectsOptionOfEachFunction) {
    for (const wchar_t* const scheme : Schemes) {
        const Json current = JsonOutput({L"current", scheme});
        EXPECT_EQ(current["options"].size(), 16);
        for (const Json& option : current["options"])
            EXPECT_TRUE(option["acLabel"].is_string() && option["dcLabel"].is_string()) << option;
    }
}

TEST_F(SamplesTest, CommandsFollowUserSettings) {
    const Json commands = JsonOutput({L"commands", L"balanced"})["commands"];
    EXPECT_EQ(commands[0]["option1"], 100) << "plugged in";
    EXPECT_EQ(commands[0]["option2"], 40) << "on battery";
}

TEST_F(SamplesTest, EnglishDifferencesHaveLabels) {
    ExpectLabelledDifferences();
}

TEST_F(SamplesTest, GermanDifferencesHaveLabels) {
    UseLanguage(L"de-DE");
    ExpectLabelledDifferences();
}

TEST_F(SamplesTest, JapaneseDifferencesHaveLabels) {
    UseLanguage(L"ja-JP");
    ExpectLabelledDifferences();
}

TEST_F(SamplesTest, CommonSettingsComeFromUserAndDefaults) {
    EXPECT_EQ(Output({L"setting", L"get", L"LowBatteryWarning"}), "15\n") << "the user's";
    EXPECT_EQ(Output({L"setting", L"get", L"PeakShiftStart"}), "13:00\n") << "the default";
}

TEST_F(SamplesTest, CommonSettingSurvivesInitButNotReset) {
    Output({L"setting", L"set", L"EcoCharge", L"1"});
    EXPECT_EQ(Output({L"setting", L"get", L"EcoCharge"}), "1\n");
    Output({L"setting", L"init"});
    EXPECT_EQ(Output({L"setting", L"get", L"EcoCharge"}), "1\n");
    Output({L"reset"});
    EXPECT_EQ(Output({L"setting", L"get", L"EcoCharge"}), "0\n");
}

}  // namespace ZOTDam::Test
