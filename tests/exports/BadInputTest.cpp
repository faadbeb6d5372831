// Tests with data files that are missing, damaged or hostile, or that differ from the library's own output.
#include <algorithm>
#include <climits>

#include "support/DataFiles.h"
#include "support/EntityBombs.h"
#include "support/EveryExport.h"
#include "support/SettingsTest.h"
#include "support/XmlFile.h"

namespace ZOTDam::Test {

namespace {

const Params DefaultsOfTwoFunctions = {{1, {2, 3}}, {2, {4, 5}}};
const Params StoredForTwoFunctions = {{1, {7, 8}}, {2, {9, 10}}};

std::string StoredTwoFunctions() {
    return OldUserFile(OldScheme(BalancedText, OldFunction(1, 7, 8) + OldFunction(2, 9, 10)));
}

std::string Utf16(std::string_view ascii) {
    std::string text;
    for (const char character : ascii)
        text += {character, '\0'};
    return text;
}

// Contents that the library does not load.
std::vector<XmlCase> UnreadableContents() {
    return {
        {"EmptyFile", ""},
        {"WhiteSpace", " \r\n\t "},
        {"PlainText", "ACParamIndex=1"},
        {"BinaryData", std::string{"\x7f\x45\x4c\x46\x00\x01\xff\xfe\x80\x00<R/>", 14}},
        {"ZerosOnly", std::string(4096, '\0')},
        {"DeclarationOnly", "<?xml version=\"1.0\"?>"},
        {"CommentOnly", "<!--nothing-->"},
        {"UnclosedRoot", "<R><Functions>"},
        {"TwoRoots", "<R/><R/>"},
        {"TextAfterRoot", "<R/>text"},
        {"OverlappingElements", "<R><A><B></A></B></R>"},
        {"DuplicateAttribute", "<R A=\"1\" A=\"2\"/>"},
        {"UnquotedAttribute", "<R A=1/>"},
        {"UndeclaredEntity", "<R A=\"&undeclared;\"/>"},
        {"ForbiddenCharacter", "<R A=\"\x01\"/>"},
        {"ForbiddenCharacterReference", "<R A=\"&#1;\"/>"},
        {"NullCharacter", std::string{"<R>\0</R>", 8}},
        {"Latin1InUtf8File",
         "<?xml version=\"1.0\" encoding=\"UTF-8\"?><R A=\"gr\xfc\xdf"
         "e\"/>"},
        {"TruncatedUtf8Sequence", "<R A=\"\xe4\xb8\"/>"},
        {"UnknownEncoding", "<?xml version=\"1.0\" encoding=\"no-such-encoding\"?><R/>"},
        {"TruncatedUtf16File", Utf16("<R><A/>")},
        {"EntityBomb", GrowingEntities(30, "boom") + "<R>&a30;</R>"},
        {"ParameterEntity", "<!-- ]> --><!DOCTYPE R [<!ENTITY\r\n\t%\r\np ''>]><R/>"},
        {"EntityWithoutValue", "<!DOCTYPE R [<!ENTITY x "},
        {"ParameterEntityBomb", GrowingParameterEntities(4) + "<R/>"},
        {"LargeEntityUsedOften", EntityOf(100000) + "<R>" + Repeat("&x;", 10000) + "</R>"},
        {"LargeEntityUsedOftenInUtf16", Utf16(EntityOf(100000) + "<R>" + Repeat("&x;", 10000) + "</R>")},
        {"DeepNesting", Repeat("<A>", 100000) + Repeat("</A>", 100000)},
        {"UnclosedDeepNesting", Repeat("<A>", 100000)},
        {"HtmlPage", "<!DOCTYPE html><html><head><meta charset=utf-8><br></head></html>"},
    };
}

// Other encodings and notations of the same document.
std::vector<XmlCase> OtherFormsOf(const std::string& xml) {
    return {
        {"Utf8WithBom", "\xef\xbb\xbf" + xml},
        {"Utf8Declared", "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"yes\"?>" + xml},
        {"Utf16WithBom", "\xff\xfe" + Utf16(xml)},
        {"Utf16WithBomAndDeclaration",
         "\xff\xfe" + Utf16("<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + xml)},
        {"Latin1Declared", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><!--\xfc-->" + xml},
        {"WindowsLineBreaks", "\r\n" + xml + "\r\n\r\n"},
        {"CommentsAndInstructionsAround", "<!--a--><?a b?>" + xml + "<!--c--><?d e?>"},
    };
}

}  // namespace

// ---- Unreadable files ----

class BadInputTest : public SettingsTest {
protected:
    std::filesystem::path KeptFile() const { return UnreadableCopyOf(installation.UserFile()); }
    std::filesystem::path TemporaryFile() const { return TemporaryFileOf(installation.UserFile()); }

    // Expects the results that exports return if no catalogue is available.
    void ExpectNoCatalogue() {
        EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
        EXPECT_EQ(GetParameter(Balanced), Params{});
        EXPECT_EQ(GetParameterDefault(Balanced), Params{});
        EXPECT_FALSE(Dll().TEVGetParam(&Balanced));
    }

    void ExpectTwoFunctionCatalogue() {
        EXPECT_EQ(Dll().GetFuncCount(), 2u);
        EXPECT_EQ(GetParameterDefault(Balanced), DefaultsOfTwoFunctions);
    }
};

class UnreadableFileTest : public BadInputTest, public testing::WithParamInterface<XmlCase> {};

INSTANTIATE_TEST_SUITE_P(, UnreadableFileTest, testing::ValuesIn(UnreadableContents()), CaseName<XmlCase>);

TEST_P(UnreadableFileTest, UnreadableDefaultsMakeCatalogueUnavailable) {
    WriteDefaults(GetParam().xml);
    WriteUserSettings(StoredTwoFunctions());
    ExpectNoCatalogue();
    EXPECT_EQ(Defaults(), GetParam().xml);
    EXPECT_EQ(UserSettings(), StoredTwoFunctions());
}

TEST_P(UnreadableFileTest, UnreadableDefaultsDoNotPreventStoringParameters) {
    WriteDefaults(GetParam().xml);
    WriteUserSettings(StoredTwoFunctions());
    EXPECT_TRUE(SetParameter(Balanced, {{1, {11, 12}}}));
    Unload();
    WriteDefaults(TwoFunctions);
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {11, 12}}, {2, {9, 10}}}));
}

