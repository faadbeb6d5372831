// The fixture of tests for the content of the defaults and the user settings. It writes the parts of the
// files that a test does not set.
#pragma once

#include <initializer_list>

#include "support/DataFiles.h"
#include "support/ExportTest.h"

namespace ZOTDam::Test {

// The smallest function of the defaults that is valid, with the given children.
inline std::string Function(std::int32_t id, const std::string& children = {}) {
    return "<Function ID=\"" + std::to_string(id) + "\"><Display/><Commands/>" + children + "</Function>";
}

inline std::string Functions(std::initializer_list<std::int32_t> ids) {
    std::string functions;
    for (const std::int32_t id : ids)
        functions += Function(id);
    return functions;
}

// One form of the XML, and the name of its test.
struct XmlCase {
    std::string name;
    std::string xml;
};

// Omits the XML, which may have several hundred thousand characters.
inline void PrintTo(const XmlCase& xmlCase, std::ostream* out) {
    *out << xmlCase.name;
}

// One form of the GUID of the balanced scheme, which may be invalid.
struct GuidCase {
    std::string name;
    std::string guid;
    bool matches;
};

inline void PrintTo(const GuidCase& guidCase, std::ostream* out) {
    *out << '"' << guidCase.guid << '"';
}

inline std::vector<GuidCase> GuidCases() {
    return {
        {"LowerCase", "381b4222-f694-41f0-9685-ff5bb260df2e", true},
        {"UpperCase", "381B4222-F694-41F0-9685-FF5BB260DF2E", true},
        {"MixedCase", "381b4222-F694-41f0-9685-fF5bB260dF2e", true},
        {"Braces", "{381b4222-f694-41f0-9685-ff5bb260df2e}", false},
        {"NoHyphens", "381b4222f69441f09685ff5bb260df2e", false},
        {"LeadingSpace", " 381b4222-f694-41f0-9685-ff5bb260df2e", false},
        {"TrailingSpace", "381b4222-f694-41f0-9685-ff5bb260df2e ", false},
        {"TooShort", "381b4222-f694-41f0-9685-ff5bb260df2", false},
        {"TooLong", "381b4222-f694-41f0-9685-ff5bb260df2e" + std::string(10000, '0'), false},
        {"NoGuid", "Balanced", false},
        {"NoText", "", false},
    };
}

template <class Case>
std::string CaseName(const testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

class SettingsTest : public ExportTest {
protected:
    void WriteFunctions(const std::string& functions) const {
        WriteDefaults("<ZOTDefault><Functions>" + functions + "</Functions></ZOTDefault>");
    }

    void WriteSchemes(const std::string& schemes) const { WriteUserSettings(OldUserFile(schemes)); }
    void WriteBalanced(const std::string& functions) const {
        WriteSchemes(OldScheme(BalancedText, functions));
    }

    bool HasUserSettings() const { return std::filesystem::exists(installation.UserFile()); }
};

}  // namespace ZOTDam::Test
