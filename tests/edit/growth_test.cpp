// tests/edit/growth_test.cpp: editing ten times the events takes ten times the steps and spans at most.
// Test layer.
#include "tests/support/growth.h"

#include "core/messages.h"
#include "edit/drag.h"
#include "edit/params.h"
#include "edit/press.h"
#include "edit/selection.h"
#include "host/kernel/windows.h"
#include "io/clipboard.h"
#include "view/selected.h"

namespace {

class edit_growth : public growth_test {
protected:
    // The work on n events in view, of which none or all are selected.
    void expect_in_proportion(bool selected, const std::function<void()>& work) {
        expect_growth(
            IN_PROPORTION,
            [&](int n) {
                show(n, selected);
                return count(work);
            },
            FIRST_SIZE);
    }
    void drag(int third) {
        g_grabbedthird = static_cast<std::int16_t>(third);
        x->dragvalue = brisolan_grabbedvalue(x, {200, 200});
        brisolan_movedrag(x, {204, 204}, true);
    }
    // The second step of a drag: the first places what has not been yet.
    work_count count_dragging_one() {
        count([this] { brisolan_select(x, brisolan_eventat(x, 50)); });
        count([this] { drag(THIRD_BODY); });
        return count([this] { drag(THIRD_BODY); });
    }
};

TEST_F(edit_growth, selecting_all) {
    expect_in_proportion(false, [this] { brisolan_selectall(x); });
}
TEST_F(edit_growth, selecting_all_again) {
    expect_in_proportion(true, [this] { brisolan_selectall(x); });
}
TEST_F(edit_growth, unselecting_all) {
    expect_in_proportion(true, [this] { brisolan_noselect(x); });
}

TEST_F(edit_growth, unselecting_all_of_a_hidden_track) {
    expect_in_proportion(true, [this] {
        for (int i = 0; i < x->ntracks; ++i) x->trackshown[i] = 0;
        brisolan_reviseselect(x);
        for (int i = 0; i < x->ntracks; ++i) x->trackshown[i] = 1;
    });
}

TEST_F(edit_growth, a_band_over_all_and_back) {
    expect_in_proportion(false, [this] {
        modkeywas = 0;
        x->clickpt = {62, 48};
        brisolan_selectdrag(x, {340, 585}, true);
        brisolan_selectdrag(x, {64, 50}, true);
        brisolan_selectdrag(x, {64, 50}, false);
    });
}

TEST_F(edit_growth, a_shift_band_over_all_and_back) {
    expect_in_proportion(true, [this] {
        modkeywas = shiftKey;
        x->clickpt = {62, 48};
        brisolan_markselected(x);
        brisolan_selectdrag(x, {340, 585}, true);
        brisolan_selectdrag(x, {64, 50}, true);
        brisolan_selectdrag(x, {64, 50}, false);
    });
}

TEST_F(edit_growth, dragging_all) {
    for (const int third : {THIRD_START, THIRD_BODY, THIRD_END})
        expect_in_proportion(true, [this, third] { drag(third); });
}

TEST_F(edit_growth, dragging_one) {
    expect_growth(IN_PROPORTION, [this](int n) {
        show(n);
        return count_dragging_one();
    });
}

// The one selected event is not looked for among those that are further away.
TEST_F(edit_growth, dragging_one_among_others_out_of_sight) {
    expect_growth(
        NOT_AT_ALL,
        [this](int n) {
            show(1);
            fill(n); // 100 ms each: the first hundred are in view
            kel_window_update(x->window);
            return count_dragging_one();
        },
        10);
}

TEST_F(edit_growth, dragging_in_the_legend) {
    for (const int index : {PARAM_TIME, PARAM_PITCH, PARAM_VEL, PARAM_DUR})
        expect_in_proportion(true, [this, index] {
            x->numparam = static_cast<std::uint8_t>(index);
            brisolan_paramtrack(x, 50);
        });
}

TEST_F(edit_growth, deleting_all) {
    expect_in_proportion(true, [this] { brisolan_clr(x); });
}
TEST_F(edit_growth, cutting_all) {
    expect_in_proportion(true, [this] { brisolan_cut(x); });
}
TEST_F(edit_growth, copying_all) {
    expect_in_proportion(true, [this] { brisolan_copy(x); });
}
TEST_F(edit_growth, clearing_all) {
    expect_in_proportion(true, [this] { brisolan_clear(x); });
}

TEST_F(edit_growth, pasting_all) {
    expect_growth(
        IN_PROPORTION,
        [this](int n) {
            show(n, true);
            count([this] { brisolan_cut(x); });
            return count([this] { brisolan_paste(x); });
        },
        FIRST_SIZE);
}

TEST_F(edit_growth, pasting_among_as_many) {
    expect_growth(
        IN_PROPORTION,
        [this](int n) {
            show(n, true);
            count([this] { brisolan_copy(x); });
            return count([this] { brisolan_paste(x); });
        },
        FIRST_SIZE);
}

} // namespace
