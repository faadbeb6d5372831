// Tests of the active scheme and of the names of schemes, which Windows reports.
#include "client/FakeWindowsTest.h"

namespace ZOTDam::Test {

class ActiveSchemeTest : public FakeWindowsTest {
protected:
    void ActivateHighPerformance() { SetAnswer(L"FAKE_ACTIVE_SCHEME", Braced(HighPerformanceText)); }

    static std::wstring Braced(const std::string& scheme) {
        return L"{" + std::wstring{scheme.begin(), scheme.end()} + L"}";
    }

    // Returns the line of the table that contains a text.
    static std::string LineWith(const std::string& text, const std::string& output) {
        const auto start = output.rfind('\n', output.find(text)) + 1;
        return output.substr(start, output.find('\n', start) - start);
    }

    static constexpr char OfficeText[] = "0a1b2c3d-1111-2222-3333-444455556666";
};

TEST_F(ActiveSchemeTest, ListMarksOnlyActiveScheme) {
    ActivateHighPerformance();
    EXPECT_EQ(Output({L"list"}),
              "   GUID                                  Name              Alias            Stored functions\n"
              "   381b4222-f694-41f0-9685-ff5bb260df2e  balanced          SCHEME_BALANCED                 2\n"
              "*  8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c  high-performance  SCHEME_MIN                      2\n"
              "   a1841308-3541-4fab-bc81-f71556f20b4a  power-saver       SCHEME_MAX                      -\n"
              "\n"
              "* active\n");
    for (const Json& scheme : JsonOutput({L"list"})["schemes"])
        EXPECT_EQ(scheme["active"], scheme["scheme"] == HighPerformanceText) << scheme;
}

TEST_F(ActiveSchemeTest, ListReportsThatActiveSchemeIsUnknown) {
    EXPECT_TRUE(Output({L"list"}).ends_with("\n\nWindows does not report the active scheme.\n"));
    for (const Json& scheme : JsonOutput({L"list"})["schemes"])
        EXPECT_EQ(scheme["active"], Json()) << scheme;
}

TEST_F(ActiveSchemeTest, ListShowsNamesFromWindows) {
    SetAnswer(L"FAKE_SCHEMES",
              Braced(HighPerformanceText) + L"=Höchstleistung;" + Braced(OfficeText) + L"=Büro;");
    SetAnswer(L"FAKE_ACTIVE_SCHEME", Braced(OfficeText));
    EXPECT_EQ(LineWith(OfficeText, Output({L"list"})),
              "*  0a1b2c3d-1111-2222-3333-444455556666  Büro                                              -");
    const Json schemes = JsonOutput({L"list"})["schemes"];
    ASSERT_EQ(schemes.size(), 4u);
    EXPECT_EQ(schemes[1]["schemeName"], "high-performance");
    EXPECT_EQ(schemes[3], Json({{"scheme", OfficeText},
                                {"schemeName", "Büro"},
                                {"alias", nullptr},
                                {"active", true},
                                {"stored", false},
                                {"storedCount", 0}}));
}

TEST_F(ActiveSchemeTest, LongNameIsComplete) {
    SetAnswer(L"FAKE_SCHEMES", Braced(OfficeText) + L"=" + std::wstring(1000, L'n') + L";");
    EXPECT_EQ(JsonOutput({L"list"})["schemes"][3]["schemeName"], std::string(1000, 'n'));
}

TEST_F(ActiveSchemeTest, ListAddsActiveSchemeUnknownToWindows) {
    SetAnswer(L"FAKE_ACTIVE_SCHEME", Braced(OfficeText));
    EXPECT_EQ(LineWith(OfficeText, Output({L"list"})).substr(0, 40),
              "*  0a1b2c3d-1111-2222-3333-444455556666 ");
}

TEST_F(ActiveSchemeTest, SchemeCurrentSelectsActiveScheme) {
    ActivateHighPerformance();
    for (const wchar_t* const command : {L"params", L"current", L"commands"}) {
        const Json active = JsonOutput({command, L"SCHEME_CURRENT"});
        EXPECT_EQ(active, JsonOutput({command, L"high-performance"}));
        EXPECT_EQ(active["scheme"], HighPerformanceText);
    }
    const Json difference = JsonOutput({L"diff", L"balanced", L"scheme_current"});
    EXPECT_EQ(difference["toScheme"], HighPerformanceText);
}

TEST_F(ActiveSchemeTest, SchemeCurrentIsChanged) {
    ActivateHighPerformance();
    EXPECT_EQ(JsonOutput({L"set", L"Scheme_Current", L"1=0,0"})["scheme"], HighPerformanceText);
    EXPECT_EQ(JsonOutput({L"setdcvalueindex", L"SCHEME_CURRENT", L"1", L"1"})["scheme"], HighPerformanceText);
    EXPECT_EQ(GetParameter(HighPerformance), (Params{{1, {0, 1}}, {2, {0, 0}}}));
    EXPECT_EQ(GetParameter(Balanced), StoredForBalanced);
    EXPECT_EQ(JsonOutput({L"forget", L"SCHEME_CURRENT"})["scheme"], HighPerformanceText);
}

TEST_F(ActiveSchemeTest, SchemeCurrentIsErrorWithoutActiveScheme) {
    for (const wchar_t* const command : {L"params", L"current", L"commands"})
        ExpectError({command, L"SCHEME_CURRENT"}, Failure,
                    "Windows does not report the active power scheme.");
    ExpectError({L"set", L"SCHEME_CURRENT", L"1=0,0"}, Failure,
                "Windows does not report the active power scheme.");
    EXPECT_EQ(UserSettings(), HealthyUserSettings);
}

}  // namespace ZOTDam::Test
