// host/kernel/scheduler.cpp: clocks in order of due time, fired in virtual time or by a thread of their own.
// Layer: kernel. Each callback runs at scheduler level with the lockout held.
//
// The thread sleeps until shortly before absolute deadlines and waits out the rest awake. A callback's own "now" is the time
// at which it was due: a patch that waits 500 ms again and again comes due at exact multiples, however late each single one
// was run.
#include "host/kernel/scheduler.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <ctime>
#include <mutex>
#include <thread>
#include <vector>

#include <pthread.h>
#include <sched.h>
#include <sys/prctl.h>

#include "host/kernel/level.h"

struct host_clock {
    void* owner = nullptr;
    void (*routine)(void*) = nullptr;
    kel_time due = -1; // -1: not set
};

namespace {

// Written under `guard`, by whichever level sets or fires a clock.
struct scheduler_state {
    pi_mutex guard;
    pthread_cond_t changed;
    std::vector<host_clock*> due; // the next one last; of equal due times the one set first nearer the end
    std::size_t nclocks = 0;      // all there are: room for them in `due` is made when they are
    bool ending = false;

    scheduler_state() {
        pthread_condattr_t how;
        pthread_condattr_init(&how);
        pthread_condattr_setclock(&how, CLOCK_MONOTONIC);
        pthread_cond_init(&changed, &how);
        pthread_condattr_destroy(&how);
    }
};

scheduler_state& state() {
    static scheduler_state s;
    return s;
}

// A device's call on its way to the scheduler. `turn` tells whose the slot is: its number when it may be filled, one more
// when it may be taken.
struct posted_call {
    std::atomic<std::uint32_t> turn{0};
    void (*call)(void*, std::int32_t, std::int32_t) = nullptr;
    void* context = nullptr;
    std::int32_t a = 0;
    std::int32_t b = 0;
    kel_time at = 0;
};

constexpr std::uint32_t RING = 4096; // a second of the densest MIDI stream; what does not fit is dropped

std::array<posted_call, RING> ring;
std::atomic<std::uint32_t> ring_in{0}; // any thread
std::uint32_t ring_out = 0;            // the scheduler alone

kel_timing timing_now = kel_timing::virtual_time;
std::thread scheduler_thread;
kel_time virtual_now = 0;         // virtual time, main thread alone
kel_time started_at = 0;          // real time: the monotonic clock when the host started
thread_local kel_time t_now = -1; // while a scheduler callback runs: its time
std::atomic<bool> got_priority{false};
std::atomic<bool> got_fine_timer{false};

kel_time monotonic() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return kel_time{t.tv_sec} * 1'000'000'000 + t.tv_nsec;
}

timespec absolute(kel_time at) {
    const kel_time t = at + started_at;
    return {static_cast<time_t>(t / 1'000'000'000), static_cast<long>(t % 1'000'000'000)};
}

// Runs a scheduler-level callback whose own time is `at`.
template <class F> void run_callback(kel_time at, F callback) {
    at_level scheduler(kel_level::scheduler);
    const kel_time before = t_now;
    t_now = at;
    callback();
    t_now = before;
}

void unset_locked(host_clock* c) {
    if (c->due < 0) return;
    std::erase(state().due, c);
    c->due = -1;
}

void set_locked(host_clock* c, kel_time due) {
    unset_locked(c);
    c->due = due;
    std::vector<host_clock*>& list = state().due;
    const auto at =
        std::find_if(list.begin(), list.end(), [due](const host_clock* other) { return other->due <= due; });
    list.insert(at, c);
}

// Fires the next clock that is due by `now`; false when there is none. The caller holds the lockout, so that a clock is
// neither freed nor unset by the main level between being taken and being called.
bool fire_one(kel_time now) {
    host_clock* c = nullptr;
    kel_time due = 0;
    {
        std::lock_guard in(state().guard);
        std::vector<host_clock*>& list = state().due;
        if (list.empty() || list.back()->due > now) return false;
        c = list.back();
        list.pop_back();
        due = c->due;
        c->due = -1;
    }
    run_callback(due, [c] { c->routine(c->owner); });
    return true;
}

bool ring_empty() {
    return ring[ring_out % RING].turn.load(std::memory_order_acquire) != ring_out + 1;
}

// Runs one posted call; false when there is none.
bool run_posted() {
    posted_call& slot = ring[ring_out % RING];
    if (ring_empty()) return false;
    const posted_call* s = &slot;
    const auto call = s->call;
    void* const context = s->context;
    const std::int32_t a = s->a;
    const std::int32_t b = s->b;
    const kel_time at = s->at;
    slot.turn.store(ring_out + RING, std::memory_order_release);
    ++ring_out;
    run_callback(at, [&] { call(context, a, b); });
    return true;
}

void wake_scheduler() {
    std::lock_guard in(state().guard);
    pthread_cond_signal(&state().changed);
}

// Asks for what makes deadlines sharp; the scheduler works without.
void ask_for_precision() {
    sched_param p{};
    p.sched_priority = sched_get_priority_min(SCHED_FIFO) + 10;
    got_priority = pthread_setschedparam(pthread_self(), SCHED_FIFO, &p) == 0;
    got_fine_timer = prctl(PR_SET_TIMERSLACK, 1UL) == 0;
}

// How much too late the system lets the scheduler go on after a sleep: by that much it asks to be woken before a clock is
// due, and waits out the rest awake. The scheduler's thread alone.
class wake_delay {
public:
    kel_time usual() const { return mean; }
    void learn(kel_time late) {
        mean = std::clamp<kel_time>(mean + (late * MARGIN - mean) / SLOWNESS, 0, MOST);
    }

private:
    static constexpr kel_time MOST = 50'000; // ns; at a thousand clocks a second a twentieth of one processor
    static constexpr kel_time MARGIN = 2;    // so that most delays, not half of them, are made up for
    static constexpr kel_time SLOWNESS = 16; // how many sleeps it takes to get used to another load
    kel_time mean = 0;
};

