// bench/edit_bench.cpp: what editing everything at once costs, each step with its redraw, beside one full update of the
// picture with everything selected; and without drawing, beside the bare change of a list.
// Measured by hand: build/release/bench_edit_bench, or bench/run for all. The number is how many events there are.
// Benchmark.
#include <array>
#include <charconv>
#include <memory>
#include <string>

#include "bench/editor.h"
#include "bench/in_turns.h"
#include "core/messages.h"
#include "edit/drag.h"
#include "edit/params.h"
#include "edit/press.h"
#include "edit/selection.h"
#include "io/clipboard.h"

namespace {

using bench::editor;
using bench::side;

// How the events are seen.
enum class sight { all, off_screen, hidden };

// The bare work of one step on all: each value changed and held in its range; then all links taken apart and merged.
class bare_change {
public:
    explicit bare_change(std::int64_t n) : head(bench::random_chain(n, 0, bench::VIEW_MS)) {
        for (event* e = head; e; e = e->next) e->selected = std::uint8_t{1};
    }
    ~bare_change() {
        for (event* e = head; e;) {
            event* following = e->next;
            brisolan_freeevent(e);
            e = following;
        }
    }
    bare_change(const bare_change&) = delete;
    bare_change& operator=(const bare_change&) = delete;

    void step() {
        for (event* e = head; e; e = e->next) {
            if (e->selected) e->pitch = std::clamp(e->pitch.get() + by, 0, 127);
        }
        by = -by;
        split();
        merge();
    }

private:
    void split() {
        event* ends[2] = {&lists[0], &lists[1]};
        for (event* e = head; e; e = e->next) {
            event*& end = ends[e->selected ? 1 : 0];
            end->next = e;
            end = e;
        }
        ends[0]->next = nullptr;
        ends[1]->next = nullptr;
    }
    void merge() {
        event* a = lists[0].next;
        event* b = lists[1].next;
        event merged;
        event* end = &merged;
        while (a && b) {
            event*& first = b->time < a->time ? b : a;
            end->next = first;
            end = first;
            first = first->next;
        }
        end->next = a ? a : b;
        head = merged.next;
    }

    event* head;
    event lists[2];
    int by = 1;
};

// The least that makes n events of a text of theirs: their numbers read, the events handed out and linked in order.
class bare_reading {
public:
    explicit bare_reading(const brisolan* x) {
        for (const event* e = x->events; e; e = e->next) {
            for (int i = 0; i < NPARAMS; ++i) {
                text += std::to_string(event_param(*e, i));
                text += i == NPARAMS - 1 ? '\r' : ' ';
            }
        }
    }
    ~bare_reading() { free_all(); }
    bare_reading(const bare_reading&) = delete;
    bare_reading& operator=(const bare_reading&) = delete;

    void read() {
        event* last = &head;
        const char* const end = text.data() + text.size();
        for (const char* at = text.data(); at != end;) {
            std::array<std::int32_t, NPARAMS> values{};
            for (std::int32_t& v : values) at = std::from_chars(at, end, v).ptr + 1;
            event* e = brisolan_newevent(values);
            last->next = e;
            last = e;
        }
    }
    void free_all() {
        for (event* e = head.next; e;) {
            event* following = e->next;
            brisolan_freeevent(e);
            e = following;
        }
        head.next = nullptr;
    }

private:
    std::string text;
    event head;
};

// The events stand as `how` says, all selected; with its floor: a full update where they are seen, else the bare change.
class stage {
public:
    stage(std::int64_t n, sight how) : e(how == sight::off_screen ? 0 : n, how == sight::off_screen ? n : 0) {
        e.select_all();
        if (how == sight::hidden) {
            const atom close(host_symbol("wclose"));
            kel_message(e.x, std::array{close});
            kel_run_queue();
            e.select_all();
        }
        if (how != sight::all) bare = std::make_unique<bare_change>(n);
    }
    side floor() {
        if (bare) return side{[this] { bare->step(); }};
        return side{[this] { e.update(); }, [this] { select_again(); }};
    }
    double target() const { return bare ? 3 : 1.5; }
    void select_again() {
        if (e.x->nevents != e.x->nselected || !e.x->events->selected) e.select_all();
    }

