// tests/view/random_redraw_test.cpp: random edits, one event at a time and many at once, drawn by the view and by a slow
// twin: the bitmaps must be the same after every redraw, and the hit test must find the same.
// Tests of the view.
#include "tests/view/editor.h"

#include <array>
#include <cstdlib>
#include <random>
#include <vector>

#include "edit/drag.h"
#include "edit/params.h"
#include "edit/press.h"
#include "edit/selection.h"
#include "io/clipboard.h"
#include "tests/view/plain_twin.h"
#include "view/draw.h"
#include "view/events.h"
#include "view/format.h"
#include "view/geometry.h"
#include "view/selected.h"
#include "view/window.h"

namespace {

unsigned given_seed() {
    const char* given = std::getenv("BRISOLAN_SEED");
    return given ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : 20260;
}

// Two instances that hold the same sequence: one drawn by the view, one by the twin.
class random_redraw : public editor_test {
protected:
    void SetUp() override {
        editor_test::SetUp();
        y = static_cast<brisolan*>(kel_make(host_symbol("brisolan"), {}));
        for (brisolan* each : {x, y}) kel_private<"dblclick">(each);
        kel_run_queue();
    }

    int below(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }
    bool once_in(int n) { return below(n) == 0; }

    using step = void (*)(brisolan*, event*);
    // Does the same to the n-th event of both.
    void both(int n, step view_step, step plain_step) {
        view_step(x, nth(x, n));
        plain_step(y, nth(y, n));
    }
    static event* nth(brisolan* of, int n) {
        event* e = of->events;
        while (n-- > 0) e = e->next;
        return e;
    }

    void link_one() {
        std::int32_t values[NPARAMS];
        for (std::int32_t& v : values) v = below(128);
        values[PARAM_TIME] = below(time_range) - (all_in_view ? 0 : 500);
        values[PARAM_PITCH] = below(pitch_range);
        values[PARAM_DUR] = once_in(6) ? below(40000) : below(1500);
        values[PARAM_TRACK] = all_in_view ? 1 + below(32) : below(35);
        for (brisolan* each : {x, y}) {
            event* e = brisolan_newevent();
            for (int i = 0; i < NPARAMS; ++i) event_param(*e, i) = values[i];
            brisolan_link(each, e);
        }
    }

    void change_one(int n) {
        const int index = below(3) == 0 ? PARAM_DUR : once_in(2) ? PARAM_PITCH : PARAM_TIME;
        const int by = below(61) - 30;
        const std::int32_t scaled = index == PARAM_PITCH ? by / 6 : by * 20;
        for (brisolan* each : {x, y}) event_param(*nth(each, n), index) += scaled;
    }

    void edit(int n) {
        switch (below(6)) {
        case 0:
            both(
                n,
                [](brisolan* b, event* e) {
                    e->selected = std::uint8_t{1};
                    b->nselected += 1;
                    brisolan_eraseit(b, e);
                    brisolan_drawit(b, e);
                },
                plain_select);
            break;
        case 1:
            both(
                n,
                [](brisolan* b, event* e) {
                    brisolan_eraseit(b, e);
                    e->selected = std::uint8_t{0};
                },
                plain_unselect);
            break;
        case 2: // as an offset
            both(n, brisolan_eraseit, plain_eraseit);
            change_one(n);
            break;
        case 3: // as a legend drag
            both(n, brisolan_eraseit, plain_eraseit);
            change_one(n);
            both(n, brisolan_drawit, plain_drawit);
            break;
        case 4: both(n, brisolan_drawit, plain_drawit); break;
        default:
            link_one();
            both(n, brisolan_eraseit, plain_eraseit);
            both(n, brisolan_drawit, plain_drawit);
        }
    }

    static void plain_noselect(brisolan* of) {
        for (event* e = of->events; e; e = e->next) {
            if (e->selected) plain_unselect(of, e);
        }
    }

