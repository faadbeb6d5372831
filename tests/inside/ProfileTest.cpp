// Tests of a data file's DOM document that are not possible through the exports.
#include "xml/Profile.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>

#include "platform/File.h"
#include "platform/FileInFolder.h"
#include "support/DomLoads.h"
#include "support/DomOutput.h"
#include "support/FileTimes.h"
#include "support/Installation.h"
#include "support/Markup.h"
#include "support/SavedXml.h"
#include "xml/Documents.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Test {

namespace {

class Profile : public CZOTProfile {
public:
    using CZOTProfile::ClearSection;
    using CZOTProfile::CreateRoot;
    using CZOTProfile::CZOTProfile;
    using CZOTProfile::FileExists;
    using CZOTProfile::FindSection;
    using CZOTProfile::Load;
    using CZOTProfile::LoadResult;
    using CZOTProfile::Path;
    using CZOTProfile::Write;
};

using Result = Profile::LoadResult;

}  // namespace

class ProfileTest : public testing::Test {
protected:
    // Loads a document with the given content.
    void Load(std::string_view xml) {
        WriteFile(file, xml);
        ASSERT_EQ(profile.Load(), Result::Loaded);
    }

    // Saves the document and returns the content of its file.
    std::string Save() {
        EXPECT_TRUE(profile.Write());
        return ReadFile(file);
    }

    Installation installation;
    ComScope com;
    const std::filesystem::path file = installation.UserFile();
    Profile profile{file.wstring()};
};

// ---- Loading and saving ----

TEST_F(ProfileTest, NewDocumentHasNoRoot) {
    EXPECT_EQ(profile.FindRoot(), nullptr);
    EXPECT_EQ(profile.Path(), file.wstring());
}

TEST_F(ProfileTest, ExistingFileIsLoaded) {
    EXPECT_FALSE(profile.FileExists());
    Load("<R><A/></R>");
    EXPECT_TRUE(profile.FileExists());
    EXPECT_EQ(XmlOf(profile.FindRoot()), L"<R><A/></R>");
}

TEST_F(ProfileTest, RootOfAnyNameIsAccepted) {
    Load("<!--first--><x:Any xmlns:x='urn:x'/>");
    EXPECT_NE(profile.FindRoot(), nullptr);
}

TEST_F(ProfileTest, MissingFileFailsToLoad) {
    EXPECT_EQ(profile.Load(), Result::NotRead);
    EXPECT_EQ(profile.FindRoot(), nullptr);
}

TEST_F(ProfileTest, FailedLoadLeavesEmptyDocument) {
    Load("<R/>");
    WriteFile(file, "<R>");
    EXPECT_EQ(profile.Load(), Result::NotWellFormed);
    EXPECT_EQ(profile.FindRoot(), nullptr);
}

TEST_F(ProfileTest, DocumentTypeLeavesEmptyDocument) {
    Load("<R/>");
    WriteFile(file, "<!DOCTYPE R><R/>");
    EXPECT_EQ(profile.Load(), Result::NotWellFormed);
    EXPECT_EQ(profile.FindRoot(), nullptr);
}

TEST_F(ProfileTest, UnreadFileLeavesEmptyDocument) {
    Load("<R/>");
    std::filesystem::remove(file);
    EXPECT_EQ(profile.Load(), Result::NotRead);
    EXPECT_EQ(profile.FindRoot(), nullptr);
}

TEST_F(ProfileTest, RetryAfterFailedLoadSucceeds) {
    WriteFile(file, "no XML");
    EXPECT_EQ(profile.Load(), Result::NotWellFormed);
    Load("<R/>");
    EXPECT_NE(profile.FindRoot(), nullptr);
}

TEST_F(ProfileTest, SecondLoadReplacesDocument) {
    Load("<Old/>");
    Load("<New/>");
    EXPECT_EQ(XmlOf(profile.FindRoot()), L"<New/>");
}

TEST_F(ProfileTest, MissingFolderFailsToWrite) {
    Load("<R/>");
    std::filesystem::remove_all(file.parent_path());
    EXPECT_FALSE(profile.Write());
}

TEST_F(ProfileTest, EmptyPathNamesNoFile) {
    Profile nowhere{L""};
    EXPECT_FALSE(nowhere.FileExists());
    EXPECT_EQ(nowhere.Load(), Result::NotRead);
    EXPECT_FALSE(nowhere.Write());
}

TEST_F(ProfileTest, CreatedRootFollowsXmlDeclaration) {
    profile.CreateRoot(L"Root");
    EXPECT_EQ(Save(), SavedXml{"<?xml version='1.0' encoding='UTF-8'?>\n<Root/>\n"});
}

