// GetParameter: the user's values, completed from the defaults.
#include "support/ExportTest.h"

namespace ZOTDam::Test {

using SchemeReadingTest = ExportTest;

TEST_F(SchemeReadingTest, AdoptsTheDefaultsOfASchemeThatIsReadForTheFirstTime) {
    WriteDefaults(R"(<ZOTDefault><Functions>
        <Function ID="1"><Display/><Commands/><Default ACParamIndex="2" DCParamIndex="3"/></Function>
    </Functions></ZOTDefault>)");
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {2, 3}}}));
    EXPECT_EQ(UserSettings(),
              "<?xml version='1.0' encoding='UTF-8'?>\n<OrloPowerCfg><PowerSchemes>"
              "<PowerScheme GUID=\"381b4222-f694-41f0-9685-ff5bb260df2e\">\n\t"
              "<Function ID=\"1\" ACParamIndex=\"2\" DCParamIndex=\"3\">\n\t</Function></PowerScheme>"
              "</PowerSchemes></OrloPowerCfg>\n");
}

TEST_F(SchemeReadingTest, ReadsBackWhatSetParameterStored) {
    WriteDefaults(R"(<ZOTDefault><Functions>
        <Function ID="1"><Display/><Commands/><Default ACParamIndex="2" DCParamIndex="3"/></Function>
    </Functions></ZOTDefault>)");
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {5, 6}}}));
}

TEST_F(SchemeReadingTest, DropsAWriteWhileAnotherProcessHoldsTheMarker) {
    const SecondProcess other{HoldMutex, {UserMarker}};
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_FALSE(std::filesystem::exists(installation.UserFile()));
}

}  // namespace ZOTDam::Test
