// Tests that zotdamctl doctor reports each file that the library cannot read or write, and that the library
// behaves as reported.
#include "client/DoctorTest.h"
#include "support/EntityBombs.h"
#include "support/FileSize.h"
#include "support/OpenFile.h"

namespace ZOTDam::Test {

namespace {

// The data that the library loses with a file: the consequence that the finding reports, and a check of it.
struct Loss {
    std::string name;
    File file;
    std::string consequence;
    void (*check)(DoctorTest&);
};

void PrintTo(const Loss& loss, std::ostream* out) {
    *out << loss.name;
}

const Loss Base = {
    "Base", File::Base,
    "the library has no base functions and no spec schemes, and cannot initialise the common settings",
    [](DoctorTest& test) {
        EXPECT_TRUE(test.BaseFunctions().empty());
        EXPECT_TRUE(test.SpecSchemes().empty());
        EXPECT_FALSE(test.Dll().InitCommonSetting());
    }};

const Loss Catalogue = {"Defaults", File::Defaults, "the library cannot load the catalogue",
                        [](DoctorTest& test) { EXPECT_EQ(test.FuncCount(), CatalogueUnavailable); }};

const Loss Texts = {"StringTable", File::StringTable, "the user sees keys instead of texts",
                    [](DoctorTest& test) { EXPECT_EQ(test.GetFunctionInfo()[0].name, L"LightKey"); }};

void ExpectDefaults(DoctorTest& test) {
    EXPECT_EQ(test.GetParameter(HighPerformance), DefaultsOfHighPerformance);
    EXPECT_EQ(test.Setting(L"Warning"), L"10");
}

// The library first stores something when a scheme is read: the defaults of the scheme.
const Loss UserSettings = {"UserSettings", File::UserSettings,
                           "the library uses the defaults; it copies the file before it first replaces it",
                           [](DoctorTest& test) {
                               const std::string before = test.UserSettings();
                               ExpectDefaults(test);
                               EXPECT_EQ(ReadFile(test.UnreadableUserSettings()), before);
                               EXPECT_NE(test.UserSettings(), before);
                           }};

const Loss LockedUserSettings = {"UserSettings", File::UserSettings,
                                 "the library uses the defaults and stores nothing", ExpectDefaults};

}  // namespace

class DoctorFileTest : public DoctorTest, public testing::WithParamInterface<Loss> {
protected:
    void Write(const std::string& content) const { WriteFile(PathOf(GetParam().file), content); }

