// bench/view_bench.cpp: what drawing costs with many events, beside bare fills of the same bars.
// Measured by hand: build/release/bench_view_bench, or bench/run for all. The number is how many events there are.
// Benchmark.
#include <memory>

#include "bench/editor.h"
#include "bench/in_turns.h"
#include "view/events.h"

namespace {

using bench::editor;
using bench::side;

constexpr int NO_LABEL = -1;

struct variety {
    const char* name;
    bool labels, selected;
    double target; // of bare fills, and of bare glyphs where there are labels
};

constexpr std::array VARIETIES{variety{"full_update_labels_solid", true, false, 1.5},
                               variety{"full_update_labels_selected", true, true, 1.5},
                               variety{"full_update_plain_solid", false, false, 2},
                               variety{"full_update_plain_selected", false, true, 2}};

void full_update(benchmark::State& state, std::int64_t n, const variety& v) {
    editor e(n);
    if (!v.labels) e.x->labelparam = NO_LABEL;
    if (v.selected) e.select_all();
    bench::bare_picture bare(e.x);
    bench::in_turns(state, static_cast<double>(n), v.target, side{[&] { bare.fill(); }},
                    side{[&] { e.update(); }});
}

// A thousand in view; the rest right of it.
void update_of_few_in_view(benchmark::State& state, std::int64_t n) {
    constexpr std::int64_t IN_VIEW = 1000;
    editor e(IN_VIEW, n - IN_VIEW);
    bench::bare_picture bare(e.x);
    const side floor{[&] {
        benchmark::DoNotOptimize(bench::bare_walk(e.x));
        bare.fill();
    }};
    bench::in_turns(state, static_cast<double>(n), 2, floor, side{[&] { e.update(); }});
}

// One changes its pitch, and all that it touched is drawn anew. Some steps to a turn; the floor is one full update.
void one_event(benchmark::State& state, std::int64_t n, bool selected) {
    constexpr int STEPS = 100;
    editor e(n);
    if (selected) e.select_all();
    event* one = e.x->events;
    for (std::int64_t i = 0; i < n / 2; ++i) one = one->next;
    const auto step = [&] {
        brisolan_eraseit(e.x, one);
        one->pitch = (one->pitch + 1) % 128;
        brisolan_drawit(e.x, one);
    };
    bench::in_turns(state, STEPS, 0.01, side{[&] { e.update(); }}, side{[&] {
                        for (int i = 0; i < STEPS; ++i) e.edit(step);
                    }},
                    STEPS);
}

void hit_test(benchmark::State& state, std::int64_t n) {
    constexpr int TESTS = 1000;
    editor e(n);
    bench::in_turns(state, TESTS, 0, side{[&] { benchmark::DoNotOptimize(bench::bare_walk(e.x)); }},
                    side{[&] {
                        for (int i = 0; i < TESTS; ++i)
                            benchmark::DoNotOptimize(brisolan_findevent(e.x, 60 + i / 2, 62 + i % 256));
                    }},
                    TESTS);
}

[[maybe_unused]] const bool rows = [] {
    for (const std::int64_t n : {1'000, 10'000, 100'000, 1'000'000}) {
        for (const variety& v : VARIETIES)
            bench::add_turns(v.name, n, [n, v](benchmark::State& s) { full_update(s, n, v); });
    }
    for (const std::int64_t n : {10'000, 100'000, 1'000'000})
        bench::add_turns("full_update_1k_in_view", n,
                         [n](benchmark::State& s) { update_of_few_in_view(s, n); });
    for (const std::int64_t n : {10'000, 100'000}) {
        bench::add_turns("one_event_solid", n, [n](benchmark::State& s) { one_event(s, n, false); });
        bench::add_turns("one_event_selected", n, [n](benchmark::State& s) { one_event(s, n, true); });
        bench::add_turns("hit_test", n, [n](benchmark::State& s) { hit_test(s, n); });
    }
    return true;
}();

} // namespace
