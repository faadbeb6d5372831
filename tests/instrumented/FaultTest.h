// Faults that an instrumented build has to find.
#pragma once

#include <string>
#include <vector>

namespace ZOTDam::Test {

struct Fault {
    std::string name;
    void (*commit)();
};

// Those of this build.
const std::vector<Fault>& Faults();

}  // namespace ZOTDam::Test
