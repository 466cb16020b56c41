// bench/transport_bench.cpp: what a step costs while playing, recording and following, with every outlet heard.
// Measured by hand: build/release/bench_transport_bench, or bench/run for all. The number is how many events there are.
// Benchmark.
#include <array>
#include <functional>
#include <vector>

#include "app/session.h"
#include "bench/in_turns.h"
#include "core/messages.h"
#include "core/sequence.h"
#include "host/kernel/objects.h"
#include "transport/follow.h"
#include "transport/input.h"
#include "transport/playback.h"
#include "transport/record.h"

namespace {

using bench::side;

// Steps of one turn, wherever the sequence is at least as long.
constexpr std::int64_t STEPS = 1000;

std::int64_t heard = 0; // outputs, of the object or of the floor

void hear(void*, int, std::int32_t value) {
    heard += value;
}

// A score whose every `part_of`-th note is the performer's, in channel 1, each with a pitch of its own among its neighbours;
// the others are accompaniment.
class score {
public:
    score(std::int64_t n, std::int64_t part_of) : x(session.make()), every(part_of) {
        event* chain = nullptr;
        for (std::int64_t i = n; i-- > 0;) {
            const bool played = i % every == 0;
            const auto pitch = static_cast<std::int32_t>(played ? pitch_of(i / every) : 20);
            const auto time = static_cast<std::int32_t>(i * 100);
            event* e = brisolan_newevent({time, pitch, 100, 90, played ? 1 : 2, 1, 0, 0});
            e->next = chain;
            chain = e;
        }
        brisolan_linkchain(x, chain);
        for (int k = 0; k < NPARAMS; ++k) kel_watch_outlet(x, k, hear, nullptr);
    }
    static std::int32_t pitch_of(std::int64_t note) { return static_cast<std::int32_t>(30 + note % 60); }

    // So many steps from the middle on, or from the head of what is shorter.
    std::int64_t begin(std::int64_t events) const {
        const std::int64_t middle = x->nevents / 2 / every * every;
        return x->nevents - middle > events ? middle : 0;
    }
    void put_at(std::int64_t n) {
        event* e = x->events;
        for (; n > 0; --n) e = e->next;
        x->current = e;
    }
    void play(std::int64_t steps) {
        for (; steps > 0; --steps) brisolan_next(x);
    }

    headless_session session;
    brisolan* x;
    std::int64_t every;
};

// Eight calls through pointers that the compiler cannot see through, and a list step.
class bare_player {
public:
    explicit bare_player(const score& s) : x(s.x) {
        for (auto& o : outlets) o = hear;
        benchmark::DoNotOptimize(outlets);
    }
    void play(std::int64_t from, std::int64_t steps) {
        const event* e = x->events;
        for (; from > 0; --from) e = e->next;
        at = e;
        for (; steps > 0; --steps) step();
    }
    void place(std::int64_t from) {
        at = x->events;
        for (; from > 0; --from) at = at->next;
    }
    void step() {
        for (int k = NPARAMS - 1; k >= 0; --k)
            outlets[static_cast<std::size_t>(k)](nullptr, k, event_param(*at, k));
        at = at->next;
    }
    const event* at = nullptr;

private:
    brisolan* x;
    std::array<kel_watch, NPARAMS> outlets;
};

void play_step(benchmark::State& state, std::int64_t n, int mutes, bool muted) {
    score s(n, 4);
    const std::int64_t steps = std::min(STEPS, n - 1);
    const std::int64_t from = s.begin(steps);
    bare_player bare(s);
    const side floor{[&] {
                         for (std::int64_t i = 0; i < steps; ++i) bare.step();
                     },
                     [&] { bare.place(from); }};
    const side object{[&] { s.play(steps); },
                      [&] {
                          brisolan_start(s.x);
                          brisolan_unmuteall(s.x);
                          for (int m = 0; m < mutes; ++m)
                              brisolan_mute(s.x, PARAM_CHAN, muted && m == 0 ? 2 : 10 + m, 1);
                          s.put_at(from);
                      }};
    bench::in_turns(state, static_cast<double>(steps), 3, floor, object);
}

// The measure of a following step: three play steps for each note that it puts out, two list steps for each that it passes.
class following {
public:
    following(benchmark::State& on, score& followed) : state(on), s(followed) {}

    // `step(i)` plays the i-th note of the performer from there; each puts so many notes out and passes so many events.
    void measure(std::int64_t steps, double outputs, double passed, const std::function<void()>& restart,
                 const std::function<void(std::int64_t)>& step) {
        const auto put_out = static_cast<std::int64_t>(outputs * static_cast<double>(steps));
        const auto passes = static_cast<std::int64_t>(passed * static_cast<double>(steps));
        const side floor{[this, put_out, passes] {
                             for (int i = 0; i < 3; ++i) {
                                 s.put_at(0);
                                 s.play(put_out);
                             }
                             for (int i = 0; i < 2; ++i) pass(passes);
                         },
                         [this] { brisolan_start(s.x); }};
        const side object{[&] {
                              for (std::int64_t i = 0; i < steps; ++i) step(i);
                          },
                          restart};
        bench::in_turns(state, static_cast<double>(steps), 1, floor, object);
    }

private:
    void pass(std::int64_t n) {
        std::int64_t others = 0;
        for (const event* e = s.x->events; e && n > 0; e = e->next, --n) others += e->chan != 1;
        benchmark::DoNotOptimize(others);
    }