TEST_F(ProfileTest, FailedRootCreationLeavesNoSecondDeclaration) {
    {
        const FailingDomMethod failure{DomMethod::CreateElement};
        EXPECT_THROW(profile.CreateRoot(L"Root"), _com_error);
    }
    profile.CreateRoot(L"Root");
    EXPECT_EQ(Save(), SavedXml{"<?xml version='1.0' encoding='UTF-8'?>\n<Root/>\n"});
}

TEST_F(ProfileTest, FailedDomLoadLeavesEmptyDocument) {
    Load("<Old/>");
    WriteFile(file, "<New/>");
    const FailingDomMethod failure{DomMethod::Load};
    EXPECT_EQ(profile.Load(), Result::Failed);
    EXPECT_EQ(profile.FindRoot(), nullptr);
}

TEST_F(ProfileTest, DocumentTooLargeToLoadIsNotSaved) {
    Load("<R/>");
    const DomOutput spaces{
        [](std::string_view xml) { return std::string{xml}.append(std::size_t{MaxFileSize}, ' '); }};
    EXPECT_FALSE(profile.Write());
    EXPECT_EQ(std::filesystem::file_size(file), 4u);
}

// ---- Children and sections ----

TEST_F(ProfileTest, FirstMatchingChildIsReturned) {
    Load("<R><A n='1'/><A n='2'/></R>");
    EXPECT_EQ(XmlOf(profile.GetChildNode(profile.FindRoot(), L"A")), L"<A n=\"1\"/>");
}

TEST_F(ProfileTest, MissingChildIsCreatedOnce) {
    Load("<R><B/></R>");
    EXPECT_EQ(XmlOf(profile.GetChildNode(profile.FindRoot(), L"A")), L"<A/>");
    profile.GetChildNode(profile.FindRoot(), L"A");
    EXPECT_EQ(XmlOf(profile.FindRoot()), L"<R><B/><A/></R>");
}

TEST_F(ProfileTest, ChildInNamespaceIsNoMatch) {
    Load("<R><A xmlns='urn:x'/></R>");
    profile.GetChildNode(profile.FindRoot(), L"A");
    EXPECT_NE(profile.FindSection(L"A"), nullptr);
}

TEST_F(ProfileTest, NullParentReturnsNullChild) {
    Load("<R/>");
    EXPECT_EQ(profile.GetChildNode(nullptr, L"A"), nullptr);
    EXPECT_EQ(XmlOf(profile.FindRoot()), L"<R/>");
}

TEST_F(ProfileTest, FindingSectionCreatesNothing) {
    EXPECT_EQ(profile.FindSection(L"A"), nullptr);
    Load("<R><B><A/></B></R>");
    EXPECT_EQ(profile.FindSection(L"A"), nullptr);
    EXPECT_EQ(XmlOf(profile.FindRoot()), L"<R><B><A/></B></R>");
}

TEST_F(ProfileTest, ClearingSectionRemovesOnlyItsChildren) {
    Load("<R><A n='1'><B/>text<!--c--></A><C><D/></C></R>");
    EXPECT_TRUE(profile.ClearSection(L"A"));
    EXPECT_EQ(XmlOf(profile.FindRoot()), L"<R><A n=\"1\"/><C><D/></C></R>");
}

TEST_F(ProfileTest, ClearingAffectsFirstMatchingSection) {
    Load("<R><A><B/></A><A><B/></A></R>");
    EXPECT_TRUE(profile.ClearSection(L"A"));
    EXPECT_EQ(XmlOf(profile.FindRoot()), L"<R><A/><A><B/></A></R>");
}

TEST_F(ProfileTest, ClearingEmptySectionReturnsFalse) {
    Load("<R><A n='1'/></R>");
    EXPECT_FALSE(profile.ClearSection(L"A"));
    EXPECT_EQ(XmlOf(profile.FindRoot()), L"<R><A n=\"1\"/></R>");
}

TEST_F(ProfileTest, ClearingMissingSectionCreatesIt) {
    Load("<R/>");
    EXPECT_FALSE(profile.ClearSection(L"A"));
    EXPECT_EQ(XmlOf(profile.FindRoot()), L"<R><A/></R>");
}

TEST_F(ProfileTest, ClearingWithoutRootCreatesNothing) {
    EXPECT_FALSE(profile.ClearSection(L"A"));
    EXPECT_EQ(profile.FindRoot(), nullptr);
}

// ---- Without COM on the thread ----

