// Provisions a machine from the files that the suite ships: the base catalogue and the string tables. Each
// command runs in a separate process.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

class ProvisioningTest : public ClientTest {
protected:
    ProvisioningTest() {
        const std::filesystem::path shipped =
            std::filesystem::path{ZOTDAM_SAMPLES} / L"Program Files" / L"Orlo" / L"QUEN Power Management";
        std::filesystem::copy_file(shipped / L"data" / L"ZOTBase.xml", installation.BaseFile());
        std::filesystem::copy_file(shipped / L"StringTable.xml", installation.StringTableFile());
        Output({L"adopt", L"--all"});
        Output({L"setting", L"init"});
    }

    // Returns a function of the base catalogue.
    Json BaseFunction(std::size_t index) const { return JsonOutput({L"base"})["functions"][index]; }
};

TEST_F(ProvisioningTest, CatalogueHasAllBaseFunctions) {
    EXPECT_EQ(JsonOutput({L"count"})["count"], JsonOutput({L"base"})["functions"].size());
    EXPECT_EQ(JsonOutput({L"base", L"--unsupported"})["functions"], Json::array());
}

TEST_F(ProvisioningTest, FunctionHasBaseOptionsAndTranslatedName) {
    const Json base = BaseFunction(0);
    const Json function = JsonOutput({L"functions"})["functions"][0];
    EXPECT_EQ(base["name"], "BrightnessName");
    EXPECT_EQ(function["name"], "Display brightness");
    ASSERT_EQ(function["acOptions"].size(), base["acOptions"].size());
    for (std::size_t i = 0; i < base["acOptions"].size(); ++i)
        EXPECT_EQ(function["acOptions"][i]["option"], base["acOptions"][i]["option"]);
}

TEST_F(ProvisioningTest, DefaultParametersComeFromBaseCatalogue) {
    const Json functions = JsonOutput({L"base"})["functions"];
    const Json params = IndexesOf({L"params", L"balanced", L"--default"});
    ASSERT_EQ(params.size(), functions.size());
    for (std::size_t i = 0; i < functions.size(); ++i) {
        const Json& balanced = functions[i]["defaults"][1];
        EXPECT_EQ(balanced["scheme"], BalancedText);
        EXPECT_EQ(params[i], Param(functions[i]["id"], balanced["acIndex"], balanced["dcIndex"]));
    }
    EXPECT_EQ(IndexesOf({L"params", L"balanced"})[0], params[0]);
}

TEST_F(ProvisioningTest, ChangedParameterIsKept) {
    Output({L"set", L"balanced", L"1", L"0", L"4"});
    EXPECT_EQ(IndexesOf({L"params", L"balanced"})[0], Param(1, 0, 4));
}

TEST_F(ProvisioningTest, DifferencesComeFromBaseCatalogue) {
    const Json difference = JsonOutput({L"diff", L"balanced", L"power-saver", L"--ac"})["acDifferences"][0];
    EXPECT_EQ(difference["name"], "Display brightness");
    EXPECT_EQ(difference["toLabel"], "60%");
}

TEST_F(ProvisioningTest, CommonSettingsComeFromBaseCatalogue) {
    EXPECT_NE(Defaults().find("LowBatteryWarning=\"10\""), std::string::npos);
    EXPECT_EQ(Output({L"setting", L"get", L"LowBatteryWarning"}), "10\n");
}

TEST_F(ProvisioningTest, CommandsComeFromBaseCatalogue) {
    const Json command = JsonOutput({L"commands", L"balanced"})["commands"][0];
    const Json base = BaseFunction(0)["families"][0]["commands"][0];
    EXPECT_EQ(command["commandId"], base["commandId"]);
    EXPECT_EQ(command["name"], "Display brightness");
    EXPECT_EQ(command["specInfo1"], base["specInfo1"]);
    EXPECT_EQ(command["option1"], 80);
    EXPECT_EQ(command["option2"], 60);
}

}  // namespace ZOTDam::Test
