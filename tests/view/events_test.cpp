// tests/view/events_test.cpp: grid, bars, erasing and redrawing, the ruler and the hit test, by their pixels.
// Tests of the view.
#include "tests/view/editor.h"

#include "host/toolbox/palette.h"
#include "view/draw.h"
#include "view/events.h"
#include "view/format.h"
#include "view/geometry.h"
#include "view/window.h"

namespace {

std::uint32_t colour(int index) {
    const RGBColor c = palette_color(index);
    return 0xFF000000u | static_cast<std::uint32_t>(c.red >> 8) << 16 |
           static_cast<std::uint32_t>(c.green >> 8) << 8 | c.blue >> 8;
}

constexpr std::uint32_t WHITE = 0xFFFFFFFFu;
constexpr std::uint32_t BLACK = 0xFF000000u;

class view_events : public editor_test {
protected:
    // The rows of column h that have this colour, from the first to behind the last; {0, 0} for none.
    static std::pair<int, int> rows_of(const picture& p, int h, std::uint32_t wanted) {
        std::pair<int, int> found{0, 0};
        for (int v = 62; v < 370; ++v) {
            if (p.at(h, v) != wanted) continue;
            if (found.second == 0) found.first = v;
            found.second = v + 1;
        }
        return found;
    }
    // The same of row v's columns.
    static std::pair<int, int> columns_of(const picture& p, int v, std::uint32_t wanted) {
        std::pair<int, int> found{0, 0};
        for (int h = 48; h < 585; ++h) {
            if (p.at(h, v) != wanted) continue;
            if (found.second == 0) found.first = h;
            found.second = h + 1;
        }
        return found;
    }
    void no_label() {
        x->labelparam = -1;
        x->params[PARAM_VEL].mode = ROLE_NONE;
    }
    using span = std::pair<int, int>;
};

TEST_F(view_events, grid_of_the_empty_data_area) {
    open();
    const picture p = now();
    // Strong lines every 12 pitches, weak ones every 3, from the minimum to an interval past the maximum.
    for (int pitch = 0; pitch <= 127; ++pitch) {
        const std::uint32_t expected = pitch % 12 == 0 ? colour(25) : pitch % 3 == 0 ? colour(22) : WHITE;
        EXPECT_EQ(p.at(60, 320 - 2 * pitch), expected) << pitch;
    }
    EXPECT_EQ(p.at(60, 319), WHITE);
    // Vertical lines every 40 pixels from Time 0, under the horizontal ones.
    EXPECT_EQ(p.at(48, 301), colour(22));
    EXPECT_EQ(p.at(88, 301), colour(22));
    EXPECT_EQ(p.at(89, 301), WHITE);
    EXPECT_EQ(p.at(88, 320), colour(25));
    // Value 129, beyond the maximum, has the last line; the area begins at 62.
    EXPECT_EQ(p.at(60, 320 - 2 * 129), colour(22));
    EXPECT_EQ(p.at(60, 61), WHITE);
    // The area ends at 324.
    EXPECT_EQ(p.at(88, 323), colour(22));
    EXPECT_EQ(p.at(88, 324), WHITE);
}

TEST_F(view_events, grid_lines_count_from_the_minimum) {
    open();
    x->params[PARAM_PITCH].min = 1; // H is 254
    const picture p = full();
    EXPECT_EQ(p.at(60, 254 + 64 - 2 * 1), colour(22));
    EXPECT_EQ(p.at(60, 254 + 64 - 2 * 12), WHITE); // 1, 4, 7, 10, 13
    EXPECT_EQ(p.at(60, 254 + 64 - 2 * 13), colour(22));
}

TEST_F(view_events, grid_scrolls_with_the_content) {
    add(400000, 60);
    open();
    host_window_setscrollval(x->window, 1, 0);
    const picture p = full();
    EXPECT_EQ(p.at(72, 301), colour(22)); // 48 - 16 + 40
    EXPECT_EQ(p.at(88, 301), WHITE);
}

TEST_F(view_events, interval_of_zero_is_one) {
    open();
    x->params[PARAM_PITCH].interval = 0;
    const picture p = full();
    EXPECT_EQ(p.at(60, 320 - 2 * 61), colour(25));
    EXPECT_EQ(p.at(60, 320 - 2 * 62), colour(25));
}

TEST_F(view_events, erasing_draws_lines_one_pixel_beyond) {
    open();
    SetPort(x->window->port);
    brisolan_eventclip(x);
    t_paintrect(80, 100, 140, 150);
    brisolan_drawpattern(x, 90, 110, 128, 122);
    const picture p = now();
    EXPECT_EQ(p.at(89, 115), BLACK);
    EXPECT_EQ(p.at(100, 115), WHITE);
    EXPECT_EQ(p.at(127, 115), WHITE);
    EXPECT_EQ(p.at(128, 115), colour(22)); // a column on the right edge
    EXPECT_EQ(p.at(128, 122), colour(22)); // down to the bottom line
    EXPECT_EQ(p.at(127, 122), colour(22)); // row 122 is pitch 99
    EXPECT_EQ(p.at(127, 123), BLACK);
}

// Bars may end two thousand million pixels outside: the lines out there must not be gone through one by one.
TEST_F(view_events, erasing_what_reaches_far_outside_draws_what_is_in_sight) {
    open();
    const picture before = full();
    const kel_in_port current(x->window);
    brisolan_drawpattern(x, INT32_MIN, 62, INT32_MAX, 340);
    EXPECT_TRUE(now() == before) << difference(now(), before);
}

TEST_F(view_events, nothing_is_erased_above_the_data_area) {
    open();
    SetPort(x->window->port);
    t_clipit(0, 0, 600, 400);
    t_paintrect(80, 40, 140, 150);
    brisolan_drawpattern(x, 90, 50, 120, 80);
    EXPECT_EQ(now().at(100, 60), BLACK);
    EXPECT_NE(now().at(100, 61), BLACK);
}

TEST_F(view_events, solid_bar_without_label) {
    no_label();
    add(1000, 60, 64, 1000);
    open();
    const picture p = now();
    EXPECT_EQ(columns_of(p, 200, colour(47)), span(88, 128));
    EXPECT_EQ(rows_of(p, 100, colour(47)), span(198, 202));
}

TEST_F(view_events, selected_bar_is_an_outline_one_higher) {
    no_label();
    add(1000, 60, 64, 1000)->selected = std::uint8_t{1};
    open();
    const picture p = now();
    EXPECT_EQ(rows_of(p, 100, colour(47)), span(197, 203));
    EXPECT_EQ(columns_of(p, 197, colour(47)), span(88, 128));
    EXPECT_NE(p.at(100, 199), colour(47));
    EXPECT_EQ(p.at(88, 199), colour(47));
    EXPECT_EQ(p.at(127, 199), colour(47));
}

TEST_F(view_events, short_bars_are_four_pixels) {
    no_label();
    add(1000, 60, 64, 1);
    open();
    EXPECT_EQ(columns_of(now(), 200, colour(47)), span(88, 92));
}

TEST_F(view_events, labelled_bar_has_head_box_and_rest) {
    event* e = add(1000, 60, 7, 1000);
    open();
    const picture p = now();
    t_textface(FACE_PLAIN);
    SetPort(x->window->port);
    const int box = t_stringwidth("7") + 2;
    EXPECT_EQ(p.at(88, 201), colour(47));
    EXPECT_EQ(p.at(91, 201), colour(47));
    EXPECT_EQ(p.at(92, 201), colour(22));
    EXPECT_EQ(p.at(92 + box - 1, 201), colour(22));
    EXPECT_EQ(p.at(92 + box, 201), colour(47));
    EXPECT_EQ(p.at(127, 201), colour(47));
    EXPECT_NE(p.at(128, 201), colour(47));
    EXPECT_EQ(brisolan_nwidth(x, e), 40);
    x->labelparam = -1;
    e->dur = 50;
    EXPECT_EQ(brisolan_nwidth(x, e), brisolan_barlength(x, e)) << "the bar alone, however short";
}

TEST_F(view_events, label_longer_than_the_bar_shortens_the_box) {
    add(1000, 60, 127, 300); // 12 pixels
    open();
    const picture p = now();
    EXPECT_EQ(columns_of(p, 198, colour(47)), span(88, 92));
    EXPECT_EQ(p.at(92, 198), colour(22));
    for (int h = 92; h < 100; ++h) EXPECT_TRUE(p.at(h, 198) == colour(22) || p.at(h, 198) == BLACK) << h;
    EXPECT_NE(p.at(101, 201), colour(47)); // no rest
}

TEST_F(view_events, bars_of_five_pixels_have_no_box) {
    add(1000, 61, 127, 125); // 5 pixels
    open();
    const picture p = now();
    EXPECT_EQ(columns_of(p, 197, colour(47)), span(88, 92));
    EXPECT_EQ(p.at(92, 199), WHITE);
    bool text = false;
    for (int h = 93; h < 110; ++h) text = text || p.at(h, 198) == BLACK;
    EXPECT_TRUE(text);
}

TEST_F(view_events, labels_end_at_a_vertical_factor_of_five) {
    add(1000, 60, 7, 1000);
    open();
    x->yzoom = 5;
    const picture p = full();
    const int y = YLOC(x, 60);
    EXPECT_EQ(columns_of(p, y, colour(47)), span(88, 128));
    EXPECT_EQ(rows_of(p, 100, colour(47)), span(y - 1, y + 1));
}

TEST_F(view_events, bars_are_one_or_three_pixels_high_from_nine_on) {
    add(1000, 60, 7, 1000);
    add(3000, 60, 7, 1000)->selected = std::uint8_t{1};
    open();
    SetPort(x->window->port);
    t_eraserect(0, 62, 585, 370);
    x->yzoom = 9;
    const picture p = full();
    const int y = YLOC(x, 60);
    EXPECT_EQ(rows_of(p, 100, colour(47)), span(y, y + 1));
    EXPECT_EQ(rows_of(p, 180, colour(47)), span(y - 1, y + 2));
    EXPECT_NE(p.at(180, y), colour(47));
}

TEST_F(view_events, track_colours) {
    EXPECT_EQ(brisolan_trackcolor(0), 47);
    EXPECT_EQ(brisolan_trackcolor(15), 32);
    EXPECT_EQ(brisolan_trackcolor(16), 4);
    EXPECT_EQ(brisolan_trackcolor(31), 19);
    EXPECT_EQ(brisolan_trackcolor(32), 4);
    EXPECT_EQ(brisolan_trackcolor(-1), 47);
    EXPECT_EQ(brisolan_trackcolor(INT32_MIN), 47);
}

TEST_F(view_events, bars_in_the_foreground_when_not_coloured_by_track) {
    no_label();
    add(1000, 60, 64, 1000, 1, 3);
    x->colorparam = PARAM_CHAN;
    open();
    EXPECT_EQ(columns_of(now(), 200, BLACK), span(88, 128));
}

TEST_F(view_events, hidden_tracks_are_neither_drawn_nor_cleared) {
    no_label();
    event* e = add(1000, 60, 64, 1000, 1, 2);
    x->trackshown[1] = 0;
    open();
    EXPECT_EQ(columns_of(now(), 200, colour(46)), span(0, 0));
    EXPECT_EQ(e->needsdraw, 1);
    x->trackshown[1] = 1;
    full();
    EXPECT_EQ(e->needsdraw, 0);
}

TEST_F(view_events, later_events_lie_over_earlier_ones) {
    no_label();
    add(1000, 60, 64, 1000, 1, 1);
    add(1200, 60, 64, 1000, 1, 3);
    open();
    EXPECT_EQ(columns_of(now(), 200, colour(47)), span(88, 96));
    EXPECT_EQ(columns_of(now(), 200, colour(45)), span(96, 136));
}

TEST_F(view_events, bars_are_cut_at_the_data_area) {
    no_label();
    add(0, 60, 64, 400000);
    open();
    host_window_setscrollval(x->window, 1, 0);
    const picture p = full();
    EXPECT_EQ(columns_of(p, 200, colour(47)), span(48, 585));
    EXPECT_NE(p.at(46, 200), colour(47));
}

TEST_F(view_events, event_rectangle_counts_the_label_even_when_it_is_hidden) {
    event* e = add(1000, 60, 127, 1);
    open();
    SetPort(x->window->port);
    t_textface(FACE_PLAIN);
    const int label = t_stringwidth("127") + 6;
    std::int32_t left, top, right, bottom;
    EXPECT_EQ(brisolan_eventrect(x, e, &left, &top, &right, &bottom), label);
    EXPECT_EQ(left, 88);
    EXPECT_EQ(right, 88 + label);
    EXPECT_EQ(top, 198);
    EXPECT_EQ(bottom, 202);
    x->yzoom = 9; // no label is drawn
    EXPECT_EQ(brisolan_eventrect(x, e, &left, &top, &right, &bottom), label);
    EXPECT_EQ(top, bottom);
    x->labelparam = -1;
    EXPECT_EQ(brisolan_eventrect(x, e, &left, &top, &right, &bottom), 4);
    x->show_sharps = 1;
    x->yzoom = 4;
    e->pitch = 61;
    brisolan_eventrect(x, e, &left, &top, &right, &bottom);
    EXPECT_EQ(left, 81);
    EXPECT_EQ(right, 92);
}

TEST_F(view_events, black_keys_are_marked_in_front_of_their_bars) {
    no_label();
    add(1000, 61, 64, 1000);
    add(3000, 60, 64, 1000);
    open();
    brisolan_drawsharps(x, 1);
    kel_run_queue();
    const picture p = now();
    const auto marked = [&p](int bar_left, int y) {
        for (int h = bar_left - 7; h < bar_left; ++h) {
            for (int v = y - 3; v < y + 7; ++v) {
                if (p.at(h, v) == BLACK) return true;
            }
        }
        return false;
    };
    EXPECT_TRUE(marked(88, 198));
    EXPECT_FALSE(marked(168, 200));
    EXPECT_EQ(p, full());
    brisolan_drawsharps(x, 0);
    kel_run_queue();
    EXPECT_NE(now(), p);
}

TEST_F(view_events, erasing_marks_what_it_touched_and_redraws_it) {
    no_label();
    event* under = add(1000, 60, 64, 1000, 1, 1);
    event* erased = add(1200, 61, 64, 1000, 1, 3);
    event* beside = add(1000, 70, 64, 1000, 1, 4);
    event* after = add(2200, 61, 64, 1000, 1, 4); // begins where the erased one ends
    open();
    const picture before = full();
    SetPort(x->window->port);
    brisolan_eraseit(x, erased);
    EXPECT_EQ(x->redraw.redraw_marked, 1);
    brisolan_settle(x);
    EXPECT_EQ(erased->needsdraw, 1);
    EXPECT_EQ(under->needsdraw, 1);
    EXPECT_EQ(beside->needsdraw, 0);
    EXPECT_EQ(after->needsdraw, 0);
    EXPECT_NE(now(), before);
    kel_run_queue();
    EXPECT_EQ(erased->needsdraw, 0);
    EXPECT_EQ(now(), before) << difference(now(), before);
}

// What the scheduler does to the list while it is walked over shows before the counters tell of it.
TEST_F(view_events, a_list_that_loses_an_event_while_all_are_drawn_is_drawn_all_the_same) {
    std::vector<event*> all;
    for (int i = 0; i < 40; ++i) all.push_back(add(i * 100, 30 + i));
    open();
    SetPort(x->window->port);
    {
        event_pen pen(x, 40);
        for (auto e = all.rbegin(); e != all.rend(); ++e) {
            (*e)->selected = std::uint8_t{1};
            pen.again(*e);
        }
    }
    event* const lost = all[1];
    all[0]->next = static_cast<event*>(lost->next);
    SetPort(nullptr);
    kel_run_queue();
    all[0]->next = lost;
    for (const event* e : all) {
        if (e == lost) continue;
        EXPECT_EQ(e->needsdraw, 0) << e->time;
    }
    EXPECT_EQ(now(), full()) << difference(now(), full());
}

TEST_F(view_events, labels_reach_six_pixels_to_either_side) {
    event* erased = add(1000, 60, 64, 1000); // y 200: rows 198 to 202
    event* above = add(1000, 63, 64, 1000);  // y 194 + 6 > 198
    event* far_above = add(1000, 64, 64, 1000);
    event* below = add(1000, 57, 64, 1000); // y 206 - 6 < 202
    event* far_below = add(1000, 56, 64, 1000);
    open();
    full();
    SetPort(x->window->port);
    brisolan_eraseit(x, erased);
    brisolan_settle(x);
    EXPECT_EQ(above->needsdraw, 1);
    EXPECT_EQ(far_above->needsdraw, 0); // 192 + 6 = 198 only touches
    EXPECT_EQ(below->needsdraw, 1);
    EXPECT_EQ(far_below->needsdraw, 0); // 208 - 6 = 202 only touches
}

TEST_F(view_events, ruler_counts_time_every_forty_pixels) {
    open();
    const picture p = now();
    for (const int h : {48, 88, 568}) {
        EXPECT_EQ(p.at(h, 57), BLACK) << h;
        EXPECT_EQ(p.at(h, 60), BLACK) << h;
    }
    EXPECT_EQ(p.at(47, 60), WHITE);
    EXPECT_EQ(p.at(584, 60), BLACK);
    EXPECT_EQ(p.at(60, 57), WHITE);
    EXPECT_EQ(p.at(88, 55), WHITE);
}

TEST_F(view_events, hit_test_finds_the_earlier_of_two) {
    event* first = add(1000, 60, 64, 1000);
    add(1100, 60, 64, 1000);
    open();
    SetPort(x->window->port);
    EXPECT_EQ(brisolan_findevent(x, 110, 200), first);
    EXPECT_EQ(brisolan_findevent(x, 88, 199), first);
    EXPECT_EQ(brisolan_findevent(x, 128, 201), first); // both ends belong to it
    EXPECT_EQ(brisolan_findevent(x, 129, 201), first->next.operator event*());
    EXPECT_EQ(brisolan_findevent(x, 87, 200), nullptr);
    EXPECT_EQ(brisolan_findevent(x, 110, 198), nullptr);
    EXPECT_EQ(brisolan_findevent(x, 110, 202), nullptr);
    x->trackshown[0] = 0;
    EXPECT_EQ(brisolan_findevent(x, 110, 200), nullptr);
}

TEST_F(view_events, hit_test_counts_the_label_or_the_bar) {
    event* e = add(1000, 60, 127, 1);
    open();
    SetPort(x->window->port);
    t_textface(FACE_PLAIN);
    const int label = t_stringwidth("127") + 6;
    EXPECT_EQ(brisolan_findevent(x, 88 + label, 200), e);
    EXPECT_EQ(brisolan_findevent(x, 89 + label, 200), nullptr);
    x->labelparam = -1;
    EXPECT_EQ(brisolan_findevent(x, 92, 200), e);
    EXPECT_EQ(brisolan_findevent(x, 93, 200), nullptr);
}

} // namespace
