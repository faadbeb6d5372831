// The fixture of tests for common settings. It writes the "CommonSettings" of the three files and reads
// single settings.
#pragma once

#include <algorithm>
#include <iterator>
#include <optional>

#include "support/ExportTest.h"

namespace ZOTDam::Test {

inline const std::optional<std::wstring> Missing;

class CommonSettingsTest : public ExportTest {
protected:
    // A file that contains only settings, written as attributes.
    static std::string FileWith(const std::string& settings) {
        return "<Any><CommonSettings " + settings + "/></Any>";
    }
    void WriteUserValues(const std::string& settings) const { WriteUserSettings(FileWith(settings)); }
    void WriteDefaultValues(const std::string& settings) const { WriteDefaults(FileWith(settings)); }
    void WriteBaseValues(const std::string& settings) const { WriteBase(FileWith(settings)); }

    bool HasUserFile() const { return std::filesystem::exists(installation.UserFile()); }
    bool HasDefaultsFile() const { return std::filesystem::exists(installation.DefaultsFile()); }
    std::string Base() const { return FromSelectedForm(ReadFile(installation.BaseFile())); }

    // Returns the value that GetCommonSetting finds. On a miss the whole buffer must be unchanged, and
    // nothing may be written past its end.
    std::optional<std::wstring> Setting(const std::wstring& name) {
        wchar_t buffer[TextCapacity + 1];
        std::ranges::fill(buffer, Untouched);
        const bool found = Dll().GetCommonSetting(name.c_str(), buffer);
        EXPECT_EQ(buffer[TextCapacity], Untouched);
        if (found)
            return buffer;
        EXPECT_EQ(std::ranges::count(buffer, Untouched), std::ssize(buffer));
        return Missing;
    }

    bool Set(const std::wstring& name, const std::wstring& value) {
        return Dll().SetCommonSetting(name.c_str(), value.c_str());
    }

private:
    ComScope com;  // for the test's own DOM
    static constexpr wchar_t Untouched = L'\x2603';
};

}  // namespace ZOTDam::Test
