// bench/lateness_bench.cpp: how late notes leave the play patch while the main level redraws without pause, beside a bare
// thread that sleeps to the same kind of deadlines in the same run.
// Measured by hand: build/release/bench_lateness_bench [SECONDS]
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <pthread.h>
#include <sched.h>
#include <sys/prctl.h>

#include "app/live.h"
#include "app/play_patch.h"
#include "core/class.h"
#include "core/sequence.h"
#include "host/boxes/midi_device.h"
#include "host/kernel/dispatch.h"

namespace {

constexpr std::int64_t NS_PER_US = 1000;
constexpr int LEAST_WAIT_MS = 1;
constexpr int MOST_WAIT_MS = 19;

std::int64_t monotonic() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return std::int64_t{t.tv_sec} * 1'000'000'000 + t.tv_nsec;
}

// Notes at random waits, some in chords, for so many seconds.
std::vector<std::int32_t> random_times(int seconds) {
    std::mt19937 random(1);
    std::uniform_int_distribution<int> wait(LEAST_WAIT_MS, MOST_WAIT_MS);
    std::vector<std::int32_t> times;
    for (std::int32_t t = 200; t < seconds * 1000; t += wait(random)) {
        for (auto n = random() % 8 == 0 ? 4 : 1; n-- > 0;) times.push_back(t);
    }
    return times;
}

void fill(brisolan* x, const std::vector<std::int32_t>& times) {
    event* chain = nullptr;
    for (std::size_t i = times.size(); i-- > 0;) {
        event* e = brisolan_newevent();
        e->time = times[i];
        e->pitch = static_cast<std::int32_t>(30 + i % 70);
        e->vel = 100;
        e->dur = 15;
        e->chan = static_cast<std::int32_t>(1 + i % 16);
        e->track = static_cast<std::int32_t>(1 + i % 32);
        e->next = chain;
        chain = e;
    }
    brisolan_linkchain(x, chain);
}

// Hears the notes that begin: when each left, and when it should have.
struct listener {
    std::vector<std::int32_t> times;    // of the notes, milliseconds
    std::vector<std::int64_t> lateness; // nanoseconds
    std::int64_t host_start = 0;        // of the host's time, on the machine's clock
    std::int64_t first = 0;             // when the score's time 0 was
    std::size_t heard = 0;

    static void note(void* user, int, int, int, int velocity) {
        if (velocity == 0) return;
        auto& l = *static_cast<listener*>(user);
        if (l.heard == l.times.size()) return;
        if (l.heard == 0) l.first = kel_now() - l.times[0] * NS_PER_MS;
        const std::int64_t due = l.host_start + l.first + l.times[l.heard] * NS_PER_MS;
        l.lateness[l.heard++] = monotonic() - due;
    }
};

// The least that any program can do: sleep until each time, look at the clock.
void sleep_barely(const std::vector<std::int32_t>& times, std::int64_t start,
                  std::vector<std::int64_t>& lateness) {
    sched_param p{};
    p.sched_priority = sched_get_priority_min(SCHED_FIFO) + 10;
    pthread_setschedparam(pthread_self(), SCHED_FIFO, &p);
    prctl(PR_SET_TIMERSLACK, 1UL);
    for (const std::int32_t t : times) {
        const std::int64_t due = start + t * NS_PER_MS;
        const timespec until{due / 1'000'000'000, due % 1'000'000'000};
        clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr);
        lateness.push_back(monotonic() - due);
    }
}

void print_row(const char* name, std::vector<std::int64_t> lateness) {
    std::sort(lateness.begin(), lateness.end());
    const auto at = [&](double part) {
        const auto i = static_cast<std::size_t>(part * static_cast<double>(lateness.size() - 1));
        return static_cast<double>(lateness[i]) / NS_PER_US;
    };
    std::printf("%-14s %8zu %10.0f %10.0f %10.0f %10.0f\n", name, lateness.size(), at(0.5), at(0.99),
                at(0.999), at(1));
}

void measure(live_session& session, brisolan* score, int seconds) {
    listener l;
    l.times = random_times(seconds);
    l.lateness.resize(l.times.size());
    fill(score, l.times);
    kel_private<"dblclick">(score); // the editor opens
    kel_run_queue();
    const midi_device ear{&l, listener::note};
    midi_device_add(&ear);
    l.host_start = monotonic() - kel_now();
    std::vector<std::int64_t> bare;
    bare.reserve(l.times.size());
    // Half a millisecond apart, so that the two do not ask for the processor at the same instants.
    std::thread sleeper(sleep_barely, std::cref(l.times), monotonic() + NS_PER_MS / 2, std::ref(bare));
    start_playing(score, 0, 1);
    long redraws = 0;
    while (!playing_is_over(score)) {
        SetPort(score->window->port);
        kel_private<"update">(score);
        session.wait(0);
        ++redraws;
    }
    sleeper.join();
    midi_device_remove(&ear);
    l.lateness.resize(l.heard);
    const kel_scheduler_state got = kel_scheduler();
    std::printf("%zu notes in %d s; the main level redrew the editor %ld times meanwhile\n", l.heard, seconds,
                redraws);
    std::printf("real-time priority: %s; least timer slack: %s\n\n",
                got.realtime_priority ? "yes" : "refused", got.fine_timer ? "yes" : "refused");
    std::printf("%-14s %8s %10s %10s %10s %10s   microseconds\n", "late by", "n", "p50", "p99", "p99.9",
                "worst");
    print_row("notes", l.lateness);
    print_row("bare thread", bare);
}

} // namespace

int main(int argc, char** argv) {
    const int seconds = argc > 1 ? std::clamp(std::atoi(argv[1]), 1, 3600) : 20;
    live_session session;
    session.print = [](const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); };
    host_patcher* patcher = nullptr;
    std::string why;
    brisolan* const score = load_own_patch("play", &patcher, why);
    if (score)
        measure(session, score, seconds);
    else
        std::fprintf(stderr, "%s\n", why.c_str());
    session.print = nullptr;
    kel_patcher_free(patcher);
    return score ? 0 : 1;
}
