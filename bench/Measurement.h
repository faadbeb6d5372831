#pragma once

#include <functional>
#include <string>
#include <vector>

namespace ZOTDam::Bench {

// One export at one size, and its baseline.
struct Case {
    std::string name;
    std::function<void()> library;
    std::function<void()> baseline = {};         // empty if no document is used
    std::function<void()> prepare = {};          // before each call of the library, not measured
    std::function<void()> prepareBaseline = {};  // before each run of the baseline
};

// Medians in microseconds. The ratio is the median of the rounds' ratios.
struct Result {
    std::string name;
    int size = 0;
    int rounds = 0;
    double library = 0;
    double baseline = 0;
    double ratio = 0;
};

// Runs the library and the baseline alternately, as often as the time permits.
Result Measure(const Case& measured, int size, double seconds);

double Median(std::vector<double> values);
double Microseconds(const std::function<void()>& run);

}  // namespace ZOTDam::Bench
