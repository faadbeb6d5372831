// Support for stress tests. They repeat their work briefly as part of all tests, and many times in the long
// run.
#pragma once

#include <cstdlib>
#include <iostream>
#include <string_view>

namespace ZOTDam::Test {

// Returns how often a test repeats its work. An environment variable selects the long run.
inline int Rounds(int inShortRun, int inLongRun) {
    return std::getenv("ZOTDAM_LONG_RUN") != nullptr ? inLongRun : inShortRun;
}

// Prints a number that a test has measured.
template <class Value>
void ShowFigure(std::string_view what, const Value& value) {
    std::cout << "[  FIGURE  ] " << what << ": " << value << std::endl;
}

}  // namespace ZOTDam::Test
