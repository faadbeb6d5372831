// Tests that a file with a document type is refused before a DOM sees it, in every encoding. A document type
// can declare entities that keep a DOM busy for minutes.
#include <windows.h>

#include <shlwapi.h>

#include <array>
#include <tuple>

#include "support/DataFileTest.h"
#include "support/DomLoads.h"
#include "support/XmlFile.h"

namespace ZOTDam::Test {

namespace {

struct Encoding {
    std::string name;
    std::string mark;  // the byte order mark
    std::size_t unitSize;
    std::size_t lowByte;  // the position of the lowest byte in a code unit
};

void PrintTo(const Encoding& encoding, std::ostream* out) {
    *out << encoding.name;
}

const Encoding Encodings[] = {
    {"Utf8", "", 1, 0},    {"Utf8WithMark", "\xEF\xBB\xBF", 1, 0},
    {"Utf16Le", "", 2, 0}, {"Utf16LeWithMark", "\xFF\xFE", 2, 0},
    {"Utf16Be", "", 2, 1}, {"Utf16BeWithMark", "\xFE\xFF", 2, 1},
    {"Utf32Le", "", 4, 0}, {"Utf32LeWithMark", {"\xFF\xFE\0\0", 4}, 4, 0},
    {"Utf32Be", "", 4, 3}, {"Utf32BeWithMark", {"\0\0\xFE\xFF", 4}, 4, 3},
};

// Converts ASCII text.
std::string Encode(std::string_view text, const Encoding& encoding) {
    std::string bytes = encoding.mark;
    for (const char character : text) {
        std::string unit(encoding.unitSize, '\0');
        unit[encoding.lowByte] = character;
        bytes += unit;
    }
    return bytes;
}

constexpr char Root[] = R"(<OrloPowerCfg><CommonSettings User="u"/></OrloPowerCfg>)";
constexpr char DocumentType[] = "<!DOCTYPE OrloPowerCfg>";

const XmlCase Beginnings[] = {
    {"AtBegin", ""},
    {"AfterDeclaration", "<?xml version=\"1.0\"?>"},
    {"AfterComment", "<!-- c - c -->"},
    {"AfterCommentOfHyphen", "<!--->-->"},
    {"AfterCommentThatBeginsWithTagEnd", "<!--> <R/> -->"},
    {"AfterCommentThatBeginsWithHyphen", "<!---> <R/> -->"},
    {"AfterInstruction", "<?tool <R/> > ?>"},
    {"AfterDeclarationAndWhiteSpace", "<?xml version=\"1.0\"?> \t\r\n"},
    {"AfterEverything", "<?xml version=\"1.0\"?>\n<!--c--><?a?>\n<?b?><!-- d -->\n"},
};

// Returns whether the DOM itself loads a file with this content.
bool IsLoadedByDom(const std::string& content) {
    VARIANT source;
    V_VT(&source) = VT_UNKNOWN;
    V_UNKNOWN(&source) =
        SHCreateMemStream(reinterpret_cast<const BYTE*>(content.data()), static_cast<UINT>(content.size()));
    VARIANT_BOOL loaded = VARIANT_FALSE;
    const HRESULT result = NewDocument()->load(source, &loaded);
    VariantClear(&source);
    return result == S_OK && loaded == VARIANT_TRUE;
}

}  // namespace

class DocumentTypeTest : public DataFileTest {
protected:
    // Returns whether the DOM receives the user settings when they have this content.
    bool DomReceives(const std::string& content) {
        WriteUserSettings(content);
        RemoveOtherFiles();
        Dll();
        const DomLoads loads;
        isRead = FindsSetting(L"User");
        return !loads.sources.empty();
    }

