// The catalogue that the defaults file describes, seen through GetFuncCount.
#include "support/ExportTest.h"

namespace ZOTDam::Test {

using CatalogueTest = ExportTest;

TEST_F(CatalogueTest, CountsTheFunctionsOfTheDefaultsFile) {
    WriteDefaults(R"(<ZOTDefault><Functions>
        <Function ID="1"><Display/><Commands/></Function>
        <Function ID="2"><Display/><Commands/></Function>
    </Functions></ZOTDefault>)");
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
}

}  // namespace ZOTDam::Test