TEST_P(UnreadableFileTest, ReadCopiesUnreadableUserSettingsAndStoresDefaults) {
    WriteDefaults(TwoFunctions);
    WriteUserSettings(GetParam().xml);
    EXPECT_EQ(GetParameter(Balanced), DefaultsOfTwoFunctions);
    EXPECT_EQ(Content(KeptFile()), GetParam().xml);
    EXPECT_EQ(UserSettings(),
              SavedXml{NewUserFile(NewScheme(BalancedText, NewFunction(1, 2, 3) + NewFunction(2, 4, 5)))});
}

TEST_P(UnreadableFileTest, WriteCopiesUnreadableUserSettingsBeforeReplacing) {
    WriteDefaults(TwoFunctions);
    WriteUserSettings(GetParam().xml);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {11, 12}}}));
    EXPECT_EQ(Content(KeptFile()), GetParam().xml);
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {11, 12}}, {2, {4, 5}}}));
}

TEST_P(UnreadableFileTest, UnreadableUserSettingsStayUntilNextSave) {
    WriteDefaults(TwoFunctions);
    WriteUserSettings(GetParam().xml);
    ExpectTwoFunctionCatalogue();
    EXPECT_FALSE(Dll().ResetDefault());
    EXPECT_EQ(UserSettings(), GetParam().xml);
    EXPECT_FALSE(std::filesystem::exists(KeptFile()));
}

TEST_P(UnreadableFileTest, UnreadableBaseOrStringTableAffectsNothingElse) {
    WriteDefaults(TwoFunctions);
    WriteUserSettings(StoredTwoFunctions());
    WriteBase(GetParam().xml);
    WriteFile(installation.StringTableFile(), GetParam().xml);
    ExpectTwoFunctionCatalogue();
    EXPECT_EQ(GetParameter(Balanced), StoredForTwoFunctions);
    CallEveryExport(Dll(), Balanced);
    EXPECT_EQ(Content(installation.BaseFile()), GetParam().xml);
    EXPECT_EQ(ReadFile(installation.StringTableFile()), GetParam().xml);
}