    bool isRead = false;

private:
    void RemoveOtherFiles() const {
        std::filesystem::remove(installation.DefaultsFile());
        std::filesystem::remove(installation.BaseFile());
    }
};

// ---- Encodings ----

class EncodingTest : public DocumentTypeTest,
                     public testing::WithParamInterface<std::tuple<Encoding, XmlCase>> {
protected:
    static const Encoding& FileEncoding() { return std::get<Encoding>(GetParam()); }
    static const std::string& Beginning() { return std::get<XmlCase>(GetParam()).xml; }
};

INSTANTIATE_TEST_SUITE_P(, EncodingTest,
                         testing::Combine(testing::ValuesIn(Encodings), testing::ValuesIn(Beginnings)),
                         [](const testing::TestParamInfo<std::tuple<Encoding, XmlCase>>& info) {
                             return std::get<XmlCase>(info.param).name + "In" +
                                    std::get<Encoding>(info.param).name;
                         });

TEST_P(EncodingTest, DomReceivesNoDocumentType) {
    EXPECT_FALSE(DomReceives(Encode(Beginning() + DocumentType + Root, FileEncoding())));
    EXPECT_FALSE(isRead);
}

TEST_P(EncodingTest, SupportedEncodingWithoutDocumentTypeIsLoaded) {
    const std::string content = Encode(Beginning() + Root, FileEncoding());
    EXPECT_TRUE(DomReceives(content));
    EXPECT_EQ(isRead, IsLoadedByDom(content));
    if (FileEncoding().unitSize == 1 || (FileEncoding().unitSize == 2 && !FileEncoding().mark.empty())) {
        EXPECT_TRUE(isRead);
    }
}

// ---- All files ----

class FileWithDocumentTypeTest : public DataFileTest, public testing::WithParamInterface<DataFile> {};

INSTANTIATE_TEST_SUITE_P(, FileWithDocumentTypeTest, testing::ValuesIn(AllDataFiles()), CaseName<DataFile>);

TEST_P(FileWithDocumentTypeTest, FileWithDocumentTypeIsNotLoaded) {
    WriteFile(PathOf(GetParam()), "<!DOCTYPE R>" + GetParam().content);
    EXPECT_FALSE(GetParam().isRead(*this));
}

// In UTF-7, the first comment ends before the document type. The DOM must not support such an encoding, or
// must refuse document types itself.
TEST_F(DocumentTypeTest, DocumentTypeHiddenByUtf7IsNotLoaded) {
    DomReceives(R"(<?xml version="1.0" encoding="UTF-7"?><!-- +AC0ALQA+- <!DOCTYPE R [<!ENTITY e "u">]>)"
                R"(<R><CommonSettings User="&e;"/></R><!-- +ACA--><a +AC0ALQA+-)");
    EXPECT_FALSE(isRead);
}

// ---- Harmless text ----

class HarmlessTextTest : public DocumentTypeTest, public testing::WithParamInterface<XmlCase> {};

INSTANTIATE_TEST_SUITE_P(
    , HarmlessTextTest,
    testing::Values(XmlCase{"Comment", "<!--<!DOCTYPE R>--><R><CommonSettings User=\"u\"/></R>"},
                    XmlCase{"Instruction", "<?a <!DOCTYPE R> ?><R><CommonSettings User=\"u\"/></R>"},
                    XmlCase{"CommentInRoot", "<R><!--<!DOCTYPE R>--><CommonSettings User=\"u\"/></R>"},
                    XmlCase{"CData", "<R><![CDATA[<!DOCTYPE R>]]><CommonSettings User=\"u\"/></R>"},
                    XmlCase{"Attribute", "<R><CommonSettings User=\"&lt;!DOCTYPE R>\"/></R>"},
                    XmlCase{"CommentAfterRoot", "<R><CommonSettings User=\"u\"/></R><!--<!DOCTYPE R>-->"}),
    CaseName<XmlCase>);

TEST_P(HarmlessTextTest, TextLikeDocumentTypeIsHarmless) {
    EXPECT_TRUE(DomReceives(GetParam().xml));
    EXPECT_TRUE(isRead);
}

// ---- Prologs that the library cannot examine ----

class InvalidPrologTest : public DocumentTypeTest, public testing::WithParamInterface<XmlCase> {};

INSTANTIATE_TEST_SUITE_P(
    , InvalidPrologTest,
    testing::Values(XmlCase{"Empty", ""}, XmlCase{"OnlyMark", "\xEF\xBB\xBF"},
                    XmlCase{"OnlyWhiteSpace", " \n"}, XmlCase{"Text", "text<R/>"},
                    XmlCase{"UnclosedComment", "<!-- <R/>"}, XmlCase{"UnclosedInstruction", "<?a <R/>"},
                    XmlCase{"LowerCase", "<!doctype R><R/>"}, XmlCase{"Incomplete", "<!DOCTYP"},
                    XmlCase{"CData", "<![CDATA[x]]><R/>"},
                    // "<R/>" and a document type in EBCDIC
                    XmlCase{"Ebcdic", "\x4C\xD9\x61\x6E"},
                    XmlCase{"EbcdicWithDocumentType", "\x4C\x5A\xC4\xD6\xC3\xE3\xE8\xD7\xC5\x40\xD9\x6E"},
                    // "<!DOCTYPE R>" in UTF-7
                    XmlCase{"Utf7", "<?xml version=\"1.0\" encoding=\"UTF-7\"?>+ADwAIQ-DOCTYPE R+AD4-<R/>"},
                    XmlCase{"Utf16AfterLineBreak", {"\n\0<\0!\0D\0", 8}},
                    XmlCase{"Utf32InUnusualOrder", {"\0\0<\0\0\0!\0", 8}},
                    XmlCase{"TruncatedUtf16", {"<\0?\0a\0?\0>", 9}}),
    CaseName<XmlCase>);

TEST_P(InvalidPrologTest, DomReceivesNoInvalidProlog) {
    EXPECT_FALSE(DomReceives(GetParam().xml));
    EXPECT_FALSE(isRead);
}

}  // namespace ZOTDam::Test
