// Tests with hostile XML in each of the four data files: entities that refer to other files, entities that
// expand exponentially, and deep nesting. tests/stress/FloodTest.cpp tests files of an excessive size.
#include "support/CheckingClient.h"
#include "support/EntityBombs.h"
#include "support/HostileFileTest.h"
#include "support/XmlFile.h"

namespace ZOTDam::Test {

// ---- External references ----

namespace {

// The content of a file that the library must not read.
constexpr char Secret[] = "the-secret";
constexpr wchar_t WideSecret[] = L"the-secret";

// [folder] and [uri] are replaced with the path and the URI of the folder with the secret files.
std::vector<HostileContent> ExternalReferences() {
    return {
        {"EntityWithUri", R"(<!DOCTYPE R [<!ENTITY spy SYSTEM "[uri]/secret.txt">]>)", "plain", "&spy;"},
        {"EntityWithPath", R"(<!DOCTYPE R [<!ENTITY spy SYSTEM "[folder]\secret.txt">]>)", "plain", "&spy;"},
        {"EntityWithRelativePath", R"(<!DOCTYPE R [<!ENTITY spy SYSTEM "secret.txt">]>)", "plain", "&spy;"},
        {"PublicEntity", R"(<!DOCTYPE R [<!ENTITY spy PUBLIC "any" "[uri]/secret.txt">]>)", "plain", "&spy;"},
        {"EntityWithMarkup", R"(<!DOCTYPE R [<!ENTITY spy SYSTEM "[uri]/secret.xml">]>)", "plain", "&spy;"},
        {"NestedEntity", R"(<!DOCTYPE R [<!ENTITY spy SYSTEM "[uri]/secret.txt"><!ENTITY outer "&spy;">]>)",
         "plain", "&outer;"},
        {"DocumentType", R"(<!DOCTYPE R SYSTEM "[uri]/secret.dtd">)", "&leak;", "&leak;"},
        {"DocumentTypeWithRelativePath", R"(<!DOCTYPE R SYSTEM "secret.dtd">)", "&leak;", "&leak;"},
        {"DocumentTypeWithDefaults", R"(<!DOCTYPE R SYSTEM "[uri]/secret.dtd">)"},
        {"ParameterEntity", R"(<!DOCTYPE R [<!ENTITY % spy SYSTEM "[uri]/secret.dtd"> %spy;]>)", "&leak;",
         "&leak;"},
        {"ParameterEntityWithDefaults", R"(<!DOCTYPE R [<!ENTITY % spy SYSTEM "[uri]/secret.dtd"> %spy;]>)"},
        {"Inclusion",
         {},
         "plain",
         R"(<i:include xmlns:i="http://www.w3.org/2001/XInclude" href="[uri]/secret.txt" parse="text"/>)"},
        {"StyleSheet", R"(<?xml-stylesheet type="text/xsl" href="[uri]/secret.xml"?>)"},
        {"Schema",
         {},
         "plain",
         {},
         R"(xmlns:x="http://www.w3.org/2001/XMLSchema-instance"
            x:noNamespaceSchemaLocation="[uri]/secret.xml")"},
    };
}

}  // namespace

class ExternalReferenceTest : public HostileFileTest, public testing::WithParamInterface<HostileCase> {
protected:
    const Target& File() const { return std::get<Target>(GetParam()); }

    // Returns the folder of the tested data file. Relative paths in the file refer to the secret files in it.
    std::filesystem::path Folder() const { return (installation.*File().file)().parent_path(); }

    void WriteSecrets() const {
        const std::string secret = Secret;
        WriteFile(Folder() / "secret.txt", secret);
        WriteFile(Folder() / "secret.xml", R"(<Function ID="9" Name=")" + secret +
                                               R"("><Display/><Commands/>)" + secret + "</Function>");
        WriteFile(Folder() / "secret.dtd", R"(<!ENTITY leak ")" + secret +
                                               R"("><!ATTLIST CommonSettings Leak CDATA ")" + secret +
                                               R"("><!ATTLIST Function Group CDATA ")" + secret + R"(">)");
    }

