// Tests of looking up keys in the string table.
#include "support/TranslationTest.h"

namespace ZOTDam::Test {

namespace {

constexpr std::size_t LongestText = TextCapacity - 1;

// A character of two UTF-16 code units.
constexpr char SurrogatePair[] = "\U0001F50B";
constexpr wchar_t WideSurrogatePair[] = L"\U0001F50B";

std::string Entries(int count) {
    std::string entries;
    for (int i = 0; i < count; ++i)
        entries += Entry("Key" + std::to_string(i), "Text " + std::to_string(i));
    return entries;
}

}  // namespace

// ---- The form of the file ----

TEST_F(StringTableTest, MayHaveARootOfAnyName) {
    EXPECT_EQ(TextInTable("<Texts>" + Entry("Key", "Text") + "</Texts>"), L"Text");
}

TEST_F(StringTableTest, MayHaveARootWithANamespacePrefix) {
    EXPECT_EQ(TextInTable("<o:root xmlns:o=\"urn:other\">" + Entry("Key", "Text") + "</o:root>"), L"Text");
}

TEST_F(StringTableTest, MayHaveNoEntries) {
    EXPECT_EQ(TextInTable("<root/>"), L"Key");
}

TEST_F(StringTableTest, MayBeInUtf16) {
    const std::wstring xml = L"\xfeff<root><data name=\"Key\"><value>\u00fcber</value></data></root>";
    EXPECT_EQ(TextInTable({reinterpret_cast<const char*>(xml.data()), xml.size() * sizeof(wchar_t)}),
              L"\u00fcber");
}

TEST_F(StringTableTest, MayHoldMoreThanItsEntries) {
    EXPECT_EQ(TextInTable(R"(<?xml version="1.0" encoding="UTF-8"?><?tool x?><!-- head -->
        <root version="2"><resheader name="Key"><value>Header</value></resheader>text<![CDATA[text]]>
            <!-- <data name="Key"><value>Comment</value></data> --><?tool y?>
            <data lang="en" name="Key" xml:space="preserve">text<comment>Note</comment><value>Text</value>
            </data>
        </root><!-- tail -->)"),
              L"Text");
}

class NoEntryTest : public StringTableTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(NoEntryTest, HasNoText) {
    EXPECT_EQ(TextOf("Key", GetParam().xml), L"Key");
}

TEST_P(NoEntryTest, HidesNoEntry) {
    EXPECT_EQ(TextOf("Key", GetParam().xml + Entry("Key", "Text")), L"Text");
}

INSTANTIATE_TEST_SUITE_P(
    , NoEntryTest,
    testing::Values(
        XmlCase{"OfAnotherName", R"(<text name="Key"><value>No</value></text>)"},
        XmlCase{"InAnotherCase", R"(<Data name="Key"><value>No</value></Data>)"},
        XmlCase{"FurtherDown", "<group>" + Entry("Key", "No") + "</group>"},
        XmlCase{"InAnEntry", "<data name=\"Other\">" + Entry("Key", "No") + "</data>"},
        XmlCase{"WithAPrefix", R"(<o:data xmlns:o="urn:o" name="Key"><value>No</value></o:data>)"},
        XmlCase{"InANamespace", R"(<data xmlns="urn:o" name="Key"><value>No</value></data>)"},
        XmlCase{"WithoutName", "<data><value>No</value></data>"},
        XmlCase{"WithANameInAnotherCase", R"(<data Name="Key"><value>No</value></data>)"},
        XmlCase{"WithANameInANamespace", R"(<data xmlns:o="urn:o" o:name="Key"><value>No</value></data>)"},
        XmlCase{"WithAnEmptyName", Entry("", "No")},
        XmlCase{"WithItsNameAsAChild", "<data><name>Key</name><value>No</value></data>"}),
    CaseName<XmlCase>);

TEST_F(StringTableTest, DoesNotTakeTheRootAsAnEntry) {
    EXPECT_EQ(TextInTable(Entry("Key", "Text")), L"Key");
}

TEST_F(StringTableTest, HasNoEntriesInADefaultNamespace) {
    EXPECT_EQ(TextInTable("<root xmlns=\"urn:o\">" + Entry("Key", "Text") + "</root>"), L"Key");
}

TEST_F(StringTableTest, IsSearchedToTheEnd) {
    EXPECT_EQ(TextOf("Key9999", Entries(10000)), L"Text 9999");
}

// ---- Keys ----

struct KeyCase {
    std::string name;
    std::string key;
    std::string entry;
    bool matches;
};

void PrintTo(const KeyCase& keyCase, std::ostream* out) {
    *out << '"' << keyCase.key << "\" and \"" << keyCase.entry << '"';
}

class KeyTest : public StringTableTest, public testing::WithParamInterface<KeyCase> {};

TEST_P(KeyTest, MatchesUpToTheCaseOfAsciiLetters) {
    EXPECT_EQ(TextOf(GetParam().key, Entry(GetParam().entry, "Text")) == L"Text", GetParam().matches);
}

INSTANTIATE_TEST_SUITE_P(
    , KeyTest,
    testing::Values(
        KeyCase{"Same", "Key", "Key", true}, KeyCase{"UpperCase", "Key", "KEY", true},
        KeyCase{"LowerCase", "KEY", "key", true},
        KeyCase{"EveryLetter", "abcdefghijklmnopqrstuvwxyz", "ABCDEFGHIJKLMNOPQRSTUVWXYZ", true},
        KeyCase{"Other", "Key", "Kez", false}, KeyCase{"Longer", "Key", "Keys", false},
        KeyCase{"Shorter", "Key", "Ke", false}, KeyCase{"EntryWithoutText", "Key", "", false},
        KeyCase{"KeyWithoutText", "", "Key", false}, KeyCase{"BothWithoutText", "", "", true},
        KeyCase{"LeadingSpace", "Key", " Key", false}, KeyCase{"TrailingSpace", "Key", "Key ", false},
        KeyCase{"InnerSpaces", "My Key", "my key", true},
        KeyCase{"BracketAndBrace", "Key[1]", "Key{1}", false},
        KeyCase{"AtAndBacktick", "Key@", "Key`", false},
        KeyCase{"DigitsAndPunctuation", "K-1.2", "k-1.2", true},
        KeyCase{"Umlaut", "Schl\u00fcssel", "SCHL\u00fcSSEL", true},
        KeyCase{"UmlautInAnotherCase", "Schl\u00fcssel", "Schl\u00dcssel", false},
        KeyCase{"GreekInAnotherCase", "\u03b1", "\u0391", false},
        KeyCase{"KelvinSign", "Key", "\u212aey", false}, KeyCase{"LongS", "Keys", "Key\u017f", false},
        KeyCase{"FullWidthInAnotherCase", "\uff4b", "\uff2b", false},
        KeyCase{"SurrogatePair", "\U0001F50B", "\U0001F50B", true},
        KeyCase{"OtherSurrogatePair", "\U0001F50B", "\U0001F50C", false},
        KeyCase{"Longest", std::string(LongestText, 'k'), std::string(LongestText, 'K'), true},
        KeyCase{"LongestAndOneMore", std::string(LongestText, 'k'), std::string(LongestText + 1, 'k'), false},
        KeyCase{"LongestAndManyMore", std::string(LongestText, 'k'), std::string(10000, 'k'), false}),
    CaseName<KeyCase>);

TEST_F(StringTableTest, GivesTheFirstEntryOfAKey) {
    EXPECT_EQ(TextOf("Key", Entry("Key", "first") + Entry("Key", "second")), L"first");
}

TEST_F(StringTableTest, GivesTheFirstEntryOfAKeyEvenWhenALaterOneHasItsCase) {
    EXPECT_EQ(TextOf("Key", Entry("KEY", "first") + Entry("Key", "second")), L"first");
}

TEST_F(StringTableTest, FindsTheKeyBehindOneTooLongToBeAKey) {
    EXPECT_EQ(TextOf("Key", Entry("Key" + std::string(10000, 'k'), "long") + Entry("Key", "Text")), L"Text");
}

TEST_F(StringTableTest, HasNoTextForAnEmptyKeyInAnEntryWithoutName) {
    EXPECT_EQ(TextOf("", "<data><value>nameless</value></data>" + Entry("", "Text")), L"Text");
}

// ---- Values ----

struct ValueCase {
    std::string name;
    std::string xml;
    std::wstring text;
};

void PrintTo(const ValueCase& valueCase, std::ostream* out) {
    *out << valueCase.xml;
}

class ValueTest : public StringTableTest, public testing::WithParamInterface<ValueCase> {};

TEST_P(ValueTest, IsTheTextOfTheEntry) {
    EXPECT_EQ(TextOf("Key", "<data name=\"Key\">" + GetParam().xml + "</data>"), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    , ValueTest,
    testing::Values(ValueCase{"Text", "<value>Text</value>", L"Text"},
                    ValueCase{"TheKey", "<value>Key</value>", L"Key"},
                    ValueCase{"References", "<value>&lt;&amp;&#252;&#x1F50B;</value>", L"<&\u00fc\U0001F50B"},
                    ValueCase{"CData", "<value><![CDATA[<a> & b]]></value>", L"<a> & b"},
                    ValueCase{"CDataInText", "<value>a<![CDATA[<]]>b</value>", L"a<b"},
                    ValueCase{"CommentInText", "<value>a<!-- no -->b</value>", L"ab"},
                    ValueCase{"LineBreak", "<value>a\r\nb</value>", L"a\nb"},
                    ValueCase{"InnerSpaces", "<value>a  b</value>", L"a  b"},
                    ValueCase{"WithAttributes", "<value lang=\"en\">Text</value>", L"Text"},
                    ValueCase{"EmptyElement", "<value/>", L""}, ValueCase{"NoText", "<value></value>", L""},
                    ValueCase{"BehindOtherElements",
                              "<comment>no</comment><Value>no</Value><value>Text</value>", L"Text"},
                    ValueCase{"BehindOneInANamespace", "<value xmlns=\"urn:o\">no</value><value>Text</value>",
                              L"Text"},
                    ValueCase{"First", "<value>first</value><value>second</value>", L"first"},
                    ValueCase{"FirstThoughEmpty", "<value/><value>second</value>", L""}),
    CaseName<ValueCase>);

class NoValueTest : public StringTableTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(NoValueTest, HidesTheLaterEntriesOfItsName) {
    EXPECT_EQ(TextOf("Key", GetParam().xml + Entry("Key", "Text")), L"Key");
}

TEST_P(NoValueTest, HidesNoOtherEntry) {
    EXPECT_EQ(TextOf("Other", GetParam().xml + Entry("Other", "Text")), L"Text");
}

TEST_P(NoValueTest, DoesNotHideAnEarlierEntry) {
    EXPECT_EQ(TextOf("Key", Entry("Key", "Text") + GetParam().xml), L"Text");
}

INSTANTIATE_TEST_SUITE_P(
    , NoValueTest,
    testing::Values(XmlCase{"Empty", R"(<data name="Key"/>)"},
                    XmlCase{"InAnotherCaseOfTheName", R"(<data name="KEY"/>)"},
                    XmlCase{"OnlyText", R"(<data name="Key">No</data>)"},
                    XmlCase{"AnotherElement", R"(<data name="Key"><text>No</text></data>)"},
                    XmlCase{"AnotherCase", R"(<data name="Key"><Value>No</Value></data>)"},
                    XmlCase{"FurtherDown", R"(<data name="Key"><text><value>No</value></text></data>)"},
                    XmlCase{"InANamespace",
                            R"(<data name="Key"><o:value xmlns:o="urn:o">No</o:value></data>)"},
                    XmlCase{"AsAttribute", R"(<data name="Key" value="No"/>)"}),
    CaseName<XmlCase>);

TEST_F(StringTableTest, GivesATextOf259UnitsWhole) {
    EXPECT_EQ(TextOf("Key", Entry("Key", std::string(259, 't'))), std::wstring(259, L't'));
}

TEST_F(StringTableTest, CutsALongerTextAfter259Units) {
    EXPECT_EQ(TextOf("Key", Entry("Key", std::string(259, 't') + "u")), std::wstring(259, L't'));
}

TEST_F(StringTableTest, CutsAMuchLongerTextAfter259Units) {
    EXPECT_EQ(TextOf("Key", Entry("Key", std::string(259, 't') + std::string(100000, 'u'))),
              std::wstring(259, L't'));
}

TEST_F(StringTableTest, CutsATextBeforeASurrogatePairThatDoesNotFit) {
    EXPECT_EQ(TextOf("Key", Entry("Key", std::string(258, 't') + SurrogatePair)), std::wstring(258, L't'));
}

TEST_F(StringTableTest, CutsATextBehindASurrogatePairThatFits) {
    EXPECT_EQ(TextOf("Key", Entry("Key", std::string(257, 't') + SurrogatePair + "u")),
              std::wstring(257, L't') + WideSurrogatePair);
}

}  // namespace ZOTDam::Test
