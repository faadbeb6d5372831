// Calls every export on randomly generated and damaged data files. Each round uses one seed. Environment
// variables can set the first seed, the number of rounds, and a folder that receives the files of each round
// before it begins: ZOTDAM_FUZZ_SEED, ZOTDAM_FUZZ_ROUNDS, ZOTDAM_FUZZ_FOLDER.
#include "support/ExportTest.h"
#include "support/FileGenerator.h"
#include "support/Mutator.h"
#include "support/RandomClient.h"
#include "support/Stress.h"
#include "support/UnflushedFiles.h"
#include "support/Watchdog.h"
#include "support/XmlFile.h"

namespace ZOTDam::Test {

namespace {

unsigned NumberOr(const char* variable, unsigned otherwise) {
    const char* const text = std::getenv(variable);
    return text != nullptr ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : otherwise;
}

}  // namespace

class FuzzTest : public ExportTest {
protected:
    // A file, and the content that the round has written to it.
    struct Input {
        std::filesystem::path file;
        std::string content;
    };

    void Round(unsigned seed) {
        watchdog.Begin("seed " + std::to_string(seed));
        Random random{seed};
        FileGenerator generator{random};
        WriteInput(defaults, MaybeMutate(generator.Defaults(), random));
        WriteInput(userSettings, MaybeMutate(generator.UserSettings(), random));
        WriteInput(base, MaybeMutate(generator.Base(), random));
        WriteInput(stringTable, MaybeMutate(generator.StringTable(), random));
        LeaveFilesUnflushed(Dll().Handle());
        RandomClient{Dll(), random}.CallEverything(
            [&] { WriteInput(userSettings, MaybeMutate(generator.UserSettings(), random)); });
        Unload();
        ExpectUntouched(base);
        ExpectUntouched(stringTable);
        ExpectWellFormed(defaults);
        ExpectWellFormed(userSettings);
    }

    int inputs = 0;

private:
    static std::string MaybeMutate(const std::string& xml, Random& random) {
        return random.OneIn(4) ? Mutator{random}.Mutate(xml) : xml;
    }

    void WriteInput(Input& input, const std::string& content) {
        std::filesystem::remove(UnreadableCopyOf(input.file));
        WriteFile(input.file, content);
        if (folder != nullptr)
            WriteFile(std::filesystem::path{folder} / input.file.filename(), content);
        input.content = content;
        ++inputs;
    }

    static void ExpectUntouched(const Input& input) { EXPECT_TRUE(ReadFile(input.file) == input.content); }

    // A file that the library has written must be well-formed. A copy that it has kept must have the old
    // content.
    static void ExpectWellFormed(const Input& input) {
        EXPECT_FALSE(std::filesystem::exists(TemporaryFileOf(input.file)));
        if (ReadFile(input.file) == input.content)
            return;
        EXPECT_TRUE(IsWellFormed(input.file)) << input.file << " was written as\n" << ReadFile(input.file);
        if (const auto copy = UnreadableCopyOf(input.file); std::filesystem::exists(copy)) {
            EXPECT_TRUE(ReadFile(copy) == input.content);
        }
    }

    // Keeps COM, and with it the DOM, loaded between the rounds, as a client does.
    ComScope com;
    Watchdog watchdog{60000};
    const char* folder = std::getenv("ZOTDAM_FUZZ_FOLDER");
    Input defaults{installation.DefaultsFile(), {}};
    Input userSettings{installation.UserFile(), {}};
    Input base{installation.BaseFile(), {}};
    Input stringTable{installation.StringTableFile(), {}};
};

TEST_F(FuzzTest, RandomInputNeitherCrashesNorDamagesFiles) {
    const unsigned first = NumberOr("ZOTDAM_FUZZ_SEED", 0);
    const unsigned rounds = NumberOr("ZOTDAM_FUZZ_ROUNDS", static_cast<unsigned>(Rounds(80, 5000)));
    for (unsigned seed = first; seed - first < rounds; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        ASSERT_NO_THROW(Round(seed));
        if (HasFailure())
            break;
        if ((seed + 1 - first) % 1000 == 0)
            ShowFigure("inputs up to seed " + std::to_string(seed), inputs);
    }
    ShowFigure("inputs", inputs);
}

}  // namespace ZOTDam::Test
