#pragma once

#include <benchmark/benchmark.h>

// How a benchmark states its figure, for tools/bench to judge: a ratio to a baseline that the
// same run measures. The baseline of the benchmark "setTags" is called "setTags/baseline"; the
// medians of several repetitions are compared. A bound is set once in the benchmark's body:
//
//   static void setTags(benchmark::State &state) { …; XPBench::timeAtMost(state, 1.5); }
//   BENCHMARK(setTags);
//   BENCHMARK(bareSetxattr)->Name("setTags/baseline");
//
// A benchmark without a bound is reported and not judged.
namespace XPBench {

inline void bound(benchmark::State &state, const char *name, double value)
{
    state.counters[name] = benchmark::Counter(value, benchmark::Counter::kAvgThreads);
}

// At most `ratio` times the baseline's time.
inline void timeAtMost(benchmark::State &state, double ratio)
{
    bound(state, "time_at_most", ratio);
}

// At least `ratio` times as fast as the baseline: by items a second where both count items
// (SetItemsProcessed), else by time.
inline void speedAtLeast(benchmark::State &state, double ratio)
{
    bound(state, "speed_at_least", ratio);
}

// No baseline: at least so many items a second (SetItemsProcessed).
inline void itemsPerSecondAtLeast(benchmark::State &state, double items)
{
    bound(state, "items_at_least", items);
}

// No baseline and no time: a measured quantity, such as bytes for each path.
inline void valueAtMost(benchmark::State &state, double value, double most)
{
    bound(state, "value", value);
    bound(state, "value_at_most", most);
}

} // namespace XPBench
