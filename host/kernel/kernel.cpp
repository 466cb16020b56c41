// host/kernel/kernel.cpp: start and end of the embedded host, and the main level's turn.
// Layer: kernel. Called by platforms and the program.
#include "host/kernel/kernel.h"

#include <climits>
#include <cstdio>
#include <optional>

#include "host/kernel/files.h"
#include "host/kernel/level.h"
#include "host/kernel/memory.h"
#include "host/kernel/patcher_start.h"
#include "host/kernel/queue.h"
#include "host/kernel/scheduler.h"
#include "host/kernel/symbols.h"
#include "host/kernel/windows.h"

namespace {

host_platform platform_now; // set at the start, read at both levels
constexpr int MOST_CALLS_AT_ONCE = 1000;
std::optional<at_level> main_level_here; // the thread that started the host is the main level

} // namespace

const host_platform& kel_platform() {
    return platform_now;
}

void kel_start(kel_timing timing, const host_platform* platform) {
    main_level_here.emplace(kel_level::main);
    platform_now = platform ? *platform : host_platform{};
    kel_patcher_start();
    kel_files_protect(false);
    kel_scheduler_start(timing);
}

bool kel_end() {
    kel_scheduler_end();
    kel_queue_reset();
    kel_patcher_end();
    kel_symbols_unbind();
    platform_now = {};
    kel_memory_quiescent();
    const bool clean = kel_memory_blocks() == 0;
    if (clean) kel_memory_reset();
#ifndef NDEBUG
    else
        std::fprintf(stderr, "host: %lld small blocks still alive at the end\n",
                     static_cast<long long>(kel_memory_blocks()));
#endif
    main_level_here.reset();
    return clean;
}

void kel_run_queue() {
    host_expect_main("kel_run_queue");
    // In real time the scheduler may hand in calls as fast as they are carried out: then the platform gets its turn.
    int left = kel_real_time() ? MOST_CALLS_AT_ONCE : INT_MAX;
    do {
        while (left > 0 && kel_queue_run_one()) --left;
    } while (kel_windows_draw_invalid() && left > 0);
    if (left == 0 && platform_now.wake) platform_now.wake(platform_now.user);
}
