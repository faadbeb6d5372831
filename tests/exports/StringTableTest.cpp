// Tests of looking up keys in the string table.
#include "support/NullValues.h"
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

TEST_F(StringTableTest, RootCanHaveAnyName) {
    EXPECT_EQ(TextInTable("<Texts>" + Entry("Key", "Text") + "</Texts>"), L"Text");
}

TEST_F(StringTableTest, RootCanHaveNamespacePrefix) {
    EXPECT_EQ(TextInTable("<o:root xmlns:o=\"urn:other\">" + Entry("Key", "Text") + "</o:root>"), L"Text");
}

TEST_F(StringTableTest, TableCanHaveNoEntries) {
    EXPECT_EQ(TextInTable("<root/>"), L"Key");
}

TEST_F(StringTableTest, FileCanBeInUtf16) {
    const std::wstring xml = L"\xfeff<root><data name=\"Key\"><value>\u00fcber</value></data></root>";
    EXPECT_EQ(TextInTable({reinterpret_cast<const char*>(xml.data()), xml.size() * sizeof(wchar_t)}),
              L"\u00fcber");
}

TEST_F(StringTableTest, UnknownContentIsIgnored) {
    EXPECT_EQ(TextInTable(R"(<?xml version="1.0" encoding="UTF-8"?><?tool x?><!-- head -->
        <root version="2"><resheader name="Key"><value>Header</value></resheader>text<![CDATA[text]]>
            <!-- <data name="Key"><value>Comment</value></data> --><?tool y?>
            <data lang="en" name="Key" xml:space="preserve">text<comment>Note</comment><value>Text</value>
            </data>
        </root><!-- tail -->)"),
              L"Text");
}

class InvalidEntryTest : public StringTableTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(InvalidEntryTest, InvalidEntryIsIgnored) {
    EXPECT_EQ(TextOf("Key", GetParam().xml), L"Key");
}

TEST_P(InvalidEntryTest, InvalidEntryHidesNoLaterEntry) {
    EXPECT_EQ(TextOf("Key", GetParam().xml + Entry("Key", "Text")), L"Text");
}

INSTANTIATE_TEST_SUITE_P(
    , InvalidEntryTest,
    testing::Values(
        XmlCase{"OtherElementName", R"(<text name="Key"><value>No</value></text>)"},
        XmlCase{"ElementInOtherCase", R"(<Data name="Key"><value>No</value></Data>)"},
        XmlCase{"Nested", "<group>" + Entry("Key", "No") + "</group>"},
        XmlCase{"NestedInEntry", "<data name=\"Other\">" + Entry("Key", "No") + "</data>"},
        XmlCase{"NamespacePrefix", R"(<o:data xmlns:o="urn:o" name="Key"><value>No</value></o:data>)"},
        XmlCase{"DefaultNamespace", R"(<data xmlns="urn:o" name="Key"><value>No</value></data>)"},
        XmlCase{"NoName", "<data><value>No</value></data>"},
        XmlCase{"NameInOtherCase", R"(<data Name="Key"><value>No</value></data>)"},
        XmlCase{"NameInNamespace", R"(<data xmlns:o="urn:o" o:name="Key"><value>No</value></data>)"},
        XmlCase{"EmptyName", Entry("", "No")},
        XmlCase{"NameAsChild", "<data><name>Key</name><value>No</value></data>"}),
    CaseName<XmlCase>);

TEST_F(StringTableTest, RootIsNotAnEntry) {
    EXPECT_EQ(TextInTable(Entry("Key", "Text")), L"Key");
}

TEST_F(StringTableTest, EntriesInDefaultNamespaceAreIgnored) {
    EXPECT_EQ(TextInTable("<root xmlns=\"urn:o\">" + Entry("Key", "Text") + "</root>"), L"Key");
}

TEST_F(StringTableTest, LastOfTenThousandEntriesIsFound) {
    EXPECT_EQ(TextOf("Key9999", Entries(10000)), L"Text 9999");
}

