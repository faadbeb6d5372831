#pragma once

#include <cstddef>

namespace ZOTDam::Client {

// A place in a file. Lines and columns are counted from 1; both are 0 if the place is unknown.
struct Position {
    std::size_t line = 0;
    std::size_t column = 0;
};

}  // namespace ZOTDam::Client