    benchmark::State& state;
    score& s;
};

struct follow_setting {
    score s;
    std::int64_t steps, from;
    follow_setting(std::int64_t n, std::int64_t every)
        : s(n, every), steps(std::min<std::int64_t>(200, n / every / 3)), from(s.begin(steps * every * 2)) {}
    void restart() { brisolan_follow(s.x, static_cast<std::int32_t>(from)); }
    std::int32_t note(std::int64_t i) const { return score::pitch_of(from / s.every + i); }
};

void follow_match(benchmark::State& state, std::int64_t n, std::int64_t every) {
    follow_setting f(n, every);
    following(state, f.s)
        .measure(
            f.steps, static_cast<double>(every), static_cast<double>(every), [&] { f.restart(); },
            [&](std::int64_t i) { brisolan_dofollow(f.s.x, f.note(i)); });
}

// The performer leaves one note out, plays the next, and then the one left out: two steps for two notes.
void follow_late(benchmark::State& state, std::int64_t n, std::int64_t every) {
    follow_setting f(n, every);
    following(state, f.s)
        .measure(
            f.steps, static_cast<double>(every), static_cast<double>(every), [&] { f.restart(); },
            [&](std::int64_t i) { brisolan_dofollow(f.s.x, f.note(i ^ 1)); });
}

// A pitch that the score does not have: as many events are passed as the skip and the window reach.
void follow_wrong(benchmark::State& state, std::int64_t n, std::int64_t every) {
    follow_setting f(n, every);
    // Three notes are passed freely, and one more ends the search or lies in its window.
    const double passed = static_cast<double>(every) * (every == 1 ? 5 : 3) + 1;
    following(state, f.s)
        .measure(
            f.steps, 0, passed, [&] { f.restart(); }, [&](std::int64_t) { brisolan_dofollow(f.s.x, 127); });
}

void record_step(benchmark::State& state, std::int64_t n) {
    headless_session session;
    brisolan* x = session.make();
    const std::int64_t notes = std::min<std::int64_t>(n, STEPS);
    struct played {
        std::int32_t pitch, velocity;
    };
    // A note on and its note-off are two steps.
    const auto play = [x](std::int64_t i) {
        brisolan_in1(x, static_cast<std::int32_t>(i % 128));
        brisolan_in2(x, 64);
        brisolan_int(x, 5);
        brisolan_in2(x, 0);
        brisolan_int(x, 5);
    };
    // The floor: the record taken, filled and linked, its duration written.
    std::vector<event*> made;
    event head;
    const side floor{[&] {
                         event* last = &head;
                         for (std::int64_t i = 0; i < notes; ++i) {
                             const auto at = static_cast<std::int32_t>(i);
                             event* e = brisolan_newevent({at * 10, at % 128, 64, 0, 1, 1, 0, 0});
                             last->next = e;
                             e->dur = 5;
                             last = e;
                         }
                     },
                     [&] {
                         while (event* e = head.next) {
                             head.next = e->next;
                             brisolan_freeevent(e);
                         }
                     }};
    // The recording goes on from where n notes were recorded.
    brisolan_record(x);
    for (std::int64_t i = 0; i < n; ++i) play(i);
    bench::in_turns(state, static_cast<double>(2 * notes), 0, floor, side{[&] {
                        for (std::int64_t i = 0; i < notes; ++i) play(i);
                    }});
    while (event* e = head.next) {
        head.next = e->next;
        brisolan_freeevent(e);
    }
}

template <class Run> void add(const std::string& name, std::int64_t n, Run run) {
    bench::add_turns(name, n, run)->Iterations(100);
}

[[maybe_unused]] const bool rows = [] {
    using state = benchmark::State;
    for (const std::int64_t n : {1'000, 10'000, 100'000, 1'000'000}) {
        add("play_step", n, [n](state& s) { play_step(s, n, 0, false); });
        add("play_step_8_mutes", n, [n](state& s) { play_step(s, n, 8, false); });
        add("play_step_most_muted", n, [n](state& s) { play_step(s, n, 8, true); });
        add("follow_match", n, [n](state& s) { follow_match(s, n, 1); });
        add("follow_match_dense", n, [n](state& s) { follow_match(s, n, 16); });
        add("follow_late", n, [n](state& s) { follow_late(s, n, 1); });
        add("follow_late_dense", n, [n](state& s) { follow_late(s, n, 16); });
        add("follow_wrong", n, [n](state& s) { follow_wrong(s, n, 1); });
        add("follow_wrong_dense", n, [n](state& s) { follow_wrong(s, n, 16); });
        add("record_step", n, [n](state& s) { record_step(s, n); });
    }
    return true;
}();

} // namespace
