// Tests of reading and writing elements and attributes.
#include "xml/Dom.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <string>

#include "support/Markup.h"
#include "xml/VariantFromString.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Test {

class DomTest : public testing::Test {
    ComScope com;
};

// ---- Selecting children ----

class ChildSelectionTest : public DomTest {
protected:
    // Returns the concatenated "ID" attributes of the selected children.
    static std::wstring SelectFrom(const std::wstring& xml) {
        std::wstring ids;
        for (const IXMLDOMElementPtr& element : SelectChildren(Markup{xml}.Root(), L"Function")) {
            std::wstring id;
            ReadAttribute(element, L"ID", id);
            ids += id;
        }
        return ids;
    }
};

TEST_F(ChildSelectionTest, MatchingChildrenAreInDocumentOrder) {
    EXPECT_EQ(SelectFrom(LR"(<R><Function ID="c"/><Other ID="x"/><Function ID="a"/><Function ID="b"/></R>)"),
              L"cab");
}

TEST_F(ChildSelectionTest, ParentWithoutMatchYieldsEmptyList) {
    EXPECT_EQ(SelectFrom(L"<R/>"), L"");
    EXPECT_EQ(SelectFrom(LR"(<R><Other ID="x"/></R>)"), L"");
}

TEST_F(ChildSelectionTest, OnlyDirectChildrenAreSelected) {
    EXPECT_EQ(
        SelectFrom(
            LR"(<R><Group><Function ID="x"/></Group><Function ID="a"><Function ID="x"/></Function></R>)"),
        L"a");
}

TEST_F(ChildSelectionTest, ChildNameIsCaseSensitive) {
    EXPECT_EQ(SelectFrom(LR"(<R><function ID="x"/><FUNCTION ID="x"/><Function ID="a"/></R>)"), L"a");
}

TEST_F(ChildSelectionTest, SimilarNamesAreNotSelected) {
    EXPECT_EQ(SelectFrom(LR"(<R><Functions ID="x"/><Func ID="x"/><Function ID="a"/></R>)"), L"a");
}

TEST_F(ChildSelectionTest, ElementsInNamespaceAreNotSelected) {
    EXPECT_EQ(
        SelectFrom(
            LR"(<R xmlns:p="urn:p"><p:Function ID="x"/><Function xmlns="urn:p" ID="x"/><Function ID="a"/></R>)"),
        L"a");
}

TEST_F(ChildSelectionTest, ChildrenInDefaultNamespaceAreNotSelected) {
    EXPECT_EQ(SelectFrom(LR"(<R xmlns="urn:p"><Function ID="x"/></R>)"), L"");
}

TEST_F(ChildSelectionTest, OtherNodeTypesAreNotSelected) {
    EXPECT_EQ(
        SelectFrom(
            LR"(<R><?Function ID="x"?><!--Function-->Function<![CDATA[Function]]><Function ID="a"/></R>)"),
        L"a");
}

TEST_F(ChildSelectionTest, NullParentThrows) {
    EXPECT_EQ(ThrownBy([] { SelectChildren(nullptr, L"Function"); }), E_POINTER);
    EXPECT_EQ(ThrownBy([] { SelectChild(nullptr, L"Function"); }), E_POINTER);
}

TEST_F(ChildSelectionTest, SingleChildIsFirstMatch) {
    const Markup markup{LR"(<R><?Function?><Function ID="a"/><Function ID="b"/></R>)"};
    EXPECT_EQ(XmlOf(SelectChild(markup.Root(), L"Function")), LR"(<Function ID="a"/>)");
}

TEST_F(ChildSelectionTest, SingleChildIsNullWithoutMatch) {
    const Markup markup{L"<R><Other/></R>"};
    EXPECT_EQ(SelectChild(markup.Root(), L"Function"), nullptr);
    EXPECT_EQ(XmlOf(markup.Root()), L"<R><Other/></R>");
}

// ---- Reading attributes ----

class ReadAttributeTest : public DomTest {
protected:
    static constexpr std::int32_t Untouched = 77;

    static std::int32_t NumberIn(const std::wstring& text) {
        std::int32_t number = Untouched;
        EXPECT_TRUE(ReadAttribute(ElementWith(text).Root(), L"A", number));
        return number;
    }

