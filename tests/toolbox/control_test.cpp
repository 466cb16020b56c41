// Scroll bars: parts, values, tracking.
// Tests of host/toolbox/controls.cpp.
// Run by ctest.
#include "tests/toolbox/canvas.h"

#include <deque>

namespace {

// The pointer's places of the turns to come, global, and then the button goes up.
std::deque<Point> held;

bool next_place(void*, Point* where) {
    if (held.empty()) return false;
    *where = held.front();
    held.pop_front();
    return true;
}

std::vector<int16_t> actions;
int page_step = 0;

void note_action(ControlHandle control, int16_t part) {
    actions.push_back(part);
    if (page_step != 0) SetControlValue(control, GetControlValue(control) + page_step);
}

// A vertical bar 15 by 132: arrows 0..15 and 116..131, a trough of 100 between, the thumb 16 long, 84 to travel.
class controls_test : public canvas_test {
protected:
    controls_test() {
        open(100, 160);
        toolbox_port_setorigin(port, 1000, 2000);
        toolbox_platform hooks;
        hooks.track = next_place;
        toolbox_setplatform(&hooks);
        Rect r = rect(80, 10, 95, 142);
        bar = toolbox_control_new(port, &r);
        SetControlMaximum(bar, 84);
        actions.clear();
        held.clear();
        page_step = 0;
    }

    int16_t part_at(int along) {
        ControlHandle found = nullptr;
        int16_t part = FindControl(point(85, 10 + along), port, &found);
        EXPECT_EQ(found, bar);
        return part;
    }
    void hold(int along, int h = 85) { held.push_back(point(1000 + h, 2000 + 10 + along)); }
    int16_t track(int along) { return TrackControl(bar, point(85, 10 + along), note_action); }

    ControlHandle bar = nullptr;
};

} // namespace

TEST_F(controls_test, arrows_are_sixteen_pixels_at_each_end) {
    EXPECT_EQ(part_at(0), kControlUpButtonPart);
    EXPECT_EQ(part_at(15), kControlUpButtonPart);
    EXPECT_EQ(part_at(116), kControlDownButtonPart);
    EXPECT_EQ(part_at(131), kControlDownButtonPart);
}

TEST_F(controls_test, between_the_arrows_lie_the_pages_and_the_thumb) {
    EXPECT_EQ(part_at(16), kControlIndicatorPart);
    EXPECT_EQ(part_at(31), kControlIndicatorPart);
    EXPECT_EQ(part_at(32), kControlPageDownPart);
    SetControlValue(bar, 40);
    EXPECT_EQ(part_at(55), kControlPageUpPart);
    EXPECT_EQ(part_at(56), kControlIndicatorPart);
    EXPECT_EQ(part_at(72), kControlPageDownPart);
    SetControlValue(bar, 84);
    EXPECT_EQ(part_at(115), kControlIndicatorPart);
    EXPECT_EQ(part_at(99), kControlPageUpPart);
}

TEST_F(controls_test, part_numbers_are_the_ones_callers_test_for) {
    EXPECT_EQ(kControlUpButtonPart, 20);
    EXPECT_EQ(kControlDownButtonPart, 21);
    EXPECT_EQ(kControlPageUpPart, 22);
    EXPECT_EQ(kControlPageDownPart, 23);
    EXPECT_EQ(kControlIndicatorPart, 129);
}

TEST_F(controls_test, outside_there_is_none) {
    ControlHandle found = bar;
    EXPECT_EQ(FindControl(point(95, 20), port, &found), 0);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(FindControl(point(80, 142), port, &found), 0);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(FindControl(point(80, 20), nullptr, &found), 0);
}

TEST_F(controls_test, one_with_nothing_to_scroll_is_found_but_has_no_part) {
    SetControlMaximum(bar, 0);
    EXPECT_EQ(part_at(5), 0);
    SetControlMaximum(bar, 10);
    HiliteControl(bar, 255);
    EXPECT_EQ(part_at(5), 0);
    EXPECT_EQ(track(5), 0);
    EXPECT_TRUE(actions.empty());
    HiliteControl(bar, 0);
    HideControl(bar);
    EXPECT_EQ(part_at(5), 0);
    EXPECT_TRUE(toolbox_port_isinvalid(port)) << "what it covered must be drawn";
    ShowControl(bar);
    EXPECT_EQ(part_at(5), kControlUpButtonPart);
}

TEST_F(controls_test, values_are_held_between_zero_and_the_maximum) {
    SetControlValue(bar, 1000);
    EXPECT_EQ(GetControlValue(bar), 84);
    SetControlValue(bar, -5);
    EXPECT_EQ(GetControlValue(bar), 0);
    SetControlValue(bar, 50);
    SetControlMaximum(bar, 30);
    EXPECT_EQ(GetControlValue(bar), 30);
    SetControlMaximum(bar, -7);
    EXPECT_EQ(GetControlMaximum(bar), 0);
    EXPECT_EQ(GetControlValue(bar), 0);
    SetControlMaximum(bar, 1000000);
    EXPECT_EQ(GetControlMaximum(bar), 32767);
}

TEST_F(controls_test, the_action_runs_once_for_the_press_alone) {
    EXPECT_EQ(track(3), kControlUpButtonPart);
    EXPECT_EQ(actions, std::vector<int16_t>{kControlUpButtonPart});
}

