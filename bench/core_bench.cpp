// bench/core_bench.cpp: what it costs to append events, to insert one at a random place, to find the n-th and to clear all.
// Measured by hand: build/release/bench_core_bench, or bench/run for all. The number is how many events there are.
// Benchmark.
#include <random>
#include <vector>

#include "app/session.h"
#include "bench/in_turns.h"
#include "core/messages.h"
#include "core/sequence.h"

namespace {

using bench::side;

constexpr std::int32_t STEP_MS = 10; // between two events

class sequence {
public:
    explicit sequence(std::int64_t n) : x(session.make()) { fill(n); }
    void fill(std::int64_t n) {
        brisolan_clear(x);
        x->lasttime = 0;
        append(n);
    }
    void append(std::int64_t n) {
        for (std::int64_t i = 0; i < n; ++i) {
            const auto pitch = static_cast<std::int32_t>(i % 128);
            brisolan_doappend(x, STEP_MS, pitch, 64, 100, 1, 1, 0, 0, 0);
        }
    }

    headless_session session;
    brisolan* x;
};

// The floor of appending: a record taken from the host's blocks, filled and linked.
class bare_list {
public:
    ~bare_list() { clear(); }
    void clear() {
        while (event* e = head.next) {
            head.next = e->next;
            brisolan_freeevent(e);
        }
        last = &head;
    }
    void append(std::int64_t n) {
        for (std::int64_t i = 0; i < n; ++i) {
            const auto at = static_cast<std::int32_t>(i);
            event* e = brisolan_newevent({at * STEP_MS, at % 128, 64, 100, 1, 1, 0, 0});
            last->next = e;
            last = e;
        }
    }

private:
    event head;
    event* last = &head;
};

void append(benchmark::State& state, std::int64_t n) {
    sequence s(0);
    bare_list bare;
    bench::in_turns(state, static_cast<double>(n), 0, side{[&] { bare.append(n); }, [&] { bare.clear(); }},
                    side{[&] { s.append(n); }, [&] { s.fill(0); }});
}

// Some places at random; what lies in front of one is walked over by both.
class random_places {
public:
    explicit random_places(std::int64_t n) {
        std::mt19937 dice(3);
        for (std::int32_t& p : places) p = static_cast<std::int32_t>(dice() % static_cast<unsigned>(n));
    }
    std::array<std::int32_t, 16> places{};
};

event* walk_to(const brisolan* x, std::int32_t n) {
    event* e = x->events;
    for (; e && n > 0; --n) e = e->next;
    return e;
}

void insert_at_random(benchmark::State& state, std::int64_t n) {
    sequence s(n);
    const random_places at(n);
    const side floor{[&] {
        for (const std::int32_t p : at.places) benchmark::DoNotOptimize(walk_to(s.x, p));
    }};
    const side object{[&] {
        for (const std::int32_t p : at.places)
            brisolan_link(s.x, brisolan_newevent({p * STEP_MS, 60, 64, 100, 1, 1, 0, 0}));
    }};
    bench::in_turns(state, static_cast<double>(at.places.size()), 0, floor, object);
}

void nth(benchmark::State& state, std::int64_t n) {
    sequence s(n);
    const random_places at(n);
    const side floor{[&] {
        for (const std::int32_t p : at.places) benchmark::DoNotOptimize(walk_to(s.x, p));
    }};
    bench::in_turns(state, static_cast<double>(at.places.size()), 0, floor, side{[&] {
                        for (const std::int32_t p : at.places) brisolan_nth(s.x, p);
                    }});
}

void clear(benchmark::State& state, std::int64_t n) {
    sequence s(0);
    bare_list bare;
    bench::in_turns(state, static_cast<double>(n), 0,
                    side{[&] { bare.clear(); },
                         [&] {
                             bare.clear();
                             bare.append(n);
                         }},
                    side{[&] { brisolan_clear(s.x); }, [&] { s.fill(n); }});
}

[[maybe_unused]] const bool rows = [] {
    for (const std::int64_t n : {1'000, 10'000, 100'000, 1'000'000}) {
        bench::add_turns("append", n, [n](benchmark::State& s) { append(s, n); });
        bench::add_turns("insert_at_random", n, [n](benchmark::State& s) { insert_at_random(s, n); });
        bench::add_turns("nth", n, [n](benchmark::State& s) { nth(s, n); });
        bench::add_turns("clear", n, [n](benchmark::State& s) { clear(s, n); });
    }
    return true;
}();

} // namespace
