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
                <AC><DisplayItem Label="AcLowKey" Option="5"/><DisplayItem Label="AcHighKey" Option="6"/></AC>
                <DC><DisplayItem Label="DcLowKey" Option="7"/><DisplayItem Label="DcHighKey" Option="8"/></DC>
            </Display><Commands/><Default ACParamIndex="0" DCParamIndex="0"/></Function>)";
    }

    Json AcJson() const { return JsonOutput({L"diff", L"balanced", L"high-performance"})["acDifferences"]; }
    std::string DcOutput() const { return Output({L"diff", L"balanced", L"high-performance", L"--dc"}); }

    inline static const std::string Settings = Entry("AcLowKey", "low") + Entry("AcHighKey", "high") +
                                               Entry("DcLowKey", "dim") + Entry("DcHighKey", "bright");
};

TEST_F(DiffTest, TextListsDifferencesPerPowerSource) {
    EXPECT_EQ(Output({L"diff", L"balanced", L"high-performance"}),
              std::string{BalancedToHighPerformance} +
                  "\n"
                  "Plugged in:\n"
                  "\n"
                  "ID  Function     balanced  high-performance\n"
                  " 2  Sleep after  low (0)   high (1)\n"
                  " 1  Brightness   low (0)   high (1)\n"
                  "\n"
                  "On battery:\n"
                  "\n"
                  "ID  Function    balanced  high-performance\n"
                  " 1  Brightness  dim (0)   bright (1)\n");
}

TEST_F(DiffTest, JsonListsDifferencesWithFieldsInOrder) {
    WriteSchemes(OldScheme(BalancedText, OldFunction(1, 0, 0) + OldFunction(2, 0, 0)) +
                 OldScheme(HighPerformanceText, OldFunction(1, 0, 1) + OldFunction(2, 7, 0)));
    EXPECT_EQ(Output({L"diff", L"high-performance", L"balanced", L"--json"}), R"({
  "fromScheme": "8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c",
  "fromSchemeName": "high-performance",
  "toScheme": "381b4222-f694-41f0-9685-ff5bb260df2e",
  "toSchemeName": "balanced",
  "with": null,
  "acDifferences": [
    {
      "id": 2,
      "name": "Sleep after",
      "fromIndex": 7,
      "fromOption": null,
      "fromLabel": null,
      "toIndex": 0,
      "toOption": 5,
      "toLabel": "low"
    }
  ],
  "dcDifferences": [
    {
      "id": 1,
      "name": "Brightness",
      "fromIndex": 1,
      "fromOption": 8,
      "fromLabel": "bright",
      "toIndex": 0,
      "toOption": 7,
      "toLabel": "dim"
    }
  ]
}
)");
}

TEST_F(DiffTest, WideCharactersKeepColumnsAligned) {
    WriteEntries(Entry("LightKey", "画面の明るさ \U0001F50B") + Entry("SleepKey", "ｽﾘｰﾌﾟ e\u0301") +
                 Entry("AcLowKey", "低") + Entry("AcHighKey", "高い"));
    EXPECT_EQ(Output({L"diff", L"balanced", L"high-performance", L"--ac"}),
              std::string{BalancedToHighPerformance} +
                  "\n"
                  "Plugged in:\n"
                  "\n"
                  "ID  Function         balanced  high-performance\n"
                  " 2  ｽﾘｰﾌﾟ e\u0301          低 (0)    高い (1)\n"
                  " 1  画面の明るさ \U0001F50B  低 (0)    高い (1)\n");
}

TEST_F(DiffTest, AcOptionComparesOnlyAcValues) {
    const Json json = JsonOutput({L"diff", L"balanced", L"high-performance", L"--ac"});
    EXPECT_EQ(json["acDifferences"], AcJson());
    EXPECT_FALSE(json.contains("dcDifferences"));
}

TEST_F(DiffTest, DcOptionComparesOnlyDcValues) {
    EXPECT_EQ(DcOutput(), std::string{BalancedToHighPerformance} +
                              "\n"
                              "On battery:\n"
                              "\n"
                              "ID  Function    balanced  high-performance\n"
                              " 1  Brightness  dim (0)   bright (1)\n");
    EXPECT_FALSE(JsonOutput({L"diff", L"--dc", L"balanced", L"high-performance"}).contains("acDifferences"));
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
    EXPECT_EQ(JsonOutput({L"diff", L"balanced", L"balanced", L"--ac"})["acDifferences"], Json::array());
}