TEST_F(controls_test, the_action_runs_for_every_held_place_inside_the_part) {
    hold(5);
    hold(40); // outside the arrow
    hold(15);
    hold(5, 79); // beside the bar
    EXPECT_EQ(track(3), kControlNoPart);
    EXPECT_EQ(actions.size(), 3u);
}

TEST_F(controls_test, a_page_stops_when_the_thumb_reaches_the_pointer) {
    page_step = 20;
    for (int i = 0; i < 10; i++) hold(60);
    track(60);
    EXPECT_EQ(GetControlValue(bar), 40) << "the thumb, 56..71, now lies under the pointer";
    EXPECT_EQ(actions.size(), 2u);
}

TEST_F(controls_test, the_thumb_is_dragged_by_where_it_was_taken) {
    hold(18 + 30);
    hold(18 + 50);
    EXPECT_EQ(TrackControl(bar, point(85, 10 + 18), nullptr), kControlIndicatorPart);
    EXPECT_EQ(GetControlValue(bar), 50);
    EXPECT_TRUE(actions.empty());
}

TEST_F(controls_test, the_thumb_reaches_both_ends) {
    hold(500);
    TrackControl(bar, point(85, 10 + 18), nullptr);
    EXPECT_EQ(GetControlValue(bar), 0) << "too far away";
    hold(140);
    TrackControl(bar, point(85, 10 + 18), nullptr);
    EXPECT_EQ(GetControlValue(bar), 84);
    hold(-20);
    TrackControl(bar, point(85, 10 + 110), nullptr);
    EXPECT_EQ(GetControlValue(bar), 0);
}

TEST_F(controls_test, a_thumb_dragged_far_away_jumps_back) {
    SetControlValue(bar, 33);
    hold(80);
    hold(80, 20);
    EXPECT_EQ(TrackControl(bar, point(85, 10 + 16 + 33 + 2), nullptr), kControlNoPart);
    EXPECT_EQ(GetControlValue(bar), 33);
}

TEST_F(controls_test, a_thumb_that_is_only_pressed_keeps_a_value_finer_than_a_pixel) {
    SetControlMaximum(bar, 8400);
    SetControlValue(bar, 4242);
    TrackControl(bar, point(85, 10 + 16 + 42 + 8), nullptr);
    EXPECT_EQ(GetControlValue(bar), 4242);
}

TEST_F(controls_test, tracking_keeps_the_current_port_and_its_clip) {
    Rect small = rect(1, 1, 2, 2);
    ClipRect(&small);
    GrafPtr other = toolbox_port_new(5, 5);
    SetPort(other);
    hold(5);
    track(3);
    GrafPtr now = nullptr;
    GetPort(&now);
    EXPECT_EQ(now, other);
    SetPort(port);
    RgnHandle clip = NewRgn();
    GetClip(clip);
    Rect bounds;
    GetRegionBounds(clip, &bounds);
    EXPECT_TRUE(EqualRect(&bounds, &small));
    DisposeRgn(clip);
    toolbox_port_free(other);
}

TEST_F(controls_test, a_drawn_bar_stays_inside_its_bounds) {
    Rect nothing = rect(0, 0, 0, 0);
    ClipRect(&nothing);
    toolbox_drawcontrols(port);
    for (int v = 0; v < 160; v++) {
        for (int h = 0; h < 100; h++) {
            bool inside = h >= 80 && h < 95 && v >= 10 && v < 142;
            ASSERT_TRUE(inside || at(h, v) == WHITE) << h << ", " << v;
        }
    }
    EXPECT_NE(at(87, 20), WHITE);
}

TEST_F(controls_test, the_thumb_grows_with_the_share_in_view) {
    toolbox_control_setviewsize(bar, 84);
    EXPECT_EQ(part_at(16 + 49), kControlIndicatorPart);
    EXPECT_EQ(part_at(16 + 50), kControlPageDownPart);
    toolbox_control_setviewsize(bar, 1);
    EXPECT_EQ(part_at(16 + 16), kControlPageDownPart) << "never shorter than its least";
}

TEST_F(controls_test, a_horizontal_bar_is_laid_out_along_its_width) {
    Rect r = rect(0, 145, 80, 160);
    ControlHandle flat = toolbox_control_new(port, &r), found = nullptr;
    SetControlMaximum(flat, 10);
    EXPECT_FALSE(toolbox_control_isvertical(flat));
    EXPECT_TRUE(toolbox_control_isvertical(bar));
    EXPECT_EQ(FindControl(point(15, 150), port, &found), kControlUpButtonPart);
    EXPECT_EQ(FindControl(point(64, 150), port, &found), kControlDownButtonPart);
    EXPECT_EQ(found, flat);
    toolbox_control_free(flat);
    EXPECT_EQ(FindControl(point(64, 150), port, &found), 0);
}

TEST_F(controls_test, a_bar_too_short_for_a_thumb_still_has_arrows) {
    for (int length : {0, 1, 10, 31, 33, 47, 48}) {
        Rect r = rect(0, 0, 15, length);
        toolbox_control_setbounds(bar, &r);
        Draw1Control(bar);
        for (int v = 0; v < length; v++) {
            ControlHandle found = nullptr;
            EXPECT_NE(FindControl(point(5, v), port, &found), kControlIndicatorPart);
            EXPECT_EQ(found, bar);
        }
    }
}
