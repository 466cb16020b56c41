// host/kernel/kernel.h: the embedded host as a platform and the program see it: start and end, the two levels' clock,
// the low-priority queue.
// Layer: kernel; leans on host/kel.h, host/platform.h.
// Called by host/headless/, host/desktop/, app/ and the tests.
#pragma once

#include <cstdint>
#include <functional>

#include "host/platform.h"

// Time since the host started, nanoseconds.
using kel_time = std::int64_t;
constexpr kel_time NS_PER_MS = 1'000'000;

enum class kel_timing {
    virtual_time, // one thread; kel_advance lets time pass
    real_time     // the scheduler level is a thread of its own
};

// Starts the host: binds "#N" and "#P", takes the platform's hooks (copied; null: a machine without anything). The thread
// that calls becomes the main level. One host a process at a time. [main]
void kel_start(kel_timing timing, const host_platform* platform);

// Ends it: the scheduler stops, what is queued is dropped, all bindings end. Objects must have been freed. In debug
// builds tells on standard error, and gives false, when small blocks are still alive. [main]
bool kel_end();

// The platform's hooks in use. [main]
const host_platform& kel_platform();

// The time now: at scheduler level the due time of the callback that runs, so that what it sets does not drift. [both]
kel_time kel_now();

// While it lives, the main level's time stands still: what is set within one scope counts from one and the same moment.
class kel_moment {
public:
    kel_moment();
    ~kel_moment();
    kel_moment(const kel_moment&) = delete;
    kel_moment& operator=(const kel_moment&) = delete;

private:
    kel_time before;
};

// Lets virtual time pass until `until`, firing the clocks that come due on the way in order of due time, then of
// setting; after each one all low-priority calls are carried out and `after` (may be empty) is called. [main]
void kel_advance(kel_time until, const std::function<void()>& after = {});

// When the next clock comes due, virtual time; -1 when none is set. [main]
kel_time kel_next_due();

// Runs a call at scheduler level, lockout held, as if it had arrived at time `at` (kel_now() when negative): what a
// device hands in. In virtual time it runs at once. Never blocks for long; any thread may call. [both]
void kel_post(void (*call)(void* context, std::int32_t a, std::int32_t b), void* context, std::int32_t a,
              std::int32_t b, kel_time at = -1);

// Carries out queued low-priority calls and draws invalid windows anew until nothing is left; in real time a thousand calls
// at most, after which the platform is woken for the rest. [main]
void kel_run_queue();

// What the scheduler's thread got of what it asked for. [main]
struct kel_scheduler_state {
    bool realtime_priority = false;
    bool fine_timer = false;
};
kel_scheduler_state kel_scheduler();