    void WriteHostileFile() const {
        const std::string uri = "file:///" + Replace(Folder().generic_string(), " ", "%20");
        const std::string xml = FillIn(File(), std::get<HostileContent>(GetParam()));
        WriteFile((installation.*File().file)(),
                  Replace(Replace(xml, "[uri]", uri), "[folder]", Folder().string()));
    }
};

INSTANTIATE_TEST_SUITE_P(, ExternalReferenceTest,
                         testing::Combine(testing::ValuesIn(Targets()),
                                          testing::ValuesIn(ExternalReferences())),
                         NameOfCase);

TEST_P(ExternalReferenceTest, ContentOfOtherFilesIsNotDisclosed) {
    WriteSecrets();
    WriteHostileFile();
    const std::wstring results = ReadEverything(Dll(), Balanced);
    EXPECT_EQ(results.find(WideSecret), std::wstring::npos) << testing::PrintToString(results);
    EXPECT_EQ(CheckingClient{Dll()}.ReadSetting(L"Leak"), L"");
    CallEveryExport(Dll(), Balanced);
    EXPECT_EQ(UserSettings().find(Secret), std::string::npos) << UserSettings();
    EXPECT_EQ(Defaults().find(Secret), std::string::npos) << Defaults();
}

// Verifies that the previous test would detect the secret in the results.
class SecretDetectionTest : public HostileFileTest, public testing::WithParamInterface<Target> {};

INSTANTIATE_TEST_SUITE_P(, SecretDetectionTest, testing::ValuesIn(Targets()),
                         [](const auto& info) { return info.param.name; });

TEST_P(SecretDetectionTest, SecretInDataFileIsDetected) {
    Write(GetParam(), {"Open", {}, "plain", Secret, R"(Leak="the-secret")"});
    const std::wstring results = ReadEverything(Dll(), Balanced) + CheckingClient{Dll()}.ReadSetting(L"Leak");
    EXPECT_NE(results.find(WideSecret), std::wstring::npos) << testing::PrintToString(results);
}

// ---- Entity expansion and nesting ----

namespace {

std::vector<HostileContent> EntityBombs() {
    return {
        {"EntitiesInElements", GrowingEntities(30, "boom"), "plain", "&a30;"},
        {"EntitiesInAttributes", GrowingEntities(30, "boom"), "&a30;"},
        {"FewerEntitiesInElements", GrowingEntities(7, "boom"), "plain", "&a7;"},
        {"FewerEntitiesInAttributes", GrowingEntities(7, "boom"), "&a7;"},
        {"EntitiesOfElements", GrowingEntities(7, "<Function ID='5'/>"), "plain", "&a7;"},
        {"RecursiveEntity", R"(<!DOCTYPE R [<!ENTITY x "&y;"><!ENTITY y "&x;">]>)", "&x;", "&x;"},
        {"ParameterEntities", GrowingParameterEntities(30)},
        {"FewerParameterEntities", GrowingParameterEntities(4)},
        {"LargeEntityInElements", EntityOf(100000), "plain", Repeat("&x;", 10)},
        {"LargeEntityInAttributes", EntityOf(100000), Repeat("&x;", 10)},
        {"RepeatedLargeEntityInElements", EntityOf(100000), "plain", Repeat("&x;", 10000)},
        {"RepeatedLargeEntityInAttributes", EntityOf(100000), Repeat("&x;", 10000)},
        {"RepeatedSmallEntityInElements", EntityOf(10), "plain", Repeat("&x;", 100000)},
        {"RepeatedSmallEntityInAttributes", EntityOf(10), Repeat("&x;", 100000)},
        {"DeepNesting", {}, "plain", Repeat("<A>", 100000) + Repeat("</A>", 100000)},
        {"AllowedNesting", {}, "plain", Repeat("<A>", 240) + Repeat("</A>", 240)},
        {"UnclosedDeepNesting", {}, "plain", Repeat("<A>", 100000)},
    };
}

}  // namespace