    editor e;

private:
    std::unique_ptr<bare_change> bare;
};

void turns(benchmark::State& state, std::int64_t n, stage& on, const side& object) {
    bench::in_turns(state, static_cast<double>(n), on.target(), on.floor(), object);
}

void select_all(benchmark::State& state, std::int64_t n, sight how) {
    stage on(n, how);
    turns(state, n, on,
          side{[&] { on.e.edit([&] { brisolan_selectall(on.e.x); }); }, [&] { on.e.unselect(); }});
}

void unselect_all(benchmark::State& state, std::int64_t n, sight how) {
    stage on(n, how);
    turns(state, n, on, side{[&] { on.e.unselect(); }, [&] { on.select_again(); }});
}

template <int Third> void drag_all(benchmark::State& state, std::int64_t n, sight how) {
    stage on(n, how);
    brisolan* x = on.e.x;
    g_grabbedthird = Third;
    Point at{200, 200};
    x->dragvalue = brisolan_grabbedvalue(x, at);
    if (how == sight::hidden) {
        // A hidden window gets no drag; its step is the change alone.
        const int index = Third == THIRD_START ? PARAM_TIME : Third == THIRD_BODY ? x->yparam : x->lenparam;
        int by = 1;
        turns(state, n, on, side{[&, index] {
                  on.e.edit([&] { brisolan_offset(x, index, by); });
                  by = -by;
              }});
        return;
    }
    turns(state, n, on, side{[&] {
              at = at.v == 200 ? Point{204, 204} : Point{200, 200};
              on.e.edit([&] { brisolan_movedrag(x, at, true); });
          }});
}

// One of many is dragged: as often as the full update's hundredth allows.
void drag_one(benchmark::State& state, std::int64_t n) {
    constexpr int STEPS = 100;
    editor e(n);
    event* one = e.x->events;
    for (std::int64_t i = 0; i < n / 2; ++i) one = one->next;
    e.edit([&] { brisolan_select(e.x, one); });
    g_grabbedthird = THIRD_BODY;
    Point at{200, 200};
    e.x->dragvalue = brisolan_grabbedvalue(e.x, at);
    bench::in_turns(state, STEPS, 0.01, side{[&] { e.update(); }}, side{[&] {
                        for (int i = 0; i < STEPS; ++i) {
                            at.v = static_cast<std::int16_t>(at.v == 200 ? 204 : 200);
                            e.edit([&] { brisolan_movedrag(e.x, at, true); });
                        }
                    }},
                    STEPS);
}

void legend_drag(benchmark::State& state, std::int64_t n, sight how) {
    stage on(n, how);
    brisolan* x = on.e.x;
    std::int32_t value = 40;
    x->numparam = PARAM_PITCH;
    x->yparam = PARAM_PITCH;
    // Everything lands on one row; the full update beside it is that picture's.
    turns(state, n, on, side{[&] { on.e.edit([&] { brisolan_paramtrack(x, value = 100 - value); }); }});
}

// What takes everything away by an edit; the clipboard brings it back, all selected.
template <class Edit> void take_away(benchmark::State& state, std::int64_t n, sight how, Edit edit) {
    stage on(n, how);
    brisolan* x = on.e.x;
    on.e.edit([&] { brisolan_copy(x); });
    const auto refill = [&] {
        if (!x->events) on.e.edit([&] { brisolan_paste(x); });
        on.select_again();
    };
    side floor = on.floor();
    floor.prepare = refill;
    bench::in_turns(state, static_cast<double>(n), on.target(), floor,
                    side{[&] { on.e.edit([&] { edit(x); }); }, refill});
}

void delete_all(benchmark::State& state, std::int64_t n, sight how) {
    take_away(state, n, how, brisolan_clr);
}

void paste_all(benchmark::State& state, std::int64_t n, sight how) {
    stage on(n, how);
    brisolan* x = on.e.x;
    on.e.edit([&] { brisolan_copy(x); });
    turns(state, n, on,
          side{[&] { on.e.edit([&] { brisolan_paste(x); }); }, [&] { on.e.edit([&] { brisolan_clr(x); }); }});
}

// Beside a loop that reads the text, and with drawing a full update as well: no paste can do less.
void paste_all_beside_reading(benchmark::State& state, std::int64_t n, sight how) {
    stage on(n, how);
    brisolan* x = on.e.x;
    on.e.edit([&] { brisolan_copy(x); });
    bare_reading bare(x);
    const side floor{[&] {
                         bare.read();
                         if (how == sight::all) on.e.update();
                     },
                     [&] {
                         bare.free_all();
                         if (how == sight::all) on.select_again();
                     }};
    bench::in_turns(
        state, static_cast<double>(n), on.target(), floor,
        side{[&] { on.e.edit([&] { brisolan_paste(x); }); }, [&] { on.e.edit([&] { brisolan_clr(x); }); }});
}

void copy_all(benchmark::State& state, std::int64_t n) {
    stage on(n, sight::all);
    turns(state, n, on, side{[&] { on.e.edit([&] { brisolan_copy(on.e.x); }); }});
}

void clear_all(benchmark::State& state, std::int64_t n, sight how) {
    take_away(state, n, how, brisolan_clear);
}

// The band grows over everything, and shrinks again: two steps.
void band_over_all(benchmark::State& state, std::int64_t n) {
    stage on(n, sight::all);
    brisolan* x = on.e.x;
    modkeywas = 0;
    x->clickpt = {62, 48};
    bench::in_turns(state, static_cast<double>(n), 3, on.floor(),
                    side{[&] {
                             on.e.edit([&] { brisolan_selectdrag(x, {340, 585}, true); });
                             on.e.edit([&] { brisolan_selectdrag(x, {64, 50}, true); });
                             on.e.edit([&] { brisolan_selectdrag(x, {64, 50}, false); });
                         },
                         [&] { on.e.unselect(); }});
}

// A step of a small band over few of many.
void band_over_few(benchmark::State& state, std::int64_t n) {
    stage on(n, sight::all);
    brisolan* x = on.e.x;
    on.e.unselect();
    modkeywas = 0;
    x->clickpt = {180, 300};
    const auto near_by = [&] { on.e.edit([&] { brisolan_selectdrag(x, {190, 310}, true); }); };
    const auto further = [&] { on.e.edit([&] { brisolan_selectdrag(x, {194, 314}, true); }); };
    bench::in_turns(state, static_cast<double>(n), 0.5, side{[&] { on.e.update(); }}, side{further, near_by});
    on.e.edit([&] { brisolan_selectdrag(x, {190, 310}, false); });
}

using row = void (*)(benchmark::State&, std::int64_t, sight);
struct named_row {
    const char* name;
    row run;
};
constexpr std::array ROWS{named_row{"select_all", select_all},
                          named_row{"unselect_all", unselect_all},
                          named_row{"drag_all_time", drag_all<THIRD_START>},
                          named_row{"drag_all_value", drag_all<THIRD_BODY>},
                          named_row{"drag_all_length", drag_all<THIRD_END>},
                          named_row{"delete_all", delete_all},
                          named_row{"paste_all", paste_all},
                          named_row{"clear_all", clear_all}};

template <class Run> void add(const std::string& name, std::int64_t n, Run run) {
    bench::add_turns(name, n, [n, run](benchmark::State& s) { run(s, n); });
}

[[maybe_unused]] const bool rows = [] {
    struct shown {
        const char* name;
        sight how;
    };
    for (const std::int64_t n : {1'000, 10'000, 100'000, 1'000'000}) {
        for (const shown& s : {shown{"", sight::all}, shown{"_off_screen", sight::off_screen},
                               shown{"_hidden", sight::hidden}}) {
            for (const named_row& r : ROWS) {
                add(std::string(r.name) + s.name, n,
                    [r, s](benchmark::State& state, std::int64_t m) { r.run(state, m, s.how); });
            }
        }
        add("legend_drag", n,
            [](benchmark::State& state, std::int64_t m) { legend_drag(state, m, sight::all); });
        add("copy_all", n, copy_all);
        for (const shown& s : {shown{"", sight::all}, shown{"_off_screen", sight::off_screen},
                               shown{"_hidden", sight::hidden}}) {
            add(std::string("paste_all_beside_reading") + s.name, n,
                [s](benchmark::State& state, std::int64_t m) { paste_all_beside_reading(state, m, s.how); });
        }
        add("band_over_all", n, band_over_all);
        add("band_over_few", n, band_over_few);
    }
    for (const std::int64_t n : {10'000, 100'000}) add("drag_one", n, drag_one);
    return true;
}();

} // namespace
