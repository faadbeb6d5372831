// The fixture of all tests that use the exports. It provides an empty installation, and loads the DLL when a
// test first uses it.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/Installation.h"
#include "support/MsxmlFiles.h"
#include "support/SavedXml.h"
#include "support/SecondProcess.h"
#include "ZOTDamClient.h"

namespace ZOTDam {

// Lets a failing test print the values.
inline void PrintTo(const ParamValue& value, std::ostream* out) {
    *out << "{AC " << value.ACParamIndex << ", DC " << value.DCParamIndex << "}";
}

}  // namespace ZOTDam

namespace ZOTDam::Test {

inline constexpr GUID Balanced = {
    0x381b4222, 0xf694, 0x41f0, {0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e}};
inline constexpr GUID HighPerformance = {
    0x8c5e7fda, 0xe8bf, 0x4a96, {0x9a, 0x85, 0xa6, 0xe2, 0x3a, 0x8c, 0x63, 0x5c}};
inline constexpr GUID PowerSaver = {
    0xa1841308, 0x3541, 0x4fab, {0xbc, 0x81, 0xf7, 0x15, 0x56, 0xf2, 0x0b, 0x4a}};

inline constexpr char BalancedText[] = "381b4222-f694-41f0-9685-ff5bb260df2e";
inline constexpr char HighPerformanceText[] = "8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c";

inline constexpr wchar_t DefaultsMarker[] = L"XmlZOTDefaultMutex";
inline constexpr wchar_t UserMarker[] = L"XmlZOTPowercfgMutex";

using Params = std::vector<std::pair<std::int32_t, ParamValue>>;

class ExportTest : public testing::Test {
protected:
    Library& Dll() {
        if (!library)
            library.emplace();
        return *library;
    }

    // Unloads the DLL as a client does. The next use loads it again.
    void Unload() { library.reset(); }

    void WriteDefaults(std::string_view xml) const {
        WriteFile(installation.DefaultsFile(), InSelectedForm(xml));
    }
    void WriteUserSettings(std::string_view xml) const {
        WriteFile(installation.UserFile(), InSelectedForm(xml));
    }
    void WriteBase(std::string_view xml) const { WriteFile(installation.BaseFile(), InSelectedForm(xml)); }
    void WriteStringTable(std::string_view xml) const {
        WriteFile(installation.StringTableFile(), InSelectedForm(xml));
    }
    static std::string Content(const std::filesystem::path& file) { return FromSelectedForm(ReadFile(file)); }
    std::string UserSettings() const { return Content(installation.UserFile()); }
    std::string Defaults() const { return Content(installation.DefaultsFile()); }

    // Collects the items that the export enumerates. The test fails if the export returns false.
    Params GetParameter(const GUID& scheme) { return Collect(Dll().GetParameter, scheme); }
    Params GetParameterDefault(const GUID& scheme) { return Collect(Dll().GetParameterDefault, scheme); }

    bool SetParameter(const GUID& scheme, const std::map<std::int32_t, ParamValue>& params) {
        return Dll().SetParameter(&scheme, ParamHolder{params}.get());
    }

    Installation installation;

private:
    static Params Collect(decltype(&ZOTDam::GetParameter) enumerate, const GUID& scheme) {
        Params params;
        auto collect = MakeCallback<IGetParameterCallback>(
            [&](std::int32_t id, const ParamValue* value) { params.emplace_back(id, *value); });
        EXPECT_TRUE(enumerate(&scheme, &collect));
        return params;
    }

    std::optional<Library> library;
};

}  // namespace ZOTDam::Test
