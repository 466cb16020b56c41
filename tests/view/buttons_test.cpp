// tests/view/buttons_test.cpp: the track buttons and the channel row that waits.
// Tests of the view.
#include "tests/view/editor.h"

#include "host/toolbox/palette.h"
#include "view/buttons.h"
#include "view/events.h"
#include "view/selected.h"
#include "view/window.h"

namespace {

class view_buttons : public editor_test {
protected:
    void SetUp() override {
        editor_test::SetUp();
        for (int i = 0; i < 40; ++i) add(i * 300, 40 + i, 64, 800, 1, 1 + i % 4);
        open();
        SetPort(x->window->port);
    }
    int press(int h, int v, int modifiers = 0) {
        return brisolan_trackbtnclick(x, Point{static_cast<std::int16_t>(v), static_cast<std::int16_t>(h)},
                                      modifiers);
    }
    void drag_to(int h) { kel_drag_move(Point{375, static_cast<std::int16_t>(h)}); }
    std::string shown() const {
        std::string digits;
        for (int i = 0; i < 8; ++i) digits += x->trackshown[i] ? '1' : '0';
        return digits;
    }
    void equals_full_update() {
        kel_run_queue();
        const picture partial = now();
        EXPECT_EQ(partial, full()) << difference(partial, now());
    }
};

TEST_F(view_buttons, a_press_toggles_and_redraws) {
    EXPECT_EQ(press(48, 375), 1);
    EXPECT_EQ(shown(), "01111111");
    EXPECT_EQ(x->dragkind, -1);
    EXPECT_EQ(x->redraw.hide_check, 1);
    EXPECT_EQ(x->redraw.redraw_bg, 1);
    kel_drag_release(Point{375, 48});
    EXPECT_EQ(x->dragkind, 0);
    equals_full_update();
    press(60, 375);
    EXPECT_EQ(x->redraw.hide_check, 0);
    EXPECT_EQ(shown(), "11111111");
    kel_drag_release(Point{375, 60});
    kel_run_queue();
}

TEST_F(view_buttons, the_strip_begins_at_48) {
    EXPECT_EQ(press(34, 375), 0);
    EXPECT_EQ(press(47, 375), 0);
    EXPECT_EQ(press(48, 369), 0);
    EXPECT_EQ(press(48, 385), 0);
    EXPECT_EQ(shown(), "11111111");
    EXPECT_EQ(press(48, 370), 1);
}

TEST_F(view_buttons, presses_beyond_the_last_button_are_not_taken) {
    EXPECT_EQ(press(48 + 32 * 15, 375), 0);
    EXPECT_EQ(press(47 + 32 * 15, 375), 1);
    EXPECT_EQ(x->trackshown[31], 0);
}

TEST_F(view_buttons, dragging_paints_the_new_state) {
    x->trackshown[2] = 0;
    full();
    press(50, 375);
    drag_to(65);
    drag_to(80);
    drag_to(50); // the first keeps what the press gave it
    EXPECT_EQ(shown(), "00011111");
    drag_to(40); // counts as the first
    drag_to(20); // no button
    drag_to(-200);
    EXPECT_EQ(shown(), "00011111");
    kel_drag_release(Point{375, 50});
    equals_full_update();
}

TEST_F(view_buttons, dragging_does_not_unselect) {
    event* on_two = x->events->next;
    ASSERT_EQ(on_two->track, 2);
    brisolan_select(x, on_two);
    press(110, 375); // track 5
    kel_run_queue();
    drag_to(65); // track 2
    kel_run_queue();
    EXPECT_EQ(on_two->selected, 1);
    kel_drag_release(Point{375, 65});
    press(125, 375); // the next press that hides
    kel_run_queue();
    EXPECT_EQ(on_two->selected, 0);
}

TEST_F(view_buttons, option_shows_one_alone) {
    EXPECT_EQ(press(65, 375, optionKey), 1);
    EXPECT_EQ(shown(), "01000000");
    EXPECT_EQ(x->dragkind, 0);
    EXPECT_EQ(kel_drag_window(), nullptr);
    equals_full_update();
    press(65, 375, optionKey); // alone already
    EXPECT_EQ(shown(), "01000000");
}

TEST_F(view_buttons, buttons_are_drawn_by_their_state) {
    const auto pixel = [](int index) {
        const RGBColor c = palette_color(index);
        return 0xFF000000u | static_cast<std::uint32_t>(c.red >> 8) << 16 |
               static_cast<std::uint32_t>(c.green >> 8) << 8 | c.blue >> 8u;
    };
    const picture before = now();
    EXPECT_EQ(before.at(49, 373), pixel(22));
    EXPECT_EQ(before.at(55, 383), pixel(47));
    EXPECT_EQ(before.at(55, 384), pixel(47));
    EXPECT_EQ(before.at(62, 375), 0xFF000000u); // the line between
    press(48, 375);
    EXPECT_EQ(now().at(49, 373), pixel(0));
    EXPECT_EQ(now().at(55, 383), pixel(0));
    kel_drag_release(Point{375, 48});
    x->colorparam = PARAM_CHAN;
    brisolan_drawtrackbtns(x);
    EXPECT_EQ(now().at(70, 383), pixel(27));
}

TEST_F(view_buttons, the_channel_row_works_when_it_is_given_flags) {
    const picture before = now();
    brisolan_drawchanbtns(x);
    EXPECT_EQ(brisolan_chanbtnclick(x, Point{360, 50}, 0), 0);
    x->nchans = 16;
    x->chanshown = static_cast<std::uint8_t*>(host_getbytes(16));
    for (int i = 0; i < 16; ++i) x->chanshown[i] = 1;
    brisolan_drawchanbtns(x);
    EXPECT_NE(now(), before);
    EXPECT_EQ(brisolan_chanbtnclick(x, Point{360, 50}, 0), 1);
    EXPECT_EQ(x->chanshown[0], 0);
    kel_drag_move(Point{360, 65});
    EXPECT_EQ(x->chanshown[1], 0);
    EXPECT_EQ(shown(), "11111111");
    kel_drag_release(Point{360, 65});
    EXPECT_EQ(brisolan_chanbtnclick(x, Point{360, 48 + 16 * 15}, 0), 0);
    EXPECT_EQ(brisolan_chanbtnclick(x, Point{360, 80}, optionKey), 1);
    for (int i = 0; i < 16; ++i) EXPECT_EQ(x->chanshown[i], i == 2) << i;
    kel_drag_move(Point{360, 95});
    EXPECT_EQ(x->chanshown[3], 0) << "no drag begins where one is shown alone";
}

TEST_F(view_buttons, a_button_is_drawn_over_itself_and_one_that_there_is_not_is_not) {
    const picture before = now();
    for (const int i : {-1, 0, 7, 31, 32}) {
        brisolan_drawtrkbtn(x, i);
        EXPECT_EQ(now(), before) << i;
    }
    x->trackshown[7] = 0;
    brisolan_drawtrkbtn(x, 7);
    EXPECT_NE(now(), before);
    const picture drawn = now();
    brisolan_drawchanbtn(x, 0); // there is no row of channels
    EXPECT_EQ(now(), drawn);
}

} // namespace
