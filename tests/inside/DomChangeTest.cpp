// Tests of attributes whose names come from callers, strings that XML cannot represent, and copied, appended
// and removed nodes.
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "support/DomMethods.h"
#include "support/Markup.h"
#include "xml/Dom.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Test {

class DomChangeTest : public testing::Test {
    ComScope com;
};

// ---- Attributes by name ----

class NamedAttributeTest : public DomChangeTest {
protected:
    static std::optional<std::wstring> Read(const std::wstring& xml, const wchar_t* name) {
        std::wstring value = L"untouched";
        if (ReadNamedAttribute(Markup{xml}.Root(), name, value))
            return value;
        EXPECT_EQ(value, L"untouched");
        return std::nullopt;
    }
    inline static const std::optional<std::wstring> Missing;
};

TEST_F(NamedAttributeTest, OnlyExactNameIsRead) {
    EXPECT_EQ(Read(LR"(<E A="1" AB="2" a="3"/>)", L"AB"), L"2");
    EXPECT_EQ(Read(LR"(<E A="1" AB="2" a="3"/>)", L"a"), L"3");
    EXPECT_EQ(Read(LR"(<E A="1" AB="2" a="3"/>)", L"B"), Missing);
}

TEST_F(NamedAttributeTest, ElementWithoutAttributesHasNoValue) {
    EXPECT_EQ(Read(L"<E><A>1</A></E>", L"A"), Missing);
}

TEST_F(NamedAttributeTest, EmptyValueIsRead) {
    EXPECT_EQ(Read(LR"(<E A=""/>)", L"A"), L"");
}

TEST_F(NamedAttributeTest, LongNameAndValueAreRead) {
    const std::wstring longName(1000, L'n');
    const std::wstring longValue(100000, L'v');
    EXPECT_EQ(Read(L"<E " + longName + L"=\"" + longValue + L"\"/>", longName.c_str()), longValue);
}

TEST_F(NamedAttributeTest, ValueIsReadVerbatim) {
    EXPECT_EQ(Read(L"<E A=\" &lt;\x4e2d\xd83d\xde00&#10;&#9; \"/>", L"A"), L" <\x4e2d\xd83d\xde00\n\t ");
}

TEST_F(NamedAttributeTest, InvalidNameReadsNothing) {
    for (const wchar_t* const name :
         {L"", L" ", L"1", L"A B", L":", L"A:", L":A", L"xmlns", L"*", L"A\xd83d"})
        EXPECT_EQ(Read(LR"(<E A="1"/>)", name), Missing);
}

TEST_F(NamedAttributeTest, LocalNameDoesNotSelectPrefixedAttribute) {
    EXPECT_EQ(Read(LR"(<E xmlns:p="urn:p" p:A="1"/>)", L"A"), Missing);
}

TEST_F(NamedAttributeTest, ReadingFromNullElementThrows) {
    std::wstring value;
    EXPECT_EQ(ThrownBy([&] { ReadNamedAttribute(nullptr, L"A", value); }), E_POINTER);
}

TEST_F(NamedAttributeTest, FailedReadThrowsErrorOfDom) {
    const FailingDomMethod failure{DomMethod::GetNamedItem};
    const Markup markup{LR"(<E A="1"/>)"};
    std::wstring value;
    EXPECT_EQ(ThrownBy([&] { ReadNamedAttribute(markup.Root(), L"A", value); }), E_FAIL);
}

TEST_F(NamedAttributeTest, MissingAttributeIsAppended) {
    const Markup markup{LR"(<E A="1"><F/></E>)"};
    WriteNamedAttribute(markup.Root(), L"B", L"2");
    EXPECT_EQ(XmlOf(markup.Root()), LR"(<E A="1" B="2"><F/></E>)");
}

TEST_F(NamedAttributeTest, ExistingAttributeKeepsItsPosition) {
    const Markup markup{LR"(<E A="1" B="2" b="3"/>)"};
    WriteNamedAttribute(markup.Root(), L"B", L"new");
    EXPECT_EQ(XmlOf(markup.Root()), LR"(<E A="1" B="new" b="3"/>)");
}

TEST_F(NamedAttributeTest, InvalidOrPrefixedNameThrowsOnWrite) {
    const Markup markup{LR"(<E xmlns:p="urn:p"/>)"};
    const std::wstring before = XmlOf(markup.Root());
    for (const wchar_t* const name :
         {L"", L"1a", L"a b", L"a:b", L"p:a", L":a", L"a:", L"xmlns", L"xmlns:a", L"-a", L"a<", L"a\xd83d"})
        EXPECT_EQ(ThrownBy([&] { WriteNamedAttribute(markup.Root(), name, L"1"); }), E_INVALIDARG);
    EXPECT_EQ(XmlOf(markup.Root()), before);
}

