// Tests of zotdamctl diff.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

constexpr char BalancedToHighPerformance[] =
    "Values of high-performance (8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c)\n"
    "that differ from those of balanced (381b4222-f694-41f0-9685-ff5bb260df2e)\n";

class DiffTest : public ClientTest {
protected:
    // Two functions; the second one is listed first. The schemes set the first one differently on both power
    // sources, and the second one differently on AC only.
    DiffTest() {
        WriteFunctions(NamedFunction(1, "LightKey", "Other") + NamedFunction(2, "SleepKey", "Group1Name"));
        WriteSchemes(OldScheme(BalancedText, OldFunction(1, 0, 0) + OldFunction(2, 0, 0)) +
                     OldScheme(HighPerformanceText, OldFunction(1, 1, 1) + OldFunction(2, 1, 0)));
        WriteEntries(Entry("LightKey", "Brightness") + Entry("SleepKey", "Sleep after") + Settings);
    }

    static std::string NamedFunction(int id, const std::string& name, const std::string& group = "Other") {
        return "<Function ID=\"" + std::to_string(id) + "\" Name=\"" + name + "\" Group=\"" + group +
               R"("><Display>
                <AC><DisplayItem Label="AcLowKey"/><DisplayItem Label="AcHighKey"/></AC>
                <DC><DisplayItem Label="DcLowKey"/><DisplayItem Label="DcHighKey"/></DC>
            </Display><Commands/><Default ACParamIndex="0" DCParamIndex="0"/></Function>)";
    }

    static Json Difference(const std::string& function, const std::string& setting) {
        return {{"function", function}, {"setting", setting}};
    }

    Json AcJson() const { return JsonOutput({L"diff", L"balanced", L"high-performance"})["ac"]; }
    std::string DcOutput() const { return Output({L"diff", L"balanced", L"high-performance", L"--dc"}); }

    inline static const std::string Settings = Entry("AcLowKey", "low") + Entry("AcHighKey", "high") +
                                               Entry("DcLowKey", "dim") + Entry("DcHighKey", "bright");
};

TEST_F(DiffTest, TextListsDifferencesPerPowerSource) {
    EXPECT_EQ(Output({L"diff", L"balanced", L"high-performance"}), std::string{BalancedToHighPerformance} +
                                                                       "\n"
                                                                       "Plugged in:\n"
                                                                       "\n"
                                                                       "Function     Setting\n"
                                                                       "Sleep after  high\n"
                                                                       "Brightness   high\n"
                                                                       "\n"
                                                                       "On battery:\n"
                                                                       "\n"
                                                                       "Function    Setting\n"
                                                                       "Brightness  bright\n");
}

TEST_F(DiffTest, JsonListsDifferencesWithFieldsInOrder) {
    EXPECT_EQ(Output({L"diff", L"high-performance", L"balanced", L"--json"}), R"({
  "from": "8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c",
  "to": "381b4222-f694-41f0-9685-ff5bb260df2e",
  "ac": {
    "differences": [
      {
        "function": "Sleep after",
        "setting": "low"
      },
      {
        "function": "Brightness",
        "setting": "low"
      }
    ],
    "complete": true
  },
  "dc": {
    "differences": [
      {
        "function": "Brightness",
        "setting": "dim"
      }
    ],
    "complete": true
  }
}
)");
}

TEST_F(DiffTest, WideCharactersKeepColumnsAligned) {
    WriteEntries(Entry("LightKey", "画面の明るさ \U0001F50B") + Entry("SleepKey", "ｽﾘｰﾌﾟ e\u0301") +
                 Entry("AcHighKey", "高い"));
    EXPECT_EQ(Output({L"diff", L"balanced", L"high-performance", L"--ac"}),
              std::string{BalancedToHighPerformance} +
                  "\n"
                  "Plugged in:\n"
                  "\n"
                  "Function         Setting\n"
                  "ｽﾘｰﾌﾟ e\u0301          高い\n"
                  "画面の明るさ \U0001F50B  高い\n");
}

TEST_F(DiffTest, AcOptionComparesOnlyAcValues) {
    const Json json = JsonOutput({L"diff", L"balanced", L"high-performance", L"--ac"});
    EXPECT_EQ(json["ac"], AcJson());
    EXPECT_FALSE(json.contains("dc"));
}

TEST_F(DiffTest, DcOptionComparesOnlyDcValues) {
    EXPECT_EQ(DcOutput(), std::string{BalancedToHighPerformance} +
                              "\n"
                              "On battery:\n"
                              "\n"
                              "Function    Setting\n"
                              "Brightness  bright\n");
    EXPECT_FALSE(JsonOutput({L"diff", L"--dc", L"balanced", L"high-performance"}).contains("ac"));
}

TEST_F(DiffTest, BothOptionsCompareAcAndDcValues) {
    EXPECT_EQ(Output({L"diff", L"balanced", L"--dc", L"high-performance", L"--ac"}),
              Output({L"diff", L"balanced", L"high-performance"}));
}

TEST_F(DiffTest, EqualSchemesHaveNoDifferences) {
    EXPECT_EQ(Output({L"diff", L"balanced", L"balanced"}),
              "Values of balanced (381b4222-f694-41f0-9685-ff5bb260df2e)\n"
              "that differ from those of balanced (381b4222-f694-41f0-9685-ff5bb260df2e)\n"
              "\n"
              "Plugged in: no differences\n"
              "\n"
              "On battery: no differences\n");
    EXPECT_EQ(JsonOutput({L"diff", L"balanced", L"balanced", L"--ac"})["ac"],
              Json({{"differences", Json::array()}, {"complete", true}}));
}