    static Markup ElementWith(const std::wstring& text) { return Markup{L"<E A=\"" + text + L"\"/>"}; }
};

TEST_F(ReadAttributeTest, DecimalNumberIsRead) {
    EXPECT_EQ(NumberIn(L"12"), 12);
    EXPECT_EQ(NumberIn(L"-1"), -1);
    EXPECT_EQ(NumberIn(L"+3"), 3);
    EXPECT_EQ(NumberIn(L"007"), 7);
}

TEST_F(ReadAttributeTest, LeadingWhiteSpaceIsSkipped) {
    EXPECT_EQ(NumberIn(L"  12"), 12);
    EXPECT_EQ(NumberIn(L"&#9;&#10;12"), 12);
}

TEST_F(ReadAttributeTest, NumberEndsAtFirstNonDigit) {
    EXPECT_EQ(NumberIn(L"12abc"), 12);
    EXPECT_EQ(NumberIn(L"1.9"), 1);
    EXPECT_EQ(NumberIn(L"0x10"), 0);
    EXPECT_EQ(NumberIn(L"- 5"), 0);
}

TEST_F(ReadAttributeTest, TextWithoutDigitsIsZero) {
    EXPECT_EQ(NumberIn(L"abc"), 0);
    EXPECT_EQ(NumberIn(L""), 0);
    EXPECT_EQ(NumberIn(L"-"), 0);
}

TEST_F(ReadAttributeTest, NumberBeyond32BitsIsClamped) {
    EXPECT_EQ(NumberIn(L"2147483647"), INT_MAX);
    EXPECT_EQ(NumberIn(L"2147483648"), INT_MAX);
    EXPECT_EQ(NumberIn(L"-2147483648"), INT_MIN);
    EXPECT_EQ(NumberIn(L"-99999999999999999999"), INT_MIN);
}

TEST_F(ReadAttributeTest, MissingAttributeLeavesFieldUnchanged) {
    const Markup markup{LR"(<E a="1" B="2" xmlns:p="urn:p" p:A="3"/>)"};
    std::int32_t number = Untouched;
    Text text = L"kept";
    std::wstring growable = L"kept";
    EXPECT_FALSE(ReadAttribute(markup.Root(), L"A", number));
    EXPECT_FALSE(ReadAttribute(markup.Root(), L"A", text));
    EXPECT_FALSE(ReadAttribute(markup.Root(), L"A", growable));
    EXPECT_EQ(number, Untouched);
    EXPECT_STREQ(text, L"kept");
    EXPECT_EQ(growable, L"kept");
}

TEST_F(ReadAttributeTest, EmptyAttributeIsReadAsEmptyString) {
    const Markup markup = ElementWith(L"");
    Text text = L"old";
    std::wstring growable = L"old";
    EXPECT_TRUE(ReadAttribute(markup.Root(), L"A", text));
    EXPECT_TRUE(ReadAttribute(markup.Root(), L"A", growable));
    EXPECT_STREQ(text, L"");
    EXPECT_EQ(growable, L"");
}

TEST_F(ReadAttributeTest, TextIsCopiedVerbatim) {
    Text text = L"something longer";
    EXPECT_TRUE(ReadAttribute(ElementWith(L" &lt;\x4e2d\xd83d\xde00 ").Root(), L"A", text));
    EXPECT_STREQ(text, L" <\x4e2d\xd83d\xde00 ");
}

TEST_F(ReadAttributeTest, TextOf259CodeUnitsFillsBuffer) {
    const std::wstring longest(259, L'x');
    Text text = {};
    EXPECT_TRUE(ReadAttribute(ElementWith(longest).Root(), L"A", text));
    EXPECT_EQ(text, longest);
}

TEST_F(ReadAttributeTest, TextOf260CodeUnitsThrowsWithoutTruncation) {
    const Markup markup = ElementWith(std::wstring(260, L'x'));
    Text text = L"kept";
    EXPECT_EQ(ThrownBy([&] { ReadAttribute(markup.Root(), L"A", text); }), E_INVALIDARG);
    EXPECT_STREQ(text, L"kept");
}

