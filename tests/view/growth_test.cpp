// tests/view/growth_test.cpp: drawing ten times the events takes ten times the steps and spans at most; one event does not
// draw the others.
// Test layer.
#include "tests/support/growth.h"

#include "host/kernel/windows.h"
#include "view/events.h"

namespace {

class view_growth : public growth_test {
protected:
    void expect_updates_in_proportion(bool labels, bool selected) {
        expect_growth(IN_PROPORTION, [=, this](int n) {
            x->labelparam = labels ? PARAM_VEL : -1;
            show(n, selected);
            return count([this] { kel_window_update(x->window); });
        });
    }
    // The middle event goes up and is drawn with whoever it touched: nobody else is asked, but for those beside it, of whom
    // there are more where there are more.
    work_count move_one(int n, bool selected, int times) {
        show(n, selected);
        event* one = brisolan_eventat(x, n / 2);
        return count([&] {
            for (int i = 0; i < times; ++i) {
                brisolan_eraseit(x, one);
                one->pitch += 1;
                brisolan_drawit(x, one);
            }
        });
    }
};

TEST_F(view_growth, updating_solid_bars_with_labels) {
    expect_updates_in_proportion(true, false);
}
TEST_F(view_growth, updating_selected_bars_with_labels) {
    expect_updates_in_proportion(true, true);
}
TEST_F(view_growth, updating_solid_bars) {
    expect_updates_in_proportion(false, false);
}
TEST_F(view_growth, updating_selected_bars) {
    expect_updates_in_proportion(false, true);
}

TEST_F(view_growth, one_event) {
    for (const bool selected : {false, true})
        expect_growth(IN_PROPORTION, [=, this](int n) { return move_one(n, selected, 1); });
}

TEST_F(view_growth, one_event_is_a_small_part_of_an_update) {
    constexpr int MANY = 3000;
    for (const bool selected : {false, true}) {
        const work_count one = move_one(MANY, selected, 1);
        const work_count all = count([this] { kel_window_update(x->window); });
        EXPECT_LE(one.steps * 4, all.steps);
        EXPECT_LE(one.spans * 4, all.spans);
    }
}

// Out of sight nothing is drawn but the window itself.
TEST_F(view_growth, updating_what_is_out_of_sight) {
    expect_growth(IN_PROPORTION, [this](int n) {
        show(n);
        x->window->hscroll_value = std::int16_t{20000};
        const work_count all = count([this] { kel_window_update(x->window); });
        x->window->hscroll_value = std::int16_t{0};
        return all;
    });
}

// Pointing looks through those near the point, not through all.
TEST_F(view_growth, finding_the_event_under_the_pointer) {
    expect_growth(IN_PROPORTION, [this](int n) {
        show(n);
        (void)brisolan_findevent(x, 100, 100); // the places are made at the first time
        return count([this] {
            for (int h = 60; h < 560; h += 50) (void)brisolan_findevent(x, h, 200);
        });
    });
}

} // namespace