TEST_F(DiffTest, MissingTranslationShowsFunctionKeyAndEmptySetting) {
    WriteEntries(Entry("AcHighKey", "high"));
    EXPECT_EQ(DcOutput(), std::string{BalancedToHighPerformance} +
                              "\n"
                              "On battery:\n"
                              "\n"
                              "Function  Setting\n"
                              "LightKey\n");
    EXPECT_EQ(AcJson()["differences"],
              Json({Difference("SleepKey", "high"), Difference("LightKey", "high")}));
}

TEST_F(DiffTest, SchemesWithoutNameAreShownByGuid) {
    EXPECT_TRUE(
        Output({L"diff", L"0a1b2c3d-1111-2222-3333-444455556666", L"{0A1B2C3D-1111-2222-3333-444455557777}"})
            .starts_with("Values of 0a1b2c3d-1111-2222-3333-444455557777\n"
                         "that differ from those of 0a1b2c3d-1111-2222-3333-444455556666\n"));
}

TEST_F(DiffTest, EmptyCatalogueHasNoDifferences) {
    WriteFunctions("");
    EXPECT_EQ(AcJson()["differences"], Json::array());
}

TEST_F(DiffTest, UnavailableCatalogueIsAnError) {
    ExpectNeedsCatalogue({L"diff", L"balanced", L"high-performance"});
}

TEST_F(DiffTest, UserSettingsInUseAreAnError) {
    ExpectNeedsUserSettings({L"diff", L"balanced", L"high-performance"});
    ExpectNeedsUserSettings({L"diff", L"balanced", L"high-performance", L"--ac"});
}

TEST_F(DiffTest, InvalidSchemeIsRejected) {
    ExpectUnknownScheme({L"diff", L"Balanced", L"power-saver"}, "Balanced");
    ExpectUnknownScheme({L"diff", L"balanced", L"saver"}, "saver");
}

// The library's buffers hold 259 UTF-16 code units. Each line takes four more than the name, or two more than
// the setting.
class DiffCompletenessTest : public DiffTest {
protected:
    // Writes the names of the two functions, in the order of the list.
    void WriteNames(const std::string& first, const std::string& second) const {
        WriteFunctions(NamedFunction(1, "FirstKey") + NamedFunction(2, "SecondKey"));
        WriteEntries(Entry("FirstKey", first) + Entry("SecondKey", second) + Settings);
    }

    void WriteSettings(const std::string& setting) const {
        WriteEntries(Entry("LightKey", "Brightness") + Entry("SleepKey", "Sleep after") +
                     Entry("AcHighKey", setting));
    }
};

TEST_F(DiffCompletenessTest, DifferencesThatFitAreComplete) {
    WriteNames(std::string(100, 'a'), std::string(149, 'b'));
    EXPECT_EQ(AcJson()["differences"].size(), 2);
    EXPECT_EQ(AcJson()["complete"], true);
}

TEST_F(DiffCompletenessTest, TruncatedFunctionIsOmitted) {
    WriteNames(std::string(100, 'a'), std::string(152, 'b'));
    EXPECT_EQ(AcJson(),
              Json({{"differences", {Difference(std::string(100, 'a'), "high")}}, {"complete", false}}));
}

TEST_F(DiffCompletenessTest, TruncatedListEndsWithNotice) {
    WriteNames("Brightness", std::string(259, 'b'));
    EXPECT_EQ(Output({L"diff", L"balanced", L"high-performance", L"--ac"}),
              std::string{BalancedToHighPerformance} +
                  "\n"
                  "Plugged in:\n"
                  "\n"
                  "Function    Setting\n"
                  "Brightness  high\n"
                  "There may be more.\n");
}

TEST_F(DiffCompletenessTest, ListFillingBufferIsReportedIncomplete) {
    WriteNames(std::string(100, 'a'), std::string(151, 'b'));
    EXPECT_EQ(AcJson()["differences"].size(), 2);
    EXPECT_EQ(AcJson()["complete"], false);
}

TEST_F(DiffCompletenessTest, ListCutBeforeSurrogatePairIsReportedIncomplete) {
    WriteNames(std::string(100, 'a'), std::string(152, 'b') + "\U0001F50B");
    EXPECT_EQ(AcJson()["differences"].size(), 1);
    EXPECT_EQ(AcJson()["complete"], false);
}

TEST_F(DiffCompletenessTest, FunctionWithTruncatedSettingIsOmitted) {
    WriteSettings(std::string(200, 'c'));
    EXPECT_EQ(AcJson(), Json({{"differences", {Difference("Sleep after", std::string(200, 'c'))}},
                              {"complete", false}}));
}

TEST_F(DiffCompletenessTest, SingleTruncatedLineIsReportedIncomplete) {
    WriteNames(std::string(259, 'a'), "Sleep after");
    EXPECT_EQ(AcJson(), Json({{"differences", Json::array()}, {"complete", false}}));
    EXPECT_TRUE(Output({L"diff", L"balanced", L"high-performance", L"--ac"})
                    .ends_with("Plugged in:\n"
                               "\n"
                               "Function  Setting\n"
                               "There may be more.\n"));
}

TEST_F(DiffCompletenessTest, CompletenessIsReportedPerPowerSource) {
    WriteSettings(std::string(200, 'c'));
    EXPECT_EQ(JsonOutput({L"diff", L"balanced", L"high-performance"})["dc"]["complete"], true);
}

}  // namespace ZOTDam::Test