TEST_F(ProfileTest, UninitialisedComFailsDocumentOperations) {
    WriteFile(file, "<R><A/></R>");
    const Markup elsewhere{L"<R/>"};
    const std::jthread thread{[&] {
        Profile without{file.wstring()};
        EXPECT_TRUE(without.FileExists());
        EXPECT_EQ(without.Load(), Result::Failed);
        EXPECT_EQ(without.FindRoot(), nullptr);
        EXPECT_EQ(without.CreateRoot(L"R"), nullptr);
        EXPECT_EQ(without.FindSection(L"A"), nullptr);
        EXPECT_EQ(without.GetChildNode(nullptr, L"A"), nullptr);
        EXPECT_EQ(without.GetChildNode(elsewhere.Root(), L"A"), nullptr);
        EXPECT_FALSE(without.ClearSection(L"A"));
        EXPECT_FALSE(without.Write());
    }};
    EXPECT_EQ(ReadFile(file), "<R><A/></R>");
}

TEST_F(ProfileTest, UninitialisedComLeavesFilesWithoutSections) {
    WriteFile(file, "<R><PowerSchemes><PowerScheme/></PowerSchemes></R>");
    const std::jthread thread{[&] {
        CXmlZOTPowercfg settings;
        settings.Open();
        EXPECT_EQ(settings.PowerSchemes(), nullptr);
        EXPECT_EQ(settings.CommonSettings(), nullptr);
        EXPECT_FALSE(settings.ResetSkeleton());
        EXPECT_FALSE(settings.Save());
        EXPECT_EQ(CXmlZOTDefault{}.FindFunctions(), nullptr);
        EXPECT_EQ(CXmlZOTDefault{}.Functions(), nullptr);
        EXPECT_EQ(CXmlZOTBase{}.Functions(), nullptr);
    }};
    EXPECT_EQ(ReadFile(file), "<R><PowerSchemes><PowerScheme/></PowerSchemes></R>");
}

// ---- The base catalogue ----

TEST_F(ProfileTest, BaseCatalogueReturnsNullForNullParent) {
    CXmlZOTBase base;
    EXPECT_EQ(base.GetChildNode(nullptr, L"Functions"), nullptr);
}

TEST_F(ProfileTest, BaseCatalogueFindsItsSections) {
    WriteFile(installation.BaseFile(),
              "<B><Functions n='1'/><SpecSchemes n='2'/><CommonSettings n='3'/></B>");
    CXmlZOTBase base;
    EXPECT_EQ(XmlOf(base.Functions()), L"<Functions n=\"1\"/>");
    EXPECT_EQ(XmlOf(base.SpecSchemes()), L"<SpecSchemes n=\"2\"/>");
    EXPECT_EQ(XmlOf(base.CommonSettings()), L"<CommonSettings n=\"3\"/>");
}

TEST_F(ProfileTest, BaseCatalogueCreatesNoSections) {
    WriteFile(installation.BaseFile(), "<B/>");
    CXmlZOTBase base;
    EXPECT_EQ(base.Functions(), nullptr);
    EXPECT_EQ(base.GetChildNode(base.FindRoot(), L"Functions"), nullptr);
    EXPECT_EQ(XmlOf(base.FindRoot()), L"<B/>");
}

TEST_F(ProfileTest, MissingBaseCatalogueIsEmpty) {
    CXmlZOTBase base;
    EXPECT_EQ(base.FindRoot(), nullptr);
    EXPECT_EQ(base.Functions(), nullptr);
}

// ---- The writable files ----

TEST_F(ProfileTest, MissingDefaultsFileYieldsRootInMemory) {
    EXPECT_EQ(XmlOf(CXmlZOTDefault{}.FindRoot()), L"<ZOTDefault/>");
    EXPECT_FALSE(std::filesystem::exists(installation.DefaultsFile()));
}

TEST_F(ProfileTest, FindingFunctionsInDefaultsCreatesNothing) {
    WriteFile(installation.DefaultsFile(), "<D/>");
    CXmlZOTDefault defaults;
    EXPECT_EQ(defaults.FindFunctions(), nullptr);
    EXPECT_EQ(XmlOf(defaults.FindRoot()), L"<D/>");
    EXPECT_NE(defaults.Functions(), nullptr);
    EXPECT_NE(defaults.FindFunctions(), nullptr);
}

TEST_F(ProfileTest, UserSettingsRootIsCreatedWithFirstSection) {
    CXmlZOTPowercfg settings;
    settings.Open();
    EXPECT_EQ(settings.FindRoot(), nullptr);
    EXPECT_NE(settings.CommonSettings(), nullptr);
    EXPECT_EQ(XmlOf(settings.FindRoot()), L"<OrloPowerCfg><CommonSettings/></OrloPowerCfg>");
}