TEST_P(UnreadableFileTest, EveryExportSurvivesUnreadableFiles) {
    for (const auto& file : {installation.DefaultsFile(), installation.UserFile(), installation.BaseFile(),
                             installation.StringTableFile()})
        WriteFile(file, GetParam().xml);
    CallEveryExport(Dll(), Balanced);
}

TEST_F(BadInputTest, TruncatedDefaultsMakeCatalogueUnavailable) {
    const std::string_view whole = TwoFunctions;
    for (std::size_t length = 0; length < whole.size(); length += 5) {
        SCOPED_TRACE(length);
        WriteDefaults(whole.substr(0, length));
        EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
        Unload();
    }
}

TEST_F(BadInputTest, TruncatedUserSettingsAreCopiedAndReplaced) {
    WriteDefaults(TwoFunctions);
    const std::string whole = StoredTwoFunctions();
    for (std::size_t length = 0; length + 1 < whole.size(); length += 5) {
        SCOPED_TRACE(length);
        WriteUserSettings(whole.substr(0, length));
        EXPECT_EQ(GetParameter(Balanced), DefaultsOfTwoFunctions);
        EXPECT_EQ(Content(KeptFile()), whole.substr(0, length));
    }
}

TEST_F(BadInputTest, UserSettingsThatBecomeUnreadableDiscardOldValues) {
    WriteDefaults(TwoFunctions);
    WriteUserSettings(StoredTwoFunctions());
    EXPECT_EQ(GetParameter(Balanced), StoredForTwoFunctions);
    WriteUserSettings("<broken");
    EXPECT_EQ(GetParameter(Balanced), DefaultsOfTwoFunctions);
    EXPECT_EQ(Content(KeptFile()), "<broken");
}

TEST_F(BadInputTest, ReadableUserSettingsAreReplacedWithoutCopy) {
    WriteDefaults(TwoFunctions);
    WriteUserSettings(StoredTwoFunctions());
    EXPECT_TRUE(SetParameter(Balanced, {{1, {11, 12}}}));
    EXPECT_FALSE(std::filesystem::exists(KeptFile()));
}

TEST_F(BadInputTest, LaterUnreadableFileReplacesEarlierCopy) {
    WriteFile(KeptFile(), "<earlier");
    WriteUserSettings("<later");
    EXPECT_TRUE(SetParameter(Balanced, {{1, {11, 12}}}));
    EXPECT_EQ(Content(KeptFile()), "<later");
}

TEST_F(BadInputTest, UnreadableFileIsNotReplacedIfCopyFails) {
    std::filesystem::create_directory(KeptFile());
    WriteUserSettings("<broken");
    EXPECT_TRUE(SetParameter(Balanced, {{1, {11, 12}}}));
    EXPECT_EQ(UserSettings(), "<broken");
    EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
}

// ---- Readable files in another form ----

class XmlNotationTest : public BadInputTest, public testing::WithParamInterface<std::size_t> {};

INSTANTIATE_TEST_SUITE_P(, XmlNotationTest, testing::Range(std::size_t{0}, OtherFormsOf("").size()),
                         [](const auto& info) { return OtherFormsOf("")[info.param].name; });

TEST_P(XmlNotationTest, DefaultsAreReadInEveryNotation) {
    WriteDefaults(OtherFormsOf(TwoFunctions)[GetParam()].xml);
    ExpectTwoFunctionCatalogue();
}

