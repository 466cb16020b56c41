// tests/view/window_test.cpp: opening and closing, the queued redraw and its flags, sizes, the tool palette.
// Tests of the view.
#include "tests/view/editor.h"

#include "view/cursor.h"
#include "view/draw.h"
#include "view/events.h"
#include "view/scroll.h"
#include "view/selected.h"
#include "view/window.h"

namespace {

class view_window : public editor_test {};

TEST_F(view_window, a_new_one_is_hidden_and_keeps_its_flags) {
    EXPECT_FALSE(x->window->visible);
    EXPECT_EQ(x->window->width, 600);
    EXPECT_EQ(x->window->height, 400);
    EXPECT_EQ(x->redraw.changed, 1); // from the clear that construction runs
    EXPECT_EQ(x->hscroll_extent, 0);
    kel_run_queue();
    EXPECT_EQ(x->redraw.changed, 1);
    EXPECT_EQ(x->hscroll_extent, 0);
}

TEST_F(view_window, opens_on_the_message_and_is_drawn) {
    send("open");
    EXPECT_TRUE(x->window->visible);
    EXPECT_EQ(x->redraw.redraw_bg, 0);
    EXPECT_EQ(x->redraw.changed, 0);
    EXPECT_EQ(x->hscroll_extent, 12);
    EXPECT_EQ(x->relayout, 0);
    EXPECT_TRUE(machine.sent.empty()); // the pending change was dropped with the flags
    const picture shown = now();
    EXPECT_EQ(shown, full()) << difference(shown, now());
}

TEST_F(view_window, opening_an_open_one_keeps_pending_flags) {
    open();
    x->redraw.redraw_values = std::uint8_t{1};
    brisolan_dblclick(x);
    EXPECT_EQ(x->redraw.redraw_values, 1);
}

TEST_F(view_window, filename_opens_it_too) {
    kel_private<"filename">(x);
    EXPECT_TRUE(x->window->visible);
}

TEST_F(view_window, is_titled_with_the_instances_name) {
    const std::vector<atom> name{atom(host_symbol("take"))};
    auto* named = static_cast<brisolan*>(kel_make(host_symbol("brisolan"), name));
    brisolan_dblclick(named);
    EXPECT_EQ(kel_window_title(named->window), "take");
    open();
    EXPECT_EQ(kel_window_title(x->window), "");
}

TEST_F(view_window, close_unselects_and_hides_and_keeps_the_rest) {
    add(0, 60);
    open();
    SetPort(x->window->port);
    brisolan_select(x, x->events);
    x->xzoom = 100;
    send("wclose");
    EXPECT_FALSE(x->window->visible);
    EXPECT_EQ(x->events->selected, 0);
    EXPECT_EQ(x->nselected, 0);
    EXPECT_EQ(x->nevents, 1);
    EXPECT_EQ(x->xzoom, 100);
    open();
    const picture reopened = now();
    EXPECT_EQ(reopened, full()) << difference(reopened, now());
}

TEST_F(view_window, changed_marks_the_patcher_and_finds_the_new_end) {
    open();
    add(400000, 60);
    x->redraw.changed = std::uint8_t{1};
    brisolan_redraw(x);
    kel_run_queue();
    EXPECT_EQ(machine.sent, std::vector<std::string>{"dirty"});
    EXPECT_GT(x->hscroll_extent, 1000);
    EXPECT_GT(x->window->hscroll_max, 900);
}

TEST_F(view_window, changed_notice_needs_a_name) {
    brisolan_changed(x);
    EXPECT_TRUE(machine.sent.empty());
    const std::vector<atom> name{atom(host_symbol("mine"))};
    auto* named = static_cast<brisolan*>(kel_make(host_symbol("brisolan"), name));
    brisolan_changed(named);
    EXPECT_EQ(machine.sent, std::vector<std::string>{"mine tabchanged"});
}

TEST_F(view_window, each_flag_alone_changes_nothing_of_a_whole_picture) {
    for (int i = 0; i < 60; ++i) add(i * 200, 30 + i, 100, 600, 1, 1 + i % 5);
    open();
    x->events->selected = std::uint8_t{1};
    x->nselected = 1;
    x->firstsel = x->events;
    const picture whole = full();
    const auto pass = [&](cell<std::uint8_t> redraw_flags::*flag) {
        x->redraw.*flag = std::uint8_t{1};
        brisolan_redraw(x);
        kel_run_queue();
        EXPECT_EQ(now(), whole) << difference(now(), whole);
    };
    pass(&redraw_flags::redraw_events);
    pass(&redraw_flags::redraw_panel);
    pass(&redraw_flags::redraw_editmode);
    pass(&redraw_flags::redraw_values);
    pass(&redraw_flags::redraw_marked);
    pass(&redraw_flags::hide_check);
    pass(&redraw_flags::redraw_spare);
    x->redraw.redraw_events = std::uint8_t{1};
    pass(&redraw_flags::redraw_bg);
}

TEST_F(view_window, the_hide_check_unselects_hidden_tracks) {
    add(0, 60, 64, 200, 1, 1)->selected = std::uint8_t{1};
    add(500, 60, 64, 200, 1, 2)->selected = std::uint8_t{1};
    add(900, 60, 64, 200, 1, 40)->selected = std::uint8_t{1};
    x->nselected = 3;
    x->firstsel = x->events;
    open();
    x->trackshown[0] = 0;
    x->redraw.hide_check = std::uint8_t{1};
    brisolan_redraw(x);
    kel_run_queue();
    event* second = x->events->next;
    EXPECT_EQ(x->events->selected, 0);
    EXPECT_EQ(second->selected, 1);
    EXPECT_EQ(second->next->selected, 1); // a track without a button
    EXPECT_EQ(x->nselected, 2);
    EXPECT_EQ(x->firstsel, second);
}

TEST_F(view_window, a_resize_is_drawn_and_fits_the_bars) {
    for (int i = 0; i < 60; ++i) add(i * 500, 30 + i, 100, 600);
    open();
    kel_window_resize(x->window, 400, 300);
    kel_run_queue();
    const picture small = now();
    EXPECT_EQ(small.width, 400);
    EXPECT_EQ(x->window->vscroll_max, 60);
    EXPECT_EQ(small, full()) << difference(small, now());
    kel_window_resize(x->window, 900, 700);
    kel_run_queue();
    const picture large = now();
    EXPECT_EQ(large, full()) << difference(large, now());
}

TEST_F(view_window, resizing_leaves_nothing_of_the_size_before) {
    for (int i = 0; i < 20; ++i) add(i * 500, 30 + i, 100, 600);
    open();
    const Point sizes[] = {{259, 420}, {260, 420}, {400, 600}, {250, 590}, {255, 588},
                           {140, 200}, {141, 201}, {500, 900}, {400, 600}};
    for (const Point size : sizes) {
        kel_window_resize(x->window, size.h, size.v);
        kel_run_queue();
        const picture resized = now();
        EXPECT_EQ(resized, full()) << size.h << " by " << size.v << ": " << difference(resized, now());
    }
}

TEST_F(view_window, a_range_that_shrinks_leaves_nothing_of_the_larger) {
    for (int i = 0; i < 20; ++i) add(i * 500, i * 6, 100, 600);
    open();
    for (const std::int32_t max : {60, 30, 127, -10, 100}) {
        const std::int32_t rest[] = {3, 0, max, 60, 12, 4, 0};
        std::vector<atom> described{atom(std::int32_t{1}), atom(host_symbol("Pitch"))};
        described.insert(described.end(), std::begin(rest), std::end(rest));
        send("setparam", described);
        const picture shrunk = now();
        EXPECT_EQ(shrunk, full()) << max << ": " << difference(shrunk, now());
    }
}

TEST_F(view_window, opening_shows_nothing_of_another_size_before) {
    add(0, 60);
    open();
    send("wclose");
    kel_window_resize(x->window, 300, 250);
    open();
    const picture opened = now();
    EXPECT_EQ(opened, full()) << difference(opened, now());
}

TEST_F(view_window, every_size_draws) {
    for (int i = 0; i < 20; ++i) add(i * 500, 30 + i, 100, 600);
    open();
    for (int width = 32; width < 200; width += 7) {
        for (int height = 60; height < 200; height += 13) {
            kel_window_resize(x->window, width, height);
            kel_run_queue();
            const picture p = now();
            ASSERT_EQ(p, full()) << width << " by " << height << ": " << difference(p, now());
        }
    }
}

TEST_F(view_window, invalid_contents_are_drawn_anew) {
    for (int i = 0; i < 60; ++i) add(i * 200, 30 + i, 100, 600);
    open();
    const picture before = full();
    SetPort(x->window->port);
    t_clipit(0, 0, 600, 400);
    brisolan_invalcontents(x);
    EXPECT_NE(now(), before);
    kel_run_queue();
    EXPECT_EQ(now(), before) << difference(now(), before);
}

TEST_F(view_window, a_tool_is_chosen_and_shaded) {
    open();
    const auto shaded = [this](int h, int v) { return now().at(h, v) == 0xFF808080u; };
    EXPECT_TRUE(shaded(26, 37)); // the draw tool
    brisolan_editmode(x, TOOL_MAGNIFIER);
    EXPECT_EQ(x->redraw.redraw_editmode, 1);
    kel_run_queue();
    EXPECT_EQ(x->editmode, 1);
    EXPECT_FALSE(shaded(26, 37));
    EXPECT_TRUE(shaded(26, 17));
    const picture p = now();
    EXPECT_EQ(p, full());
}

TEST_F(view_window, scheduled_passes_are_followed_by_no_more_than_one) {
    open();
    x->redraw.changed = std::uint8_t{1};
    brisolan_qfn(x); // finds the end anew, which schedules one more
    machine.sent.clear();
    kel_run_queue();
    EXPECT_TRUE(machine.sent.empty());
}

TEST_F(view_window, a_tool_is_shaded_beside_the_one_before_where_the_palette_is_not_drawn_anew) {
    open();
    SetPort(x->window->port);
    brisolan_normalclip(x);
    const auto shaded = [this](int h, int v) { return now().at(h, v) == 0xFF808080u; };
    x->editmode = TOOL_MAGNIFIER;
    EXPECT_FALSE(shaded(26, 17));
    brisolan_draweditmode(x, false);
    EXPECT_TRUE(shaded(26, 17));
    EXPECT_TRUE(shaded(26, 37));
    brisolan_draweditmode(x, true);
    EXPECT_TRUE(shaded(26, 17));
    EXPECT_FALSE(shaded(26, 37));
}

} // namespace
