#pragma once

#include <cstddef>
#include <string_view>

namespace ZOTDam::Client {

// Returns the number of columns that a text takes on a terminal: two for an ideograph or an emoji, none for a
// combining mark. Characters that a joiner or a modifier combines into one emoji count once.
std::size_t DisplayWidth(std::string_view utf8);

}  // namespace ZOTDam::Client
