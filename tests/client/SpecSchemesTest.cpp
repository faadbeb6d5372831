// Tests of zotdamctl spec-schemes.
#include "client/BaseCatalogueTest.h"

namespace ZOTDam::Test {

class SpecSchemesTest : public BaseCatalogueTest {
protected:
    void WriteSchemes(const std::string& schemes) const {
        WriteBase("<ZOTBase><SpecSchemes>" + schemes + "</SpecSchemes></ZOTBase>");
    }

    void WriteBalancedAndAnother() const {
        WriteSchemes(R"(<SchemeItem SchemeGUID="381B4222-f694-41f0-9685-ff5bb260df2e">
            <SubGroup SubGroupGUID="7516b95f-f776-4464-8c53-06167f40cc99">
                <PowerSetting PowerSettingGUID="aded5e82-b909-4619-9949-f5d71dac0bcb" ACValue="80" DCValue="-4"/>
                <PowerSetting PowerSettingGUID="0a1b2c3d-1111-2222-3333-444455556666" ACValue="1" DCValue="2"/>
            </SubGroup></SchemeItem>
            <SchemeItem SchemeGUID="00000000-1111-2222-3333-444455556666"/>)");
    }
};

TEST_F(SpecSchemesTest, TextListsPowerSettingsOfEachScheme) {
    WriteBalancedAndAnother();
    EXPECT_EQ(
        Output({L"spec-schemes"}),
        "balanced (381b4222-f694-41f0-9685-ff5bb260df2e)\n"
        "    Display (7516b95f-f776-4464-8c53-06167f40cc99)\n"
        "        Display brightness (aded5e82-b909-4619-9949-f5d71dac0bcb): 80 plugged in, -4 on battery\n"
        "        0a1b2c3d-1111-2222-3333-444455556666: 1 plugged in, 2 on battery\n"
        "\n"
        "00000000-1111-2222-3333-444455556666\n");
}

TEST_F(SpecSchemesTest, JsonListsPowerSettingsOfEachScheme) {
    WriteBalancedAndAnother();
    EXPECT_EQ(JsonOutput({L"spec-schemes"}), Json::parse(R"({"schemes": [
        {"scheme": "381b4222-f694-41f0-9685-ff5bb260df2e", "schemeName": "balanced", "subGroups": [
            {"subGroup": "7516b95f-f776-4464-8c53-06167f40cc99", "name": "Display", "powerSettings": [
                {"powerSetting": "aded5e82-b909-4619-9949-f5d71dac0bcb", "name": "Display brightness",
                 "acValue": 80, "dcValue": -4},
                {"powerSetting": "0a1b2c3d-1111-2222-3333-444455556666", "name": null,
                 "acValue": 1, "dcValue": 2}]}]},
        {"scheme": "00000000-1111-2222-3333-444455556666", "schemeName": null, "subGroups": []}]})"));
}

TEST_F(SpecSchemesTest, EmptySectionHasNoSpecSchemes) {
    WriteSchemes("");
    EXPECT_EQ(Output({L"spec-schemes"}), "There are no spec schemes.\n");
    EXPECT_EQ(JsonOutput({L"spec-schemes"}), Json({{"schemes", Json::array()}}));
}

TEST_F(SpecSchemesTest, MissingBaseCatalogueIsAnError) {
    ExpectNeedsBaseCatalogue({L"spec-schemes"});
}

}  // namespace ZOTDam::Test
