// Tests that repeat something very often: a short run of them belongs to all tests, the long run takes its
// time.
#pragma once

#include <cstdlib>
#include <iostream>
#include <string_view>

namespace ZOTDam::Test {

// How often a test repeats its work. The environment asks for the long run.
inline int Rounds(int inShortRun, int inLongRun) {
    return std::getenv("ZOTDAM_LONG_RUN") != nullptr ? inLongRun : inShortRun;
}

// Shows a number that a test has measured.
template <class Value>
void ShowFigure(std::string_view what, const Value& value) {
    std::cout << "[  FIGURE  ] " << what << ": " << value << std::endl;
}

}  // namespace ZOTDam::Test
