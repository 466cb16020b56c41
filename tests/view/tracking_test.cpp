// tests/view/tracking_test.cpp: the tracking row, cursors and tools, pulling the pointer back.
// Tests of the view.
#include "tests/view/editor.h"

#include <algorithm>
#include <cstring>

#include "view/cursor.h"
#include "view/draw.h"
#include "view/tracking.h"
#include "view/window.h"

namespace {

class view_tracking : public editor_test {
protected:
    void SetUp() override {
        editor_test::SetUp();
        noted = add(1000, 60, 7, 1000, 2, 3);
        open();
    }
    void point(int h, int v, int modifiers = 0) {
        kel_window_pointer(x->window, Point{static_cast<std::int16_t>(v), static_cast<std::int16_t>(h)},
                           modifiers);
    }
    event* noted = nullptr;
};

TEST_F(view_tracking, tells_time_and_value) {
    point(88, 220);
    EXPECT_STREQ(x->track_time, "  1000");
    EXPECT_STREQ(x->track_value, " 50");
    EXPECT_STREQ(x->track_event, "");
    x->params[PARAM_PITCH].notenames = std::uint8_t{1};
    point(89, 220);
    EXPECT_STREQ(x->track_time, "  1025");
    EXPECT_STREQ(x->track_value, " D2");
}

TEST_F(view_tracking, tells_the_event_with_its_pitch_by_name) {
    point(100, 200);
    EXPECT_STREQ(x->track_event, "1000 . C3 . 7 . 1000 . 2 . 3 . 0 . 0");
}

TEST_F(view_tracking, any_eight_values_fit) {
    noted->vel = noted->dur = noted->chan = noted->x1 = noted->x2 = INT32_MIN;
    noted->track = INT32_MIN;
    noted->dur = 1000;
    point(100, 200);
    EXPECT_STREQ(x->track_event, "1000 . C3 . -2147483648 . 1000 . -2147483648 . -2147483648 . "
                                 "-2147483648 . -2147483648");
}

TEST_F(view_tracking, the_same_point_again_writes_nothing_new) {
    point(88, 220);
    x->xzoom = 100;
    point(88, 220);
    EXPECT_STREQ(x->track_time, "  1000");
    point(89, 220);
    EXPECT_STREQ(x->track_time, "   512");
}

TEST_F(view_tracking, leaving_the_data_area_clears_and_gives_the_cursor_back) {
    point(100, 200);
    EXPECT_NE(g_currentcursor, -1);
    const picture over = now();
    point(20, 200);
    EXPECT_STREQ(x->track_time, "");
    EXPECT_STREQ(x->track_value, "");
    EXPECT_STREQ(x->track_event, "");
    EXPECT_EQ(g_currentcursor, -1);
    EXPECT_NE(now(), over);
    // The last point outlives it: coming back to it writes no Time, but finds the event.
    point(100, 200);
    EXPECT_STREQ(x->track_time, "");
    EXPECT_STREQ(x->track_event, "1000 . C3 . 7 . 1000 . 2 . 3 . 0 . 0");
}

TEST_F(view_tracking, leaving_the_window_gives_the_cursor_back_and_keeps_the_texts) {
    point(100, 200);
    kel_window_pointerout(x->window, Point{-5, 0}, 0);
    EXPECT_EQ(g_currentcursor, -1);
    EXPECT_STREQ(x->track_time, "  1300");
}

TEST_F(view_tracking, tracked_texts_equal_a_full_update) {
    point(100, 200);
    const picture tracked = now();
    EXPECT_EQ(tracked, full()) << difference(tracked, now());
    point(300, 100);
    const picture beside = now();
    EXPECT_NE(beside, tracked);
    EXPECT_EQ(beside, full()) << difference(beside, now());
}

TEST_F(view_tracking, tools_by_modifier) {
    const auto tools = [this](int mode) {
        x->editmode = static_cast<std::int8_t>(mode);
        std::vector<int> all;
        for (const int keys : {optionKey, cmdKey, controlKey, 0, static_cast<int>(shiftKey),
                               optionKey | cmdKey, cmdKey | controlKey})
            all.push_back(brisolan_tempeditmode(x, keys));
        return all;
    };
    EXPECT_EQ(tools(0), (std::vector<int>{3, 2, 1, 0, 0, 3, 2}));
    EXPECT_EQ(tools(1), (std::vector<int>{1, 1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(tools(2), (std::vector<int>{2, 2, 2, 2, 2, 2, 2}));
    EXPECT_EQ(tools(3), (std::vector<int>{0, 2, 1, 3, 3, 0, 2}));
    EXPECT_EQ(tools(4), (std::vector<int>{0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(tools(-1), (std::vector<int>{0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(view_tracking, cursors_of_the_tools) {
    const auto cursor = [this](int mode, int modifiers) {
        x->editmode = static_cast<std::int8_t>(mode);
        point(300, 100, modifiers);
        return g_currentcursor;
    };
    EXPECT_EQ(cursor(TOOL_ARROW, 0), CURSOR_CROSS);
    EXPECT_EQ(cursor(TOOL_TWEAK, 0), CURSOR_TWEAK);
    EXPECT_EQ(cursor(TOOL_DRAW, 0), CURSOR_DRAW);
    EXPECT_EQ(cursor(TOOL_MAGNIFIER, 0), CURSOR_MAGNIFY);
    EXPECT_EQ(cursor(TOOL_MAGNIFIER, optionKey), CURSOR_SHRINK);
    EXPECT_EQ(cursor(TOOL_DRAW, optionKey), CURSOR_CROSS);
    EXPECT_EQ(cursor(TOOL_DRAW, controlKey), CURSOR_MAGNIFY);
}

TEST_F(view_tracking, cursors_of_an_events_thirds) {
    x->editmode = TOOL_ARROW; // the bar is 40 pixels from 88
    point(90, 200);
    EXPECT_EQ(g_currentcursor, CURSOR_START);
    point(108, 200);
    EXPECT_EQ(g_currentcursor, CURSOR_BODY);
    point(125, 200);
    EXPECT_EQ(g_currentcursor, CURSOR_END);
    x->editmode = TOOL_DRAW;
    point(108, 200);
    EXPECT_EQ(g_currentcursor, CURSOR_DRAW);
}

TEST_F(view_tracking, an_override_decides_the_cursor_and_stills_the_texts) {
    x->cursor_override = 3;
    point(300, 100);
    EXPECT_EQ(g_currentcursor, 2);
    EXPECT_STREQ(x->track_time, "");
    x->cursor_override = -1;
    point(301, 100);
    EXPECT_EQ(g_currentcursor, -1);
    x->editmode = TOOL_ARROW;
    point(108, 200);
    EXPECT_EQ(g_currentcursor, -1);
    EXPECT_STREQ(x->track_event, "");
    x->cursor_override = 8;
    point(108, 200);
    EXPECT_EQ(g_currentcursor, 7);
}

TEST_F(view_tracking, a_dragged_number_field_stills_time_and_value_until_the_button_is_up) {
    machine.button = true;
    g_numtracking = 1;
    point(88, 220);
    EXPECT_EQ(g_numtracking, 1);
    EXPECT_STREQ(x->track_time, "");
    machine.button = false;
    point(88, 220);
    EXPECT_EQ(g_numtracking, 0);
    EXPECT_STREQ(x->track_time, "  1000");
}

TEST_F(view_tracking, a_freed_event_under_the_pointer_is_not_taken_for_a_new_one) {
    point(100, 200);
    noted->selected = std::uint8_t{1};
    brisolan_removeselected(x);
    add(1000, 60, 9, 1000); // most likely in the same place of memory
    point(101, 200);
    EXPECT_STREQ(x->track_event, "1000 . C3 . 9 . 1000 . 1 . 1 . 0 . 0");
    const picture tracked = now();
    brisolan_redrawtracking(x, true, true);
    full();
    for (int v = 20; v < 39; ++v) {
        for (int h = 224; h < 585; ++h) ASSERT_EQ(tracked.at(h, v), now().at(h, v)) << h << " " << v;
    }
}

TEST_F(view_tracking, a_hidden_window_tracks_nothing) {
    host_window_invis(x->window);
    brisolan_cursorin(x, Point{220, 88}, 0);
    EXPECT_STREQ(x->track_time, "");
}

TEST_F(view_tracking, a_pointer_at_the_screens_edge_is_pulled_back) {
    SetPort(x->window->port);
    toolbox_port_setorigin(x->window->port, 100, 50);
    g_clickpt = Point{200, 300};
    EXPECT_EQ(t_checkmouse(Point{200, 300}), 0);
    EXPECT_EQ(machine.moved_to.h, -1);
    EXPECT_EQ(t_checkmouse(Point{200, -92}), 0); // 8 on the screen
    EXPECT_EQ(t_checkmouse(Point{200, -93}), 1);
    EXPECT_EQ(machine.moved_to.h, 400);
    EXPECT_EQ(machine.moved_to.v, 250);
    EXPECT_EQ(t_checkmouse(Point{1442, 300}), 1); // 1492 of 1500
}

TEST_F(view_tracking, cursor_entries_beyond_the_table_are_the_hosts) {
    brisolan_cursor(x, 7);
    EXPECT_EQ(g_currentcursor, 7);
    g_setcursor = 0;
    brisolan_cursor(x, 8);
    EXPECT_EQ(g_currentcursor, -1);
    EXPECT_EQ(g_setcursor, 1);
    const Cursor before = g_curs[0];
    brisolan_copycursor(9999, 0); // missing: the entry stays
    EXPECT_EQ(g_curs[0].data[5], before.data[5]);
    brisolan_copycursor(3157, 0);
    EXPECT_EQ(g_curs[0].data[5], g_curs[2].data[5]);
    g_curs[0] = before;
}

TEST_F(view_tracking, either_half_of_the_row_is_erased_and_drawn_by_itself) {
    point(100, 200);
    SetPort(x->window->port);
    brisolan_normalclip(x);
    const picture whole = now();
    brisolan_erasetracking(x, true, false);
    const picture without_values = now();
    EXPECT_NE(without_values, whole);
    brisolan_drawtracking(x, true, false);
    EXPECT_EQ(now(), whole) << difference(now(), whole);
    brisolan_erasetracking(x, false, true);
    EXPECT_NE(now(), whole);
    EXPECT_NE(now(), without_values);
    brisolan_drawtracking(x, false, true);
    EXPECT_EQ(now(), whole) << difference(now(), whole);
}

TEST_F(view_tracking, a_cursor_that_there_is_not_is_the_hosts_and_none_is_copied_there) {
    const auto table = g_curs;
    for (const int entry : {-1, static_cast<int>(NCURSORS)}) {
        brisolan_cursor(x, 0);
        EXPECT_NE(toolbox_cursor(), nullptr);
        brisolan_cursor(x, entry);
        EXPECT_EQ(g_currentcursor, -1);
        EXPECT_EQ(toolbox_cursor(), nullptr);
        brisolan_copycursor(2, entry);
    }
    const auto same = [](const Cursor& a, const Cursor& b) { return std::memcmp(&a, &b, sizeof a) == 0; };
    EXPECT_TRUE(std::equal(table.begin(), table.end(), g_curs.begin(), same));
    brisolan_copycursor(2, 0);
    EXPECT_TRUE(same(g_curs[0], table[NCURSORS - 1]));
    g_curs = table;
}

} // namespace