TEST_P(XmlNotationTest, UserSettingsAreReadAndKeepOtherSchemes) {
    WriteDefaults(TwoFunctions);
    WriteUserSettings(OtherFormsOf(StoredTwoFunctions())[GetParam()].xml);
    EXPECT_EQ(GetParameter(Balanced), StoredForTwoFunctions);
    EXPECT_TRUE(SetParameter(HighPerformance, {{1, {11, 12}}, {2, {13, 14}}}));
    EXPECT_TRUE(IsWellFormed(installation.UserFile()));
    Unload();
    EXPECT_EQ(GetParameter(Balanced), StoredForTwoFunctions);
    EXPECT_EQ(GetParameter(HighPerformance), (Params{{1, {11, 12}}, {2, {13, 14}}}));
    EXPECT_FALSE(std::filesystem::exists(KeptFile()));
}

TEST_F(BadInputTest, TextInAnotherEncodingSurvivesEverySave) {
    WriteUserSettings(
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><R><PowerSchemes/><Mine A=\"gr\xfcn\"/></R>");
    EXPECT_TRUE(SetParameter(Balanced, {{1, {11, 12}}}));
    EXPECT_TRUE(SetParameter(Balanced, {{1, {13, 14}}}));
    const std::string settings = UserSettings();
    const bool isUtf8 = settings.find("ISO-8859-1") == std::string::npos;
    EXPECT_NE(settings.find(isUtf8 ? "gr\xc3\xbcn" : "gr\xfcn"), std::string::npos) << settings;
}

TEST_F(BadInputTest, EveryExportSurvivesDocumentTypeWithEntities) {
    const std::string type =
        R"(<!DOCTYPE R [<!ENTITY id "1"><!ENTITY file SYSTEM "file:///c:/windows/win.ini">]>)";
    WriteDefaults(type + R"(<R><Functions>
        <Function ID="&id;"><Display/><Commands/><Default ACParamIndex="2" DCParamIndex="&id;"/></Function>
    </Functions></R>)");
    WriteUserSettings(type + "<R>&file;" + OldScheme(BalancedText, OldFunction(1, 7, 8) + "&id;") + "</R>");
    CallEveryExport(Dll(), Balanced);
    EXPECT_TRUE(IsWellFormed(installation.UserFile()));
}

TEST_F(BadInputTest, EveryExportSurvivesWrongEncodingDeclaration) {
    WriteDefaults("<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + std::string{TwoFunctions});
    WriteUserSettings(Utf16("<?xml version=\"1.0\" encoding=\"UTF-8\"?>" + StoredTwoFunctions()));
    CallEveryExport(Dll(), Balanced);
    EXPECT_TRUE(IsWellFormed(installation.UserFile()));
}

TEST_F(BadInputTest, EveryExportSurvivesUtf16WithoutBom) {
    WriteDefaults(Utf16(TwoFunctions));
    WriteUserSettings(Utf16("<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + StoredTwoFunctions()));
    CallEveryExport(Dll(), Balanced);
    EXPECT_TRUE(IsWellFormed(installation.UserFile()));
}

// ---- Another structure ----

TEST_F(BadInputTest, RootOfAnyNameIsReadAndKept) {
    WriteDefaults(R"(<Any><Functions>
        <Function ID="1"><Display/><Commands/><Default ACParamIndex="2" DCParamIndex="3"/></Function>
    </Functions></Any>)");
    WriteUserSettings("<Other><PowerSchemes>" + OldScheme(BalancedText, OldFunction(1, 7, 8)) +
                      "</PowerSchemes></Other>");
    EXPECT_EQ(Dll().GetFuncCount(), 1u);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {11, 12}}}));
    EXPECT_EQ(UserSettings(),
              SavedXml{"<Other><PowerSchemes>" + OldScheme(BalancedText, OldFunction(1, 11, 12)) +
                       "</PowerSchemes></Other>\n"});
}

TEST_F(BadInputTest, RootNamedFunctionsIsNotReadAsSection) {
    WriteDefaults(R"(<Functions><Function ID="1"><Display/><Commands/></Function></Functions>)");
    ExpectNoCatalogue();
}

TEST_F(BadInputTest, DefaultNamespaceMakesCatalogueUnavailable) {
    WriteDefaults(R"(<R xmlns="urn:any"><Functions/></R>)");
    ExpectNoCatalogue();
}

