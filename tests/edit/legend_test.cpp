// tests/edit/legend_test.cpp: presses in the legend strip: names, values, roles.
// Test layer.
#include "edit/params.h"
#include "tests/edit/editor.h"
#include "view/format.h"
#include "view/legend.h"
#include "view/tracking.h"

namespace {

class legend_test : public editor_test {
protected:
    // A press on the parameter's value that drags it by so many units, upward.
    void drag_value(int index, int by) {
        const int h = param(index).leg_value_x + 1;
        hold({at(h, 10 - by)});
        click(h, 10);
    }
    int name_of(int index) { return param(index).leg_name_x + 1; }
    int role_of(int index) { return param(index).leg_pict_x + 1; }
    std::vector<int> underlined() {
        std::vector<int> all;
        for (int i = 0; i < NPARAMS; ++i) {
            if (param(i).underline) all.push_back(i);
        }
        return all;
    }
};

TEST_F(legend_test, strip_is_twenty_rows_right_of_the_palette) {
    EXPECT_EQ(brisolan_legendclick(x, at(48, 19), 0), 1);
    EXPECT_EQ(brisolan_legendclick(x, at(48, 20), 0), 0);
    EXPECT_EQ(brisolan_legendclick(x, at(47, 19), 0), 0);
    EXPECT_EQ(brisolan_legendclick(x, at(48, 0), 0), 1);
    EXPECT_EQ(brisolan_legendclick(x, at(48, -1), 0), 0);
    EXPECT_EQ(brisolan_legendclick(x, at(5000, 10), 0), 1) << "whether or not anything was hit";
}

TEST_F(legend_test, press_on_a_name_underlines_it_alone) {
    click(name_of(PARAM_VEL), 10);
    EXPECT_EQ(underlined(), std::vector<int>{PARAM_VEL});
    click(name_of(PARAM_X1), 10);
    EXPECT_EQ(underlined(), std::vector<int>{PARAM_X1});
    EXPECT_EQ(x->dragkind, 0);
}

TEST_F(legend_test, underline_goes_from_the_screen_with_the_next_name) {
    const auto before = picture();
    click(name_of(PARAM_VEL), 10);
    const auto vel = picture();
    EXPECT_NE(vel, before);
    click(name_of(PARAM_X1), 10);
    EXPECT_NE(picture(), vel);
    brisolan_untypeparams(x);
    SetPort(x->window->port);
    param(PARAM_X1).underline = std::uint8_t{1};
    brisolan_untypeparams(x);
    SetPort(nullptr);
    EXPECT_EQ(picture(), before);
}

TEST_F(legend_test, press_on_a_name_with_a_flag_has_no_effect) {
    EXPECT_EQ(brisolan_legendclick(x, at(name_of(PARAM_VEL), 10), 1), 1);
    EXPECT_TRUE(underlined().empty());
}

TEST_F(legend_test, filling_the_legend_takes_the_underline_away) {
    fill("1000 60 64 500\r");
    click(name_of(PARAM_VEL), 10);
    click(98, 200);
    release();
    EXPECT_TRUE(underlined().empty());
}

TEST_F(legend_test, underline_goes_from_the_screen_when_the_legend_is_filled) {
    fill("1000 60 64 500\r");
    kel_window_update(x->window);
    const auto expect_no_line = [this](const char* why) {
        const auto now = picture();
        kel_window_update(x->window);
        EXPECT_TRUE(picture() == now) << why;
    };
    click(name_of(PARAM_VEL), 10);
    click(98, 200);
    release();
    expect_no_line("by another anchor");
    click(name_of(PARAM_X1), 10);
    click(98, 200);
    drag(98, 198);
    release();
    expect_no_line("by a move");
    x->editmode = 3;
    kel_window_update(x->window);
    click(300, 250);
    click(name_of(PARAM_DUR), 10);
    drag(320, 250);
    EXPECT_TRUE(underlined().empty());
    release();
    expect_no_line("by a drawn length");
}

TEST_F(legend_test, areas_meet_at_their_edges) {
    const param_record& vel = param(PARAM_VEL);
    click(vel.leg_value_x - 2, 10);
    EXPECT_EQ(underlined(), std::vector<int>{PARAM_VEL}) << "the last pixel of the name's area";
    brisolan_untypeparams(x);
    click(vel.leg_name_x, 10);
    EXPECT_EQ(underlined(), std::vector<int>{PARAM_VEL}) << "its first";
    brisolan_untypeparams(x);
    hold({at(0, 0)});
    click(vel.leg_value_x - 1, 10);
    EXPECT_TRUE(underlined().empty());
    EXPECT_EQ(x->numparam, PARAM_VEL);
    hold({at(0, 0)});
    click(param(PARAM_DUR).leg_end_x, 10);
    EXPECT_EQ(x->numparam, PARAM_DUR) << "not the next one's role";
}

TEST_F(legend_test, value_with_nothing_selected_is_the_default_of_new_events) {
    fill("1000 60 64 500\r");
    const auto before = picture();
    drag_value(PARAM_VEL, 10);
    EXPECT_EQ(param(PARAM_VEL).defvalue, 74);
    EXPECT_EQ(param(PARAM_VEL).legvalue, 74);
    EXPECT_EQ(nth(0)->vel, 64);
    auto after = picture();
    const std::size_t legend = 20UL * static_cast<std::size_t>(x->window->width);
    EXPECT_TRUE(std::equal(before.begin() + static_cast<std::ptrdiff_t>(legend), before.end(),
                           after.begin() + static_cast<std::ptrdiff_t>(legend)));
    EXPECT_NE(before, after);
    x->editmode = 3;
    click(300, 200);
    release();
    EXPECT_EQ(nth(1)->vel, 74);
}

TEST_F(legend_test, value_is_held_in_its_range_from_the_first_move) {
    drag_value(PARAM_VEL, 500);
    EXPECT_EQ(param(PARAM_VEL).defvalue, 127);
    drag_value(PARAM_VEL, -500);
    EXPECT_EQ(param(PARAM_VEL).defvalue, 0);
    drag_value(PARAM_CHAN, -500);
    EXPECT_EQ(param(PARAM_CHAN).defvalue, 1);
}

TEST_F(legend_test, value_outside_its_range_is_brought_in_by_the_first_move) {
    send("setparam 2 Vel 4 0 127 300 12 4 0");
    click(param(PARAM_VEL).leg_value_x, 10);
    EXPECT_EQ(param(PARAM_VEL).defvalue, 300) << "a press alone changes nothing";
    drag_value(PARAM_VEL, 1);
    EXPECT_EQ(param(PARAM_VEL).defvalue, 127);
}

TEST_F(legend_test, value_with_one_selected_is_its_own) {
    fill("1000 60 64 500\r2000 62 65 500\r");
    click(98, 200, shiftKey);
    lines.clear();
    drag_value(PARAM_VEL, 10);
    EXPECT_EQ(nth(0)->vel, 74);
    EXPECT_EQ(nth(1)->vel, 65);
    EXPECT_EQ(param(PARAM_VEL).defvalue, 64);
    EXPECT_EQ(taken(), std::vector<std::string>{}) << "the patcher is not marked changed";
}

TEST_F(legend_test, value_with_two_selected_sets_both_to_the_same) {
    fill("1000 60 64 500\r2000 62 100 500\r3000 62 1 500\r");
    click(98, 200, shiftKey);
    click(138, 196, shiftKey);
    drag_value(PARAM_VEL, 3);
    EXPECT_EQ(nth(0)->vel, 67);
    EXPECT_EQ(nth(1)->vel, 67);
    EXPECT_EQ(nth(2)->vel, 1);
    EXPECT_EQ(param(PARAM_VEL).defvalue, 64);
}

TEST_F(legend_test, value_with_one_counted_and_none_there_changes_nothing) {
    fill("1000 60 64 500\r");
    click(98, 200, shiftKey);
    send("clear");
    ASSERT_EQ(x->nselected, 1);
    send("record");
    send("10 60 64 500");
    send("stop");
    drag_value(PARAM_VEL, 10);
    EXPECT_EQ(nth(0)->vel, 64);
    EXPECT_EQ(param(PARAM_VEL).defvalue, 64);
}

TEST_F(legend_test, value_with_more_counted_than_selected_sets_the_selected) {
    fill("1000 60 64 500\r2000 62 65 500\r");
    click(98, 200);
    release();
    click(98, 200);
    release();
    ASSERT_EQ(x->nselected, 2);
    drag_value(PARAM_VEL, 5);
    EXPECT_EQ(nth(0)->vel, 69);
    EXPECT_EQ(nth(1)->vel, 65);
}

TEST_F(legend_test, time_is_changed_in_place_and_not_sorted) {
    fill("1000 60 64 500\r1005 62 64 500\r");
    click(98, 200, shiftKey);
    lines.clear();
    drag_value(PARAM_TIME, 50);
    EXPECT_EQ(nth(0)->time, 1050);
    EXPECT_EQ(nth(1)->time, 1005);
    EXPECT_EQ(x->unordered, 1);
    EXPECT_EQ(taken(), std::vector<std::string>{});
    // What is inserted next finds its place from the head, in the list as it stands.
    paste("1020 50\r");
    EXPECT_EQ(nth(0)->pitch, 50);
}

TEST_F(legend_test, note_names_are_written_while_a_pitch_is_dragged) {
    send("setparam 1 Pitch 3 0 127 60 12 4 1");
    hold({at(0, 0)});
    click(param(PARAM_PITCH).leg_value_x, 10);
    EXPECT_EQ(g_asmidi, 1);
    char text[VALUE_SIZE];
    x->numfield->text(60, text);
    EXPECT_STREQ(text, "C3");
    hold({at(0, 0)});
    click(param(PARAM_VEL).leg_value_x, 10);
    EXPECT_EQ(g_asmidi, 0);
    x->numfield->text(60, text);
    EXPECT_STREQ(text, "60");
}

TEST_F(legend_test, tracking_pauses_until_the_button_is_seen_up) {
    g_numtracking = 0;
    machine.button = true;
    hold({at(0, 0)});
    click(param(PARAM_VEL).leg_value_x, 10);
    EXPECT_EQ(g_numtracking, 1);
    machine.button = false;
    kel_window_pointer(x->window, at(300, 200), 0);
    EXPECT_EQ(g_numtracking, 0);
}

TEST_F(legend_test, number_field_covers_the_value) {
    const param_record& dur = param(PARAM_DUR);
    brisolan_paramtonum(x, &param(PARAM_DUR), PARAM_DUR);
    const host_numfield& n = *x->numfield;
    EXPECT_EQ(n.rect.left, dur.leg_value_x - 2);
    EXPECT_EQ(n.rect.right, dur.leg_end_x - 2);
    EXPECT_EQ(n.rect.top, 0);
    EXPECT_EQ(n.rect.bottom, 19);
    EXPECT_EQ(n.min, 1);
    EXPECT_EQ(n.max, 99999);
    EXPECT_EQ(n.value, 200);
    EXPECT_EQ(x->numparam, PARAM_DUR);
}

TEST_F(legend_test, press_on_a_role_pops_up_its_menu) {
    machine.choices = {3};
    click(role_of(PARAM_X1), 10);
    EXPECT_EQ(x->yparam, PARAM_X1);
    EXPECT_EQ(param(PARAM_PITCH).mode, ROLE_NONE);
    machine.choices = {5};
    click(role_of(PARAM_X2), 10);
    EXPECT_EQ(x->lenparam, PARAM_X2);
    machine.choices = {4};
    click(role_of(PARAM_VEL), 10);
    EXPECT_EQ(x->labelparam, -1) << "the label chosen again is switched off";
}

TEST_F(legend_test, a_free_parameter_is_itself_or_the_first_without_a_role) {
    EXPECT_EQ(brisolan_openparam(x, PARAM_X2), PARAM_X2);
    EXPECT_EQ(brisolan_openparam(x, PARAM_PITCH), PARAM_CHAN);
    for (param_record& p : x->params) p.mode = ROLE_TIME;
    EXPECT_EQ(brisolan_openparam(x, PARAM_X2), PARAM_PITCH);
    for (int i = 0; i < NPARAMS; ++i) param(i).mode = static_cast<std::uint8_t>(e_parammodes(i));
}

TEST_F(legend_test, an_event_becomes_the_anchor_and_is_shown) {
    fill("1000 60 99 500\r");
    SetPort(x->window->port);
    brisolan_evttolegend(x, nth(0));
    SetPort(nullptr);
    EXPECT_EQ(x->firstsel, nth(0));
    EXPECT_EQ(param(PARAM_VEL).legvalue, 99);
}

TEST_F(legend_test, scale_is_above_the_bottom_scroll_bar) {
    EXPECT_NE(brisolan_scaleclick(x, at(10, 384)), 0);
    EXPECT_EQ(brisolan_scaleclick(x, at(10, 385)), 0);
}

TEST_F(legend_test, a_parameter_without_an_entry_is_not_pressed_and_shows_no_value) {
    param(PARAM_VEL).draw = std::uint8_t{0};
    EXPECT_EQ(click(name_of(PARAM_VEL), 10), 1) << "the strip takes its presses all the same";
    EXPECT_EQ(underlined(), std::vector<int>{});
    drag_value(PARAM_VEL, 5);
    EXPECT_EQ(param(PARAM_VEL).defvalue, 64);
    const auto before = picture();
    param(PARAM_VEL).legvalue = 99;
    brisolan_drawvaluerow(x);
    EXPECT_EQ(picture(), before);
    param(PARAM_VEL).draw = std::uint8_t{1};
    brisolan_drawvaluerow(x);
    EXPECT_NE(picture(), before);
}

} // namespace
