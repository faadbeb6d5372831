// Compares each export of the library with its baseline.
#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <CLI/CLI.hpp>
#include <cstdio>
#include <string>
#include <vector>

#include "Profile.h"
#include "Report.h"
#include "Workbench.h"

namespace ZOTDam::Bench {

namespace {

// Returns the peak memory of this process in KiB, after the library has loaded all data of this size.
unsigned long long PeakMemory(int functions) {
    Workbench bench{functions};
    bench.FillLibrary();
    PROCESS_MEMORY_COUNTERS counters = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PeakWorkingSetSize / 1024;
}

bool IsSelected(const Case& measured, const std::vector<std::string>& names) {
    return names.empty() || std::ranges::find(names, measured.name) != names.end();
}

std::vector<Result> MeasureAll(const std::vector<int>& sizes, const std::vector<std::string>& names,
                               double seconds) {
    std::vector<Result> results;
    for (const int size : sizes) {
        Workbench bench{size};
        for (const Case& measured : bench.Cases()) {
            if (!IsSelected(measured, names))
                continue;
            results.push_back(Measure(measured, size, seconds));
            PrintRow(results.back());
        }
    }
    return results;
}

void PrintProfiles(const std::vector<int>& sizes, const std::vector<std::string>& names, double seconds) {
    for (const int size : sizes) {
        Workbench bench{size};
        for (const Case& measured : bench.Cases()) {
            if (!IsSelected(measured, names) || measured.prepare)
                continue;
            std::printf("%s, %d functions\n", measured.name.c_str(), size);
            for (const auto& [module, share] : Profile(measured.library, seconds))
                std::printf("    %5.1f %% %s\n", share, module.c_str());
        }
    }
}

}  // namespace

}  // namespace ZOTDam::Bench

int main(int argc, char** argv) {
    using namespace ZOTDam::Bench;
    CLI::App app{"Measures each export of ZOTDam.dll against plain MSXML code that does the same."};
    std::vector<int> sizes{10, 100, 1000, 10000};
    std::vector<std::string> names;
    double seconds = 1;
    int peakMemoryFor = -1;
    bool profiles = false;
    std::string json;
    std::string markdown;
    std::string chart;
    app.add_option("--sizes", sizes, "how many functions the data files have")->delimiter(',');
    app.add_option("--cases", names, "the names of those to measure; all without it")->delimiter(',');
    app.add_option("--seconds", seconds, "how long each export is measured at each size");
    app.add_flag("--profile", profiles, "prints only in which modules the time is spent");
    app.add_option("--json", json, "a file for the results");
    app.add_option("--markdown", markdown, "a file for the results as a table");
    app.add_option("--chart", chart, "a file for a chart of cost over size (SVG)");
    app.add_option("--peak-memory", peakMemoryFor,
                   "prints only the peak memory, in KiB, for so many functions");
    CLI11_PARSE(app, argc, argv);

    if (peakMemoryFor >= 0) {
        std::printf("%llu\n", PeakMemory(peakMemoryFor));
        return 0;
    }
    if (profiles) {
        PrintProfiles(sizes, names, seconds);
        return 0;
    }
    const std::vector<Result> results = MeasureAll(sizes, names, seconds);
    WriteReports(results, json, markdown, chart);
    return 0;
}
