// fuzz/support/drive.h: what the fuzzers that drive a whole host share.
// Fuzz layer; leans on the headless host.
#pragma once

#include <cstdint>
#include <cstdlib>

#include "core/check.h"
#include "core/class.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/files.h"
#include "host/kernel/kernel.h"
#include "host/kernel/memory.h"
#include "host/kernel/patcher.h"

// Lets virtual milliseconds pass, but no more than so many clocks: one that sets itself again without delay would else
// stop time for ever. Throws `out_of_clocks` then; the host can go on.
struct out_of_clocks {};
inline void wait_a_little(std::int64_t ms, int clocks) {
    const auto count = [&clocks] {
        if (--clocks <= 0) throw out_of_clocks{};
    };
    try {
        kel_advance(kel_now() + ms * NS_PER_MS, count);
    } catch (const out_of_clocks&) {
    }
}

// What a fuzzer must never do to the machine that it runs on, and how much it may take of it.
inline void fence_in() {
    kel_files_protect(true);
    constexpr std::int64_t MOST_MEMORY = 64 << 20;
    kel_memory_limit(MOST_MEMORY);
    constexpr int MOST_MESSAGES = 2000;
    kel_message_limit(MOST_MESSAGES);
}

// Stops at the first score of the patcher of which something does not hold that always holds.
inline void check_scores(host_patcher* p) {
    for (host_object* x : kel_patcher_objects(p)) {
        if (x->cls == kel_class("brisolan")) brisolan_checkinvariants(static_cast<brisolan*>(x));
    }
}