TEST_F(BadInputTest, UnknownContentOfUserSettingsSurvivesSave) {
    WriteDefaults(TwoFunctions);
    WriteUserSettings(R"(<R v="1"><!--mine--><Mine a="1"><b/></Mine><PowerSchemes x="y">)" +
                      OldScheme(HighPerformanceText, R"(<Function ID="1" Mine="z"/>)") +
                      "</PowerSchemes><CommonSettings S=\"t\"/></R>");
    EXPECT_TRUE(SetParameter(Balanced, {{1, {11, 12}}}));
    EXPECT_EQ(UserSettings(), SavedXml{R"(<R v="1"><!--mine--><Mine a="1"><b/></Mine><PowerSchemes x="y">)" +
                                       OldScheme(HighPerformanceText, R"(<Function ID="1" Mine="z"/>)") +
                                       NewScheme(BalancedText, NewFunction(1, 11, 12)) +
                                       "</PowerSchemes><CommonSettings S=\"t\"/></R>\n"});
}

TEST_F(BadInputTest, SectionsOfWrongKindAreIgnored) {
    WriteDefaults(R"(<R Functions="1"><?Functions ?><!--Functions--><functions/>Functions</R>)");
    ExpectNoCatalogue();
}

// ---- Values ----

TEST_F(BadInputTest, IdAbove32BitsSaturatesAndIsCounted) {
    WriteFunctions(Function(1) + R"(<Function ID="99999999999999999999"><Display/><Commands/></Function>)");
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
}

