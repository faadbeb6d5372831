// Faults that an instrumented build must detect.
#pragma once

#include <string>
#include <vector>

namespace ZOTDam::Test {

struct Fault {
    std::string name;
    void (*commit)();
};

// The faults that this build must detect.
const std::vector<Fault>& Faults();

}  // namespace ZOTDam::Test