    // One of the edits that the view is told of as a whole, and the same one event after the other.
    void edit_all() {
        SetPort(x->window->port);
        switch (below(8)) {
        case 0:
            brisolan_selectall(x);
            for (event* e = y->events; e; e = e->next) plain_select(y, e);
            break;
        case 1:
            brisolan_noselect(x);
            plain_noselect(y);
            break;
        case 6:
        case 7: drag_band(); break;
        case 2: offset_selected(); break;
        case 3: drag_in_legend(); break;
        case 4: remove_selected(true); break;
        default: copy_and_paste();
        }
        SetPort(nullptr);
    }

    // A rubber band from one point to another, where it is let go: nothing is framed.
    void drag_band() {
        const auto place = [this] {
            return Point{static_cast<std::int16_t>(62 + below(260)),
                         static_cast<std::int16_t>(48 + below(540))};
        };
        modkeywas = once_in(3) ? shiftKey : 0;
        const Point from = place();
        const Point to = once_in(3) ? from : place();
        for (brisolan* each : {x, y}) {
            if (modkeywas && once_in(2)) brisolan_markselected(each);
        }
        for (event *a = x->events, *b = y->events; a; a = a->next, b = b->next) b->marked = a->marked;
        plain_band(y, {std::min(from.h, to.h), std::min(from.v, to.v), std::max(from.h, to.h),
                       std::max(from.v, to.v)});
        x->clickpt = from;
        brisolan_selectdrag(x, to, false);
    }

    // Event by event: whoever is unselected is drawn at once, with all that are marked by then.
    static void plain_band(brisolan* of, Rect r) {
        for (event* e = of->events; e; e = e->next) {
            const std::int32_t h = brisolan_timetoh(of, e->time);
            const std::int32_t v = brisolan_valuetov(of, event_param(*e, of->yparam));
            const std::int32_t width =
                of->labelparam < 0 ? brisolan_barlength(of, e) : brisolan_nwidth(of, e);
            const bool inside = h + width >= r.left && h <= r.right && v >= r.top && v <= r.bottom;
            const bool kept = modkeywas && e->marked;
            bool wanted = e->selected != 0;
            if (inside && !brisolan_trackisshown(of, e->track)) continue;
            if (inside && kept)
                wanted = !e->selected && !(e->marked & 2);
            else if (inside)
                wanted = true;
            else if (!kept)
                wanted = false;
            else if (!e->selected)
                wanted = true;
            else
                wanted = !(e->marked & 2);
            if (kept) e->marked = static_cast<std::uint8_t>(inside ? e->marked | 2 : e->marked & ~2);
            if (wanted && !e->selected) plain_select(of, e);
            if (wanted || !e->selected) continue;
            plain_unselect(of, e);
            plain_drawdirtyevts(of);
        }
        plain_drawdirtyevts(of);
    }

    void offset_selected() {
        const int index = once_in(3) ? PARAM_TIME : once_in(2) ? PARAM_PITCH : PARAM_DUR;
        const std::int32_t by = (below(61) - 30) * (index == PARAM_PITCH ? 1 : 30);
        const param_record& p = x->params[static_cast<std::size_t>(index)];
        const std::int32_t least = index == PARAM_TIME ? 0 : p.min.get();
        const std::int32_t most = index == PARAM_TIME ? INT32_MAX : p.max.get();
        brisolan_offset(x, index, by);
        for (event* e = y->events; e; e = e->next) {
            if (!e->selected) continue;
            plain_eraseit(y, e);
            const std::int32_t value = event_param(*e, index) + by;
            event_param(*e, index) = value < least ? least : value > most ? most : value;
        }
        if (index == PARAM_TIME) brisolan_resort(y);
    }

    void drag_in_legend() {
        const int index = once_in(2) ? PARAM_VEL : PARAM_PITCH;
        const std::int32_t value = below(128);
        x->numparam = static_cast<std::uint8_t>(index);
        x->nselected = x->nevents + 1; // whoever is selected, and not the anchor alone
        brisolan_paramtrack(x, value);
        for (event* e = y->events; e; e = e->next) {
            if (!e->selected) continue;
            plain_eraseit(y, e);
            event_param(*e, index) = value;
            plain_drawit(y, e);
        }
    }