TEST_F(BadInputTest, NegativeIdMakesCatalogueUnavailable) {
    WriteFunctions(Function(1) + Function(-1));
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

TEST_F(BadInputTest, IdBelow32BitsMakesCatalogueUnavailable) {
    WriteFunctions(R"(<Function ID="-99999999999999999999"><Display/><Commands/></Function>)");
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

TEST_F(BadInputTest, StoredNumbersSaturateOrReadAsZero) {
    WriteFunctions(Function(1));
    WriteBalanced(R"(<Function ID="99999999999" ACParamIndex="1" DCParamIndex="1"/>
                     <Function ID="1" ACParamIndex="-99999999999" DCParamIndex="x"/>
                     <Function ID="-7" ACParamIndex="" DCParamIndex="-1"/>
                     <Function ID="zero" ACParamIndex="2147483648" DCParamIndex="-2147483648"/>)");
    EXPECT_EQ(GetParameter(Balanced),
              (Params{{-7, {0, -1}}, {0, {INT_MAX, INT_MIN}}, {1, {INT_MIN, 0}}, {INT_MAX, {1, 1}}}));
}

TEST_F(BadInputTest, MalformedGuidsDoNotMatchScheme) {
    WriteDefaults(TwoFunctions);
    WriteSchemes(OldScheme(std::string(100000, '3'), "") + OldScheme("", "") +
                 OldScheme("{" + std::string{BalancedText} + "}", "") +
                 OldScheme(BalancedText, OldFunction(1, 7, 8) + OldFunction(2, 9, 10)));
    EXPECT_EQ(GetParameter(Balanced), StoredForTwoFunctions);
}

// ---- Size ----

class HugeFileTest : public BadInputTest {
protected:
    static constexpr int Count = 10000;

    HugeFileTest() {
        std::string functions;
        for (int id = 0; id < Count; ++id)
            functions += Function(id, R"(<Default ACParamIndex="2" DCParamIndex="3"/>)");
        WriteFunctions(functions);
    }
};

TEST_F(HugeFileTest, TenThousandFunctionsAreCounted) {
    EXPECT_EQ(Dll().GetFuncCount(), std::uint32_t{Count});
}

TEST_F(HugeFileTest, TenThousandFunctionsAreStoredAndReadBack) {
    EXPECT_EQ(GetParameter(Balanced).size(), std::size_t{Count});
    EXPECT_TRUE(SetParameter(Balanced, {{0, {7, 8}}, {Count - 1, {9, 10}}}));
    Unload();
    const Params params = GetParameter(Balanced);
    ASSERT_EQ(params.size(), std::size_t{Count});
    EXPECT_EQ(params.front(), (Params::value_type{0, {7, 8}}));
    EXPECT_EQ(params[1], (Params::value_type{1, {2, 3}}));
    EXPECT_EQ(params.back(), (Params::value_type{Count - 1, {9, 10}}));
}

TEST_F(HugeFileTest, SchemeAfterTenThousandOthersIsFound) {
    std::string schemes;
    for (int i = 0; i < Count; ++i)
        schemes += OldScheme("00000000-0000-0000-0000-" + std::to_string(100000000000 + i), "");
    WriteSchemes(schemes + OldScheme(BalancedText, OldFunction(-1, 7, 8)));
    EXPECT_EQ(GetParameter(Balanced).front(), (Params::value_type{-1, {7, 8}}));
}

// ---- Missing files and folders, and folders in place of files ----

TEST_F(BadInputTest, MissingFilesMakeCatalogueUnavailableAndStayMissing) {
    ExpectNoCatalogue();
    EXPECT_FALSE(Dll().ResetDefault());
    for (const auto& file : {installation.DefaultsFile(), installation.UserFile(), installation.BaseFile(),
                             installation.StringTableFile()})
        EXPECT_FALSE(std::filesystem::exists(file)) << file;
}

TEST_F(BadInputTest, EveryExportSurvivesMissingFolders) {
    std::filesystem::remove_all(installation.ProgramFiles());
    std::filesystem::remove_all(installation.ProgramData());
    ExpectNoCatalogue();
    EXPECT_TRUE(SetParameter(Balanced, {{1, {11, 12}}}));
    CallEveryExport(Dll(), Balanced);
    EXPECT_FALSE(std::filesystem::exists(installation.ProgramFiles()));
    EXPECT_FALSE(std::filesystem::exists(installation.ProgramData()));
}

TEST_F(BadInputTest, MissingUserFolderYieldsDefaults) {
    WriteDefaults(TwoFunctions);
    std::filesystem::remove_all(installation.ProgramData());
    EXPECT_EQ(GetParameter(Balanced), DefaultsOfTwoFunctions);
}

TEST_F(BadInputTest, EveryExportSurvivesFoldersNamedLikeFiles) {
    for (const auto& file : {installation.DefaultsFile(), installation.UserFile(), installation.BaseFile(),
                             installation.StringTableFile()})
        std::filesystem::create_directory(file);
    ExpectNoCatalogue();
    CallEveryExport(Dll(), Balanced);
    EXPECT_TRUE(std::filesystem::is_directory(installation.DefaultsFile()));
    EXPECT_TRUE(std::filesystem::is_directory(installation.UserFile()));
}

TEST_F(BadInputTest, FolderNamedLikeUserFileIsNotReplaced) {
    WriteDefaults(TwoFunctions);
    std::filesystem::create_directory(installation.UserFile());
    EXPECT_EQ(GetParameter(Balanced), DefaultsOfTwoFunctions);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {11, 12}}}));
    EXPECT_TRUE(std::filesystem::is_directory(installation.UserFile()));
    EXPECT_FALSE(std::filesystem::exists(TemporaryFile()));
}

TEST_F(BadInputTest, FileNamedLikeUserFolderIsNotReplaced) {
    WriteDefaults(TwoFunctions);
    const std::filesystem::path folder = installation.UserFile().parent_path();
    std::filesystem::remove_all(folder);
    WriteFile(folder, "a file");
    EXPECT_EQ(GetParameter(Balanced), DefaultsOfTwoFunctions);
    EXPECT_EQ(ReadFile(folder), "a file");
}

TEST_F(BadInputTest, FileOpenWithoutSharingIsNotReplaced) {
    WriteDefaults(TwoFunctions);
    WriteUserSettings(StoredTwoFunctions());
    const HANDLE locked = CreateFileW(installation.UserFile().c_str(), GENERIC_READ, 0, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_EQ(GetParameter(Balanced), DefaultsOfTwoFunctions);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {11, 12}}}));
    CloseHandle(locked);
    EXPECT_EQ(UserSettings(), StoredTwoFunctions());
    EXPECT_EQ(GetParameter(Balanced), StoredForTwoFunctions);
}

}  // namespace ZOTDam::Test
