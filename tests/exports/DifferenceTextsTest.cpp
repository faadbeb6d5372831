// Tests of the two strings that GetDiffFuncList returns: their lines, translations and truncation.
#include "support/DifferencesTest.h"

namespace ZOTDam::Test {

using DifferenceTextsTest = DifferencesTest;

// ---- The lines ----

TEST_F(DifferenceTextsTest, EachNameAndValueHasItsOwnLine) {
    WriteDifferentDim();
    Translate({{"Dim", "Dim the display"}, {"AcOn", "After a minute"}});
    EXPECT_EQ(Compare(), (Difference{true, L"- Dim the display\n\r", L"After a minute\n\r"}));
}

TEST_F(DifferenceTextsTest, NamesAndValuesCorrespondLineByLine) {
    WriteFunctions(NamedFunction(1, "Dim") + NamedFunction(2, "Sound") + NamedFunction(3, "Rate"));
    Store(OldFunction(1, 0, 0) + OldFunction(2, 1, 0) + OldFunction(3, 1, 0),
          OldFunction(1, 1, 0) + OldFunction(2, 1, 0) + OldFunction(3, 0, 0));
    Translate({{"AcOn", "On"}, {"AcOff", "Off"}});
    EXPECT_EQ(Compare(), (Difference{true, L"- Dim\n\r- Rate\n\r", L"On\n\rOff\n\r"}));
}

TEST_F(DifferenceTextsTest, ValuesComeFromSecondScheme) {
    WriteDifferentDim();
    Translate({{"AcOn", "On"}, {"AcOff", "Off"}});
    EXPECT_EQ(Compare(Ac, Balanced, HighPerformance).values, L"On\n\r");
    EXPECT_EQ(Compare(Ac, HighPerformance, Balanced).values, L"Off\n\r");
}

TEST_F(DifferenceTextsTest, NonLatinTranslationsAreReturned) {
    WriteDifferentDim();
    Translate({{"Dim", "&#x753B;&#x9762;"}, {"AcOn", "\U0001F50B"}});
    EXPECT_EQ(Compare(), (Difference{true, L"- \u753B\u9762\n\r", L"\xD83D\xDD0B\n\r"}));
}

TEST_F(DifferenceTextsTest, FormatCharactersAreNotInterpreted) {
    WriteFunctions(NamedFunction(1, "100%s %n %%", "%s%s%n"));
    StoreDifferent({1});
    Translate({{"AcOn", "%d%s"}});
    EXPECT_EQ(Compare(), (Difference{true, L"- 100%s %n %%\n\r", L"%d%s\n\r"}));
}

TEST_F(DifferenceTextsTest, FunctionWithoutNameHasItsOwnLine) {
    WriteFunctions(FunctionWith(1, {.acItems = Labels({"AcOff", "AcOn"})}));
    StoreDifferent({1});
    EXPECT_EQ(Compare(), (Difference{true, L"- \n\r", L"\n\r"}));
}

TEST_F(DifferenceTextsTest, FunctionWithoutNameInheritsPreviousName) {
    WriteFunctions(NamedFunction(1, "Dim") + Function(2));
    Store(OldFunction(1, 0, 0) + OldFunction(2, 0, 0), OldFunction(1, 0, 0) + OldFunction(2, 1, 1));
    EXPECT_EQ(CompareNames(), L"- Dim\n\r");
}

// ---- Missing translations ----

TEST_F(DifferenceTextsTest, MissingStringTableYieldsKeysAndEmptyValues) {
    WriteFunctions(NamedFunction(1, "Dim") + NamedFunction(2, "Sound"));
    StoreDifferent({1, 2});
    EXPECT_EQ(Compare(), (Difference{true, L"- Dim\n\r- Sound\n\r", L"\n\r\n\r"}));
}

TEST_F(DifferenceTextsTest, InvalidStringTableYieldsKeysAndEmptyValues) {
    WriteDifferentDim();
    WriteStringTable("<root>" + Entry("Dim", "Dark"));
    EXPECT_EQ(Compare(), (Difference{true, L"- Dim\n\r", L"\n\r"}));
}

TEST_F(DifferenceTextsTest, UntranslatedNameIsItsKey) {
    WriteFunctions(NamedFunction(1, "Dim") + NamedFunction(2, "Sound") + NamedFunction(3, "Rate"));
    StoreDifferent({1, 2, 3});
    WriteEntries(R"(<data name="Sound"/><data><value>no</value></data>)" + Entry("rate", "Refresh rate"));
    EXPECT_EQ(CompareNames(), L"- Dim\n\r- Sound\n\r- Refresh rate\n\r");
}

TEST_F(DifferenceTextsTest, UntranslatedLabelIsEmptyLine) {
    WriteFunctions(NamedFunction(1, "Dim") +
                   FunctionWith(2, {.attributes = R"(Name="Sound")", .acItems = Labels({"Low", "High"})}));
    StoreDifferent({1, 2});
    Translate({{"High", "Loud"}});
    EXPECT_EQ(Compare(), (Difference{true, L"- Dim\n\r- Sound\n\r", L"\n\rLoud\n\r"}));
}

TEST_F(DifferenceTextsTest, EmptyTranslationYieldsEmptyNameAndLine) {
    WriteDifferentDim();
    Translate({{"Dim", ""}, {"AcOn", ""}});
    EXPECT_EQ(Compare(), (Difference{true, L"- \n\r", L"\n\r"}));
}

class MissingLabelTest : public DifferenceTextsTest, public testing::WithParamInterface<std::int32_t> {};

TEST_P(MissingLabelTest, MissingLabelIsEmptyLine) {
    WriteDimAt(GetParam());
    Translate({{"AcOff", "wrong"}, {"AcOn", "wrong"}});
    EXPECT_EQ(Compare(), (Difference{true, L"- Dim\n\r", L"\n\r"}));
}

// The missing label is treated as empty, and the empty key is looked up like any other key.
TEST_P(MissingLabelTest, MissingLabelUsesTranslationOfEmptyKey) {
    WriteDimAt(GetParam());
    Translate({{"AcOff", "wrong"}, {"", "No setting"}});
    EXPECT_EQ(Compare(), (Difference{true, L"- Dim\n\r", L"No setting\n\r"}));
}

INSTANTIATE_TEST_SUITE_P(Positions, MissingLabelTest, testing::Values(2, 0x7FFFFFFF, -1, -0x7FFFFFFF - 1));

TEST_F(DifferenceTextsTest, FunctionWithoutItemsHasEmptyValueLine) {
    WriteFunctions(NamedFunction(1, "Dim") + Function(2));
    StoreDifferent({1, 2});
    Translate({{"AcOn", "On"}});
    EXPECT_EQ(CompareValues(), L"On\n\r\n\r");
}

// ---- Names that stay translated ----

TEST_F(DifferenceTextsTest, TranslationOfListedNameBecomesItsKey) {
    WriteDifferentDim();
    Translate({{"Dim", "Dark"}, {"Dark", "Black"}, {"Black", "Night"}});
    EXPECT_EQ(CompareNames(), L"- Dark\n\r");
    EXPECT_EQ(CompareNames(), L"- Black\n\r");
    EXPECT_EQ(FunctionNames(), (std::vector<std::wstring>{L"Night"}));
    EXPECT_EQ(CompareNames(), L"- Night\n\r");
    EXPECT_EQ(FunctionNames(), (std::vector<std::wstring>{L"Night"}));
}

TEST_F(DifferenceTextsTest, UnlistedNamesGroupsAndLabelsStayKeys) {
    WriteFunctions(NamedFunction(1, "Dim", LeadingGroup) + NamedFunction(2, "Sound"));
    Store(OldFunction(1, 0, 0) + OldFunction(2, 0, 0), OldFunction(1, 1, 1) + OldFunction(2, 0, 0));
    Translate({{"Dim", "Dark"},
               {"Sound", "Tone"},
               {"Tone", "Music"},
               {"Group1Name", "Displays"},
               {"AcOn", "On"},
               {"On", "Lit"}});
    EXPECT_EQ(CompareValues(), L"On\n\r");
    EXPECT_EQ(CompareValues(), L"On\n\r");
    EXPECT_EQ(FunctionNames(), (std::vector<std::wstring>{L"Dark", L"Tone"}));
    StoreDifferent({1, 2});
    EXPECT_EQ(CompareNames(), L"- Dark\n\r- Tone\n\r");
}

TEST_F(DifferenceTextsTest, ReloadedLibraryRestoresKeys) {
    WriteDifferentDim();
    Translate({{"Dim", "Dark"}, {"Dark", "Black"}});
    EXPECT_EQ(CompareNames(), L"- Dark\n\r");
    Unload();
    EXPECT_EQ(FunctionNames(), (std::vector<std::wstring>{L"Dark"}));
    EXPECT_EQ(CompareNames(), L"- Dark\n\r");
}

TEST_F(DifferenceTextsTest, GetFunctionInfoLeavesNameKeys) {
    WriteDifferentDim();
    Translate({{"Dim", "Dark"}, {"Dark", "Black"}});
    EXPECT_EQ(FunctionNames(), (std::vector<std::wstring>{L"Dark"}));
    EXPECT_EQ(FunctionNames(), (std::vector<std::wstring>{L"Dark"}));
    EXPECT_EQ(CompareNames(), L"- Dark\n\r");
}

// ---- Strings that do not fit ----

// Compares two schemes that differ in one function, whose name and label have the given translations.
class DifferenceTruncationTest : public DifferenceTextsTest {
protected:
    Difference CompareTranslated(const std::string& name, const std::string& label) {
        WriteDifferentDim();
        Translate({{"Dim", name}, {"AcOn", label}});
        return Compare();
    }
};

TEST_F(DifferenceTruncationTest, StringThatJustFitsIsNotTruncated) {
    EXPECT_EQ(
        CompareTranslated(std::string(255, 'n'), std::string(257, 'v')),
        (Difference{true, L"- " + std::wstring(255, L'n') + L"\n\r", std::wstring(257, L'v') + L"\n\r"}));
}

TEST_F(DifferenceTruncationTest, TruncationMayCutLineEnd) {
    EXPECT_EQ(CompareTranslated(std::string(256, 'n'), std::string(258, 'v')),
              (Difference{true, L"- " + std::wstring(256, L'n') + L"\n", std::wstring(258, L'v') + L"\n"}));
}

TEST_F(DifferenceTruncationTest, TruncationMayCutName) {
    EXPECT_EQ(
        CompareTranslated(std::string(LongestText, 'n'), std::string(LongestText, 'v')),
        (Difference{true, L"- " + std::wstring(LongestText - 2, L'n'), std::wstring(LongestText, L'v')}));
}

TEST_F(DifferenceTruncationTest, LongTranslationsAreTruncatedThemselves) {
    CompareTranslated(std::string(300, 'n'), std::string(300, 'v'));
    EXPECT_EQ(FunctionNames(), (std::vector<std::wstring>{std::wstring(LongestText, L'n')}));
    EXPECT_EQ(Compare(), (Difference{true, L"- " + std::wstring(LongestText - 2, L'n'),
                                     std::wstring(LongestText, L'v')}));
}

TEST_F(DifferenceTruncationTest, NamesAndValuesAreTruncatedSeparately) {
    EXPECT_EQ(CompareTranslated(std::string(LongestText, 'n'), "On"),
              (Difference{true, L"- " + std::wstring(LongestText - 2, L'n'), L"On\n\r"}));
    Unload();
    EXPECT_EQ(CompareTranslated("Dark", std::string(LongestText, 'v')),
              (Difference{true, L"- Dark\n\r", std::wstring(LongestText, L'v')}));
}

TEST_F(DifferenceTruncationTest, TruncatedNamesDropIncompleteSurrogatePair) {
    EXPECT_EQ(CompareTranslated(std::string(256, 'n') + "\U0001F50B", "On"),
              (Difference{true, L"- " + std::wstring(256, L'n'), L"On\n\r"}));
}

TEST_F(DifferenceTruncationTest, TruncatedValuesDropIncompleteSurrogatePair) {
    WriteFunctions(NamedFunction(1, "Dim") + FunctionWith(2, {.acItems = Labels({"Low", "High"})}));
    StoreDifferent({1, 2});
    Translate({{"AcOn", "On"}, {"High", std::string(254, 'v') + "\U0001F50B"}});
    EXPECT_EQ(CompareValues(), L"On\n\r" + std::wstring(254, L'v'));
}

TEST_F(DifferenceTruncationTest, TruncatedTranslationDropsIncompleteSurrogatePair) {
    EXPECT_EQ(CompareTranslated("Dark", std::string(258, 'v') + "\U0001F50B").values,
              std::wstring(258, L'v') + L"\n");
}

TEST_F(DifferenceTruncationTest, TruncationKeepsCompleteSurrogatePair) {
    const std::string pair = "\U0001F50B";
    EXPECT_EQ(CompareTranslated(std::string(255, 'n') + pair + "nn", std::string(257, 'v') + pair),
              (Difference{true, L"- " + std::wstring(255, L'n') + L"\xD83D\xDD0B",
                          std::wstring(257, L'v') + L"\xD83D\xDD0B"}));
}

TEST_F(DifferenceTextsTest, TruncationKeepsNamesOfLeadingGroup) {
    WriteFunctions(NamedFunction(1, "Dim") + NamedFunction(2, std::string(130, 'n'), LeadingGroup) +
                   NamedFunction(3, std::string(121, 'm'), LeadingGroup));
    StoreDifferent({1, 2, 3});
    EXPECT_EQ(
        Compare(),
        (Difference{true, L"- " + std::wstring(130, L'n') + L"\n\r- " + std::wstring(121, L'm') + L"\n\r",
                    L"\n\r\n\r\n\r"}));
}

}  // namespace ZOTDam::Test
