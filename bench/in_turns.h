// bench/in_turns.h: rows of Google Benchmark that put the object beside a floor, taking turns in one process.
// Bench layer; standard library and the system only. Included by the benchmarks of what goes on again and again: playing, drawing,
// editing. What reads or writes a file once is measured in a process of its own (bench/side_by_side.h).
//
// The two sides take turns, so that a machine that slows down slows both, and the least time of each is what the ratio is
// made of: what disturbs a run only ever adds.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>

#include "bench/clock.h"

namespace bench {

// One side of a row: what is timed, and what makes it ready before each time, which is not.
struct side {
    std::function<void()> work;
    std::function<void()> prepare = [] {};
};

inline double time_once(const side& s) {
    s.prepare();
    const double from = milliseconds();
    s.work();
    benchmark::ClobberMemory();
    return milliseconds() - from;
}

// Runs one row: the object's mean time is the benchmark's; beside it the least of the floor and of the object, their ratio,
// the greatest ratio that is good (0: nobody said), and what the object takes for each of n. `of_floor` scales the floor
// where a side does its work more often than the other.
inline void in_turns(benchmark::State& state, double n, double target, const side& floor, const side& object,
                     double of_floor = 1) {
    constexpr double NEVER = std::numeric_limits<double>::max();
    double least_floor = NEVER;
    double least = NEVER;
    time_once(floor); // memory that nobody has touched is not what is measured
    time_once(object);
    for (auto _ : state) {
        least_floor = std::min(least_floor, time_once(floor) * of_floor);
        const double took = time_once(object);
        least = std::min(least, took);
        state.SetIterationTime(took / 1e3);
    }
    state.counters["floor_ms"] = least_floor;
    state.counters["best_ms"] = least;
    state.counters["ratio"] = least / least_floor;
    state.counters["target"] = target;
    state.counters["ns_each"] = least * 1e6 / n;
}

// A row that is run often enough for its size.
template <class Row>
benchmark::internal::Benchmark* add_turns(const std::string& name, std::int64_t n, const Row& row) {
    const benchmark::IterationCount times = n >= 1'000'000 ? 7 : n >= 100'000 ? 40 : 200;
    return benchmark::RegisterBenchmark((name + "/" + std::to_string(n)).c_str(), row)
        ->Iterations(times)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

} // namespace bench
