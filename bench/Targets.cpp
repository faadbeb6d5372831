#include "Targets.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace ZOTDam::Bench {

namespace {

using Names = std::vector<std::string>;

// The highest ratio of an export's cost to the reference's cost.
struct Target {
    std::string description;
    Names exports;
    std::vector<int> sizes;  // all sizes if empty
    Reference reference;
    double limit;
};

const Names Saving = {"SetParameter", "SetCommonSetting", "ResetDefault", "InitCommonSetting",
                      "AddFunctionDefault"};
const Names ReadingChanged = {"GetParameter (changed)", "TEVGetParam (changed)", "GetCommandInfo (changed)",
                              "GetDiffFuncList (changed)", "GetCommonSetting (changed)"};
const Names ReadingMemory = {"GetFunctionBase", "GetFunctionBaseUnSupported", "GetFunctionInfo",
                             "GetSpecScheme", "GetParameterDefault"};

const std::vector<Target> Targets = {
    {"reads parameters of an unchanged file in at most 0.3 of a parse by path",
     {"GetParameter", "TEVGetParam", "GetCommandInfo"},
     {100, 1000},
     Reference::Parse,
     0.3},
    {"reads a setting of an unchanged file in at most 0.05 of a parse by path",
     {"GetCommonSetting"},
     {100, 1000},
     Reference::Parse,
     0.05},
    {"compares schemes of an unchanged file in at most 0.55 of a parse by path",
     {"GetDiffFuncList"},
     {100, 1000},
     Reference::Parse,
     0.55},
    {"reads a changed file in at most 0.7 of the old version's time",
     ReadingChanged,
     {},
     Reference::OldVersion,
     0.7},
    {"saves in at most 0.8 of the time of the baseline, which flushes the file too",
     Saving,
     {},
     Reference::Baseline,
     0.8},
    {"translates 1,000 functions with 2,000 texts at least 6 times as fast as the old version",
     {"GetFunctionInfo"},
     {1000},
     Reference::OldVersion,
     1.0 / 6},
    {"loads 1,000 functions in at most 0.6 of the old version's time",
     {"load to first answer"},
     {1000},
     Reference::OldVersion,
     0.6},
    {"saves in at most 1.05 times the time of the best baseline", Saving, {}, Reference::Best, 1.05},
    {"reads a changed file in at most 1.05 times the time of the best baseline",
     ReadingChanged,
     {},
     Reference::Best,
     1.05},
    {"reads documents in memory in at most 1.05 times the time of the best baseline",
     ReadingMemory,
     {},
     Reference::Best,
     1.05},
};

constexpr std::uintmax_t DllSizeLimit = std::uintmax_t{220} * 1024;

bool Applies(const Target& target, const Result& result) {
    return result.comparisons.contains(target.reference) &&
           std::ranges::find(target.exports, result.name) != target.exports.end() &&
           (target.sizes.empty() || std::ranges::find(target.sizes, result.size) != target.sizes.end());
}

std::string Format(const char* format, double number) {
    char text[32];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

// Returns no figures if the run did not measure the target.
TargetResult Check(const Target& target, const std::vector<Result>& results) {
    TargetResult checked{target.description, "", true};
    double lowest = 1e9;
    double highest = 0;
    std::string missed;
    for (const Result& result : results) {
        if (!Applies(target, result))
            continue;
        const double ratio = result.comparisons.at(target.reference).ratio;
        lowest = std::min(lowest, ratio);
        highest = std::max(highest, ratio);
        if (ratio > target.limit)
            missed += "; " + result.name + ' ' + std::to_string(result.size) + ": " + Format("%.2f", ratio);
    }
    if (highest > 0)
        checked.figures = Format("%.3f", lowest) + " to " + Format("%.3f", highest) + missed;
    checked.isMet = missed.empty();
    return checked;
}

}  // namespace

std::vector<TargetResult> CheckTargets(const Report& report) {
    std::vector<TargetResult> checked;
    for (const Target& target : Targets)
        if (TargetResult result = Check(target, report.results); !result.figures.empty())
            checked.push_back(std::move(result));
    checked.push_back({"the DLL has at most 220 KB",
                       Format("%.0f KB", static_cast<double>(report.dllSize) / 1024),
                       report.dllSize <= DllSizeLimit});
    return checked;
}

}  // namespace ZOTDam::Bench
