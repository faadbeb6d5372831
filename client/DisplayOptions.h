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

// Returns the option at a position, or null if the position selects none.
const Option* SelectOption(const Options& options, std::int32_t index);

// Returns the positions, labels and options: "0: Fast (10)  1: Slow (20)". Parameters refer to options by
// position.
std::string OptionsText(const Options& options);
Json OptionsJson(const Options& options);

// Returns the label, or the number of an option without a label; "-" for null.
std::string LabelText(const Option* option);

// Return the label with the position or with the number: "Fast (0)", "Fast (10)". An index that selects no
// option is "- (7)", no option is "-".
std::string IndexText(const Options& options, std::int32_t index);
std::string OptionText(const Option* option);

// Return null for no option.
Json NumberJson(const Option* option);
Json LabelJson(const Option* option);

}  // namespace ZOTDam::Client
