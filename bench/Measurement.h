#pragma once

#include <functional>
#include <string>
#include <vector>

namespace ZOTDam::Bench {

// One export at one size, and what it is compared with.
struct Case {
    std::string name;
    std::function<void()> library;
    std::function<void()> floor = {};         // none where no document is touched
    std::function<void()> prepare = {};       // before each call of the library, untimed
    std::function<void()> prepareFloor = {};  // before each floor
};

// Medians in microseconds. The ratio is the median of the ratios of the rounds.
struct Result {
    std::string name;
    int size = 0;
    int rounds = 0;
    double library = 0;
    double floor = 0;
    double ratio = 0;
};

// Runs the library and the floor in turn, as often as the time allows.
Result Measure(const Case& measured, int size, double seconds);

double Median(std::vector<double> values);
double Microseconds(const std::function<void()>& run);

}  // namespace ZOTDam::Bench