// Awake until that time, or until a call is posted.
void wait_awake(kel_time until) {
    while (ring_empty() && monotonic() - started_at < until) {
    }
}

// Sleeps until a clock is due, a call is posted, or the end; false at the end.
bool wait_for_work(wake_delay& delay) {
    scheduler_state& s = state();
    std::unique_lock in(s.guard);
    while (!s.ending && ring_empty()) {
        if (s.due.empty()) {
            pthread_cond_wait(&s.changed, s.guard.native());
            continue;
        }
        const kel_time due = s.due.back()->due;
        const kel_time now = monotonic() - started_at;
        if (due <= now) break;
        const kel_time wake = due - delay.usual();
        if (wake <= now) {
            in.unlock(); // meanwhile the main level may set an earlier clock: hence the turn from the start
            wait_awake(due);
            in.lock();
            continue;
        }
        const timespec until = absolute(wake);
        if (pthread_cond_timedwait(&s.changed, s.guard.native(), &until) == ETIMEDOUT)
            delay.learn(monotonic() - started_at - wake);
    }
    return !s.ending;
}

void scheduler_loop() {
    ask_for_precision();
    wake_delay delay;
    while (wait_for_work(delay)) {
        at_level scheduler(kel_level::scheduler);
        if (!run_posted()) fire_one(monotonic() - started_at);
    }
}

} // namespace

void kel_scheduler_start(kel_timing timing) {
    timing_now = timing;
    virtual_now = 0;
    started_at = monotonic();
    for (std::uint32_t i = 0; i < RING; ++i) ring[i].turn.store(i, std::memory_order_relaxed);
    ring_in = 0;
    ring_out = 0;
    state().ending = false;
    if (timing == kel_timing::real_time) scheduler_thread = std::thread(scheduler_loop);
}

void kel_scheduler_end() {
    if (scheduler_thread.joinable()) {
        {
            std::lock_guard in(state().guard);
            state().ending = true;
        }
        wake_scheduler();
        scheduler_thread.join();
    }
    std::lock_guard in(state().guard);
    for (host_clock* c : state().due) c->due = -1;
    state().due.clear();
}

bool kel_real_time() {
    return timing_now == kel_timing::real_time;
}

kel_time kel_now() {
    if (t_now >= 0) return t_now;
    return timing_now == kel_timing::virtual_time ? virtual_now : monotonic() - started_at;
}

std::int64_t host_now() {
    return kel_now();
}

kel_moment::kel_moment() : before(t_now) {
    t_now = kel_now();
}

kel_moment::~kel_moment() {
    t_now = before;
}

void kel_advance(kel_time until, const std::function<void()>& after) {
    host_expect_main("kel_advance");
    for (;;) {
        const kel_time due = kel_next_due();
        if (due < 0 || due > until) break;
        virtual_now = std::max(virtual_now, due);
        {
            at_level scheduler(kel_level::scheduler);
            fire_one(virtual_now);
        }
        kel_run_queue();
        if (after) after();
    }
    virtual_now = std::max(virtual_now, until);
}

kel_time kel_next_due() {
    std::lock_guard in(state().guard);
    return state().due.empty() ? -1 : state().due.back()->due;
}

void kel_post(void (*call)(void*, std::int32_t, std::int32_t), void* context, std::int32_t a, std::int32_t b,
              kel_time at) {
    if (at < 0) at = kel_now();
    if (timing_now == kel_timing::virtual_time) {
        run_callback(at, [&] { call(context, a, b); });
        return;
    }
    std::uint32_t mine = ring_in.load(std::memory_order_relaxed);
    for (;;) {
        posted_call& slot = ring[mine % RING];
        const std::uint32_t turn = slot.turn.load(std::memory_order_acquire);
        const auto ahead = static_cast<std::int32_t>(turn - mine);
        if (ahead < 0) return; // full
        if (ahead > 0) {
            mine = ring_in.load(std::memory_order_relaxed);
            continue;
        }
        if (!ring_in.compare_exchange_weak(mine, mine + 1, std::memory_order_relaxed)) continue;
        slot.call = call;
        slot.context = context;
        slot.a = a;
        slot.b = b;
        slot.at = at;
        slot.turn.store(mine + 1, std::memory_order_release);
        break;
    }
    wake_scheduler();
}

kel_scheduler_state kel_scheduler() {
    return {got_priority, got_fine_timer};
}

namespace host_detail {

host_clock* clock_create(void* owner, void (*routine)(void*)) {
    host_expect_main("host_clock_new");
    std::lock_guard in(state().guard);
    state().due.reserve(++state().nclocks);
    return new host_clock{owner, routine};
}

} // namespace host_detail

void host_clock_delay(host_clock* c, std::int32_t ms) {
    const kel_time due = kel_now() + std::max(ms, 0) * NS_PER_MS;
    std::lock_guard in(state().guard);
    set_locked(c, due);
    if (state().due.back() == c && kel_current_level() == kel_level::main)
        pthread_cond_signal(&state().changed);
}

void host_clock_unset(host_clock* c) {
    std::lock_guard in(state().guard);
    unset_locked(c);
}

void host_clock_free(host_clock* c) {
    if (!c) return;
    host_expect_main("host_clock_free");
    const host_locked_out now;
    host_clock_unset(c);
    {
        std::lock_guard in(state().guard);
        --state().nclocks;
    }
    delete c;
}