    void ExpectObstacle(const std::string& kind) {
        const auto& [name, file, consequence, check] = GetParam();
        EXPECT_EQ(WithoutProblems(FindingsWith(2)),
                  Json::array({FindingIn(file, nullptr, kind, consequence)}));
        check(*this);
    }
};

using DoctorMissingFileTest = DoctorFileTest;

TEST_P(DoctorMissingFileTest, MissingFileIsReportedWithActualConsequence) {
    std::filesystem::remove(PathOf(GetParam().file));
    ExpectObstacle("missing-file");
}

INSTANTIATE_TEST_SUITE_P(, DoctorMissingFileTest, testing::Values(Base, Catalogue, Texts), CaseName<Loss>);

using DoctorRejectedFileTest = DoctorFileTest;

TEST_P(DoctorRejectedFileTest, MalformedFileIsReportedWithActualConsequence) {
    Write("<Any><Functions></Any>");
    ExpectObstacle("not-well-formed");
}

TEST_P(DoctorRejectedFileTest, EmptyFileIsReportedAsNotWellFormed) {
    Write("");
    ExpectObstacle("not-well-formed");
}

INSTANTIATE_TEST_SUITE_P(, DoctorRejectedFileTest, testing::Values(Base, Catalogue, UserSettings, Texts),
                         CaseName<Loss>);

using DoctorDocumentTypeTest = DoctorFileTest;

TEST_P(DoctorDocumentTypeTest, DocumentTypeIsReportedWithActualConsequence) {
    Write("<!DOCTYPE R>" + Healthy(GetParam().file));
    ExpectObstacle("document-type");
}

TEST_P(DoctorDocumentTypeTest, HarmlessEntitiesAreReportedAsDocumentType) {
    Write("<!DOCTYPE R [<!ENTITY sleep 'SleepKey'><!ENTITY nap \"nap\">]>" + Healthy(GetParam().file));
    ExpectObstacle("document-type");
}

TEST_P(DoctorDocumentTypeTest, GrowingEntitiesAreReportedAsDocumentType) {
    Write(GrowingEntities(30, "boom") + "<R>&a30;</R>");
    ExpectObstacle("document-type");
}

TEST_P(DoctorDocumentTypeTest, ParameterEntitiesAreReportedAsDocumentType) {
    Write(GrowingParameterEntities(4) + "<R/>");
    ExpectObstacle("document-type");
}

TEST_P(DoctorDocumentTypeTest, RepeatedLargeEntityIsReportedAsDocumentType) {
    Write(EntityOf(100000) + "<R>" + Repeat("&x;", 10000) + "</R>");
    ExpectObstacle("document-type");
}

INSTANTIATE_TEST_SUITE_P(, DoctorDocumentTypeTest, testing::Values(Base, Catalogue, UserSettings, Texts),
                         CaseName<Loss>);

using DoctorUnreadableFileTest = DoctorFileTest;

TEST_P(DoctorUnreadableFileTest, FileInUseIsReportedWithActualConsequence) {
    const OpenFile locked{PathOf(GetParam().file), GENERIC_READ, 0};
    ExpectObstacle("file-in-use");
}

TEST_P(DoctorUnreadableFileTest, FolderInPlaceOfFileIsReportedUnreadable) {
    std::filesystem::remove(PathOf(GetParam().file));
    std::filesystem::create_directory(PathOf(GetParam().file));
    ExpectObstacle("unreadable-file");
}

TEST_P(DoctorUnreadableFileTest, ExcessiveSizeIsReportedUnreadable) {
    ExtendTo(MaximumSize + 1, PathOf(GetParam().file));
    ExpectObstacle("unreadable-file");
}

INSTANTIATE_TEST_SUITE_P(, DoctorUnreadableFileTest,
                         testing::Values(Base, Catalogue, LockedUserSettings, Texts), CaseName<Loss>);

class DoctorStorageTest : public DoctorTest {
protected:
    void ExpectNothingStored(const std::string& kind, const std::string& consequence) {
        EXPECT_EQ(WithoutProblems(FindingsWith(1)),
                  Json::array({FindingIn(File::UserSettings, nullptr, kind, consequence)}));
        EXPECT_FALSE(Set(L"Warning", L"20"));
    }
};

TEST_F(DoctorStorageTest, MissingUserSettingsFileIsNoFinding) {
    std::filesystem::remove(installation.UserFile());
    EXPECT_EQ(FindingsWith(0), Json::array());
    EXPECT_TRUE(Set(L"Warning", L"20"));
    EXPECT_EQ(Setting(L"Warning"), L"20");
}

TEST_F(DoctorStorageTest, MissingFolderIsReportedAndPreventsStoring) {
    std::filesystem::remove_all(installation.UserFile().parent_path());
    ExpectNothingStored("missing-folder", "the library does not create it and stores nothing");
    EXPECT_FALSE(HasUserSettings());
}

TEST_F(DoctorStorageTest, ReadOnlyFileIsReportedAndPreventsStoring) {
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_READONLY);
    ExpectNothingStored("read-only-file", "the library stores nothing");
    EXPECT_EQ(UserSettings(), HealthyUserSettings);
    SetFileAttributesW(installation.UserFile().c_str(), FILE_ATTRIBUTE_NORMAL);
}

using DoctorLongPathTest = DoctorTest;

TEST_F(DoctorLongPathTest, PathTooLongForLibraryIsReported) {
    const std::filesystem::path folder = installation.ProgramFiles() / std::wstring(240, L'p');
    const Json findings = FindingsWith(2, {L"--json", L"--program-files", folder});
    ASSERT_EQ(findings.size(), 3u);
    for (const Json& finding : findings)
        EXPECT_EQ(finding["kind"], "path-too-long");
    EXPECT_EQ(findings[0]["consequence"], Base.consequence);
    SetEnvironmentVariableW(L"ProgramFiles", folder.c_str());
    Base.check(*this);
    Catalogue.check(*this);
}

}  // namespace ZOTDam::Test
