// The fixture of the tests that run zotdamctl on a separate installation.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "client/ClientProcess.h"
#include "support/TranslationTest.h"

namespace ZOTDam::Test {

using Json = nlohmann::json;
using Arguments = std::vector<std::wstring>;

// The exit codes of zotdamctl.
enum : DWORD { Success = 0, Failure = 1, WrongUsage = 2, InUse = 3 };

// A display never supports both rates of function 8.
inline constexpr char ThreeFunctions[] = R"(<ZOTDefault><Functions>
    <Function ID="1"><Display/><Commands/><Default ACParamIndex="2" DCParamIndex="3"/></Function>
    <Function ID="2"><Display/><Commands/><Default ACParamIndex="0" DCParamIndex="0">
        <DefaultItem GUID="8c5e7fda-e8bf-4a96-9a85-a6e23a8c635c" ACParamIndex="4" DCParamIndex="5"/>
    </Default></Function>
    <Function ID="8">
        <Display><AC><DisplayItem Option="60"/><DisplayItem Option="100000"/></AC></Display>
        <Commands/><Default ACParamIndex="1" DCParamIndex="1"/>
    </Function>
</Functions></ZOTDefault>)";

class ClientTest : public TranslationTest {
protected:
    virtual std::filesystem::path Client() const { return Library::ProgramFolder() / L"zotdamctl.exe"; }

    // Passes the folders of the installation as options, because the system sets %ProgramFiles% for each
    // process.
    Outcome Run(const Arguments& arguments) const {
        Arguments all = {L"--program-files", installation.ProgramFiles(), L"--program-data",
                         installation.ProgramData()};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return RunProgram(Client(), all, Client().parent_path());
    }

    std::string Output(const Arguments& arguments) const {
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.exitStatus, Success);
        EXPECT_EQ(outcome.errors, "");
        return outcome.output;
    }

    Json JsonOutput(Arguments arguments) const {
        arguments.push_back(L"--json");
        return Json::parse(Output(arguments));
    }

    // For wrong usage, a sentence that refers to the help of the command must follow.
    void ExpectError(const Arguments& arguments, DWORD exitStatus, const std::string& sentence) const {
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.exitStatus, exitStatus);
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, "zotdamctl: " + sentence +
                                      (exitStatus == WrongUsage ? HelpReference(arguments) : "") + "\n");
    }

    // The command must be the first argument.
    static std::string HelpReference(const Arguments& arguments) {
        const bool hasSubcommand = arguments.front() == L"setting" && arguments.size() > 1;
        return " See \"zotdamctl " + Utf8(arguments.front()) +
               (hasSubcommand ? " " + Utf8(arguments[1]) : "") + " --help\".";
    }

    // Checks that the command fails without the catalogue, with a message that names the file.
    void ExpectNeedsCatalogue(const Arguments& arguments) const {
        std::filesystem::remove(installation.DefaultsFile());
        ExpectError(arguments, Failure, MissingCatalogue());
        WriteDefaults("<ZOTDefault>");
        ExpectCatalogueThatIsNotWellFormed(arguments);
        WriteDefaults(ThreeFunctions);
        const SecondProcess other{HoldMutex, {DefaultsMarker}};
        ExpectError(arguments, InUse, CatalogueInUse());
    }

    // The position of the error depends on the parser.
    void ExpectCatalogueThatIsNotWellFormed(const Arguments& arguments) const {
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.exitStatus, Failure);
        EXPECT_EQ(outcome.output, "");
        EXPECT_TRUE(outcome.errors.starts_with(
            "zotdamctl: " + CatalogueNotLoaded(installation.ProgramFiles()) + "the file is not well-formed"))
            << outcome.errors;
    }

    void ExpectNeedsUserSettings(const Arguments& arguments) const {
        const SecondProcess other{HoldMutex, {UserMarker}};
        ExpectError(arguments, InUse, UserFile() + " is in use by another program.");
    }

    void ExpectUnknownScheme(const Arguments& arguments, const std::string& scheme,
                             const std::string& suggestion = ".") const {
        ExpectError(arguments, WrongUsage,
                    "\"" + scheme +
                        "\" is not a power scheme: specify its GUID, or balanced, high-performance or "
                        "power-saver" +
                        suggestion);
    }

    static Json Param(int id, int ac, int dc) { return {{"id", id}, {"acIndex", ac}, {"dcIndex", dc}}; }

    // Returns the ids and positions of a list of parameters, without their names and labels.
    static Json Indexes(const Json& parameters) {
        Json indexes = Json::array();
        for (const Json& param : parameters)
            indexes.push_back(Param(param["id"], param["acIndex"], param["dcIndex"]));
        return indexes;
    }

    Json IndexesOf(const Arguments& arguments) const { return Indexes(JsonOutput(arguments)["parameters"]); }

    // Checks the JSON of an error, which the standard output contains with --json.
    void ExpectJsonError(Arguments arguments, const std::string& kind, const Json& file) const {
        arguments.emplace_back(L"--json");
        const Outcome outcome = Run(arguments);
        const Json error = Json::parse(outcome.output)["error"];
        EXPECT_EQ(error["kind"], kind);
        EXPECT_EQ(error["file"], file);
        EXPECT_EQ(outcome.errors, "zotdamctl: " + error["message"].get<std::string>() + "\n");
        EXPECT_NE(outcome.exitStatus, Success);
    }

    static std::filesystem::path DefaultsFile(const std::filesystem::path& programFiles) {
        return programFiles / L"Orlo" / L"QUEN Power Management" / L"ZOTDefault.xml";
    }

    // Parts of the messages.
    std::string UserFile() const { return "The user settings file " + Utf8(installation.UserFile()); }
    std::string DefaultsTitle() const { return "The defaults file " + Utf8(installation.DefaultsFile()); }
    std::string MissingCatalogue() const { return MissingCatalogue(installation.ProgramFiles()); }
    std::string CatalogueInUse() const {
        return CatalogueNotLoaded(installation.ProgramFiles()) + "the file is in use by another program.";
    }
    std::string RejectedCatalogue(const std::string& problem) const {
        return CatalogueNotLoaded(installation.ProgramFiles()) + problem + ".";
    }
    static std::string MissingCatalogue(const std::filesystem::path& programFiles) {
        return CatalogueNotLoaded(programFiles) + "the file does not exist.";
    }

private:
    static std::string CatalogueNotLoaded(const std::filesystem::path& programFiles) {
        return "The catalogue cannot be loaded from " + Utf8(DefaultsFile(programFiles)) + ": ";
    }
};

}  // namespace ZOTDam::Test
