// The fixture of tests with an installed client that uses fakes of two libraries of Windows.
#pragma once

#include "client/DoctorTest.h"

namespace ZOTDam::Test {

// The sources of the fakes, in tests/client/fakes/, describe the variables that contain their answers.
class FakeWindowsTest : public InstalledClientTest {
protected:
    FakeWindowsTest() { AddManifest(); }
    ~FakeWindowsTest() override {
        for (const std::wstring& variable : variables)
            SetEnvironmentVariableW(variable.c_str(), nullptr);
    }

    void SetAnswer(const std::wstring& variable, const std::wstring& answer) {
        variables.push_back(variable);
        SetEnvironmentVariableW(variable.c_str(), answer.c_str());
    }

private:
    // The manifest of a program can replace libraries for this program.
    void AddManifest() const {
        std::string manifest = Manifest(Utf8(Library::ProgramFolder() / L"FakeWindows.dll"));
        constexpr WORD language = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
        const HANDLE update = BeginUpdateResourceW((Folder() / L"zotdamctl.exe").c_str(), FALSE);
        EXPECT_TRUE(UpdateResourceW(update, RT_MANIFEST, CREATEPROCESS_MANIFEST_RESOURCE_ID, language,
                                    manifest.data(), static_cast<DWORD>(manifest.size())));
        EXPECT_TRUE(EndUpdateResourceW(update, FALSE));
    }

    static std::string Manifest(const std::string& replacement) {
        return R"(<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">
            <file name="powrprof.dll" loadFrom=")" +
               replacement + R"("/><file name="rstrtmgr.dll" loadFrom=")" + replacement + R"("/></assembly>)";
    }

    std::vector<std::wstring> variables;
};

}  // namespace ZOTDam::Test
