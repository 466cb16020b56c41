// bench/side_by_side.h: rows of Google Benchmark that put the object beside a floor, each run in a process of its own.
// Bench layer; standard library and the system only. Included by the benchmarks.
//
// A process of its own begins with memory that nobody has touched, and leaves nothing behind for the next. The two sides
// take turns, so that a machine that slows down slows both, and the least time of each is what the ratio is made of: what
// disturbs a run only ever adds.
#pragma once

#include <benchmark/benchmark.h>

#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>

#include "bench/clock.h"

namespace bench {

// What is timed; and what makes it ready, which is not.
using work = std::function<void()>;
using preparation = std::function<work()>;

struct measured {
    double ms = 0;
    double memory = 0; // growth of the process, bytes
};

[[noreturn]] inline void give_up(const char* why) {
    std::fprintf(stderr, "%s\n", why);
    ::_exit(2);
}

// Prepares and times in a child process. One that fails ends the benchmark: a time of work not done is none.
inline measured in_a_process(const preparation& prepare) {
    // What this process has freed would else be the child's to reuse, page by page copied as it is touched.
    ::malloc_trim(0);
    int ends[2];
    if (::pipe(ends) != 0) give_up("no pipe");
    const pid_t child = ::fork();
    if (child < 0) give_up("no process");
    if (child == 0) {
        const work now = prepare();
        rusage before;
        rusage after;
        ::getrusage(RUSAGE_SELF, &before);
        const double start = milliseconds();
        now();
        const double took = milliseconds() - start;
        ::getrusage(RUSAGE_SELF, &after);
        const measured m{took, static_cast<double>(after.ru_maxrss - before.ru_maxrss) * 1024};
        const bool told = ::write(ends[1], &m, sizeof m) == sizeof m;
        ::_exit(told ? 0 : 1);
    }
    ::close(ends[1]);
    measured m;
    const bool told = ::read(ends[0], &m, sizeof m) == sizeof m;
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    if (!told) give_up("a run failed");
    return m;
}

// Runs one row: the object's mean time is the benchmark's; beside it the best of the floor and of the object, their ratio,
// and what the object takes for each of n.
inline void side_by_side(benchmark::State& state, double n, const preparation& floor,
                         const preparation& object) {
    measured least_floor;
    measured least;
    bool first = true;
    for (auto _ : state) {
        const measured a = in_a_process(floor);
        const measured b = in_a_process(object);
        state.SetIterationTime(b.ms / 1e3);
        if (first || a.ms < least_floor.ms) least_floor = a;
        if (first || b.ms < least.ms) least = b;
        first = false;
    }
    state.counters["floor_ms"] = least_floor.ms;
    state.counters["best_ms"] = least.ms;
    state.counters["ratio"] = least.ms / least_floor.ms;
    state.counters["ns_each"] = least.ms * 1e6 / n;
    state.counters["bytes_each"] = std::max(least.memory, 0.0) / n;
}

// A row that is run often enough for its size.
template <class Row>
benchmark::internal::Benchmark* add_row(const std::string& name, std::int64_t n, const Row& row) {
    const benchmark::IterationCount times = n >= 1'000'000 ? 9 : n >= 100'000 ? 15 : 40;
    return benchmark::RegisterBenchmark((name + "/" + std::to_string(n)).c_str(), row)
        ->Iterations(times)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

} // namespace bench