TEST_F(ReadAttributeTest, SurrogatePairCountsAsTwoCodeUnits) {
    const Markup markup = ElementWith(std::wstring(258, L'x') + L"\xd83d\xde00");
    Text text = {};
    EXPECT_EQ(ThrownBy([&] { ReadAttribute(markup.Root(), L"A", text); }), E_INVALIDARG);
}

TEST_F(ReadAttributeTest, StringHasNoLengthLimit) {
    const std::wstring longText(100000, L'x');
    std::wstring text;
    EXPECT_TRUE(ReadAttribute(ElementWith(longText).Root(), L"A", text));
    EXPECT_EQ(text, longText);
}

TEST_F(ReadAttributeTest, NullElementThrows) {
    std::int32_t number = 0;
    Text text = {};
    std::wstring growable;
    EXPECT_EQ(ThrownBy([&] { ReadAttribute(nullptr, L"A", number); }), E_POINTER);
    EXPECT_EQ(ThrownBy([&] { ReadAttribute(nullptr, L"A", text); }), E_POINTER);
    EXPECT_EQ(ThrownBy([&] { ReadAttribute(nullptr, L"A", growable); }), E_POINTER);
}

// ---- Reading the text of an element ----

class ElementTextTest : public DomTest {
protected:
    static std::wstring TextOf(const std::wstring& content) {
        Text text = L"old";
        ReadElementText(Markup{L"<E>" + content + L"</E>"}.Root(), text);
        return text;
    }
};

TEST_F(ElementTextTest, TextIsElementContent) {
    EXPECT_EQ(TextOf(L"Sleep"), L"Sleep");
    EXPECT_EQ(TextOf(L"a &amp; b"), L"a & b");
    EXPECT_EQ(TextOf(L"<![CDATA[<b>]]>"), L"<b>");
}

TEST_F(ElementTextTest, EmptyElementHasEmptyText) {
    EXPECT_EQ(TextOf(L""), L"");
}

TEST_F(ElementTextTest, TextOf259CodeUnitsIsNotTruncated) {
    EXPECT_EQ(TextOf(std::wstring(259, L'x')), std::wstring(259, L'x'));
}

TEST_F(ElementTextTest, LongerTextIsTruncatedAt259CodeUnits) {
    EXPECT_EQ(TextOf(std::wstring(260, L'x')), std::wstring(259, L'x'));
    EXPECT_EQ(TextOf(std::wstring(5000, L'x')), std::wstring(259, L'x'));
}

TEST_F(ElementTextTest, TruncationNeverSplitsSurrogatePair) {
    EXPECT_EQ(TextOf(std::wstring(258, L'x') + L"\xd83d\xde00"), std::wstring(258, L'x'));
}

TEST_F(ElementTextTest, SurrogatePairEndingAtLimitIsKept) {
    const std::wstring kept = std::wstring(257, L'x') + L"\xd83d\xde00";
    EXPECT_EQ(TextOf(kept + L"tail"), kept);
}

TEST_F(ElementTextTest, NullElementThrows) {
    Text text = {};
    EXPECT_EQ(ThrownBy([&] { ReadElementText(nullptr, text); }), E_POINTER);
}

// ---- Writing ----

class DomWritingTest : public DomTest {
protected:
    // Returns the text of an element's first child, a text node, including white space.
    static std::wstring TextIn(IXMLDOMElement* element) {
        IXMLDOMNodePtr text;
        element->get_firstChild(&text);
        _variant_t value{L""};
        if (text)
            text->get_nodeValue(&value);
        return V_BSTR(&value);
    }
};

TEST_F(DomWritingTest, MissingAttributeIsAppended) {
    const Markup markup{LR"(<E A="1"/>)"};
    WriteAttribute(markup.Root(), L"B", 2);
    EXPECT_EQ(XmlOf(markup.Root()), LR"(<E A="1" B="2"/>)");
}

TEST_F(DomWritingTest, ExistingAttributeKeepsItsPosition) {
    const Markup markup{LR"(<E A="1" B="2" C="3"><F/></E>)"};
    WriteAttribute(markup.Root(), L"B", L"new");
    EXPECT_EQ(XmlOf(markup.Root()), LR"(<E A="1" B="new" C="3"><F/></E>)");
}

