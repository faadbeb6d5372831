// Tests that frequent calls do no expensive work. They count operations and do not measure time.
#include "support/DomMethods.h"
#include "support/ImportPatch.h"
#include "support/SettingsTest.h"

namespace ZOTDam::Test {

namespace {

int allocations = 0;

void* CountedMalloc(std::size_t size) {
    ++allocations;
    return std::malloc(size);
}

BSTR WINAPI CountedSysAllocString(const OLECHAR* text) {
    ++allocations;
    return SysAllocString(text);
}

}  // namespace

// After the catalogue and the current values are loaded, GetFuncCount and GetFuncCurValue read from memory.
class CallCostTest : public SettingsTest {
protected:
    void SetUp() override {
        WriteFunctions(Function(1, R"(<Default ACParamIndex="1" DCParamIndex="2"/>)") +
                       Function(2, R"(<Default ACParamIndex="3" DCParamIndex="4"/>)"));
        EXPECT_TRUE(Dll().TEVGetParam(&Balanced));
        allocations = 0;
    }

    const ComScope com;
};

TEST_F(CallCostTest, GetFuncCountAfterLoadAllocatesNothing) {
    const ImportPatch heap{Dll().Handle(), "malloc", &CountedMalloc};
    const ImportPatch texts{Dll().Handle(), "SysAllocString", &CountedSysAllocString};
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
    EXPECT_EQ(allocations, 0);
}

TEST_F(CallCostTest, GetFuncCurValueAfterLoadAllocatesNothing) {
    const ImportPatch heap{Dll().Handle(), "malloc", &CountedMalloc};
    const ImportPatch texts{Dll().Handle(), "SysAllocString", &CountedSysAllocString};
    FuncCurValue value = {};
    EXPECT_TRUE(Dll().GetFuncCurValue(1, &value));
    EXPECT_EQ(value.FunctionId, 2u);
    EXPECT_EQ(allocations, 0);
}

TEST_F(CallCostTest, AllocatingReadIsDetected) {
    const ImportPatch heap{Dll().Handle(), "malloc", &CountedMalloc};
    GetParameter(Balanced);
    EXPECT_GT(allocations, 0);
}

TEST_F(CallCostTest, GetFuncCountDoesNotReadDocument) {
    const FailingDomMethod attributes{DomMethod::GetAttribute};
    const FailingDomMethod children{DomMethod::GetNamedItem};
    EXPECT_FALSE(Dll().TEVGetParam(&HighPerformance));
    EXPECT_EQ(Dll().GetFuncCount(), 2u);
}

}  // namespace ZOTDam::Test