TEST_F(NamedAttributeTest, CharacterInvalidInXmlThrowsOnWrite) {
    const Markup markup{LR"(<E A="old"/>)"};
    for (const wchar_t* const text : {L"\x1", L"a\x1f\x62", L"\xffff", L"a\xd83d", L"\xde00"})
        EXPECT_EQ(ThrownBy([&] { WriteNamedAttribute(markup.Root(), L"A", text); }), E_INVALIDARG);
    EXPECT_EQ(XmlOf(markup.Root()), LR"(<E A="old"/>)");
}

TEST_F(NamedAttributeTest, WritingToNullElementThrows) {
    EXPECT_EQ(ThrownBy([] { WriteNamedAttribute(nullptr, L"A", L"1"); }), E_POINTER);
}

TEST_F(NamedAttributeTest, FailedWriteThrowsErrorOfDom) {
    const FailingDomMethod failure{DomMethod::SetAttribute};
    const Markup markup{L"<E/>"};
    EXPECT_EQ(ThrownBy([&] { WriteNamedAttribute(markup.Root(), L"A", L"1"); }), E_FAIL);
}

TEST_F(DomChangeTest, FixedNameAttributeRejectsInvalidCharacter) {
    const Markup markup{LR"(<E A="old"/>)"};
    for (const wchar_t* const text : {L"\x8", L"a\xfffe",
                                      L"\xd83d"
                                      L"b",
                                      L"\xde00\xd83d"})
        EXPECT_EQ(ThrownBy([&] { WriteAttribute(markup.Root(), L"A", text); }), E_INVALIDARG);
    EXPECT_EQ(XmlOf(markup.Root()), LR"(<E A="old"/>)");
}

TEST_F(DomChangeTest, FixedNameAttributeKeepsValidCharacters) {
    const Markup markup{L"<E/>"};
    const wchar_t text[] = L"\t\n\r <&\">\xd7ff\xe000\xfffd\xd83d\xde00";
    WriteAttribute(markup.Root(), L"A", text);
    std::wstring value;
    EXPECT_TRUE(ReadAttribute(markup.Root(), L"A", value));
    EXPECT_EQ(value, text);
}

// ---- Copies of nodes ----

class NodeImportTest : public DomChangeTest {
protected:
    // Appends a copy of the source's child "C" to the target. Returns the target's XML.
    static std::wstring Copied(const std::wstring& source) {
        const Markup target{L"<T><Old/></T>"};
        {
            const Markup markup{source};
            AppendChild(target.Root(), ImportNode(target.Root(), SelectChild(markup.Root(), L"C")));
            EXPECT_EQ(XmlOf(SelectChild(markup.Root(), L"C")), XmlOf(SelectChild(target.Root(), L"C")));
        }
        return XmlOf(target.Root());
    }

    // A fake importNode and the last value of its "deep" argument.
    inline static VARIANT_BOOL deepness;

    static HRESULT WINAPI Import(IXMLDOMDocument3*, IXMLDOMNode* node, VARIANT_BOOL deep,
                                 IXMLDOMNode** copy) {
        deepness = deep;
        const HRESULT result = node->cloneNode(deep, copy);
        // Marks the copy, so that a test can recognise it.
        IXMLDOMElementPtr {
            *copy
            } -> setAttribute(CXmlName{L"By"}.AsBstr(), _variant_t{L"import"});
        return result;
    }
};

TEST_F(NodeImportTest, CopyIsDeepAndSourceUnchanged) {
    EXPECT_EQ(
        Copied(LR"(<S><C A="1" B="&lt;"><D E="2">text<F/></D><!--c--><![CDATA[d < e]]><?p i?></C></S>)"),
        LR"(<T><Old/><C A="1" B="&lt;"><D E="2">text<F/></D><!--c--><![CDATA[d < e]]><?p i?></C></T>)");
}

TEST_F(NodeImportTest, EmptyElementIsCopied) {
    EXPECT_EQ(Copied(L"<S><C/></S>"), L"<T><Old/><C/></T>");
}

TEST_F(NodeImportTest, CopyHasNoParent) {
    const Markup source{L"<S/>"};
    const Markup target{L"<T/>"};
    const IXMLDOMNodePtr copy = ImportNode(target.Root(), source.Root());
    IXMLDOMNodePtr parent;
    copy->get_parentNode(&parent);
    EXPECT_EQ(parent, nullptr);
    EXPECT_EQ(XmlOf(target.Root()), L"<T/>");
}