TEST_F(StringTableTest, FirstOfManyEqualKeysIsUsed) {
    EXPECT_EQ(TextOf("Key", Entries(5000) + Entry("kEY", "first") + Entries(5000) + Entry("Key", "second")),
              L"first");
}

TEST_F(StringTableTest, EntryWithoutValueHidesKeyAmongTenThousand) {
    EXPECT_EQ(TextOf("Key", Entries(5000) + R"(<data name="KEY"/>)" + Entries(5000) + Entry("Key", "Text")),
              L"Key");
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

class StringTableKeyTest : public StringTableTest, public testing::WithParamInterface<KeyCase> {};

TEST_P(StringTableKeyTest, KeyMatchesIgnoringCaseOfAsciiLetters) {
    EXPECT_EQ(TextOf(GetParam().key, Entry(GetParam().entry, "Text")) == L"Text", GetParam().matches);
}

INSTANTIATE_TEST_SUITE_P(
    , StringTableKeyTest,
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
        KeyCase{"UmlautInOtherCase", "Schl\u00fcssel", "Schl\u00dcssel", false},
        KeyCase{"GreekInOtherCase", "\u03b1", "\u0391", false},
        KeyCase{"KelvinSign", "Key", "\u212aey", false}, KeyCase{"LongS", "Keys", "Key\u017f", false},
        KeyCase{"FullWidthInOtherCase", "\uff4b", "\uff2b", false},
        KeyCase{"SurrogatePair", "\U0001F50B", "\U0001F50B", true},
        KeyCase{"OtherSurrogatePair", "\U0001F50B", "\U0001F50C", false},
        KeyCase{"Longest", std::string(LongestText, 'k'), std::string(LongestText, 'K'), true},
        KeyCase{"OneLongerThanLongest", std::string(LongestText, 'k'), std::string(LongestText + 1, 'k'),
                false},
        KeyCase{"MuchLongerThanLongest", std::string(LongestText, 'k'), std::string(10000, 'k'), false}),
    CaseName<KeyCase>);

TEST_F(StringTableTest, FirstEntryOfKeyIsUsed) {
    EXPECT_EQ(TextOf("Key", Entry("Key", "first") + Entry("Key", "second")), L"first");
}

TEST_F(StringTableTest, FirstEntryIsUsedDespiteDifferentCase) {
    EXPECT_EQ(TextOf("Key", Entry("KEY", "first") + Entry("Key", "second")), L"first");
}

TEST_F(StringTableTest, OverlongKeyDoesNotHideLaterEntry) {
    EXPECT_EQ(TextOf("Key", Entry("Key" + std::string(10000, 'k'), "long") + Entry("Key", "Text")), L"Text");
}

