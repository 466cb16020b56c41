// bench/edit_bench.cpp: what editing everything at once costs, each step with its redraw, beside one full update.
// Benchmark.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <random>
#include <vector>

#include "app/session.h"
#include "core/sequence.h"
#include "edit/drag.h"
#include "edit/press.h"
#include "edit/selection.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/windows.h"
#include "io/clipboard.h"
#include "view/selected.h"

namespace {

constexpr std::int32_t VIEW_MS = 13000; // what the window shows at the first zoom

// An open editor with n events, all of them in view, or spread over so many views.
class editor {
public:
    explicit editor(std::int64_t n, int views = 1) {
        x = session.make();
        const atom open(host_symbol("open"));
        kel_message(x, std::array{open});
        kel_run_queue();
        fill(n, views);
        x->editmode = 0;
        update();
    }
    // In the order of time, as a file is read.
    void fill(std::int64_t n, int views) {
        std::mt19937 dice(7);
        std::uniform_int_distribution<std::int32_t> when(0, VIEW_MS * views);
        std::vector<std::int32_t> times(static_cast<std::size_t>(n));
        for (std::int32_t& t : times) t = when(dice);
        std::sort(times.begin(), times.end());
        event* first = nullptr;
        event* last = nullptr;
        for (const std::int32_t t : times) {
            event* e = brisolan_newevent();
            e->time = t;
            e->pitch = static_cast<std::int32_t>(dice() % 128);
            e->vel = static_cast<std::int32_t>(dice() % 128);
            e->dur = static_cast<std::int32_t>(50 + dice() % 300);
            e->chan = 1;
            e->track = static_cast<std::int32_t>(1 + dice() % 32);
            if (last)
                last->next = e;
            else
                first = e;
            last = e;
        }
        brisolan_linkchain(x, first);
    }
    void update() { kel_window_update(x->window); }
    template <class Step> void edit(Step step) {
        SetPort(x->window->port);
        step();
        SetPort(nullptr);
        kel_run_queue();
    }

    headless_session session;
    brisolan* x = nullptr;
};

void sizes(benchmark::internal::Benchmark* b) {
    for (const int n : {10'000, 100'000, 1'000'000}) b->Arg(n);
    b->Unit(benchmark::kMillisecond);
}

void full_update(benchmark::State& state) {
    editor e(state.range(0));
    for (auto _ : state) e.update();
}
BENCHMARK(full_update)->Apply(sizes);

void full_update_selected(benchmark::State& state) {
    editor e(state.range(0));
    e.edit([&] { brisolan_selectall(e.x); });
    for (auto _ : state) e.update();
}
BENCHMARK(full_update_selected)->Apply(sizes);

void select_all(benchmark::State& state) {
    editor e(state.range(0));
    for (auto _ : state) {
        e.edit([&] { brisolan_selectall(e.x); });
        state.PauseTiming();
        e.edit([&] { brisolan_noselect(e.x); });
        state.ResumeTiming();
    }
}
BENCHMARK(select_all)->Apply(sizes);

void move_everything_one_step(benchmark::State& state) {
    editor e(state.range(0));
    e.edit([&] { brisolan_selectall(e.x); });
    g_grabbedthird = static_cast<std::int16_t>(state.range(1));
    Point p{200, 200};
    e.x->dragvalue = brisolan_grabbedvalue(e.x, p);
    for (auto _ : state) {
        p = {static_cast<std::int16_t>(p.v == 200 ? 204 : 200),
             static_cast<std::int16_t>(p.h == 200 ? 204 : 200)};
        e.edit([&] { brisolan_movedrag(e.x, p, true); });
    }
}
BENCHMARK(move_everything_one_step)
    ->ArgsProduct({{10'000, 100'000, 1'000'000}, {THIRD_START, THIRD_BODY, THIRD_END}})
    ->Unit(benchmark::kMillisecond);

void delete_everything(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        editor e(state.range(0));
        e.edit([&] { brisolan_selectall(e.x); });
        state.ResumeTiming();
        e.edit([&] { brisolan_clr(e.x); });
        state.PauseTiming();
        if (e.x->nevents != 0) state.SkipWithError("events are left");
        state.ResumeTiming();
    }
}
BENCHMARK(delete_everything)->Apply(sizes)->Iterations(5);

void paste_everything(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        editor e(state.range(0));
        e.edit([&] { brisolan_selectall(e.x); });
        e.edit([&] { brisolan_cut(e.x); });
        state.ResumeTiming();
        e.edit([&] { brisolan_paste(e.x); });
        state.PauseTiming();
        if (e.x->nevents != state.range(0)) state.SkipWithError("events are missing");
        state.ResumeTiming();
    }
}
BENCHMARK(paste_everything)->Apply(sizes)->Iterations(5);

void copy_everything(benchmark::State& state) {
    editor e(state.range(0));
    e.edit([&] { brisolan_selectall(e.x); });
    for (auto _ : state) e.edit([&] { brisolan_copy(e.x); });
}
BENCHMARK(copy_everything)->Apply(sizes);

// A band that grows over everything and shrinks again.
void band_over_everything(benchmark::State& state) {
    editor e(state.range(0));
    modkeywas = 0;
    e.x->clickpt = {62, 48};
    for (auto _ : state) {
        e.edit([&] { brisolan_selectdrag(e.x, {320, 580}, true); });
        e.edit([&] { brisolan_selectdrag(e.x, {64, 50}, true); });
    }
    e.edit([&] { brisolan_selectdrag(e.x, {64, 50}, false); });
}
BENCHMARK(band_over_everything)->Apply(sizes);

} // namespace
