// tests/view/scroll_test.cpp: the content's extent, the scroll bars and their maxima.
// Tests of the view.
#include "tests/view/editor.h"
#include "view/draw.h"
#include "view/geometry.h"
#include "view/scroll.h"
#include "view/window.h"

namespace {

class view_scroll : public editor_test {
protected:
    int press(int h, int v) {
        SetPort(x->window->port);
        return brisolan_inscroll(x, Point{static_cast<std::int16_t>(v), static_cast<std::int16_t>(h)});
    }
};

TEST_F(view_scroll, empty_sequence_reaches_as_far_as_its_margin) {
    brisolan_remax(x);
    EXPECT_EQ(x->hscroll_extent, 12);
    EXPECT_EQ(x->vscroll_extent, 256);
}

TEST_F(view_scroll, one_event_at_zero_without_length) {
    add(0, 60, 64, 0);
    brisolan_remax(x);
    EXPECT_EQ(x->hscroll_extent, 12); // (4 + 0 + 200) >> 4
}

TEST_F(view_scroll, empty_margin_is_by_the_length_and_keeps_sixteen_bits) {
    x->lenzoom = 1;
    brisolan_remax(x);
    EXPECT_EQ(x->hscroll_extent, 0); // 40000 is negative in 16 bits
    x->lenzoom = 2;
    brisolan_remax(x);
    EXPECT_EQ(x->hscroll_extent, 20000 >> 4);
    x->xzoom = 1; // plays no part
    brisolan_remax(x);
    EXPECT_EQ(x->hscroll_extent, 20000 >> 4);
}

TEST_F(view_scroll, extent_is_the_furthest_ends) {
    add(0, 60, 64, 90000);
    add(50000, 60, 64, 200);
    brisolan_remax(x);
    EXPECT_EQ(x->hscroll_extent, (3600 + 0 + 200) >> 4);
}

TEST_F(view_scroll, lengths_count_by_the_whole_ratio_of_the_factors) {
    // 8 pixels are 200 of Time and 20 of the length: one of the length is 10 of Time.
    x->lenparam = PARAM_X1;
    x->lenzoom = 20;
    add(0, 60)->x1 = 1000; // ends at 10000
    add(9000, 60)->x1 = 0;
    brisolan_remax(x);
    EXPECT_EQ(x->hscroll_extent, (400 + 0 + 200) >> 4);
    // With a coarser length the ratio is 0 and only Time counts.
    x->lenzoom = 400;
    brisolan_remax(x);
    EXPECT_EQ(x->hscroll_extent, (4 + 360 + 200) >> 4);
}

TEST_F(view_scroll, extent_is_held_in_fifteen_bits) {
    add(INT32_MAX, 60, 64, INT32_MAX);
    x->xzoom = x->lenzoom = 1;
    brisolan_remax(x);
    EXPECT_EQ(x->hscroll_extent, 32767);
}

TEST_F(view_scroll, first_event_counts_even_far_before_zero) {
    add(-100000, 60, 64, 0);
    brisolan_remax(x);
    EXPECT_EQ(x->hscroll_extent, 0);
}

TEST_F(view_scroll, negative_data_height_has_no_extent) {
    x->params[PARAM_PITCH].max = -10;
    brisolan_remax(x);
    EXPECT_EQ(x->vscroll_extent, 0);
}

TEST_F(view_scroll, maxima_follow_extents_and_window) {
    add(40000, 60, 64, 0);
    open();
    EXPECT_EQ(x->hscroll_extent, 112); // (4 + 1600 + 200) >> 4
    EXPECT_EQ(x->window->hscroll_max, 112 - (527 >> 4));
    EXPECT_EQ(x->window->vscroll_max, 0); // 256 + 104 - 400 is below 0
    kel_window_resize(x->window, 600, 300);
    EXPECT_EQ(x->window->vscroll_max, 60);
}

TEST_F(view_scroll, narrow_window_has_a_maximum_above_the_extent) {
    open();
    kel_window_resize(x->window, 40, 300);
    EXPECT_EQ(x->window->hscroll_max, 12 + 3); // (40 - 73) >> 4 is -3
}

TEST_F(view_scroll, values_come_down_to_the_maxima) {
    add(400000, 60, 64, 0);
    open();
    host_window_setscrollval(x->window, 500, 0);
    x->events->time = 0;
    brisolan_remax(x);
    kel_run_queue();
    EXPECT_EQ(x->window->hscroll_value, 0);
}

TEST_F(view_scroll, content_is_drawn_where_the_maxima_have_brought_it) {
    add(0, 60);
    add(400000, 60, 64, 0)->selected = std::uint8_t{1};
    open();
    SetPort(x->window->port);
    host_window_setscrollval(x->window, 900, 0);
    brisolan_scroll(x);
    brisolan_removeselected(x);
    brisolan_remax(x);
    kel_run_queue();
    EXPECT_EQ(x->window->hscroll_value, 0);
    const picture back = now();
    EXPECT_EQ(back, full()) << difference(back, now());
}

TEST_F(view_scroll, a_clear_brings_the_ruler_back_to_the_beginning) {
    for (int i = 0; i < 100; ++i) add(i * 1000, 60);
    open();
    kel_window_resize(x->window, 600, 200);
    SetPort(x->window->port);
    host_window_setscrollval(x->window, 100, 80);
    brisolan_scroll(x);
    send("clear");
    EXPECT_EQ(x->window->hscroll_value, 0);
    const picture cleared = now();
    EXPECT_EQ(cleared, full()) << difference(cleared, now());
}

TEST_F(view_scroll, arrows_and_pages_of_both_bars) {
    add(400000, 60, 64, 0);
    open();
    kel_window_resize(x->window, 600, 300);
    EXPECT_EQ(press(590, 280), 1); // vertical, down arrow
    EXPECT_EQ(x->window->vscroll_value, 1);
    EXPECT_EQ(press(590, 250), 1); // vertical, page down: (285 >> 4) - 1 pixels
    EXPECT_EQ(x->window->vscroll_value, 17);
    EXPECT_EQ(press(590, 5), 1); // vertical, up arrow
    EXPECT_EQ(x->window->vscroll_value, 16);
    EXPECT_EQ(press(580, 290), 1); // horizontal, right arrow
    EXPECT_EQ(x->window->hscroll_value, 1);
    EXPECT_EQ(press(500, 290), 1); // horizontal, page: (537 >> 4) - 2 steps
    EXPECT_EQ(x->window->hscroll_value, 32);
    EXPECT_EQ(press(65, 290), 1); // horizontal, left arrow
    EXPECT_EQ(x->window->hscroll_value, 31);
}

TEST_F(view_scroll, held_arrow_repeats_while_the_pointer_is_in_it) {
    add(400000, 60, 64, 0);
    open();
    machine.held = {Point{390, 580}, Point{200, 200}, Point{390, 580}};
    press(580, 390);
    EXPECT_EQ(x->window->hscroll_value, 3);
}

TEST_F(view_scroll, scrolled_picture_equals_a_full_update) {
    for (int i = 0; i < 200; ++i) add(i * 200, 20 + i % 100, i % 128, 100 + i * 3);
    open();
    press(500, 390);
    ASSERT_GT(x->window->hscroll_value, 0);
    const picture scrolled = now();
    EXPECT_EQ(scrolled, full()) << difference(scrolled, now());
}

TEST_F(view_scroll, every_vertical_scroll_equals_a_full_update) {
    for (int i = 0; i < 128; ++i) add(i * 100, i, i, 900);
    open();
    kel_window_resize(x->window, 600, 200);
    kel_run_queue();
    for (const int v : {0, 3, 100, 140, 155, 158, 160, 159, 80, 0}) {
        SetPort(x->window->port);
        host_window_setscrollval(x->window, 0, static_cast<std::int16_t>(v));
        brisolan_scroll(x);
        const picture scrolled = now();
        EXPECT_EQ(scrolled, full()) << v << ": " << difference(scrolled, now());
    }
}

TEST_F(view_scroll, press_beside_the_bars_is_not_taken) {
    open();
    EXPECT_EQ(press(300, 200), 0);
    EXPECT_EQ(press(595, 395), 0); // the corner
}

TEST_F(view_scroll, queued_pass_follows_a_new_extent) {
    open();
    brisolan_remax(x);
    EXPECT_TRUE(x->redraw.changed == 0);
    kel_run_queue();
    EXPECT_EQ(x->window->hscroll_max, 0); // 12 - 32 is below 0
}

TEST_F(view_scroll, a_press_on_another_control_of_the_window_scrolls_nothing) {
    add(400000, 60, 64, 0);
    open();
    const Rect place{100, 100, 116, 200};
    const ControlHandle other = toolbox_control_new(x->window->port, &place);
    SetControlMaximum(other, 10);
    EXPECT_EQ(press(108, 195), 1); // its lower arrow
    EXPECT_EQ(x->window->hscroll_value, 0);
    EXPECT_EQ(x->window->vscroll_value, 0);
    toolbox_control_free(other);
}

TEST_F(view_scroll, an_action_for_another_part_or_a_hidden_window_scrolls_nothing) {
    add(400000, 60, 64, 0);
    open();
    press(580, 390); // the right arrow: the part that is being held from now on
    ASSERT_EQ(x->window->hscroll_value, 1);
    brisolan_scrollproc(x->window->hscroll, kControlDownButtonPart);
    EXPECT_EQ(x->window->hscroll_value, 2);
    brisolan_scrollproc(x->window->hscroll, kControlUpButtonPart);
    EXPECT_EQ(x->window->hscroll_value, 2);
    send("wclose");
    brisolan_scrollproc(x->window->hscroll, kControlDownButtonPart);
    EXPECT_EQ(x->window->hscroll_value, 2);
}

} // namespace
