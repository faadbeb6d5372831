#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace ZOTDam::Bench {

// What a call of the library is compared with.
enum class Reference {
    Parse,       // only loads the user settings by path
    Baseline,    // plain MSXML code for the same task
    Best,        // the best MSXML code for the same task
    PlainSave,   // the baseline with the DOM's save, which neither flushes to the disk nor is atomic
    OldVersion,  // another version of the library
};

struct Run {
    std::function<void()> measured;
    std::function<void()> preparation = {};  // before each run, not measured
};

// One export at one size.
struct Case {
    std::string name;
    Run library;
    std::map<Reference, Run> references;
};

struct Comparison {
    double cost;
    double ratio;
};

// How the durations of the rounds become one figure.
enum class Summary {
    Median,   // the medians of the costs and of the rounds' ratios
    Fastest,  // the shortest durations and their ratio, for a machine that other programs use
};

// Costs are in microseconds.
struct Result {
    std::string name;
    int size = 0;
    int rounds = 0;
    double library = 0;
    std::map<Reference, Comparison> comparisons;
};

// Runs the library and its references alternately, as often as the time permits.
Result Measure(const Case& measured, int size, double seconds, Summary summary);

void Prepare(const Run& run);
double Microseconds(const std::function<void()>& run);

}  // namespace ZOTDam::Bench
