// tests/view/zoom_test.cpp: zoom steps, the zoom box, the magnifier.
// Tests of the view.
#include "tests/view/editor.h"
#include "view/geometry.h"
#include "view/zoom.h"

namespace {

class view_zoom : public editor_test {
protected:
    std::vector<std::int32_t> steps(void (*step)(brisolan*), std::int32_t brisolan::*factor, int count) {
        std::vector<std::int32_t> seen;
        for (int i = 0; i < count; ++i) {
            step(x);
            seen.push_back(x->*factor);
        }
        return seen;
    }
};

TEST_F(view_zoom, horizontal_in_keeps_the_fraction) {
    EXPECT_EQ(steps(brisolan_xzoomin, &brisolan::xzoom, 8),
              (std::vector<std::int32_t>{100, 50, 25, 13, 6, 3, 2, 1}));
    EXPECT_DOUBLE_EQ(x->xzoom_exact, 0.78125);
    EXPECT_EQ(x->lenzoom, 1); // Dur is the length and follows
}

TEST_F(view_zoom, vertical_steps) {
    EXPECT_EQ(steps(brisolan_yzoomin, &brisolan::yzoom, 3), (std::vector<std::int32_t>{3, 2, 1}));
    x->yzoom_exact = 4;
    EXPECT_EQ(steps(brisolan_yzoomout, &brisolan::yzoom, 4), (std::vector<std::int32_t>{6, 9, 14, 20}));
}

TEST_F(view_zoom, length_is_left_alone_when_it_is_not_dur) {
    x->lenparam = PARAM_X1;
    brisolan_xzoomout(x);
    EXPECT_EQ(x->xzoom, 400);
    EXPECT_EQ(x->lenzoom, 200);
}

TEST_F(view_zoom, factors_stop_before_they_leave_31_bits) {
    for (int i = 0; i < 200; ++i) {
        brisolan_xzoomout(x);
        brisolan_yzoomout(x);
    }
    EXPECT_EQ(x->xzoom, 200 << 23);
    EXPECT_GT(x->yzoom, 1000000000);
    open();
    full(); // and it draws
    brisolan_xzoomin(x);
    EXPECT_EQ(x->xzoom, 200 << 22);
}

TEST_F(view_zoom, box_refuses_steps_below_one) {
    open();
    for (int i = 0; i < 50; ++i) {
        brisolan_dozoom(x, ZOOM_X_IN);
        brisolan_dozoom(x, ZOOM_Y_IN);
    }
    EXPECT_EQ(x->xzoom, 1);
    EXPECT_EQ(x->yzoom, 1);
    brisolan_dozoom(x, 4);
    EXPECT_EQ(x->xzoom, 1);
}

TEST_F(view_zoom, box_is_hit_in_its_four_segments) {
    open();
    EXPECT_EQ(brisolan_zoomclick(x, Point{384, 0}), 0);
    EXPECT_EQ(brisolan_zoomclick(x, Point{390, 60}), 0);
    EXPECT_EQ(brisolan_zoomclick(x, Point{385, 0}), 1);
    kel_drag_release(Point{385, 0});
    EXPECT_EQ(x->xzoom, 400);
    EXPECT_EQ(brisolan_zoomclick(x, Point{399, 59}), 1);
    kel_drag_release(Point{399, 59});
    EXPECT_EQ(x->yzoom, 3);
}

TEST_F(view_zoom, box_darkens_while_pressed_and_a_release_outside_does_nothing) {
    open();
    const picture before = full();
    SetPort(x->window->port);
    brisolan_zoomclick(x, Point{390, 20});
    const picture pressed = now();
    EXPECT_NE(pressed, before);
    kel_drag_move(Point{300, 20});
    EXPECT_EQ(now(), before) << difference(now(), before);
    kel_drag_move(Point{390, 29});
    EXPECT_EQ(now(), pressed) << difference(now(), pressed);
    kel_drag_move(Point{390, 30});
    kel_drag_release(Point{390, 30});
    EXPECT_EQ(now(), before);
    EXPECT_EQ(x->xzoom, 200);
}

TEST_F(view_zoom, magnifier_keeps_the_pointers_time_in_place) {
    add(20000, 60);
    open();
    SetPort(x->window->port);
    const std::int32_t time = brisolan_htotime(x, 448);
    brisolan_magmouse(x, Point{200, 448}, 0);
    EXPECT_EQ(x->xzoom, 100);
    EXPECT_EQ(x->window->hscroll_value, 25); // 400 pixels
    EXPECT_EQ(brisolan_htotime(x, 448), time);
    brisolan_magmouse(x, Point{200, 448}, optionKey);
    EXPECT_EQ(x->xzoom, 200);
    EXPECT_EQ(x->window->hscroll_value, 0);
    EXPECT_EQ(x->yzoom, 4);
}

TEST_F(view_zoom, magnifier_scrolls_by_the_lengths_factor) {
    add(20000, 60);
    open();
    SetPort(x->window->port);
    x->lenparam = PARAM_X1;
    x->lenzoom = 20;
    brisolan_magmouse(x, Point{200, 448}, 0);
    // Time under the pointer fell from 10000 to 5000: 5000 * 8 / 20 pixels, held by the window's least value only.
    EXPECT_EQ(x->window->hscroll_value, 125);
}

TEST_F(view_zoom, magnifier_zooms_vertically_on_request) {
    open();
    kel_window_resize(x->window, 600, 200);
    SetPort(x->window->port);
    host_window_setscrollval(x->window, 0, 100);
    x->magnify_y = 1;
    // Content y 200 holds 60 at 4 units, 72 ahead at 3: 3 * (341 - 200 + 64) >> 3 is 76, (76 - 60) * 8 / 3 is 42.
    brisolan_magmouse(x, Point{100, 100}, 0);
    EXPECT_EQ(x->yzoom, 3);
    EXPECT_EQ(x->window->vscroll_value, 58);
}

TEST_F(view_zoom, magnifiers_vertical_scroll_goes_the_wrong_way_and_stops_at_the_top) {
    open();
    SetPort(x->window->port);
    x->magnify_y = 1;
    brisolan_magmouse(x, Point{264, 100}, 0);
    EXPECT_EQ(x->window->vscroll_value, 0);
    brisolan_magmouse(x, Point{264, 100}, optionKey);
    EXPECT_EQ(x->yzoom, 4);
}

TEST_F(view_zoom, magnifier_with_nothing_to_change_leaves_the_picture) {
    open();
    x->xzoom = 1;
    x->xzoom_exact = 1;
    const picture before = now();
    SetPort(x->window->port);
    brisolan_magmouse(x, Point{200, 300}, 0);
    EXPECT_EQ(x->xzoom, 1);
    EXPECT_EQ(now(), before);
}

TEST_F(view_zoom, silly_scales_and_ranges_draw_at_once) {
    add(0, 60);
    open();
    param_record& p = x->params[PARAM_PITCH];
    const auto draws = [&](std::int32_t min, std::int32_t max, std::int32_t interval, std::int32_t zoom) {
        p.min = min;
        p.max = max;
        p.interval = interval;
        x->yzoom = zoom;
        full();
    };
    for (const std::int32_t zoom : {1, 4, 1 << 30, -7, 0}) {
        for (const std::int32_t interval : {0, 1, -12, 8192, INT32_MAX}) {
            draws(INT32_MIN, INT32_MAX, interval, zoom);
            draws(127, 0, interval, zoom);
            draws(-100, -10, interval, zoom);
            draws(0, INT32_MAX, interval, zoom);
        }
    }
}

TEST_F(view_zoom, magnifier_goes_no_further_in_than_a_unit_on_either_axis) {
    add(20000, 60);
    open();
    SetPort(x->window->port);
    x->magnify_y = 1;
    x->yzoom = 1;
    x->yzoom_exact = 1;
    brisolan_magmouse(x, Point{200, 448}, 0);
    EXPECT_EQ(x->xzoom, 100);
    EXPECT_EQ(x->yzoom, 1);
    EXPECT_EQ(x->yzoom_exact, 1);
}

} // namespace