TEST_F(DomWritingTest, NumberIsWrittenInDecimal) {
    const Markup markup{L"<E/>"};
    WriteAttribute(markup.Root(), L"A", INT_MAX);
    WriteAttribute(markup.Root(), L"B", INT_MIN);
    WriteAttribute(markup.Root(), L"C", -1);
    WriteAttribute(markup.Root(), L"D", 0);
    EXPECT_EQ(XmlOf(markup.Root()), LR"(<E A="2147483647" B="-2147483648" C="-1" D="0"/>)");
}

TEST_F(DomWritingTest, MarkupCharactersSurviveRoundTrip) {
    const Markup markup{L"<E/>"};
    WriteAttribute(markup.Root(), L"A", L"<&\">'");
    std::wstring text;
    EXPECT_TRUE(ReadAttribute(Markup{XmlOf(markup.Root())}.Root(), L"A", text));
    EXPECT_EQ(text, L"<&\">'");
}

TEST_F(DomWritingTest, NullElementThrows) {
    EXPECT_EQ(ThrownBy([] { WriteAttribute(nullptr, L"A", 1); }), E_POINTER);
    EXPECT_EQ(ThrownBy([] { WriteAttribute(nullptr, L"A", L"1"); }), E_POINTER);
}

TEST_F(DomWritingTest, AppendedElementIsEmptyLastChild) {
    const Markup markup{L"<R><A/></R>"};
    const IXMLDOMElementPtr appended = AppendElement(markup.Document(), markup.Root(), L"B");
    EXPECT_EQ(XmlOf(appended), L"<B/>");
    EXPECT_EQ(XmlOf(markup.Root()), L"<R><A/><B/></R>");
}

TEST_F(DomWritingTest, NullDocumentOrParentThrows) {
    const Markup markup{L"<R/>"};
    EXPECT_EQ(ThrownBy([&] { AppendElement(nullptr, markup.Root(), L"B"); }), E_POINTER);
    EXPECT_EQ(ThrownBy([&] { AppendElement(markup.Document(), nullptr, L"B"); }), E_POINTER);
    EXPECT_EQ(ThrownBy([] { CreateChild(nullptr, L"B"); }), E_POINTER);
    EXPECT_EQ(XmlOf(markup.Root()), L"<R/>");
}

TEST_F(DomWritingTest, ChildWithoutValueContainsLineFeedAndTab) {
    const Markup markup{L"<R/>"};
    EXPECT_EQ(TextIn(CreateChild(markup.Root(), L"C")), L"\n\t");
    EXPECT_EQ(XmlOf(markup.Root()), L"<R><C></C></R>");
}

TEST_F(DomWritingTest, ChildValueBecomesItsText) {
    const Markup markup{L"<R/>"};
    CreateChild(markup.Root(), L"A", _variant_t{L"a < b"});
    CreateChild(markup.Root(), L"B", _variant_t{42L});
    EXPECT_EQ(XmlOf(markup.Root()), L"<R><A>a &lt; b</A><B>42</B></R>");
}

TEST_F(DomWritingTest, EmptyChildValueStaysEmpty) {
    const Markup markup{L"<R/>"};
    EXPECT_EQ(TextIn(CreateChild(markup.Root(), L"C", _variant_t{L""})), L"");
}

// ---- Removing ----

class DomRemovalTest : public DomTest {};

TEST_F(DomRemovalTest, ChildrenOfEveryTypeAreRemoved) {
    const Markup markup{LR"(<E A="1">text<F><G/></F><!--c--><?p i?><![CDATA[d]]></E>)"};
    EXPECT_TRUE(RemoveChildren(markup.Root()));
    EXPECT_EQ(XmlOf(markup.Root()), LR"(<E A="1"/>)");
}

TEST_F(DomRemovalTest, CommentCountsAsChild) {
    EXPECT_TRUE(RemoveChildren(Markup{L"<E><!--c--></E>"}.Root()));
}

TEST_F(DomRemovalTest, RemovalWithoutChildrenReturnsFalse) {
    EXPECT_FALSE(RemoveChildren(Markup{LR"(<E A="1"/>)"}.Root()));
}

TEST_F(DomRemovalTest, AttributesAreRemovedAndChildrenKept) {
    const Markup markup{LR"(<E A="1" B="2" C=""><F D="4"/></E>)"};
    RemoveAttributes(markup.Root());
    EXPECT_EQ(XmlOf(markup.Root()), LR"(<E><F D="4"/></E>)");
}

