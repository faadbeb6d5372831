// Tests that zotdamctl doctor names the programs that have a file open, as far as the Restart Manager reports
// them.
#include "client/FakeWindowsTest.h"
#include "support/OpenFile.h"

namespace ZOTDam::Test {

class FileUsersTest : public FakeWindowsTest {
protected:
    // Returns the programs that the finding about a locked file names.
    std::string NamedPrograms(const Arguments& arguments = {L"--json"}) const {
        const OpenFile locked{installation.DefaultsFile(), GENERIC_READ, 0};
        const Json findings = FindingsWith(2, arguments);
        EXPECT_EQ(findings.size(), 1u) << findings;
        return ProgramsIn(findings[0]);
    }

    static std::string ProgramsIn(const Json& finding) {
        const std::string begin = "the file is in use by ";
        const std::string problem = finding["problem"];
        EXPECT_EQ(finding["kind"], "file-in-use");
        EXPECT_TRUE(problem.starts_with(begin)) << problem;
        return problem.substr(begin.size());
    }

    // Several programs have the file open. At the first call, the Restart Manager reports more of them than
    // the client expects.
    void SetGrowingList(int count) {
        std::wstring users;
        for (int id = 1; id <= count; ++id)
            users += L"program=" + std::to_wstring(id) + L";";
        SetAnswer(L"FAKE_FILE_USERS", users);
        SetAnswer(L"FAKE_USERS_AT_FIRST", L"9");
    }
};

TEST_F(FileUsersTest, ProgramsAreNamedWithTheirIds) {
    SetAnswer(L"FAKE_FILE_USERS", L"notepad.exe=4711;Übersicht=17;");
    EXPECT_EQ(NamedPrograms(), "notepad.exe (process 4711), Übersicht (process 17)");
}

TEST_F(FileUsersTest, FileWithRelativePathHasNamedPrograms) {
    SetAnswer(L"FAKE_FILE_USERS", L"notepad.exe=4711;");
    EXPECT_EQ(NamedPrograms({L"--json", L"ZOTDefault.xml"}), "notepad.exe (process 4711)");
}

TEST_F(FileUsersTest, EachOfSeveralFilesHasNamedPrograms) {
    SetAnswer(L"FAKE_FILE_USERS", L"notepad.exe=4711;");
    const OpenFile base{installation.BaseFile(), GENERIC_READ, 0};
    const OpenFile defaults{installation.DefaultsFile(), GENERIC_READ, 0};
    const Json findings = FindingsWith(2);
    ASSERT_EQ(findings.size(), 2u) << findings;
    for (const Json& finding : findings)
        EXPECT_EQ(ProgramsIn(finding), "notepad.exe (process 4711)");
}

TEST_F(FileUsersTest, ListThatGrowsBetweenCallsIsComplete) {
    SetGrowingList(11);
    const std::string programs = NamedPrograms();
    EXPECT_TRUE(programs.starts_with("program (process 1), program (process 2), ")) << programs;
    EXPECT_TRUE(programs.ends_with(", program (process 11)")) << programs;
}

TEST_F(FileUsersTest, ListThatKeepsGrowingIsGivenUp) {
    SetGrowingList(100);
    EXPECT_EQ(NamedPrograms(), "another program");
}

TEST_F(FileUsersTest, EmptyListNamesNoProgram) {
    EXPECT_EQ(NamedPrograms(), "another program");
}

TEST_F(FileUsersTest, RecordWithoutProcessIsOmitted) {
    SetAnswer(L"FAKE_FILE_USERS", L"=0;notepad.exe=4711;");
    EXPECT_EQ(NamedPrograms(), "notepad.exe (process 4711)");
}

TEST_F(FileUsersTest, ErrorOfRestartManagerNamesNoProgram) {
    SetAnswer(L"FAKE_FILE_USERS", L"notepad.exe=4711;");
    for (const wchar_t* const function : {L"RmStartSession", L"RmRegisterResources", L"RmGetList"}) {
        SetAnswer(L"FAKE_ERROR", function + (L"=" + std::to_wstring(ERROR_SEM_TIMEOUT)) + L";");
        EXPECT_EQ(NamedPrograms(), "another program");
    }
}

}  // namespace ZOTDam::Test
