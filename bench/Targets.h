// The performance targets.
#pragma once

#include <string>
#include <vector>

#include "Report.h"

namespace ZOTDam::Bench {

// A target that the run has figures for.
struct TargetResult {
    std::string target;
    std::string figures;  // the range of the ratios, and the cases that miss the target
    bool isMet = false;
};

std::vector<TargetResult> CheckTargets(const Report& report);

}  // namespace ZOTDam::Bench