TEST_F(NodeImportTest, CopyIsIndependentOfSource) {
    const Markup source{LR"(<S A="1"/>)"};
    const Markup target{L"<T/>"};
    const IXMLDOMElementPtr copy = ImportNode(target.Root(), source.Root());
    WriteAttribute(copy, L"A", L"2");
    EXPECT_EQ(XmlOf(source.Root()), LR"(<S A="1"/>)");
    EXPECT_EQ(XmlOf(copy), LR"(<S A="2"/>)");
}

TEST_F(NodeImportTest, ImportNodeOfDomIsPreferred) {
    const DomMethodPatch patch{DomMethod::ImportNode, &Import};
    const Markup source{L"<S><A/></S>"};
    const Markup target{L"<T/>"};
    deepness = VARIANT_FALSE;
    EXPECT_EQ(XmlOf(ImportNode(target.Root(), source.Root())), LR"(<S By="import"><A/></S>)");
    EXPECT_EQ(deepness, VARIANT_TRUE);
    EXPECT_EQ(XmlOf(source.Root()), L"<S><A/></S>");
}

TEST_F(NodeImportTest, UnimplementedImportFallsBackToCopy) {
    const DomMethodPatch patch{DomMethod::ImportNode, []() -> HRESULT { return E_NOTIMPL; }};
    EXPECT_EQ(Copied(L"<S><C><A/></C></S>"), L"<T><Old/><C><A/></C></T>");
}

TEST_F(NodeImportTest, FailedImportThrowsErrorOfDom) {
    const FailingDomMethod failure{DomMethod::ImportNode};
    const Markup markup{L"<R/>"};
    EXPECT_EQ(ThrownBy([&] { ImportNode(markup.Root(), markup.Root()); }), E_FAIL);
}

TEST_F(NodeImportTest, NullNodeOrParentThrows) {
    const Markup markup{L"<R/>"};
    EXPECT_EQ(ThrownBy([&] { ImportNode(nullptr, markup.Root()); }), E_POINTER);
    EXPECT_EQ(ThrownBy([&] { ImportNode(markup.Root(), nullptr); }), E_POINTER);
}

// ---- Appending and removing ----

TEST_F(DomChangeTest, AppendedNodeIsLastChild) {
    const Markup markup{L"<R><A/><B/></R>"};
    AppendChild(markup.Root(), SelectChild(markup.Root(), L"A"));
    EXPECT_EQ(XmlOf(markup.Root()), L"<R><B/><A/></R>");
}

TEST_F(DomChangeTest, RemovalKeepsOtherNodes) {
    const Markup markup{LR"(<R><A N="1"/>text<A N="2"><B/></A><C/></R>)"};
    const IXMLDOMElementPtr first = SelectChild(markup.Root(), L"A");
    RemoveChild(markup.Root(), first);
    EXPECT_EQ(XmlOf(markup.Root()), LR"(<R>text<A N="2"><B/></A><C/></R>)");
    EXPECT_EQ(XmlOf(first), LR"(<A N="1"/>)");
}

TEST_F(DomChangeTest, RemovalFromOtherThanParentThrows) {
    const Markup markup{L"<R><A><B/></A></R>"};
    const IXMLDOMElementPtr inner = SelectChild(SelectChild(markup.Root(), L"A"), L"B");
    EXPECT_TRUE(FAILED(ThrownBy([&] { RemoveChild(markup.Root(), inner); })));
    EXPECT_EQ(XmlOf(markup.Root()), L"<R><A><B/></A></R>");
}

TEST_F(DomChangeTest, NullParentOrChildThrows) {
    const Markup markup{L"<R/>"};
    EXPECT_EQ(ThrownBy([&] { AppendChild(nullptr, markup.Root()); }), E_POINTER);
    EXPECT_EQ(ThrownBy([&] { RemoveChild(nullptr, markup.Root()); }), E_POINTER);
    EXPECT_TRUE(FAILED(ThrownBy([&] { AppendChild(markup.Root(), nullptr); })));
    EXPECT_TRUE(FAILED(ThrownBy([&] { RemoveChild(markup.Root(), nullptr); })));
    EXPECT_EQ(XmlOf(markup.Root()), L"<R/>");
}

TEST_F(DomChangeTest, FailedChangeThrowsErrorOfDom) {
    const Markup markup{L"<R><A/></R>"};
    const IXMLDOMElementPtr child = SelectChild(markup.Root(), L"A");
    const FailingDomMethod appending{DomMethod::AppendChild};
    const FailingDomMethod removing{DomMethod::RemoveChild};
    EXPECT_EQ(ThrownBy([&] { AppendChild(markup.Root(), child); }), E_FAIL);
    EXPECT_EQ(ThrownBy([&] { RemoveChild(markup.Root(), child); }), E_FAIL);
}

}  // namespace ZOTDam::Test
