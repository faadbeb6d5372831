#include "Measurement.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <utility>

namespace ZOTDam::Bench {

namespace {

constexpr int MinRounds = 3;
constexpr int MaxRounds = 301;

// Shorter runs, in microseconds, are repeated because of the resolution of the clock.
constexpr double MinDuration = 200;

constexpr double LongDuration = 1e6;

double Now() {
    LARGE_INTEGER frequency;
    LARGE_INTEGER now;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&now);
    return 1e6 * static_cast<double>(now.QuadPart) / static_cast<double>(frequency.QuadPart);
}

class TimedRun {
public:
    explicit TimedRun(const Run& run) : run{run} {
        double once = Once();
        if (once >= LongDuration) {
            durations.push_back(once);
            return;
        }
        // The first run may have loaded files that later runs do not load.
        once = Once();
        repetitions =
            run.preparation || once >= MinDuration ? 1 : static_cast<int>(MinDuration / (once + 0.01)) + 1;
    }

    // A long run is not repeated.
    bool IsLong() const { return repetitions == 0; }

    void Repeat() {
        if (IsLong())
            return;
        Prepare(run);
        durations.push_back(Microseconds([this] {
                                for (int i = 0; i < repetitions; ++i)
                                    run.measured();
                            }) /
                            repetitions);
    }

    const std::vector<double>& Durations() const { return durations; }

private:
    double Once() const {
        Prepare(run);
        return Microseconds(run.measured);
    }

    const Run& run;
    int repetitions = 0;
    std::vector<double> durations;
};

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

double CostOf(const TimedRun& run, Summary summary) {
    return summary == Summary::Median ? Median(run.Durations()) : std::ranges::min(run.Durations());
}

double RatioOf(const TimedRun& library, const TimedRun& reference, Summary summary) {
    if (summary == Summary::Fastest || library.IsLong() || reference.IsLong())
        return CostOf(library, summary) / CostOf(reference, summary);
    std::vector<double> ratios;
    std::ranges::transform(library.Durations(), reference.Durations(), std::back_inserter(ratios),
                           std::divides{});
    return Median(std::move(ratios));
}

}  // namespace

void Prepare(const Run& run) {
    if (run.preparation)
        run.preparation();
}

double Microseconds(const std::function<void()>& run) {
    const double start = Now();
    run();
    return Now() - start;
}

Result Measure(const Case& measured, int size, double seconds, Summary summary) {
    TimedRun library{measured.library};
    std::map<Reference, TimedRun> references;
    for (const auto& [reference, run] : measured.references)
        references.emplace(reference, run);
    const double end = Now() + seconds * 1e6;
    int rounds = 0;
    for (; rounds < MinRounds || (rounds < MaxRounds && Now() < end); ++rounds) {
        library.Repeat();
        for (auto& [reference, run] : references)
            run.Repeat();
    }
    Result result{measured.name, size, rounds, CostOf(library, summary), {}};
    for (const auto& [reference, run] : references)
        result.comparisons[reference] = {CostOf(run, summary), RatioOf(library, run, summary)};
    return result;
}

}  // namespace ZOTDam::Bench
