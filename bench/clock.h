// bench/clock.h: the clock that the benchmarks go by.
// Bench layer; standard library and the system only. Included by the two ways to put the object beside a floor.
#pragma once

#include <cstdlib>
#include <ctime>

namespace bench {

// The clock's time; or the processor's alone where BRISOLAN_BENCH_CPU is set: without the waiting for a disk, or for others
// who use the machine.
inline double milliseconds() {
    static const clockid_t clock =
        std::getenv("BRISOLAN_BENCH_CPU") ? CLOCK_PROCESS_CPUTIME_ID : CLOCK_MONOTONIC;
    timespec now;
    ::clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

} // namespace bench