    // Everything at once, and nothing else before it is drawn: selected as it is, or pasted where nothing was.
    void edit_everything() {
        SetPort(x->window->port);
        if (once_in(2)) {
            brisolan_selectall(x);
            for (event* e = y->events; e; e = e->next) plain_select(y, e);
        } else {
            copy_and_paste(true);
        }
        SetPort(nullptr);
    }

    void copy_and_paste(bool cut = false) {
        if (!cut && x->nevents > 400) return;
        if (cut) {
            brisolan_selectall(x);
            for (event* e = y->events; e; e = e->next) plain_select(y, e);
        }
        brisolan_copy(x);
        std::vector<std::array<std::int32_t, NPARAMS>> copied;
        for (event* e = y->events; e; e = e->next) {
            if (!e->selected) continue;
            std::array<std::int32_t, NPARAMS>& values = copied.emplace_back();
            for (int i = 0; i < NPARAMS; ++i) values[static_cast<std::size_t>(i)] = event_param(*e, i);
        }
        if (cut) {
            remove_selected(true);
            redraw_marked();
        }
        brisolan_paste(x);
        plain_noselect(y);
        for (const std::array<std::int32_t, NPARAMS>& values : copied) {
            event* e = brisolan_newevent();
            for (int i = 0; i < NPARAMS; ++i) event_param(*e, i) = values[static_cast<std::size_t>(i)];
            brisolan_link(y, e);
            plain_select(y, e);
        }
    }

    void redraw_marked() {
        brisolan_drawdirtyevts(x);
        plain_drawdirtyevts(y);
    }

    void redraw_all() {
        for (brisolan* each : {x, y}) {
            SetPort(each->window->port);
            t_clipit(0, 0, 600, 400);
            t_eraserect(0, 62, 585, 370);
            brisolan_drawbg(each);
        }
        SetPort(x->window->port);
        brisolan_drawevts(x);
        plain_drawevts(y);
    }

    void change_frame() {
        const int yzooms[] = {1, 2, 3, 4, 4, 5, 9, 14};
        const int xzooms[] = {25, 100, 200, 400};
        const int yzoom = yzooms[below(8)];
        const int xzoom = xzooms[below(4)];
        const int scroll_range = once_in(3) ? 60 : 10;
        const auto scroll = static_cast<std::int16_t>(all_in_view ? 0 : below(scroll_range));
        const int label = once_in(4) ? -1 : once_in(4) ? PARAM_PITCH : PARAM_VEL;
        const std::uint8_t names = once_in(3) ? 1 : 0;
        const std::uint8_t sharps = once_in(3) ? 1 : 0;
        for (brisolan* each : {x, y}) {
            each->yzoom = yzoom;
            each->xzoom = each->lenzoom = xzoom;
            each->window->hscroll_value = scroll;
            each->window->vscroll_value = static_cast<std::int16_t>(scroll % 10 * 3);
            each->labelparam = label;
            each->params[PARAM_PITCH].notenames = names;
            each->show_sharps = sharps;
        }
        redraw_all();
    }

    void remove_selected(bool at_once) {
        if (at_once) brisolan_clr(x);
        for (brisolan* each : {x, y}) {
            for (event* e = each->events; e; e = e->next) {
                if (!e->selected) continue;
                if (each == x)
                    brisolan_eraseit(each, e);
                else
                    plain_eraseit(each, e);
            }
            brisolan_removeselected(each);
        }
    }

    void hide_or_show() {
        const int track = below(32);
        brisolan_settle(x); // as the buttons do
        for (brisolan* each : {x, y}) each->trackshown[track] ^= 1;
        redraw_all();
    }

