// bench/view_bench.cpp: what drawing and editing cost with many events in view, beside bare fills of the same rectangles.
// Measured by hand: build/release/bench_view_bench. The argument is the number of events.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "core/class.h"
#include "core/sequence.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/kernel.h"
#include "host/kernel/patcher.h"
#include "host/kernel/windows.h"
#include "host/toolbox/toolbox_host.h"
#include "view/events.h"
#include "view/geometry.h"
#include "view/selected.h"
#include "view/window.h"

#include "edit/drag.h"

namespace {

constexpr int IN_VIEW = 13000; // milliseconds that the window shows

// An open editor with n events, all of them in view, or beyond it when `away` is given.
struct editor {
    host_patcher* patcher = nullptr;
    brisolan* x = nullptr;

    explicit editor(int n, std::int32_t away = 0) {
        static std::string clipboard;
        static toolbox_platform machine;
        machine.clipboard_read = [](void*, std::string* text) {
            *text = clipboard;
            return !clipboard.empty();
        };
        machine.clipboard_write = [](void*, const std::string& text) { clipboard = text; };
        toolbox_reset();
        kel_start(kel_timing::virtual_time, nullptr);
        toolbox_setplatform(&machine);
        brisolan_main();
        patcher = kel_patcher_new();
        kel_patcher_build(patcher);
        x = static_cast<brisolan*>(kel_make(host_symbol("brisolan"), {}));
        std::mt19937 random(1);
        std::vector<std::int32_t> times(static_cast<std::size_t>(n));
        for (std::int32_t& t : times) t = away + static_cast<std::int32_t>(random() % IN_VIEW);
        std::sort(times.begin(), times.end());
        event* chain = nullptr;
        for (std::size_t i = times.size(); i-- > 0;) {
            event* e = brisolan_newevent();
            e->time = times[i];
            e->pitch = static_cast<std::int32_t>(random() % 128);
            e->vel = static_cast<std::int32_t>(random() % 128);
            e->dur = static_cast<std::int32_t>(50 + random() % 900);
            e->chan = 1;
            e->track = static_cast<std::int32_t>(1 + random() % 32);
            e->next = chain;
            chain = e;
        }
        if (chain) brisolan_linkchain(x, chain);
        kel_private<"dblclick">(x);
        kel_run_queue();
        SetPort(x->window->port);
    }
    ~editor() {
        kel_patcher_free(patcher);
        kel_end();
    }
    void unselect() {
        brisolan_noselect(x);
        kel_run_queue();
    }
    void select_all() {
        kel_private<"selectall">(x);
        kel_run_queue();
    }
    event* middle() {
        event* e = x->events;
        for (int i = 0; i < x->nevents / 2; ++i) e = e->next;
        return e;
    }
};

void full_update(benchmark::State& state) {
    editor ed(static_cast<int>(state.range(0)));
    for (auto _ : state) kel_window_update(ed.x->window);
}

void full_update_all_selected(benchmark::State& state) {
    editor ed(static_cast<int>(state.range(0)));
    ed.select_all();
    for (auto _ : state) kel_window_update(ed.x->window);
}

// The rectangles that the bars' heads, label boxes and rests take, filled in a plain bitmap of the window's size.
void bare_fills(benchmark::State& state) {
    editor ed(static_cast<int>(state.range(0)));
    struct part {
        int left, top, right, bottom;
        std::uint32_t colour;
    };
    std::vector<part> parts;
    for (event* e = ed.x->events; e; e = e->next) {
        const int y = brisolan_valuetov(ed.x, e->pitch);
        const int left = brisolan_timetoh(ed.x, e->time);
        const int right = left + brisolan_barlength(ed.x, e);
        const int box = std::min(left + 4 + 14, right);
        const auto add = [&](int from, int to, std::uint32_t colour) {
            from = std::max(from, 48);
            to = std::min(to, 585);
            if (from < to) parts.push_back({from, std::max(y - 2, 62), to, std::min(y + 2, 324), colour});
        };
        add(left, left + 4, static_cast<std::uint32_t>(e->track));
        add(left + 4, box, 0xDDE2EAu);
        add(box, right, static_cast<std::uint32_t>(e->track));
    }
    std::vector<std::uint32_t> bitmap(600 * 400);
    for (auto _ : state) {
        for (const part& p : parts) {
            for (int v = p.top; v < p.bottom; ++v) {
                std::uint32_t* row = bitmap.data() + v * 600;
                for (int h = p.left; h < p.right; ++h) row[h] = p.colour;
            }
        }
        benchmark::ClobberMemory();
    }
}

void one_event(benchmark::State& state) {
    editor ed(static_cast<int>(state.range(0)));
    event* e = ed.middle();
    for (auto _ : state) {
        brisolan_eraseit(ed.x, e);
        e->pitch = (e->pitch + 1) % 128;
        brisolan_drawit(ed.x, e);
        kel_run_queue();
    }
}

void select_all(benchmark::State& state) {
    editor ed(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        ed.select_all();
        state.PauseTiming();
        ed.unselect();
        state.ResumeTiming();
    }
}

void drag_everything_up(benchmark::State& state) {
    editor ed(static_cast<int>(state.range(0)));
    ed.select_all();
    int up = 1;
    for (auto _ : state) {
        brisolan_offset(ed.x, PARAM_PITCH, up);
        up = -up;
        kel_run_queue();
    }
}

void drag_everything_right(benchmark::State& state) {
    editor ed(static_cast<int>(state.range(0)));
    ed.select_all();
    int right = 50;
    for (auto _ : state) {
        brisolan_offset(ed.x, PARAM_TIME, right);
        right = -right;
        kel_run_queue();
    }
}

void delete_everything(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto ed = std::make_unique<editor>(static_cast<int>(state.range(0)));
        ed->select_all();
        state.ResumeTiming();
        kel_private<"clr">(ed->x);
        kel_run_queue();
        state.PauseTiming();
        ed.reset();
        state.ResumeTiming();
    }
}

void paste_everything(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto ed = std::make_unique<editor>(static_cast<int>(state.range(0)));
        ed->select_all();
        kel_private<"cut">(ed->x);
        kel_run_queue();
        state.ResumeTiming();
        kel_private<"paste">(ed->x);
        kel_run_queue();
        state.PauseTiming();
        ed.reset();
        state.ResumeTiming();
    }
}

void update_of_bars_out_of_view(benchmark::State& state) {
    editor ed(static_cast<int>(state.range(0)), 10000000);
    for (auto _ : state) brisolan_drawevts(ed.x);
}

void hit_test(benchmark::State& state) {
    editor ed(static_cast<int>(state.range(0)));
    int v = 62;
    for (auto _ : state) {
        benchmark::DoNotOptimize(brisolan_findevent(ed.x, 300, v));
        v = v < 320 ? v + 1 : 62;
    }
}

BENCHMARK(full_update)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(full_update_all_selected)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(bare_fills)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(one_event)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(select_all)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(drag_everything_up)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(drag_everything_right)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(delete_everything)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(paste_everything)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(update_of_bars_out_of_view)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(hit_test)->Arg(100000)->Unit(benchmark::kMicrosecond);

} // namespace
