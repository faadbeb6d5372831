// zotdamctl on a copy of the sample installation.
#include "client/ClientTest.h"

namespace ZOTDam::Test {

class SamplesTest : public ClientTest {
protected:
    SamplesTest() {
        const std::filesystem::path samples = ZOTDAM_SAMPLES;
        constexpr auto everything = std::filesystem::copy_options::recursive;
        std::filesystem::copy(samples / L"Program Files", installation.ProgramFiles(), everything);
        std::filesystem::copy(samples / L"ProgramData", installation.ProgramData(), everything);
    }
};

TEST_F(SamplesTest, HaveACatalogue) {
    EXPECT_EQ(JsonOutput({L"count"}), Json({{"count", 16}}));
}

TEST_F(SamplesTest, HaveDefaultsForEachFunctionInEachScheme) {
    for (const wchar_t* const scheme : {L"balanced", L"high-performance", L"power-saver"})
        EXPECT_EQ(JsonOutput({L"params", scheme, L"--default"})["parameters"].size(), 16) << scheme;
}

TEST_F(SamplesTest, CompleteTheUsersChoicesFromTheDefaults) {
    const Json params = JsonOutput({L"params", L"balanced"})["parameters"];
    EXPECT_EQ(params[0], Param(1, 0, 3)) << "the user's choice";
    EXPECT_EQ(params[4], Param(5, 3, 1)) << "the default";
}

TEST_F(SamplesTest, TakeAChangeAndAReset) {
    Output({L"set", L"balanced", L"1", L"4", L"4"});
    EXPECT_EQ(JsonOutput({L"params", L"balanced"})["parameters"][0], Param(1, 4, 4));
    EXPECT_EQ(JsonOutput({L"reset"}), Json({{"reset", true}}));
    EXPECT_EQ(JsonOutput({L"params", L"balanced"})["parameters"][0], Param(1, 1, 2));
}

}  // namespace ZOTDam::Test
