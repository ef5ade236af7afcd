// The loop of every benchmark: times a call over and over, and counts what it asks of memory. Under callgrind it counts
// the call's instructions too.
#pragma once

#include "allocations.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <string>
#include <vector>

namespace bench {

// Whether callgrind runs this program; what is timed then has no meaning.
bool is_counting_instructions();

// What is between the two counts as the instructions of COUNTED_CALLS calls of the benchmark that is running.
void start_counting();
void stop_counting();
inline constexpr int COUNTED_CALLS = 1000;

// Writes down what was counted since the last call, under a name; nothing when nothing was.
void dump_instructions(const std::string &name);

inline constexpr char ALLOCATIONS[] = "allocations"; // the counter's name

template <class Call>
void measure(benchmark::State &state, Call call)
{
    if (is_counting_instructions()) {
        start_counting();
        for (int i = 0; i < COUNTED_CALLS; ++i) {
            call();
        }
        stop_counting();
    }
    const uint64_t before = allocations();
    for (auto _ : state) {
        call();
    }
    const uint64_t made = allocations() - before;
    state.counters[ALLOCATIONS] = static_cast<double>(made) / static_cast<double>(state.iterations());
}

template <class Times>
auto median(Times times)
{
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

// Other work over 1 MiB, after which the caches of the core hold nothing of the call's.
void do_other_work();

// Nanoseconds of one call after other work, the clock's own cost among them.
double time_one(auto call)
{
    do_other_work();
    const auto start = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

// The median of calls that are timed one by one, each after other work. The benchmark has one iteration of manual time.
template <class Call>
void measure_cold(benchmark::State &state, Call call)
{
    const size_t count = is_counting_instructions() ? 1 : 201;
    std::vector<double> calls(count);
    std::vector<double> clocks(count);
    for (auto _ : state) {
        for (size_t i = 0; i < count; ++i) {
            calls[i] = time_one(call);
            clocks[i] = time_one([] {});
        }
        state.SetIterationTime(std::max(median(calls) - median(clocks), 0.0) * 1e-9);
    }
}

} // namespace bench