TEST_F(StringTableTest, EmptyKeyDoesNotMatchEntryWithoutName) {
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

class StringTableValueTest : public StringTableTest, public testing::WithParamInterface<ValueCase> {};

TEST_P(StringTableValueTest, StringIsTextOfFirstValueElement) {
    EXPECT_EQ(TextOf("Key", "<data name=\"Key\">" + GetParam().xml + "</data>"), GetParam().text);
}

TEST_P(StringTableValueTest, StringIsEqualIfEmptyValuesAreNull) {
    const ComScope com;
    const NullValues nulls;
    EXPECT_EQ(TextOf("Key", "<data name=\"Key\">" + GetParam().xml + "</data>"), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    , StringTableValueTest,
    testing::Values(
        ValueCase{"Text", "<value>Text</value>", L"Text"}, ValueCase{"TheKey", "<value>Key</value>", L"Key"},
        ValueCase{"References", "<value>&lt;&amp;&#252;&#x1F50B;</value>", L"<&\u00fc\U0001F50B"},
        ValueCase{"CData", "<value><![CDATA[<a> & b]]></value>", L"<a> & b"},
        ValueCase{"CDataInText", "<value>a<![CDATA[<]]>b</value>", L"a<b"},
        ValueCase{"CommentInText", "<value>a<!-- no -->b</value>", L"ab"},
        ValueCase{"LineBreak", "<value>a\r\nb</value>", L"a\nb"},
        ValueCase{"InnerSpaces", "<value>a  b</value>", L"a  b"},
        ValueCase{"WithAttributes", "<value lang=\"en\">Text</value>", L"Text"},
        ValueCase{"EmptyElement", "<value/>", L""}, ValueCase{"NoText", "<value></value>", L""},
        ValueCase{"AfterOtherElements", "<comment>no</comment><Value>no</Value><value>Text</value>", L"Text"},
        ValueCase{"AfterElementInNamespace", "<value xmlns=\"urn:o\">no</value><value>Text</value>", L"Text"},
        ValueCase{"First", "<value>first</value><value>second</value>", L"first"},
        ValueCase{"EmptyFirst", "<value/><value>second</value>", L""}),
    CaseName<ValueCase>);

class EntryWithoutValueTest : public StringTableTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(EntryWithoutValueTest, EntryWithoutValueHidesLaterEntriesOfKey) {
    EXPECT_EQ(TextOf("Key", GetParam().xml + Entry("Key", "Text")), L"Key");
}

TEST_P(EntryWithoutValueTest, EntryWithoutValueHidesNoOtherKey) {
    EXPECT_EQ(TextOf("Other", GetParam().xml + Entry("Other", "Text")), L"Text");
}

TEST_P(EntryWithoutValueTest, EntryWithoutValueHidesNoEarlierEntry) {
    EXPECT_EQ(TextOf("Key", Entry("Key", "Text") + GetParam().xml), L"Text");
}

INSTANTIATE_TEST_SUITE_P(
    , EntryWithoutValueTest,
    testing::Values(XmlCase{"Empty", R"(<data name="Key"/>)"},
                    XmlCase{"NameInOtherCase", R"(<data name="KEY"/>)"},
                    XmlCase{"OnlyText", R"(<data name="Key">No</data>)"},
                    XmlCase{"AnotherElement", R"(<data name="Key"><text>No</text></data>)"},
                    XmlCase{"ValueInOtherCase", R"(<data name="Key"><Value>No</Value></data>)"},
                    XmlCase{"Nested", R"(<data name="Key"><text><value>No</value></text></data>)"},
                    XmlCase{"ValueInNamespace",
                            R"(<data name="Key"><o:value xmlns:o="urn:o">No</o:value></data>)"},
                    XmlCase{"ValueAsAttribute", R"(<data name="Key" value="No"/>)"}),
    CaseName<XmlCase>);

TEST_F(StringTableTest, StringOf259CodeUnitsIsComplete) {
    EXPECT_EQ(TextOf("Key", Entry("Key", std::string(259, 't'))), std::wstring(259, L't'));
}

TEST_F(StringTableTest, LongerStringIsTruncatedTo259CodeUnits) {
    EXPECT_EQ(TextOf("Key", Entry("Key", std::string(259, 't') + "u")), std::wstring(259, L't'));
}

TEST_F(StringTableTest, MuchLongerStringIsAlsoTruncated) {
    EXPECT_EQ(TextOf("Key", Entry("Key", std::string(259, 't') + std::string(100000, 'u'))),
              std::wstring(259, L't'));
}

TEST_F(StringTableTest, TruncationDoesNotSplitSurrogatePair) {
    EXPECT_EQ(TextOf("Key", Entry("Key", std::string(258, 't') + SurrogatePair)), std::wstring(258, L't'));
}

TEST_F(StringTableTest, SurrogatePairThatFitsIsKept) {
    EXPECT_EQ(TextOf("Key", Entry("Key", std::string(257, 't') + SurrogatePair + "u")),
              std::wstring(257, L't') + WideSurrogatePair);
}

}  // namespace ZOTDam::Test
