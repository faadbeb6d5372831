// The options of a function for one power source, as commands show them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Report.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

struct Option {
    std::int32_t option = 0;
    std::string label;
};

using Options = std::vector<Option>;

Options OptionsOf(const List<DisplayItem>& items);

// Returns the positions, labels and options: "0: Fast (10)  1: Slow (20)". Parameters refer to options by
// position.
std::string OptionsText(const Options& options);
Json OptionsJson(const Options& options);

}  // namespace ZOTDam::Client
