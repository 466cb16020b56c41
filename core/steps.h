// core/steps.h: how many steps a piece of work took, counted in debug builds alone.
// Layer: core. Counted where links of events are read and where the view looks through its places; read by tests, which hold
// what work on ten times the events may take more. A clock would tell less: it is not the same twice.
#pragma once

#include <cstdint>

#ifndef NDEBUG
#include <atomic>

// Written by whoever takes a step, at either level; never set back.
inline std::atomic<std::uint64_t> brisolan_steps{0};
#endif

// One step. Nothing in a release build. [both]
inline void brisolan_countstep() {
#ifndef NDEBUG
    brisolan_steps.fetch_add(1, std::memory_order_relaxed);
#endif
}
