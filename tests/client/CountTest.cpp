// Tests of zotdamctl count.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

using CountTest = ClientTest;

TEST_F(CountTest, TextStatesNumberOfFunctions) {
    WriteDefaults(ThreeFunctions);
    EXPECT_EQ(Output({L"count"}), "3 functions\n");
}

TEST_F(CountTest, SingleFunctionIsCountedInSingular) {
    WriteDefaults(R"(<ZOTDefault><Functions><Function ID="1"><Display/><Commands/></Function></Functions>
        </ZOTDefault>)");
    EXPECT_EQ(Output({L"count"}), "1 function\n");
}

TEST_F(CountTest, JsonContainsCount) {
    WriteDefaults(ThreeFunctions);
    EXPECT_EQ(JsonOutput({L"count"}), Json({{"count", 3}}));
}

TEST_F(CountTest, EmptyCatalogueHasNoFunctions) {
    WriteDefaults("<ZOTDefault><Functions/></ZOTDefault>");
    EXPECT_EQ(JsonOutput({L"count"}), Json({{"count", 0}}));
}

TEST_F(CountTest, MissingCatalogueIsAnError) {
    ExpectError({L"count"}, Failure, MissingCatalogue());
}

TEST_F(CountTest, InvalidCatalogueIsAnError) {
    WriteDefaults("<ZOTDefault>");
    ExpectCatalogueThatIsNotWellFormed({L"count"});
    WriteDefaults("<ZOTDefault/>");
    ExpectError({L"count"}, Failure, RejectedCatalogue("\"Functions\" is missing (/ZOTDefault)"));
    WriteFunctions(Function(1) + R"(<Function ID="2"><Commands/></Function>)");
    ExpectError({L"count"}, Failure,
                RejectedCatalogue("\"Display\" is missing (/ZOTDefault/Functions/Function[2])"));
}

TEST_F(CountTest, CatalogueInUseIsAnError) {
    WriteDefaults(ThreeFunctions);
    const SecondProcess other{HoldMutex, {DefaultsMarker}};
    ExpectError({L"count"}, InUse, CatalogueInUse());
}

TEST_F(CountTest, JsonOptionAddsJsonErrorToText) {
    const Outcome outcome = Run({L"--json", L"count"});
    EXPECT_EQ(outcome.exitStatus, Failure);
    EXPECT_EQ(outcome.errors, "zotdamctl: " + MissingCatalogue() + "\n");
    EXPECT_EQ(Json::parse(outcome.output), Json({{"error",
                                                  {{"kind", "missing-file"},
                                                   {"message", MissingCatalogue()},
                                                   {"file", Utf8(installation.DefaultsFile())}}}}));
}

TEST_F(CountTest, JsonErrorHasKindOfCatalogueProblem) {
    const std::string file = Utf8(installation.DefaultsFile());
    WriteDefaults("<ZOTDefault>");
    ExpectJsonError({L"count"}, "unreadable-file", file);
    WriteDefaults(ThreeFunctions);
    const SecondProcess other{HoldMutex, {DefaultsMarker}};
    ExpectJsonError({L"count"}, "in-use", file);
}

TEST_F(CountTest, MissingLibraryIsAnError) {
    const std::filesystem::path folder = installation.ProgramData() / L"alone";
    std::filesystem::create_directory(folder);
    std::filesystem::copy_file(Client(), folder / L"zotdamctl.exe");
    const Outcome outcome = RunProgram(folder / L"zotdamctl.exe", {L"count"}, folder);
    EXPECT_EQ(outcome.exitStatus, Failure);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "zotdamctl: The library " + Utf8(folder / L"ZOTDam.dll") +
                                  " was not found or cannot be loaded.\n");
}

TEST_F(CountTest, JsonErrorOfMissingLibraryHasItsKind) {
    const std::filesystem::path folder = installation.ProgramData() / L"alone";
    std::filesystem::create_directory(folder);
    std::filesystem::copy_file(Client(), folder / L"zotdamctl.exe");
    const Outcome outcome = RunProgram(folder / L"zotdamctl.exe", {L"count", L"--json"}, folder);
    EXPECT_EQ(Json::parse(outcome.output)["error"]["kind"], "library");
}

}  // namespace ZOTDam::Test
