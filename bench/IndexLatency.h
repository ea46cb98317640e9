#pragma once

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <vector>

// How long each of many different questions takes, as a figure of a benchmark: the quantile (in
// percent) that the benchmark's argument names, over the questions; each question's time is the
// median of three runs, so that what shows is the question and not the machine's other work.
// Register with indexQuantiles(): UseManualTime, one iteration, ->Arg(50)->Arg(99).
namespace XPBench {

using Clock = std::chrono::steady_clock;

inline double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

inline double quantile(std::vector<double> times, double percent)
{
    if (times.empty())
        std::abort(); // the figure would be of nothing
    std::sort(times.begin(), times.end());
    const double at = percent / 100 * static_cast<double>(times.size());
    return times[std::min(static_cast<size_t>(at), times.size() - 1)];
}

inline void measureQuantile(benchmark::State &state, size_t questions,
                            const std::function<void(size_t question)> &ask,
                            const std::function<void(size_t question)> &before = {})
{
    for ([[maybe_unused]] auto _ : state) {
        std::vector<double> times;
        for (size_t i = 0; i < questions; ++i) {
            std::vector<double> runs;
            for (int run = 0; run < 3; ++run) {
                if (before)
                    before(i);
                const auto start = Clock::now();
                ask(i);
                runs.push_back(secondsSince(start));
            }
            times.push_back(quantile(runs, 50));
        }
        state.SetIterationTime(quantile(times, static_cast<double>(state.range(0))));
    }
}

inline void indexQuantiles(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(50)->Arg(99)->Iterations(1)->UseManualTime()->Unit(benchmark::kMicrosecond);
}

} // namespace XPBench
