// Guards a test program's own blocks from the first test on. The registration of the tests before that
// allocates so many blocks that guarding them would exhaust the memory mappings of the process.
#include <gtest/gtest.h>

#include "GuardedHeap.h"

namespace ZOTDam::Test {

namespace {

class GuardTests : public testing::EmptyTestEventListener {
    void OnTestProgramStart(const testing::UnitTest&) override { guardsNewBlocks = true; }
};

// Constructed before the objects that register tests.
__attribute__((init_priority(102))) const struct Registration {
    Registration() {
        guardsNewBlocks = false;
        testing::UnitTest::GetInstance()->listeners().Append(new GuardTests);
    }
} RegistrationOfGuards;

}  // namespace

}  // namespace ZOTDam::Test