TEST_F(DomRemovalTest, AttributesWithPrefixAreRemoved) {
    const Markup markup{LR"(<R xmlns:p="urn:p"><E A="1" p:A="2" B="3"/></R>)"};
    const IXMLDOMElementPtr element = SelectChild(markup.Root(), L"E");
    RemoveAttributes(element);
    EXPECT_EQ(XmlOf(element).find(L"=\"3\""), std::wstring::npos);
    EXPECT_EQ(XmlOf(element).find(L"=\"2\""), std::wstring::npos);
    EXPECT_EQ(XmlOf(element).find(L"=\"1\""), std::wstring::npos);
}

TEST_F(DomRemovalTest, ElementWithoutAttributesStaysUnchanged) {
    const Markup markup{L"<E><F/></E>"};
    RemoveAttributes(markup.Root());
    EXPECT_EQ(XmlOf(markup.Root()), L"<E><F/></E>");
}

TEST_F(DomRemovalTest, NullElementThrows) {
    EXPECT_EQ(ThrownBy([] { RemoveChildren(nullptr); }), E_POINTER);
    EXPECT_EQ(ThrownBy([] { RemoveAttributes(nullptr); }), E_POINTER);
}

// ---- Failures ----

class DomFailureTest : public DomTest {};

TEST_F(DomFailureTest, ExceptionKeepsErrorCodeOfDom) {
    const Markup markup{L"<R/>"};
    IXMLDOMElementPtr element;
    const HRESULT failure = markup.Document()->createElement(CXmlName{L""}.AsBstr(), &element);
    ASSERT_TRUE(FAILED(failure));
    EXPECT_EQ(ThrownBy([&] { AppendElement(markup.Document(), markup.Root(), L""); }), failure);
}

TEST_F(DomFailureTest, SuccessCodesDoNotThrow) {
    IUnknown* const noObject = nullptr;
    EXPECT_EQ(Check(S_OK, noObject), S_OK);
    EXPECT_EQ(Check(S_FALSE, noObject), S_FALSE);
}

TEST_F(DomFailureTest, FailureWithoutSourceThrows) {
    IUnknown* const noObject = nullptr;
    EXPECT_EQ(ThrownBy([&] { Check(E_OUTOFMEMORY, noObject); }), E_OUTOFMEMORY);
}

// An object whose InterfaceSupportsErrorInfo returns the given result.
class Source final : public ISupportErrorInfo {
public:
    explicit Source(HRESULT answer) noexcept : supports{answer} {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!IsEqualIID(iid, __uuidof(ISupportErrorInfo)))
            return E_NOINTERFACE;
        *object = this;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID) override { return supports; }

    // Sets error information with a description, and then throws the error of a failed call. Returns the
    // description in the exception.
    std::wstring DescriptionOfAFailure() {
        ICreateErrorInfo* creation = nullptr;
        IErrorInfo* information = nullptr;
        CreateErrorInfo(&creation);
        creation->SetDescription(_bstr_t{L"the reason"});
        creation->QueryInterface(__uuidof(IErrorInfo), reinterpret_cast<void**>(&information));
        SetErrorInfo(0, information);
        information->Release();
        creation->Release();
        try {
            ThrowComError(E_FAIL, this, __uuidof(IUnknown));
        } catch (const _com_error& error) {
            const wchar_t* const description = error.Description();
            return description != nullptr ? description : L"";
        }
    }

    ULONG references = 1;

private:
    HRESULT supports;
};

TEST_F(DomFailureTest, ExceptionHasErrorInformationOfSource) {
    Source source{S_OK};
    EXPECT_EQ(source.DescriptionOfAFailure(), L"the reason");
    EXPECT_EQ(source.references, 1u);
}

TEST_F(DomFailureTest, ErrorInformationOfOtherCallIsIgnored) {
    Source source{S_FALSE};
    EXPECT_EQ(source.DescriptionOfAFailure(), L"");
    EXPECT_EQ(source.references, 1u);
    SetErrorInfo(0, nullptr);
}

// ---- Typed values from strings ----

template <class Value>
_variant_t Filled(Value typed, const wchar_t* text) {
    _variant_t value{typed};
    FillFromString(value, _bstr_t{text});
    return value;
}