TEST_F(ProfileTest, FirstSaveWritesDeclarationAndRoot) {
    CXmlZOTPowercfg settings;
    settings.PowerSchemes();
    EXPECT_TRUE(settings.Save());
    EXPECT_EQ(
        ReadFile(file),
        SavedXml{"<?xml version='1.0' encoding='UTF-8'?>\n<OrloPowerCfg><PowerSchemes/></OrloPowerCfg>\n"});
}

TEST_F(ProfileTest, ResetEmptiesBothSectionsAndSettingAttributes) {
    WriteFile(file,
              "<R><PowerSchemes n='1'><PowerScheme/></PowerSchemes><CommonSettings a='1' "
              "b='2'><C/></CommonSettings></R>");
    CXmlZOTPowercfg settings;
    settings.Open();
    EXPECT_TRUE(settings.ResetSkeleton());
    EXPECT_EQ(XmlOf(settings.FindRoot()), L"<R><PowerSchemes n=\"1\"/><CommonSettings/></R>");
}

TEST_F(ProfileTest, ResetWithoutSchemesKeepsSettings) {
    WriteFile(file, "<R><PowerSchemes/><CommonSettings a='1'/></R>");
    CXmlZOTPowercfg settings;
    settings.Open();
    EXPECT_FALSE(settings.ResetSkeleton());
    EXPECT_EQ(XmlOf(settings.CommonSettings()), L"<CommonSettings a=\"1\"/>");
}

TEST_F(ProfileTest, SettingsOfDeletedFileAreDropped) {
    WriteFile(file, "<R><PowerSchemes><PowerScheme/></PowerSchemes><CommonSettings a='1'/></R>");
    CXmlZOTPowercfg settings;
    settings.Open();
    std::filesystem::remove(file);
    settings.Open();
    EXPECT_EQ(XmlOf(settings.FindRoot()), L"<R><PowerSchemes/><CommonSettings/></R>");
}

// ---- Unchanged files ----

class UnchangedProfileTest : public ProfileTest {
protected:
    // Loads a file that counts as old.
    void SetUp() override {
        WriteFile(file, "<R/>");
        clock.StopAt(ChangeTimeOf(file) + 10 * OneSecond);
        settings.Open();
        EXPECT_EQ(LoadsOfOpen(), 0u);
    }

    std::size_t LoadsOfOpen() {
        const DomLoads loads;
        settings.Open();
        return loads.sources.size();
    }

    FakeClock clock{GetModuleHandleW(nullptr)};
    CXmlZOTPowercfg settings;
};

TEST_F(UnchangedProfileTest, ChangedDocumentIsLoadedAgain) {
    settings.CommonSettings();
    EXPECT_EQ(LoadsOfOpen(), 1u);
}

TEST_F(UnchangedProfileTest, SkippedSaveWithoutChangeCausesLoad) {
    const HANDLE marker = CreateMutexW(nullptr, FALSE, L"XmlZOTPowercfgMutex");
    EXPECT_TRUE(settings.Save());
    CloseHandle(marker);
    EXPECT_EQ(LoadsOfOpen(), 1u);
}

TEST_F(UnchangedProfileTest, FailedSaveWithoutChangeCausesLoad) {
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY);
    clock.StopAt(ChangeTimeOf(file) + 10 * OneSecond);
    EXPECT_EQ(LoadsOfOpen(), 1u);
    EXPECT_FALSE(settings.Save());
    EXPECT_EQ(LoadsOfOpen(), 1u);
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
}

// ---- Paths ----

TEST_F(ProfileTest, FolderIsExpandedAndFileNameAppended) {
    SetEnvironmentVariableW(L"ZOTDamTest", L"C:\\Folder");
    EXPECT_EQ(FileInFolder(L"%ZOTDamTest%\\", L"file.xml", 256), L"C:\\Folder\\file.xml");
}

// The prefix of long paths disables the replacement of two backslashes by one.
TEST_F(ProfileTest, LongPathIsPrefixedOnlyIfNormalised) {
    const std::wstring folder = L"C:\\" + std::wstring(240, L'f');
    EXPECT_EQ(FileInFolder((folder + L"\\").c_str(), L"file.xml", 256), L"\\\\?\\" + folder + L"\\file.xml");
    EXPECT_EQ(FileInFolder((folder + L"\\\\").c_str(), L"file.xml", 256), folder + L"\\\\file.xml");
}

TEST_F(ProfileTest, TooLongFolderReturnsEmptyPath) {
    SetEnvironmentVariableW(L"ZOTDamTest", std::wstring(254, L'f').c_str());
    EXPECT_EQ(FileInFolder(L"%ZOTDamTest%\\", L"file.xml", 256), std::wstring(254, L'f') + L"\\file.xml");
    EXPECT_EQ(FileInFolder(L"%ZOTDamTest%f\\", L"file.xml", 256), L"");
}

}  // namespace ZOTDam::Test
