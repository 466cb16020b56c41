// tests/view/legend_test.cpp: note names, the legend's layout and values, vertical labels, roles and their menu.
// Tests of the view.
#include "tests/view/editor.h"
#include "view/draw.h"
#include "view/format.h"
#include "view/geometry.h"
#include "view/legend.h"
#include "view/legendvalues.h"
#include "view/scroll.h"
#include "view/selected.h"
#include "view/window.h"

namespace {

std::string note_name(std::int32_t note) {
    char text[VALUE_SIZE];
    cnote2str(note, text);
    return text;
}

TEST_F(editor_test, note_names) {
    EXPECT_EQ(note_name(0), "C-2");
    EXPECT_EQ(note_name(11), "B-2");
    EXPECT_EQ(note_name(12), "C-1");
    EXPECT_EQ(note_name(23), "B-1");
    EXPECT_EQ(note_name(24), "C0");
    EXPECT_EQ(note_name(60), "C3");
    EXPECT_EQ(note_name(61), "C#3");
    EXPECT_EQ(note_name(127), "G8");
    EXPECT_EQ(note_name(-1), "-");
    EXPECT_EQ(note_name(128), "+");
    EXPECT_EQ(note_name(INT32_MIN), "-");
}

TEST_F(editor_test, values_are_written_by_their_parameter) {
    EXPECT_STREQ(brisolan_midistr(x, PARAM_PITCH, 60), "60");
    x->params[PARAM_PITCH].notenames = std::uint8_t{1};
    EXPECT_STREQ(brisolan_midistr(x, PARAM_PITCH, 60), "C3");
    EXPECT_STREQ(brisolan_midistr(x, PARAM_VEL, INT32_MIN), "-2147483648");
    char text[VALUE_SIZE];
    g_asmidi = 1;
    brisolan_numdraw(60, text);
    EXPECT_STREQ(text, "C3");
    g_asmidi = 0;
    brisolan_numdraw(60, text);
    EXPECT_STREQ(text, "60");
}

class view_legend : public editor_test {
protected:
    void SetUp() override {
        editor_test::SetUp();
        open();
        SetPort(x->window->port);
    }
    param_record& param(int index) { return x->params[static_cast<std::size_t>(index)]; }
    void set_role(int index, int mode) { brisolan_displaymode(x, &param(index), index, mode); }
    std::vector<int> roles() {
        std::vector<int> all;
        for (const param_record& p : x->params) all.push_back(p.mode);
        return all;
    }
};

TEST_F(view_legend, entries_follow_one_another) {
    t_textface(FACE_PLAIN);
    const int space = t_charwidth(' ');
    const int time = t_stringwidth("Time");
    t_textface(FACE_BOLD);
    const int value = t_stringwidth("999999");
    EXPECT_EQ(param(0).leg_pict_x, 52);
    EXPECT_EQ(param(0).leg_name_x, 68);
    EXPECT_EQ(param(0).leg_value_x, 52 + time + space + 16);
    EXPECT_EQ(param(0).leg_end_x, 52 + time + 3 * space + value + 16);
    for (int i = 1; i < NPARAMS; ++i) EXPECT_EQ(param(i).leg_pict_x, param(i - 1).leg_end_x);
}

TEST_F(view_legend, room_for_a_value_is_told_by_bounds_or_note_names) {
    const auto room = [&](int index) {
        brisolan_calclegend(x);
        return param(index).leg_end_x - param(index).leg_pict_x;
    };
    t_textface(FACE_BOLD);
    const int of_max = t_stringwidth("127");
    const int of_min = t_stringwidth("-12345");
    const int of_note = t_stringwidth("A#-2");
    const int with_max = room(PARAM_PITCH);
    param(PARAM_PITCH).min = -12345;
    EXPECT_EQ(room(PARAM_PITCH), with_max - of_max + of_min);
    param(PARAM_PITCH).notenames = std::uint8_t{1};
    EXPECT_EQ(room(PARAM_PITCH), with_max - of_max + of_note);
}

TEST_F(view_legend, parameters_without_an_entry_take_no_room) {
    param(PARAM_PITCH).draw = std::uint8_t{0};
    brisolan_calclegend(x);
    EXPECT_EQ(param(PARAM_VEL).leg_pict_x, param(PARAM_TIME).leg_end_x);
}

TEST_F(view_legend, shows_the_first_selected_or_the_defaults) {
    event* e = add(500, 72, 99);
    brisolan_select(x, e);
    kel_run_queue();
    EXPECT_EQ(param(PARAM_PITCH).legvalue, 72);
    EXPECT_EQ(param(PARAM_VEL).legvalue, 99);
    const picture selected = now();
    brisolan_noselect(x);
    kel_run_queue();
    EXPECT_EQ(param(PARAM_PITCH).legvalue, 60);
    EXPECT_NE(now(), selected);
}

TEST_F(view_legend, filling_ends_underlining) {
    param(PARAM_VEL).underline = std::uint8_t{1};
    param(PARAM_VEL).typing_mark = std::uint8_t{1};
    brisolan_defaultlegend(x);
    EXPECT_EQ(param(PARAM_VEL).underline, 0);
    EXPECT_EQ(param(PARAM_VEL).typing_mark, 0);
}

TEST_F(view_legend, values_drawn_alone_equal_the_row) {
    add(123456, 100, 1, 99999);
    brisolan_select(x, x->events);
    kel_run_queue();
    const picture values = now();
    EXPECT_EQ(values, full()) << difference(values, now());
}

// The rows in which the vertical axis has a tick.
std::vector<int> ticks(const picture& p) {
    std::vector<int> rows;
    for (int v = 62; v < 370; ++v) {
        if (p.at(41, v) == 0xFF000000u) rows.push_back(v);
    }
    return rows;
}

bool labelled(const picture& p, int tick) {
    for (int h = 0; h < 38; ++h) {
        if (p.at(h, tick) == 0xFF000000u) return true;
    }
    return false;
}

TEST_F(view_legend, vertical_labels_end_with_the_maximum) {
    const std::vector<int> rows = ticks(full());
    std::vector<int> expected;
    expected.push_back(320 - 254); // 127 in place of 132
    for (int value = 120; value >= 0; value -= 12) expected.push_back(320 - 2 * value);
    EXPECT_EQ(rows, expected);
    for (const int row : rows) EXPECT_TRUE(labelled(now(), row)) << row;
}

TEST_F(view_legend, labels_stand_more_than_ten_pixels_above_the_tick_before) {
    param(PARAM_PITCH).interval = 5; // 10 pixels
    picture p = full();
    EXPECT_TRUE(labelled(p, 320));
    EXPECT_FALSE(labelled(p, 310));
    EXPECT_FALSE(labelled(p, 300));
    param(PARAM_PITCH).interval = 6;
    p = full();
    EXPECT_TRUE(labelled(p, 308));
}

TEST_F(view_legend, labels_begin_at_zero_not_at_the_minimum) {
    param(PARAM_PITCH).min = 60; // H is 136
    t_clipit(0, 0, 600, 400);
    t_eraserect(0, 0, 600, 400);
    const std::vector<int> rows = ticks(full());
    ASSERT_FALSE(rows.empty());
    EXPECT_EQ(rows.back(), 200);
}

TEST_F(view_legend, default_roles) {
    EXPECT_EQ(roles(), (std::vector<int>{1, 2, 3, 4, 0, 0, 0, 0}));
}

TEST_F(view_legend, vertical_role_moves_and_takes_the_scale) {
    set_role(PARAM_X1, ROLE_VERTICAL);
    EXPECT_EQ(roles(), (std::vector<int>{1, 0, 3, 4, 0, 0, 2, 0}));
    EXPECT_EQ(x->yparam, PARAM_X1);
    EXPECT_EQ(x->yzoom, 20);
    EXPECT_EQ(x->yzoom_exact, 20.0);
}

TEST_F(view_legend, length_on_the_vertical_axis_gets_a_successor) {
    set_role(PARAM_DUR, ROLE_VERTICAL); // Dur is no longer free: Chan, the first without a role
    EXPECT_EQ(roles(), (std::vector<int>{1, 0, 3, 2, 4, 0, 0, 0}));
    EXPECT_EQ(x->lenparam, PARAM_CHAN);
    EXPECT_EQ(x->lenzoom, 200); // Dur's scale, not Chan's 1
    EXPECT_EQ(x->yparam, PARAM_DUR);
    EXPECT_EQ(x->yzoom, 200);
}

TEST_F(view_legend, vertical_as_length_gets_a_successor) {
    x->xzoom = 50;
    set_role(PARAM_PITCH, ROLE_LENGTH);
    EXPECT_EQ(roles(), (std::vector<int>{1, 4, 3, 0, 2, 0, 0, 0}));
    EXPECT_EQ(x->yparam, PARAM_CHAN);
    EXPECT_EQ(x->yzoom, 1);
    EXPECT_EQ(x->lenzoom, 4);
    set_role(PARAM_DUR, ROLE_LENGTH);
    EXPECT_EQ(x->lenzoom, 50); // as Time's
}

TEST_F(view_legend, label_moves_and_goes_off_when_chosen_again) {
    set_role(PARAM_CHAN, ROLE_LABEL);
    EXPECT_EQ(roles(), (std::vector<int>{1, 2, 0, 4, 3, 0, 0, 0}));
    EXPECT_EQ(x->labelparam, PARAM_CHAN);
    set_role(PARAM_CHAN, ROLE_LABEL);
    EXPECT_EQ(x->labelparam, -1);
    EXPECT_EQ(param(PARAM_CHAN).mode, 0);
}

TEST_F(view_legend, label_taken_from_the_axes) {
    set_role(PARAM_PITCH, ROLE_LABEL);
    EXPECT_EQ(roles(), (std::vector<int>{1, 3, 2, 4, 0, 0, 0, 0}));
    set_role(PARAM_DUR, ROLE_LABEL);
    EXPECT_EQ(roles(), (std::vector<int>{1, 4, 2, 3, 0, 0, 0, 0}));
    EXPECT_EQ(x->lenparam, PARAM_PITCH);
    EXPECT_EQ(x->lenzoom, 200); // Dur's scale
}

TEST_F(view_legend, label_as_an_axis_leaves_no_label) {
    set_role(PARAM_VEL, ROLE_VERTICAL);
    EXPECT_EQ(x->labelparam, -1);
    EXPECT_EQ(roles(), (std::vector<int>{1, 0, 2, 4, 0, 0, 0, 0}));
}

TEST_F(view_legend, plain_modes_set_the_parameter_alone) {
    set_role(PARAM_PITCH, ROLE_NONE);
    EXPECT_EQ(x->yparam, PARAM_PITCH);
    EXPECT_EQ(param(PARAM_PITCH).mode, 0);
    set_role(PARAM_PITCH, ROLE_VERTICAL);
    EXPECT_EQ(param(PARAM_PITCH).mode, 2);
    set_role(PARAM_VEL, ROLE_NONE);
    EXPECT_EQ(x->labelparam, PARAM_VEL);
}

TEST_F(view_legend, one_parameter_on_each_axis_whatever_is_chosen) {
    std::uint32_t seed = 1;
    for (int i = 0; i < 2000; ++i) {
        seed = seed * 1664525u + 1013904223u;
        set_role(1 + static_cast<int>(seed >> 8) % 7, 2 + static_cast<int>(seed >> 20) % 3);
        int counts[5] = {};
        for (const param_record& p : x->params) ++counts[p.mode];
        ASSERT_EQ(counts[ROLE_VERTICAL], 1) << i;
        ASSERT_EQ(counts[ROLE_LENGTH], 1) << i;
        ASSERT_EQ(counts[ROLE_LABEL], x->labelparam >= 0 ? 1 : 0) << i;
        ASSERT_EQ(param(x->yparam).mode, ROLE_VERTICAL);
        ASSERT_EQ(param(x->lenparam).mode, ROLE_LENGTH);
    }
}

TEST_F(view_legend, picture_rectangle) {
    Rect r;
    brisolan_legpictrect(100, &r);
    EXPECT_EQ(r.left, 101);
    EXPECT_EQ(r.top, 3);
    EXPECT_EQ(r.right, 112);
    EXPECT_EQ(r.bottom, 16);
}

TEST_F(view_legend, menu_choice_gives_the_role_and_draws_anew) {
    machine.choice = 3;
    brisolan_parammenu(x, &param(PARAM_X1), PARAM_X1);
    EXPECT_EQ(x->yparam, PARAM_X1);
    kel_run_queue();
    const picture chosen = now();
    EXPECT_EQ(chosen, full()) << difference(chosen, now());
}

TEST_F(view_legend, menu_without_a_choice_changes_nothing) {
    const picture before = full();
    t_darkenrect(Rect{param(4).leg_pict_x, 3, static_cast<std::int16_t>(param(4).leg_pict_x + 13), 16});
    brisolan_parammenu(x, &param(4), 4);
    EXPECT_EQ(now(), before) << difference(now(), before);
    EXPECT_EQ(roles(), (std::vector<int>{1, 2, 3, 4, 0, 0, 0, 0}));
}

TEST_F(view_legend, axis_parameters_cannot_choose_their_own_role) {
    machine.choice = 3;
    brisolan_parammenu(x, &param(PARAM_PITCH), PARAM_PITCH); // disabled: no choice
    EXPECT_EQ(x->yparam, PARAM_PITCH);
    brisolan_parammenu(x, &param(PARAM_TIME), PARAM_TIME); // Time's items are disabled
    EXPECT_EQ(x->yparam, PARAM_PITCH);
}

TEST_F(view_legend, menu_marks_the_role_and_offers_what_may_be_chosen) {
    const auto menu_of = [this](int index) {
        brisolan_parammenu(x, &param(index), index);
        return machine.menu;
    };
    // Items 6 and 7 are a line and a title, which nobody can choose.
    EXPECT_EQ(menu_of(PARAM_TIME), ".*-.-.-..-.-.") << "the time axis stays what it is";
    EXPECT_EQ(menu_of(PARAM_PITCH), "..*-...-.-.");
    EXPECT_EQ(menu_of(PARAM_VEL), "...*..-.-.");
    EXPECT_EQ(menu_of(PARAM_DUR), "....*-.-.-.");
    EXPECT_EQ(menu_of(PARAM_CHAN), "......-.-.") << "nothing is left of the menu before";
}

TEST_F(view_legend, menu_pops_up_at_its_picture) {
    toolbox_port_setorigin(x->window->port, 100, 50);
    brisolan_parammenu(x, &param(PARAM_X1), PARAM_X1);
    EXPECT_EQ(machine.menu_at.h, 100 + param(PARAM_X1).leg_pict_x + 1);
    EXPECT_EQ(machine.menu_at.v, 50 + 3);
}

TEST_F(view_legend, menus_last_item_opens_the_inspector) {
    machine.choice = 8;
    brisolan_parammenu(x, &param(PARAM_X2), PARAM_X2);
    EXPECT_TRUE(machine.inspected);
    EXPECT_EQ(x->whichparam, PARAM_X2);
}

TEST_F(view_legend, the_vertical_axis_stays_with_pitch_where_no_parameter_is_free) {
    x->labelparam = -1;
    for (const int i : {PARAM_VEL, PARAM_CHAN, PARAM_TRACK, PARAM_X1, PARAM_X2}) param(i).mode = ROLE_TIME;
    brisolan_displaymode(x, &param(PARAM_PITCH), PARAM_PITCH, ROLE_LABEL);
    EXPECT_EQ(x->yparam, PARAM_PITCH);
    EXPECT_EQ(x->labelparam, PARAM_PITCH);
    EXPECT_EQ(param(PARAM_PITCH).mode, ROLE_VERTICAL);
    param(PARAM_PITCH).mode = ROLE_NONE;
    brisolan_displaymode(x, &param(PARAM_PITCH), PARAM_PITCH, ROLE_VERTICAL);
}

} // namespace