TEST_F(DiffTest, MissingTranslationShowsKeys) {
    WriteEntries(Entry("AcHighKey", "high"));
    EXPECT_EQ(DcOutput(), std::string{BalancedToHighPerformance} +
                              "\n"
                              "On battery:\n"
                              "\n"
                              "ID  Function  balanced      high-performance\n"
                              " 1  LightKey  DcLowKey (0)  DcHighKey (1)\n");
}

TEST_F(DiffTest, SchemesWithoutNameAreShownByGuid) {
    EXPECT_TRUE(
        Output({L"diff", L"0a1b2c3d-1111-2222-3333-444455556666", L"{0A1B2C3D-1111-2222-3333-444455557777}"})
            .starts_with("Values of 0a1b2c3d-1111-2222-3333-444455557777\n"
                         "that differ from those of 0a1b2c3d-1111-2222-3333-444455556666\n"));
}

TEST_F(DiffTest, EmptyCatalogueHasNoDifferences) {
    WriteFunctions("");
    EXPECT_EQ(AcJson(), Json::array());
}

TEST_F(DiffTest, UnavailableCatalogueIsAnError) {
    ExpectNeedsCatalogue({L"diff", L"balanced", L"high-performance"});
}

TEST_F(DiffTest, UserSettingsInUseAreAnError) {
    ExpectNeedsUserSettings({L"diff", L"balanced", L"high-performance"});
    ExpectNeedsUserSettings({L"diff", L"balanced", L"high-performance", L"--ac"});
}

TEST_F(DiffTest, InvalidSchemeIsRejected) {
    ExpectUnknownScheme({L"diff", L"Windows", L"power-saver"}, "Windows");
    ExpectUnknownScheme({L"diff", L"balanced", L"saver"}, "saver");
}

// The names and labels that the export lists, in its order. Its two strings have at most 259 characters.
class DiffExportTest : public DiffTest {
protected:
    // Writes functions whose positions differ, and which are in both groups. The library hides some functions
    // with smaller ids.
    void WriteManyFunctions(int count) const {
        std::string functions;
        std::string from;
        std::string to;
        for (int id = 11; id <= 10 + count; ++id) {
            functions += NamedFunction(id, "Name" + std::to_string(id), id % 2 == 0 ? "Group1Name" : "Other");
            from += OldFunction(id, 0, 1);
            to += OldFunction(id, 1, 0);
        }
        WriteFunctions(functions);
        WriteSchemes(OldScheme(BalancedText, from) + OldScheme(HighPerformanceText, to));
    }

    // Returns the lines of the export: pairs of a name and a label.
    Json ExportedDifferences(std::uint32_t mode) {
        ZOTDam::Text names = {};
        ZOTDam::Text values = {};
        Dll().GetDiffFuncList(&Balanced, &HighPerformance, mode, names, values);
        Unload();
        Json list = Json::array();
        std::wstring rest = values;
        for (const std::wstring& name : Lines(names)) {
            list.push_back({Utf8(name.substr(2)), Utf8(Lines(rest)[0])});
            rest.erase(0, rest.find(L"\n\r") + 2);
        }
        return list;
    }

    static std::vector<std::wstring> Lines(const std::wstring& text) {
        std::vector<std::wstring> lines;
        for (std::size_t start = 0, end; (end = text.find(L"\n\r", start)) != std::wstring::npos;
             start = end + 2)
            lines.push_back(text.substr(start, end - start));
        return lines;
    }

    static Json NamesAndLabels(const Json& differences) {
        Json list = Json::array();
        for (const Json& difference : differences)
            list.push_back({difference["name"], difference["toLabel"]});
        return list;
    }
};

TEST_F(DiffExportTest, ShortListsEqualThoseOfExport) {
    WriteManyFunctions(20);
    const Json json = JsonOutput({L"diff", L"balanced", L"high-performance"});
    const Json ac = ExportedDifferences(1);
    EXPECT_EQ(ac.size(), 20);
    EXPECT_EQ(NamesAndLabels(json["acDifferences"]), ac);
    EXPECT_EQ(NamesAndLabels(json["dcDifferences"]), ExportedDifferences(2));
}

TEST_F(DiffExportTest, DifferencesBeyondExportAreListed) {
    WriteManyFunctions(100);
    EXPECT_EQ(AcJson().size(), 100);
    EXPECT_LT(ExportedDifferences(1).size(), 100);
}

TEST_F(DiffExportTest, LongNamesAreComplete) {
    WriteFunctions(NamedFunction(1, "LightKey"));
    WriteEntries(Entry("LightKey", std::string(259, 'a')) + Settings);
    EXPECT_EQ(AcJson()[0]["name"], std::string(259, 'a'));
}

}  // namespace ZOTDam::Test
