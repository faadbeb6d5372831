// Hostile content in each of the four data files. Each file has a pattern that a test case fills in.
#pragma once

#include <string_view>
#include <tuple>

#include "support/SettingsTest.h"
#include "support/Watchdog.h"

namespace ZOTDam::Test {

// The content that a test case inserts into a file: text in front of the root, attribute values, child
// elements, and attributes.
struct HostileContent {
    std::string name;
    std::string prolog = {};
    std::string value = "plain";
    std::string children = {};
    std::string attributes = {};
};

inline void PrintTo(const HostileContent& content, std::ostream* out) {
    *out << content.name;
}

// One of the four files, as a pattern with bracketed placeholders.
struct Target {
    std::string name;
    std::filesystem::path (Installation::*file)() const;
    std::string pattern;
};

inline void PrintTo(const Target& target, std::ostream* out) {
    *out << target.name;
}

inline const std::vector<Target>& Targets() {
    static const std::vector<Target> targets = {
        {"Defaults", &Installation::DefaultsFile, R"([prolog]<R>[children]<Functions>[children]
<Function ID="1" Name="[value]" Group="[value]"><Display><AC><DisplayItem Label="[value]" Option="1"/>[children]
</AC><DC/></Display><Commands>[children]<CommandItem ID="1" SpecInfo1="[value]"/></Commands>
<Default ACParamIndex="0" DCParamIndex="0">[children]</Default></Function></Functions>
<CommonSettings Setting="[value]" [attributes]/></R>)"},
        {"UserSettings", &Installation::UserFile, R"([prolog]<R>[children]<PowerSchemes>[children]
<PowerScheme GUID="381b4222-f694-41f0-9685-ff5bb260df2e">[children]
<Function ID="1" ACParamIndex="0" DCParamIndex="0">[children]</Function></PowerScheme></PowerSchemes>
<CommonSettings Setting="[value]" [attributes]>[children]</CommonSettings></R>)"},
        {"Base", &Installation::BaseFile, R"([prolog]<R>[children]<Functions>[children]
<Function ID="2" Name="[value]" Group="[value]"><Display>[children]</Display><Default>[children]</Default><Commands>
<CommandFamily>[children]<CommandItem ID="1" SpecInfo1="[value]"/><CheckExistItem Param1="[value]"/></CommandFamily>
</Commands></Function></Functions><SpecSchemes>[children]</SpecSchemes>
<CommonSettings Setting="[value]" [attributes]>[children]</CommonSettings></R>)"},
        {"StringTable", &Installation::StringTableFile, R"([prolog]<R [attributes]>[children]
<data name="plain"><value>translated [children]</value></data><data name="[value]"><value>[value]</value></data></R>)"},
    };
    return targets;
}

inline std::string Replace(const std::string& text, std::string_view word, const std::string& replacement) {
    std::string result;
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = text.find(word, begin)) != std::string::npos; begin = end + word.size())
        result.append(text, begin, end - begin).append(replacement);
    return result.append(text, begin);
}

inline std::string FillIn(const Target& target, const HostileContent& content) {
    std::string xml = target.pattern;
    xml = Replace(xml, "[prolog]", content.prolog);
    xml = Replace(xml, "[value]", content.value);
    xml = Replace(xml, "[children]", content.children);
    return Replace(xml, "[attributes]", content.attributes);
}

using HostileCase = std::tuple<Target, HostileContent>;

inline std::string NameOfCase(const testing::TestParamInfo<HostileCase>& info) {
    return std::get<1>(info.param).name + "In" + std::get<0>(info.param).name;
}

class HostileFileTest : public SettingsTest {
protected:
    HostileFileTest() {
        watchdog.Begin(testing::UnitTest::GetInstance()->current_test_info()->name());
        for (const Target& target : Targets())
            Write(target, {"Harmless"});
    }

    void Write(const Target& target, const HostileContent& content) const {
        WriteFile((installation.*target.file)(), FillIn(target, content));
    }

private:
    Watchdog watchdog{600000};
};

}  // namespace ZOTDam::Test
