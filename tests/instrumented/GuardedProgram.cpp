// Lets a test program's own blocks be guarded from the first test on. Before that it registers so many
// objects that the system has not pages enough.
#include <gtest/gtest.h>

#include "GuardedHeap.h"

namespace ZOTDam::Test {

namespace {

class GuardTests : public testing::EmptyTestEventListener {
    void OnTestProgramStart(const testing::UnitTest&) override { guardsNewBlocks = true; }
};

// Made before the objects that register tests.
__attribute__((init_priority(102))) const struct Registration {
    Registration() {
        guardsNewBlocks = false;
        testing::UnitTest::GetInstance()->listeners().Append(new GuardTests);
    }
} registration;

}  // namespace

}  // namespace ZOTDam::Test
