// Compares each export of the library with its baseline.
#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "Profile.h"
#include "Report.h"
#include "Workbench.h"

namespace ZOTDam::Bench {

namespace {

struct Options {
    std::vector<int> sizes{16, 100, 1000, 10000};
    std::vector<std::string> names;
    double seconds = 1;
    std::string oldDll;
    bool comparesFastest = false;
};

// Returns the peak memory of this process in KiB, after the library has loaded all data of this size.
unsigned long long PeakMemory(int functions) {
    Workbench bench{{functions}};
    bench.FillLibrary();
    PROCESS_MEMORY_COUNTERS counters = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PeakWorkingSetSize / 1024;
}

bool IsSelected(const Case& measured, const std::vector<std::string>& names) {
    return names.empty() || std::ranges::find(names, measured.name) != names.end();
}

void MeasureCases(const std::vector<Case>& cases, int size, const Options& options,
                  std::vector<Result>& results) {
    const Summary summary = options.comparesFastest ? Summary::Fastest : Summary::Median;
    for (const Case& measured : cases) {
        if (!IsSelected(measured, options.names))
            continue;
        results.push_back(Measure(measured, size, options.seconds, summary));
        PrintRow(results.back());
    }
}

void MeasureAll(const Options& options, std::vector<Result>& results) {
    for (const int size : options.sizes) {
        Workbench bench{{size}, options.oldDll};
        MeasureCases(bench.Cases(), size, options, results);
    }
    // The cost grows with the number of functions plus the number of texts, not with their product.
    for (const int entries : {100, 1000, 10000}) {
        constexpr int functions = 1000;
        Workbench bench{{functions, entries}, options.oldDll};
        MeasureCases(bench.TextCases(), functions, options, results);
    }
}

void PrintProfiles(const Options& options) {
    for (const int size : options.sizes) {
        Workbench bench{{size}};
        for (const Case& measured : bench.Cases()) {
            if (!IsSelected(measured, options.names))
                continue;
            std::printf("%s, %d functions\n", measured.name.c_str(), size);
            for (const auto& [module, share] : Profile(measured.library, options.seconds))
                std::printf("    %5.1f %% %s\n", share, module.c_str());
        }
    }
}

std::string Today() {
    SYSTEMTIME time;
    GetSystemTime(&time);
    char text[32];
    std::snprintf(text, sizeof text, "%04u-%02u-%02u", time.wYear, time.wMonth, time.wDay);
    return text;
}

}  // namespace

}  // namespace ZOTDam::Bench

int main(int argc, char** argv) {
    using namespace ZOTDam::Bench;
    CLI::App app{"Measures each export of ZOTDam.dll against MSXML code that does the same."};
    Options options;
    int peakMemoryFor = -1;
    bool profiles = false;
    Report report{
        "unknown", Today(), std::filesystem::file_size(ZOTDam::Library::ProgramFolder() / L"ZOTDam.dll"), {}};
    std::string json;
    std::string markdown;
    std::string chart;
    app.add_option("--sizes", options.sizes, "how many functions the data files have")->delimiter(',');
    app.add_option("--cases", options.names, "the names of those to measure; all without it")->delimiter(',');
    app.add_option("--seconds", options.seconds, "how long each export is measured at each size");
    app.add_flag("--fastest", options.comparesFastest,
                 "compares the fastest runs instead of the medians, for a machine in use");
    app.add_option("--compare", options.oldDll, "the full path of another ZOTDam.dll to compare with");
    app.add_option("--commit", report.commit, "the commit that is measured");
    app.add_flag("--profile", profiles, "prints only in which modules the time is spent");
    app.add_option("--json", json, "a file for the results");
    app.add_option("--markdown", markdown, "a file for the results as tables");
    app.add_option("--chart", chart, "a file for a chart of cost over size (SVG)");
    app.add_option("--peak-memory", peakMemoryFor,
                   "prints only the peak memory, in KiB, for so many functions");
    CLI11_PARSE(app, argc, argv);

    if (peakMemoryFor >= 0) {
        std::printf("%llu\n", PeakMemory(peakMemoryFor));
        return 0;
    }
    if (profiles) {
        PrintProfiles(options);
        return 0;
    }
    PrintHead(report);
    MeasureAll(options, report.results);
    PrintTargets(report);
    WriteReports(report, json, markdown, chart);
    return 0;
}
