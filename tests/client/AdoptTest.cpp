// Tests of zotdamctl adopt.
#include "client/BaseCatalogueTest.h"

namespace ZOTDam::Test {

class AdoptTest : public BaseCatalogueTest {
protected:
    Json AdoptedIds() const {
        Json ids = Json::array();
        const Json list = JsonOutput({L"functions"});
        for (const Json& function : list["functions"])
            ids.push_back(function["id"]);
        return ids;
    }
};

TEST_F(AdoptTest, ChosenFunctionsBecomeCatalogue) {
    EXPECT_EQ(Output({L"adopt", L"2", L"1"}), "The catalogue now consists of these functions: 1, 2\n");
    EXPECT_EQ(AdoptedIds(), Json({1, 2}));
}

TEST_F(AdoptTest, ExistingCatalogueIsReplaced) {
    WriteFunctions(Functions({1, 7, 9}));
    Output({L"adopt", L"2"});
    EXPECT_EQ(AdoptedIds(), Json({2}));
}

TEST_F(AdoptTest, AllOptionSkipsFunctionsWithoutCommands) {
    EXPECT_EQ(Output({L"adopt", L"--all"}),
              "The catalogue now consists of these functions: 1, 2\n"
              "Skipped because they have no commands: 3\n");
}

TEST_F(AdoptTest, JsonListsAdoptedAndSkippedFunctions) {
    EXPECT_EQ(JsonOutput({L"adopt", L"--all"}),
              Json({{"functions", {1, 2}}, {"skipped", Json::array({3})}, {"backup", nullptr}}));
}

TEST_F(AdoptTest, OldCatalogueIsKeptAsBackup) {
    WriteFunctions(Function(7));
    const std::string before = Defaults();
    const std::string backup = JsonOutput({L"adopt", L"1"})["backup"];
    EXPECT_EQ(ReadFile(std::filesystem::path{backup}), before);
    EXPECT_TRUE(backup.starts_with(Utf8(installation.DefaultsFile()) + ".2")) << backup;
    EXPECT_TRUE(backup.ends_with(".backup")) << backup;
}

TEST_F(AdoptTest, AdoptedFunctionHasAllBaseData) {
    Output({L"adopt", L"1"});
    EXPECT_EQ(JsonOutput({L"functions"})["functions"][0],
              Json::parse(R"({"id": 1, "name": "DimKey", "group": "ScreenKey", "type": 2, "flag": 3,
                "acOptions": [{"index": 0, "option": 100, "label": "BrightKey"},
                              {"index": 1, "option": 20, "label": "DarkKey"}],
                "dcOptions": [{"index": 0, "option": 20, "label": "DarkKey"}]})"));
    EXPECT_EQ(IndexesOf({L"params", L"high-performance", L"--default"}), Json::array({Param(1, 1, 0)}));
}

TEST_F(AdoptTest, EitherIdsOrAllOptionIsRequired) {
    const std::string sentence = "Specify either the ids of the functions to adopt or --all.";
    ExpectError({L"adopt"}, WrongUsage, sentence);
    ExpectError({L"adopt", L"1", L"--all"}, WrongUsage, sentence);
}

TEST_F(AdoptTest, NonNumericIdIsRejected) {
    ExpectError({L"adopt", L"1", L"two"}, WrongUsage,
                "ID must be a whole number from -2147483648 to 2147483647, not \"two\".");
}

TEST_F(AdoptTest, FunctionMissingFromBaseCatalogueIsAnError) {
    ExpectError({L"adopt", L"1", L"4"}, Failure, BaseTitle() + " has no function 4.");
    EXPECT_FALSE(std::filesystem::exists(installation.DefaultsFile()));
}

TEST_F(AdoptTest, BaseCatalogueWithoutFunctionsIsAnError) {
    WriteBase("<ZOTBase><Functions/></ZOTBase>");
    ExpectError({L"adopt", L"--all"}, Failure, BaseTitle() + " has no functions.");
}

TEST_F(AdoptTest, UnloadableNewCatalogueIsAnError) {
    WriteBase(R"(<ZOTBase><Functions><Function ID="-1"><Display/><Commands><CommandFamily><CommandItem/>
        </CommandFamily></Commands></Function></Functions></ZOTBase>)");
    ExpectError({L"adopt", L"-1"}, Failure,
                RejectedCatalogue("the id -1 is negative (/ZOTDefault/Functions/Function)"));
}

TEST_F(AdoptTest, MissingBaseCatalogueIsAnError) {
    ExpectNeedsBaseCatalogue({L"adopt", L"--all"});
}

TEST_F(AdoptTest, DefaultsInUseAreAnError) {
    WriteFunctions(Function(7));
    const std::string before = Defaults();
    const SecondProcess other{HoldMutex, {DefaultsMarker}};
    ExpectError({L"adopt", L"1"}, InUse, DefaultsTitle() + " is in use by another program.");
    EXPECT_EQ(Defaults(), before);
}

TEST_F(AdoptTest, ReadOnlyDefaultsAreAnError) {
    WriteFunctions(Function(7));
    const std::string before = Defaults();
    SetFileAttributesW(installation.DefaultsFile().c_str(), FILE_ATTRIBUTE_READONLY);
    ExpectError({L"adopt", L"1"}, Failure, DefaultsTitle() + " cannot be written.");
    SetFileAttributesW(installation.DefaultsFile().c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(Defaults(), before);
}

}  // namespace ZOTDam::Test
