// tests/edit/mouse_test.cpp: what presses and drags do beside the events: pointer, legend, the band on screen.
// Test layer.
#include "edit/drag.h"
#include "edit/press.h"
#include "host/kernel/memory.h"
#include "host/kernel/patcher.h"
#include "tests/edit/editor.h"

namespace {

class mouse_test : public editor_test {
protected:
    void expect_same_outside_the_data_area(const std::vector<std::uint32_t>& a,
                                           const std::vector<std::uint32_t>& b) {
        ASSERT_EQ(a.size(), b.size());
        for (std::size_t i = 0; i < a.size(); ++i) {
            const int h = static_cast<int>(i) % x->window->width;
            const int v = static_cast<int>(i) / x->window->width;
            const bool data = h >= 48 && v >= 62 && h < 585 && v < 324;
            ASSERT_TRUE(data || a[i] == b[i]) << h << ", " << v;
        }
    }
};

TEST_F(mouse_test, band_is_on_screen_while_it_is_dragged_and_gone_at_its_release) {
    fill("1000 60 64 500\r");
    const auto before = picture();
    click(200, 250);
    EXPECT_EQ(picture(), before) << "a press frames nothing";
    drag(300, 300);
    const auto one = picture();
    EXPECT_NE(one, before);
    drag(320, 100);
    EXPECT_NE(picture(), one);
    drag(200, 250);
    release(300, 300);
    EXPECT_EQ(picture(), before);
    EXPECT_EQ(x->dragkind, 0);
}

TEST_F(mouse_test, band_leaves_no_trace_of_one_that_closing_cut_off) {
    click(100, 100);
    drag(300, 250);
    send("wclose");
    settle();
    send("open");
    settle();
    const auto before = picture();
    click(400, 100);
    drag(420, 120);
    release(420, 120);
    EXPECT_EQ(picture(), before);
}

TEST_F(mouse_test, band_leaves_no_trace_where_something_was_drawn_over_it) {
    send("record");
    send("1000 60 64 500");
    click(100, 300);
    drag(300, 100);
    kel_window_update(x->window);
    drag(280, 120);
    send("2010 64 64 500");
    drag(290, 110);
    paste("4100 50 64 500\r");
    drag(120, 280);
    release(100, 300);
    const auto after = picture();
    kel_window_update(x->window);
    EXPECT_EQ(picture(), after);
    EXPECT_EQ(x->nevents, 3);
}

TEST_F(mouse_test, band_stays_inside_the_data_area) {
    fill("1000 60 64 500\r");
    kel_window_update(x->window);
    click(100, 300);
    drag(200, 290);
    drag(500, -10);
    ASSERT_NE(x->firstsel, nullptr) << "the legend is drawn anew under the band";
    drag(480, -5);
    const auto dragged = picture();
    kel_window_update(x->window);
    EXPECT_NE(picture(), dragged);
    expect_same_outside_the_data_area(picture(), dragged);
    release(100, 300);
}

TEST_F(mouse_test, drag_is_still_while_its_window_is_closed_and_ends_with_the_release) {
    fill("1000 60 64 500\r");
    click(98, 200);
    drag(98, 190);
    ASSERT_EQ(nth(0)->pitch, 65);
    lines.clear();
    send("wclose");
    settle();
    drag(98, 180);
    EXPECT_EQ(nth(0)->pitch, 65);
    EXPECT_EQ(x->dragkind, 2) << "the button is down still";
    EXPECT_EQ(taken(), std::vector<std::string>{});
    release(98, 180);
    EXPECT_EQ(x->dragkind, 0);
    EXPECT_EQ(kel_drag_window(), nullptr);
    EXPECT_EQ(taken(), std::vector<std::string>{"dirty"}) << "what the drag had changed is reported";
}

TEST_F(mouse_test, drag_goes_on_in_a_window_that_was_closed_and_opened) {
    fill("1000 60 64 500\r");
    x->editmode = 3;
    click(300, 150);
    send("wclose");
    settle();
    send("open");
    settle();
    drag(340, 150);
    EXPECT_EQ(nth(1)->dur, 1000);
    release(340, 150);
    EXPECT_EQ(x->dragkind, 0);
}

TEST_F(mouse_test, band_of_a_closed_window_selects_nothing) {
    fill("1000 60 64 500\r");
    click(60, 300);
    drag(300, 100);
    ASSERT_EQ(x->nselected, 1);
    send("wclose");
    settle();
    release(400, 80);
    EXPECT_EQ(x->dragkind, 0);
    EXPECT_EQ(x->nselected, 0);
    EXPECT_EQ(nth(0)->selected, 0);
}

TEST_F(mouse_test, pointer_comes_back_when_a_tweak_drag_is_cut_off) {
    fill("1000 60 64 500\r");
    x->editmode = 2;
    click(98, 200);
    send("wclose");
    settle();
    EXPECT_TRUE(toolbox_cursor_hidden()) << "the button is down still";
    release(98, 190);
    EXPECT_FALSE(toolbox_cursor_hidden()) << "after a close";
    send("open");
    settle();
    click(98, 200);
    ASSERT_TRUE(toolbox_cursor_hidden());
    x->editmode = 0;
    click(300, 300);
    EXPECT_FALSE(toolbox_cursor_hidden()) << "by another press";
    release(300, 300);
    x->editmode = 2;
    click(98, 200);
    ASSERT_TRUE(toolbox_cursor_hidden());
    kel_patcher_remove(patcher, x);
    EXPECT_FALSE(toolbox_cursor_hidden()) << "with the instance";
    EXPECT_FALSE(g_pointerhidden);
}

TEST_F(mouse_test, band_leaves_no_trace_over_events_that_it_selects_and_gives_back) {
    fill("1000 60 64 500\r1100 61 64 500\r1200 60 64 2500\r");
    const auto before = picture();
    click(80, 250);
    for (const Point p : {at(150, 150), at(95, 199), at(300, 190), at(90, 220), at(200, 100)}) drag(p.h, p.v);
    EXPECT_EQ(x->nselected, 3);
    release(80, 250);
    EXPECT_EQ(x->nselected, 0);
    EXPECT_EQ(picture(), before);
}

TEST_F(mouse_test, pointer_is_hidden_for_a_tweak_drag_and_brought_back) {
    fill("1000 60 64 500\r");
    x->editmode = 2;
    click(98, 200);
    EXPECT_TRUE(toolbox_cursor_hidden());
    drag(98, 190);
    EXPECT_TRUE(toolbox_cursor_hidden());
    machine.pointer = at(98, 190);
    release(98, 190);
    EXPECT_FALSE(toolbox_cursor_hidden());
    EXPECT_TRUE(EqualPt(machine.pointer, at(98, 200)));
    EXPECT_EQ(nth(0)->pitch, 70);
}

TEST_F(mouse_test, move_drag_leaves_the_pointer_alone) {
    fill("1000 60 64 500\r");
    click(98, 200);
    EXPECT_FALSE(toolbox_cursor_hidden());
    machine.pointer = at(98, 190);
    drag(98, 190);
    release(98, 190);
    EXPECT_TRUE(EqualPt(machine.pointer, at(98, 190)));
}

TEST_F(mouse_test, tweak_drag_comes_back_from_the_edge_of_the_screen) {
    machine.screen = {0, 0, 640, 480};
    fill("1000 60 64 500\r");
    x->editmode = 2;
    click(106, 200);
    drag(116, 200);
    EXPECT_EQ(nth(0)->dur, 510);
    drag(631, 200);
    EXPECT_EQ(nth(0)->dur, 1025) << "the last pixel inside";
    drag(632, 200);
    EXPECT_EQ(nth(0)->dur, 1025) << "at the edge nothing changes";
    EXPECT_TRUE(EqualPt(machine.pointer, at(106, 200)));
    EXPECT_TRUE(EqualPt(x->clickpt, at(106, 200)));
    drag(109, 200);
    EXPECT_EQ(nth(0)->dur, 1028);
    release(109, 200);
}

TEST_F(mouse_test, presses_on_an_inactive_scroll_bar_stop_there) {
    EXPECT_EQ(x->window->vscroll_max, 0);
    EXPECT_NE(click(590, 200), 0);
    EXPECT_EQ(click(590, 390), 0) << "the corner between the bars is nobody's";
    EXPECT_EQ(click(20, 200), 0) << "nor is the vertical legend";
}

TEST_F(mouse_test, legend_follows_a_move_drag) {
    fill("1000 60 64 500\r");
    click(98, 200);
    EXPECT_EQ(param(PARAM_PITCH).legvalue, 60);
    drag(98, 180);
    EXPECT_EQ(param(PARAM_PITCH).legvalue, 70);
    release(98, 180);
}

TEST_F(mouse_test, drag_finds_an_anchor_where_the_counter_stood_too_high) {
    fill("1000 60 64 500\r");
    click(98, 200, shiftKey);
    send("clear");
    ASSERT_EQ(x->nselected, 1);
    ASSERT_EQ(x->firstsel, nullptr);
    send("record");
    send("1000 62 90 500");
    send("stop");
    const int h = 48 + nth(0)->time * 8 / 200 + 10;
    click(h, 196, shiftKey);
    ASSERT_EQ(x->nselected, 2);
    ASSERT_EQ(x->firstsel, nullptr) << "only the first one counted becomes the anchor";
    click(h, 196);
    drag(h, 194);
    EXPECT_EQ(x->firstsel, nth(0));
    EXPECT_EQ(param(PARAM_VEL).legvalue, 90);
    release(h, 194);
}

TEST_F(mouse_test, drag_with_one_counted_and_no_anchor_shows_the_defaults) {
    fill("1000 60 64 500\r");
    click(98, 200, shiftKey);
    send("clear");
    send("record");
    send("1000 62 90 500");
    send("stop");
    const int h = 48 + nth(0)->time * 8 / 200 + 10;
    x->nselected = 0;
    click(h, 196);
    x->firstsel = nullptr;
    drag(h, 194);
    EXPECT_EQ(x->firstsel, nullptr);
    EXPECT_EQ(param(PARAM_VEL).legvalue, param(PARAM_VEL).defvalue);
    release(h, 194);
}

TEST_F(mouse_test, draw_drag_of_an_event_deleted_meanwhile_changes_no_other) {
    fill("5000 60 64 500\r");
    x->editmode = 3;
    click(148, 200);
    ASSERT_EQ(nth(0)->time, 2500);
    edit<"clr">();
    ASSERT_EQ(x->firstsel, nth(0));
    drag(300, 200);
    release(300, 200);
    EXPECT_EQ(nth(0)->dur, 500);
}

TEST_F(mouse_test, draw_drag_lengthens_the_drawn_event_though_others_were_pasted_meanwhile) {
    fill("9000 60 64 500\r");
    x->editmode = 3;
    click(148, 200);
    event* drawn = nth(0);
    ASSERT_EQ(drawn->time, 2500);
    paste("100 70 33 777\r");
    ASSERT_EQ(x->firstsel, nth(0));
    ASSERT_NE(x->firstsel, drawn);
    drag(300, 200);
    EXPECT_EQ(drawn->dur, 3800);
    EXPECT_EQ(nth(0)->dur, 777);
    EXPECT_EQ(param(PARAM_DUR).legvalue, 3800);
    release(300, 200);
    EXPECT_EQ(x->drawn, nullptr);
}

TEST_F(mouse_test, drags_outlive_a_clear) {
    fill("1000 60 64 500\r");
    click(98, 200);
    send("clear");
    drag(98, 180);
    release(98, 180);
    x->editmode = 3;
    click(148, 200);
    send("clear");
    drag(200, 200);
    release(200, 200);
    x->editmode = 0;
    click(300, 300, shiftKey);
    drag(60, 100);
    send("clear");
    drag(100, 100);
    release(100, 100);
    EXPECT_EQ(x->dragkind, 0);
}

TEST_F(mouse_test, draw_press_without_memory_draws_nothing) {
    fill("1000 60 64 500\r");
    x->editmode = 3;
    std::vector<event*> taken_up;
    kel_memory_limit(1);
    while (event* e = brisolan_newevent()) taken_up.push_back(e);
    click(148, 200);
    EXPECT_EQ(x->nevents, 1);
    EXPECT_EQ(x->dragkind, 0);
    machine.clipboard = "1\r2\r";
    machine.has_clipboard = true;
    edit<"paste">();
    EXPECT_EQ(x->nevents, 1);
    kel_memory_limit(0);
    for (event* e : taken_up) brisolan_freeevent(e);
}

TEST_F(mouse_test, point_is_pinned_into_the_data_area_both_edges_included) {
    Point p = at(-5, -5);
    brisolan_eventconstrain(x, &p);
    EXPECT_TRUE(EqualPt(p, at(48, 62)));
    p = at(5000, 5000);
    brisolan_eventconstrain(x, &p);
    EXPECT_TRUE(EqualPt(p, at(585, 324)));
}

TEST_F(mouse_test, offset_of_huge_values_stays_inside_32_bits) {
    paste("2147483000 127 127 99999 16 32 999 999\r5 0 0 1\r");
    for (const std::int64_t delta : {std::int64_t{INT32_MAX} * 2, -std::int64_t{INT32_MAX} * 3}) {
        for (int i = 0; i < NPARAMS; ++i) {
            brisolan_offset(x, i, delta);
            for (event* e = x->events; e; e = e->next) {
                const std::int32_t least = i == PARAM_TIME ? 0 : param(i).min.get();
                const std::int32_t most = i == PARAM_TIME ? INT32_MAX : param(i).max.get();
                EXPECT_EQ(event_param(*e, i), delta > 0 ? most : least) << i;
            }
        }
    }
    settle();
}

TEST_F(mouse_test, length_that_is_the_time_is_sorted_when_moved) {
    send("setparam 0 Time 5 0 999999 0 1000 200 0");
    ASSERT_EQ(x->lenparam, PARAM_TIME);
    paste("1000 60\r2000 62\r");
    brisolan_offset(x, PARAM_TIME, 50);
    EXPECT_EQ(nth(0)->time, 1050);
    fill("9000 1\r");
    x->editmode = 3;
    click(148, 200);
    drag(400, 200);
    release(400, 200);
    EXPECT_EQ(x->unordered, 1) << "a drawn length is set in place";
}

} // namespace