    void expect_same(const char* where, int round) {
        const picture a = picture_of(x);
        const picture b = picture_of(y);
        ASSERT_TRUE(a == b) << "seed " << seed << ", round " << round << " " << where << ": "
                            << difference(a, b);
        for (int i = 0; i < 20; ++i) {
            const int h = 48 + below(540);
            const int v = 62 + below(260);
            event* found = brisolan_findevent(x, h, v);
            event* twin = plain_findevent(y, h, v);
            ASSERT_EQ(found == nullptr, twin == nullptr) << "seed " << seed << ", round " << round;
            if (found) {
                ASSERT_EQ(found->time, twin->time) << "seed " << seed << ", round " << round;
                ASSERT_EQ(found->pitch, twin->pitch) << "seed " << seed << ", round " << round;
            }
        }
    }

    // Does it with some seeds: every third has times to `third`, the others to `usual`; every second has few pitches.
    template <class Do> void for_each_seed(int third, int usual, Do edits) {
        const unsigned first = given_seed();
        std::printf("seed %u\n", first);
        for (seed = first; seed < first + 12; ++seed) {
            random.seed(seed);
            time_range = seed % 3 == 0 ? third : usual;
            pitch_range = seed % 2 == 0 ? 12 : 128;
            edits();
            if (HasFatalFailure()) return;
        }
    }

    void play(int rounds, int most) {
        for (int round = 0; round < rounds; ++round) {
            if (once_in(12)) change_frame();
            if (once_in(15)) hide_or_show();
            if (once_in(12)) remove_selected(false);
            while (x->nevents < 20) link_one();
            const int edits = once_in(3) ? below(most) : below(4);
            for (int i = 0; i < edits; ++i) {
                edit(below(x->nevents));
                if (batches > 0 && once_in(batches)) edit_all();
                while (x->nevents < 20) link_one();
                if (once_in(40)) brisolan_settle(x);
                if (once_in(60)) redraw_marked();
                if (once_in(80)) {
                    brisolan_resort(x);
                    brisolan_resort(y);
                }
            }
            redraw_marked();
            expect_same("after marked", round);
            if (HasFatalFailure()) return;
            if (once_in(10)) redraw_all();
        }
        redraw_all();
        expect_same("at the end", rounds);
    }

    brisolan* y = nullptr;
    unsigned seed = 0;
    std::mt19937 random;
    int time_range = 14000;
    int pitch_range = 128;
    bool all_in_view = false; // events are made, and the view is moved, so that all of them are seen
    int batches = 0;          // one edit in so many is followed by one of all at once; 0: none is
};

TEST_F(random_redraw, sparse_and_dense_edits_equal_the_twin) {
    for_each_seed(3000, 14000, [this] { play(40, 120); });
}

// Many events one over the other, of which most lie out of sight below others.
TEST_F(random_redraw, everything_selected_or_pasted_equals_the_twin) {
    all_in_view = true;
    for_each_seed(5000, 1500, [this] {
        for (int round = 0; round < 12; ++round) {
            while (x->nevents < 100 + below(500)) link_one();
            change_frame();
            edit_everything();
            redraw_marked();
            expect_same("after everything", round);
            if (HasFatalFailure()) return;
            if (once_in(2)) {
                SetPort(x->window->port);
                brisolan_noselect(x);
                plain_noselect(y);
                SetPort(nullptr);
                redraw_marked();
            }
        }
    });
}

// Of bands that only grow or shrink, and of ones that select some and unselect others.
TEST_F(random_redraw, rubber_bands_over_many_equal_the_twin) {
    for_each_seed(1500, 8000, [this] {
        for (int round = 0; round < 25; ++round) {
            while (x->nevents < 20 + below(300)) link_one();
            if (once_in(3)) change_frame();
            if (once_in(6)) hide_or_show();
            SetPort(x->window->port);
            if (once_in(4)) {
                brisolan_selectall(x);
                for (event* e = y->events; e; e = e->next) plain_select(y, e);
            }
            drag_band();
            SetPort(nullptr);
            redraw_marked();
            expect_same("after a band", round);
            if (HasFatalFailure()) return;
        }
    });
}

TEST_F(random_redraw, edits_of_all_at_once_equal_the_twin) {
    for_each_seed(3000, 14000, [this] {
        batches = 1 + below(8);
        play(40, 12);
    });
}

} // namespace