TEST(VariantConversionTest, ShortTakesLowBitsOfNumber) {
    EXPECT_EQ(Filled<short>(1, L"-5").iVal, -5);
    EXPECT_EQ(Filled<short>(1, L"65537").iVal, 1);
    EXPECT_EQ(Filled<short>(1, L"abc").iVal, 0);
}

TEST(VariantConversionTest, BooleanIsFilledAsShort) {
    EXPECT_EQ(Filled(true, L"0").boolVal, 0);
    EXPECT_EQ(Filled(false, L"-1").boolVal, VARIANT_TRUE);
    EXPECT_EQ(Filled(true, L"7").boolVal, 7);
    EXPECT_EQ(Filled(true, L"true").boolVal, 0);
    EXPECT_EQ(Filled(true, L"1").vt, VT_BOOL);
}

TEST(VariantConversionTest, LongIsReadUpToFirstNonDigit) {
    EXPECT_EQ(Filled(7L, L"12abc").lVal, 12);
    EXPECT_EQ(Filled(7L, L"abc").lVal, 0);
    EXPECT_EQ(Filled(7L, L"4294967296").lVal, INT_MAX);
}

TEST(VariantConversionTest, FloatIsReadInSinglePrecision) {
    EXPECT_EQ(Filled(1.0f, L"0.1").fltVal, 0.1f);
    EXPECT_EQ(Filled(1.0f, L"abc").fltVal, 0.0f);
}

TEST(VariantConversionTest, DoubleIsReadInDoublePrecision) {
    EXPECT_EQ(Filled(1.0, L" -2.5e3x").dblVal, -2500.0);
    EXPECT_EQ(Filled(1.0, L"0.1").dblVal, 0.1);
    EXPECT_EQ(Filled(1.0, L"").dblVal, 0.0);
}

TEST(VariantConversionTest, StringCopyIncludesEmbeddedZero) {
    const _bstr_t withZero{SysAllocStringLen(L"a\0b", 3), false};
    _variant_t value{L"old"};
    FillFromString(value, withZero);
    EXPECT_EQ((std::wstring{V_BSTR(&value), SysStringLen(V_BSTR(&value))}), (std::wstring{L"a\0b", 3}));
    EXPECT_NE(V_BSTR(&value), static_cast<BSTR>(withZero));
}

TEST(VariantConversionTest, UnsupportedTypeIsCleared) {
    EXPECT_EQ(Filled(CY{}, L"12").vt, VT_EMPTY);
    EXPECT_EQ(Filled(static_cast<unsigned char>(1), L"12").vt, VT_EMPTY);
    _variant_t empty;
    FillFromString(empty, _bstr_t{L"12"});
    EXPECT_EQ(V_VT(&empty), VT_EMPTY);
}

TEST(VariantConversionTest, NullStringIsReadAsEmpty) {
    _variant_t number{7L};
    FillFromString(number, nullptr);
    EXPECT_EQ(V_I4(&number), 0);
    _variant_t text{L"old"};
    FillFromString(text, nullptr);
    EXPECT_EQ(V_VT(&text), VT_BSTR);
    EXPECT_EQ(SysStringLen(V_BSTR(&text)), 0u);
}

// ---- Names ----

TEST(XmlNameTest, NameIsBstrWithItsLength) {
    const CXmlName name{L"PowerSchemes"};
    EXPECT_EQ(SysStringLen(name.AsBstr()), 12u);
    EXPECT_STREQ(name.AsBstr(), L"PowerSchemes");
    EXPECT_EQ(name.View(), L"PowerSchemes");
}

TEST(XmlNameTest, CopyOutlivesOriginal) {
    CXmlName copy{L"A"};
    {
        const CXmlName name{L"Function"};
        copy = name;
    }
    EXPECT_EQ(SysStringLen(copy.AsBstr()), 8u);
    EXPECT_STREQ(copy.AsBstr(), L"Function");
}

TEST(XmlNameTest, EmptyNameHasLengthZero) {
    EXPECT_EQ(SysStringLen(CXmlName{L""}.AsBstr()), 0u);
    EXPECT_TRUE(CXmlName{L""}.View().empty());
}

}  // namespace ZOTDam::Test
