#include "Measurement.h"

#include <windows.h>

#include <algorithm>

namespace ZOTDam::Bench {

namespace {

constexpr int MinRounds = 3;
constexpr int MaxRounds = 301;

// Shorter runs, in microseconds, are repeated because of the resolution of the clock.
constexpr double MinDuration = 200;

double Now() {
    LARGE_INTEGER frequency;
    LARGE_INTEGER now;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&now);
    return 1e6 * static_cast<double>(now.QuadPart) / static_cast<double>(frequency.QuadPart);
}

void RunIfAny(const std::function<void()>& action) {
    if (action)
        action();
}

class TimedRun {
public:
    TimedRun(const std::function<void()>& preparation, const std::function<void()>& measured)
        : prepare{preparation}, run{measured} {
        const double once = RunOnce();
        repetitions = prepare || once >= MinDuration ? 1 : static_cast<int>(MinDuration / (once + 0.01)) + 1;
    }

    double Run() {
        RunIfAny(prepare);
        const double duration = Microseconds([this] {
            for (int i = 0; i < repetitions; ++i)
                run();
        });
        return duration / repetitions;
    }

private:
    double RunOnce() {
        RunIfAny(prepare);
        return Microseconds(run);
    }

    const std::function<void()>& prepare;
    const std::function<void()>& run;
    int repetitions = 1;
};

}  // namespace

double Microseconds(const std::function<void()>& run) {
    const double start = Now();
    run();
    return Now() - start;
}

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

Result Measure(const Case& measured, int size, double seconds) {
    TimedRun library{measured.prepare, measured.library};
    TimedRun baseline{measured.prepareBaseline, measured.baseline ? measured.baseline : measured.library};
    std::vector<double> libraryTimes;
    std::vector<double> baselineTimes;
    std::vector<double> ratios;
    const double end = Now() + seconds * 1e6;
    while (ratios.size() < MinRounds || (ratios.size() < MaxRounds && Now() < end)) {
        libraryTimes.push_back(library.Run());
        baselineTimes.push_back(measured.baseline ? baseline.Run() : 0);
        ratios.push_back(measured.baseline ? libraryTimes.back() / baselineTimes.back() : 0);
    }
    return {measured.name,         size,          static_cast<int>(ratios.size()), Median(libraryTimes),
            Median(baselineTimes), Median(ratios)};
}

}  // namespace ZOTDam::Bench