class XmlExpansionTest : public HostileFileTest, public testing::WithParamInterface<HostileCase> {};

INSTANTIATE_TEST_SUITE_P(, XmlExpansionTest,
                         testing::Combine(testing::ValuesIn(Targets()), testing::ValuesIn(EntityBombs())),
                         NameOfCase);

TEST_P(XmlExpansionTest, EveryExportLeavesUserSettingsWellFormed) {
    const auto& [target, content] = GetParam();
    Write(target, content);
    CallEveryExport(Dll(), Balanced);
    EXPECT_TRUE(IsWellFormed(installation.UserFile()));
}

// ---- Document types ----

// The parameter is the text before the root element.
class RefusedDocumentTypeTest : public HostileFileTest, public testing::WithParamInterface<XmlCase> {
protected:
    std::string File() const {
        return GetParam().xml + "<R><Functions>" + Functions({1}) + "</Functions></R>";
    }
};

INSTANTIATE_TEST_SUITE_P(
    , RefusedDocumentTypeTest,
    testing::Values(XmlCase{"Plain", "<!DOCTYPE R>"}, XmlCase{"Empty", "<!DOCTYPE R []>"},
                    XmlCase{"InternalEntity", R"(<!DOCTYPE R [<!ENTITY unit "Brightness">]>)"},
                    XmlCase{"InternalAttribute", R"(<!DOCTYPE R [<!ATTLIST Function Name CDATA "x">]>)"},
                    XmlCase{"SystemIdentifier", R"(<!DOCTYPE R SYSTEM "other.dtd">)"},
                    XmlCase{"PublicIdentifier", R"(<!DOCTYPE R PUBLIC "any" "other.dtd">)"}),
    CaseName<XmlCase>);

TEST_P(RefusedDocumentTypeTest, DefaultsWithDocumentTypeAreNotRead) {
    WriteDefaults(File());
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

TEST_P(RefusedDocumentTypeTest, SaveKeepsCopyOfRefusedFile) {
    WriteUserSettings(File());
    EXPECT_TRUE(Dll().SetCommonSetting(L"Name", L"value"));
    EXPECT_TRUE(IsWellFormed(installation.UserFile()));
    EXPECT_EQ(UserSettings().find("DOCTYPE"), std::string::npos);
    EXPECT_EQ(ReadFile(UnreadableCopyOf(installation.UserFile())), File());
}

using InternalEntityTest = HostileFileTest;

TEST_F(InternalEntityTest, EntityDeclarationOutsideDocumentTypeIsIgnored) {
    WriteDefaults("<R><!--<!ENTITY % p ''>--><![CDATA[<!ENTITY % p ''>]]><Functions>" + Functions({1, 2}) +
                  "</Functions></R>");
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
}

// ---- Regressions ----

class BaseCatalogueEntityTest : public HostileFileTest {
protected:
    BaseCatalogueEntityTest() {
        WriteBase(
            R"(<!DOCTYPE R [<!ENTITY mine "mine">]><R><Functions><Function ID="3"><Display>&mine;</Display>
            <Commands><CommandFamily><CommandItem/></CommandFamily></Commands></Function></Functions>
            <CommonSettings Setting="&mine;">&mine;</CommonSettings></R>)");
    }
};

TEST_F(BaseCatalogueEntityTest, CopiedFunctionKeepsDefaultsWellFormed) {
    FunctionBaseHolder holder;
    auto keep = MakeCallback<IGetFunctionBaseCallback>(
        [&](const FunctionBaseRecord* record) { holder.records.push_back(*record); });
    EXPECT_TRUE(Dll().GetFunctionBase(&keep));
    Dll().AddFunctionDefault(&holder);
    EXPECT_TRUE(IsWellFormed(installation.DefaultsFile())) << Defaults();
}

TEST_F(BaseCatalogueEntityTest, CopiedSettingsKeepDefaultsWellFormed) {
    Dll().InitCommonSetting();
    EXPECT_TRUE(IsWellFormed(installation.DefaultsFile())) << Defaults();
}

}  // namespace ZOTDam::Test
