// Tests of zotdamctl base.
#include "client/BaseCatalogueTest.h"

namespace ZOTDam::Test {

class BaseCommandTest : public BaseCatalogueTest {
protected:
    std::vector<int> Ids(const Arguments& arguments) const {
        std::vector<int> ids;
        const Json list = JsonOutput(arguments);
        for (const Json& function : list["functions"])
            ids.push_back(function["id"]);
        return ids;
    }
};

TEST_F(BaseCommandTest, TextShowsWholeBaseFunction) {
    EXPECT_TRUE(Output({L"base"}).starts_with(
        "1  DimKey\n"
        "    Group       ScreenKey\n"
        "    Type, flag  2, 3\n"
        "    Plugged in  0: BrightKey (100)  1: DarkKey (20)\n"
        "    On battery  0: DarkKey (20)\n"
        "    Default     0 plugged in, 1 on battery\n"
        "    Default     1 plugged in, 0 on battery in 8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c\n"
        "    Family\n"
        "      Command   4: event 5, state 6, parameters 0 and 1, flag 7, \"Dim\"\n"
        "      Check     flag 8, \"a\", \"b\", \"c\", \"d\"\n"
        "    Family\n"
        "\n"
        "2  SleepKey\n"))
        << Output({L"base"});
}

TEST_F(BaseCommandTest, JsonContainsWholeBaseFunction) {
    const Json function = JsonOutput({L"base"})["functions"][0];
    EXPECT_EQ(function, Json::parse(R"({"id": 1, "name": "DimKey", "group": "ScreenKey", "type": 2, "flag": 3,
        "acOptions": [{"index": 0, "option": 100, "label": "BrightKey"},
                      {"index": 1, "option": 20, "label": "DarkKey"}],
        "dcOptions": [{"index": 0, "option": 20, "label": "DarkKey"}],
        "defaults": [{"scheme": null, "acIndex": 0, "dcIndex": 1},
                     {"scheme": "8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c", "acIndex": 1, "dcIndex": 0}],
        "families": [{"commands": [{"commandId": 4, "event": 5, "state": 6, "paramIndex1": 0, "paramIndex2": 1,
                                    "flag": 7, "specInfo1": "Dim"}],
                      "checks": [{"checkFlag": 8, "param1": "a", "param2": "b", "param3": "c", "param4": "d"}]},
                     {"commands": [], "checks": []}]})"));
}

TEST_F(BaseCommandTest, FunctionWithoutDetailsHasEmptyJsonArrays) {
    const Json function = JsonOutput({L"base"})["functions"][2];
    EXPECT_EQ(function["acOptions"], Json::array());
    EXPECT_EQ(function["dcOptions"], Json::array());
    EXPECT_EQ(function["defaults"], Json::array());
    EXPECT_EQ(function["families"], Json::array());
}

TEST_F(BaseCommandTest, UnsupportedOptionListsFunctionsMissingFromCatalogue) {
    WriteFunctions(Function(2));
    EXPECT_EQ(Ids({L"base"}), (std::vector{1, 2, 3}));
    EXPECT_EQ(Ids({L"base", L"--unsupported"}), (std::vector{1, 3}));
}

TEST_F(BaseCommandTest, CompleteCatalogueHasNoUnsupportedFunctions) {
    WriteFunctions(Functions({1, 2, 3}));
    EXPECT_EQ(Output({L"base", L"--unsupported"}), "There are no such functions.\n");
    EXPECT_EQ(JsonOutput({L"base", L"--unsupported"}), Json({{"functions", Json::array()}}));
}

TEST_F(BaseCommandTest, OnlyUnsupportedOptionRequiresCatalogue) {
    Output({L"base"});
    ExpectError({L"base", L"--unsupported"}, Failure, MissingCatalogue());
}

TEST_F(BaseCommandTest, MissingBaseCatalogueIsAnError) {
    ExpectNeedsBaseCatalogue({L"base"});
}

TEST_F(BaseCommandTest, ListingChangesNoFile) {
    WriteFunctions(Function(2));
    const std::string defaults = Defaults();
    Output({L"base", L"--unsupported"});
    EXPECT_EQ(ReadFile(installation.BaseFile()), ThreeBaseFunctions);
    EXPECT_EQ(Defaults(), defaults);
}

}  // namespace ZOTDam::Test
