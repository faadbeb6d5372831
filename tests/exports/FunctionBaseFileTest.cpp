// Tests of the base catalogue's file: where GetFunctionBase finds the functions, and when the file is read.
#include "support/DomDocuments.h"
#include "support/FunctionBaseTest.h"
#include "support/LongPaths.h"

namespace ZOTDam::Test {

namespace {

using IdList = std::vector<std::int32_t>;
using Records = std::vector<FunctionBase>;

}  // namespace

class FunctionBaseFileTest : public FunctionBaseTest {};

// ---- The section ----

class MissingBaseFunctionsTest : public FunctionBaseFileTest, public testing::WithParamInterface<XmlCase> {};

TEST_P(MissingBaseFunctionsTest, FileWithoutFunctionsYieldsNoRecords) {
    WriteBase(GetParam().xml);
    EXPECT_EQ(GetFunctionBase(), Records{});
    EXPECT_EQ(Content(installation.BaseFile()), GetParam().xml);
}

INSTANTIATE_TEST_SUITE_P(
    , MissingBaseFunctionsTest,
    testing::Values(XmlCase{"EmptyFile", ""}, XmlCase{"FileWithoutRoot", "<?xml version=\"1.0\"?>"},
                    XmlCase{"NotWellFormedFile", "<ZOTBase><Functions>" + BaseFunction(1) + "</Functions>"},
                    XmlCase{"RootWithoutSections", "<ZOTBase/>"},
                    XmlCase{"RootWithOtherSections", "<ZOTBase><CommonSettings/><SpecSchemes/></ZOTBase>"},
                    XmlCase{"EmptySection", "<ZOTBase><Functions/></ZOTBase>"},
                    XmlCase{"RootNamedFunctions", "<Functions>" + BaseFunction(1) + "</Functions>"},
                    XmlCase{"FunctionOutsideSection", "<ZOTBase>" + BaseFunction(1) + "</ZOTBase>"},
                    XmlCase{"NestedSection",
                            "<ZOTBase><All><Functions>" + BaseFunction(1) + "</Functions></All></ZOTBase>"},
                    XmlCase{"FunctionInSecondSection",
                            "<ZOTBase><Functions/><Functions>" + BaseFunction(1) + "</Functions></ZOTBase>"},
                    XmlCase{"SectionInDifferentCase",
                            "<ZOTBase><functions>" + BaseFunction(1) + "</functions></ZOTBase>"},
                    XmlCase{"SectionInDefaultNamespace", "<ZOTBase xmlns=\"urn:other\"><Functions>" +
                                                             BaseFunction(1) + "</Functions></ZOTBase>"},
                    XmlCase{"SectionWithNamespacePrefix", "<ZOTBase xmlns:o=\"urn:other\"><o:Functions>" +
                                                              BaseFunction(1) + "</o:Functions></ZOTBase>"},
                    XmlCase{"SectionInComment",
                            "<ZOTBase><!--<Functions>" + BaseFunction(1) + "</Functions>--></ZOTBase>"}),
    CaseName<XmlCase>);

TEST_F(FunctionBaseFileTest, MissingFileYieldsNoRecords) {
    EXPECT_EQ(GetFunctionBase(), Records{});
    EXPECT_FALSE(std::filesystem::exists(installation.BaseFile()));
}

TEST_F(FunctionBaseFileTest, MissingFolderYieldsNoRecords) {
    std::filesystem::remove_all(installation.ProgramFiles());
    EXPECT_EQ(GetFunctionBase(), Records{});
    EXPECT_FALSE(std::filesystem::exists(installation.ProgramFiles()));
}

TEST_F(FunctionBaseFileTest, FolderNamedLikeFileYieldsNoRecords) {
    std::filesystem::create_directory(installation.BaseFile());
    EXPECT_EQ(GetFunctionBase(), Records{});
}

TEST_F(FunctionBaseFileTest, FileInInstallationFolderIsNotRead) {
    WriteFile(installation.DefaultsFile().parent_path() / L"ZOTBase.xml",
              "<ZOTBase><Functions>" + BaseFunction(1) + "</Functions></ZOTBase>");
    EXPECT_EQ(GetFunctionBase(), Records{});
}

TEST_F(FunctionBaseFileTest, RootOfAnyNameIsAccepted) {
    WriteBase("<o:Any xmlns:o=\"urn:other\"><Functions>" + BaseFunction(1) + "</Functions></o:Any>");
    EXPECT_EQ(Ids(GetFunctionBase()), IdList{1});
}

TEST_F(FunctionBaseFileTest, FirstOfTwoSectionsIsRead) {
    WriteBase("<ZOTBase><Functions>" + BaseFunction(1) + "</Functions><Functions>" + BaseFunction(2) +
              "</Functions></ZOTBase>");
    EXPECT_EQ(Ids(GetFunctionBase()), IdList{1});
}

TEST_F(FunctionBaseFileTest, SectionAfterOneInNamespaceIsRead) {
    WriteBase("<ZOTBase><Functions xmlns=\"urn:other\"/><Functions>" + BaseFunction(1) +
              "</Functions></ZOTBase>");
    EXPECT_EQ(Ids(GetFunctionBase()), IdList{1});
}

// ---- When the file is read ----

TEST_F(FunctionBaseFileTest, RecordsStayWhenFileChanges) {
    EXPECT_EQ(IdsOf(BaseFunction(1)), IdList{1});
    EXPECT_EQ(IdsOf(BaseFunctions({2, 3})), IdList{1});
    Unload();
    EXPECT_EQ(Ids(GetFunctionBase()), (IdList{2, 3}));
}

TEST_F(FunctionBaseFileTest, RecordsStayWhenFileIsDeleted) {
    EXPECT_EQ(IdsOf(BaseFunction(1)), IdList{1});
    std::filesystem::remove(installation.BaseFile());
    EXPECT_EQ(Ids(GetFunctionBase()), IdList{1});
}

TEST_F(FunctionBaseFileTest, FileCreatedAfterFirstReadIsIgnored) {
    EXPECT_EQ(GetFunctionBase(), Records{});
    EXPECT_EQ(IdsOf(BaseFunction(1)), IdList{});
}

TEST_F(FunctionBaseFileTest, UnreadableFileIsNotReadAgain) {
    WriteBase("<ZOTBase>");
    EXPECT_EQ(GetFunctionBase(), Records{});
    EXPECT_EQ(IdsOf(BaseFunction(1)), IdList{});
}

TEST_F(FunctionBaseFileTest, RepeatedReadsCreateOneDocument) {
    WriteBaseFunctions(BaseFunction(1));
    DomDocuments documents{Dll().Handle()};
    GetFunctionBase();
    GetFunctionBase();
    EXPECT_EQ(documents.CreatedCount(), 1u);
}

TEST_F(FunctionBaseFileTest, NullCallbackCreatesNoDocument) {
    WriteBaseFunctions(BaseFunction(1));
    DomDocuments documents{Dll().Handle()};
    EXPECT_FALSE(Dll().GetFunctionBase(nullptr));
    EXPECT_EQ(documents.CreatedCount(), 0u);
}

TEST_F(FunctionBaseFileTest, MissingDomYieldsNoRecords) {
    WriteBaseFunctions(BaseFunction(1));
    DomDocuments documents{Dll().Handle()};
    documents.Fail(E_OUTOFMEMORY);
    EXPECT_EQ(GetFunctionBase(), Records{});
    documents.Fail(S_OK);
    EXPECT_EQ(GetFunctionBase(), Records{});
}

TEST_F(FunctionBaseFileTest, MarkersOfAnotherProcessDoNotBlockRead) {
    const SecondProcess one{HoldMutex, {DefaultsMarker}};
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_EQ(IdsOf(BaseFunctions({1, 2})), (IdList{1, 2}));
}

TEST_F(FunctionBaseFileTest, ReadWritesNoFile) {
    RecordsOf(BaseFunction(1));
    Unload();
    EXPECT_EQ(Content(installation.BaseFile()),
              "<ZOTBase><Functions>" + BaseFunction(1) + "</Functions></ZOTBase>");
    EXPECT_FALSE(std::filesystem::exists(installation.DefaultsFile()));
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(FunctionBaseFileTest, FileInFolderOf255UnitsIsRead) {
    SetLongPath(L"ProgramFiles", installation.ProgramFiles(), L"\\Orlo\\QUEN Power Management\\data\\", 255);
    EXPECT_EQ(IdsOf(BaseFunction(1)), IdList{1});
}

TEST_F(FunctionBaseFileTest, FileInOverlongFolderIsNotRead) {
    SetLongInstallationPath(installation.ProgramFiles(), 256);
    EXPECT_EQ(IdsOf(BaseFunction(1)), IdList{});
}

}  // namespace ZOTDam::Test
