// tests/view/selected_test.cpp: selecting and unselecting, the counter, the anchor, the thirds of a bar.
// Tests of the view.
#include "tests/view/editor.h"

#include "view/events.h"
#include "view/selected.h"

namespace {

class view_selected : public editor_test {
protected:
    void SetUp() override {
        editor_test::SetUp();
        for (int i = 0; i < 5; ++i) events.push_back(add(i * 1000, 60 + i, 64, 500, 1, 1 + i));
        open();
        SetPort(x->window->port);
    }
    std::vector<event*> events;
};

TEST_F(view_selected, the_first_one_selected_becomes_the_anchor) {
    brisolan_select(x, events[2]);
    brisolan_select(x, events[0]);
    EXPECT_EQ(x->firstsel, events[2]);
    EXPECT_EQ(x->nselected, 2);
    EXPECT_EQ(x->redraw.redraw_values, 1);
    EXPECT_EQ(brisolan_firstselected(x), events[0]);
}

TEST_F(view_selected, selecting_twice_counts_twice) {
    brisolan_select(x, events[1]);
    brisolan_select(x, events[1]);
    EXPECT_EQ(x->nselected, 2);
    brisolan_unselect(x, events[1]);
    EXPECT_EQ(x->nselected, 1);
    EXPECT_EQ(x->firstsel, nullptr); // nothing is selected any more
}

TEST_F(view_selected, selected_events_are_drawn_at_once) {
    const picture before = now();
    brisolan_select(x, events[1]);
    brisolan_settle(x);
    EXPECT_NE(now(), before);
    EXPECT_EQ(events[1]->needsdraw, 0);
    kel_run_queue();
    const picture partial = now();
    EXPECT_EQ(partial, full()) << difference(partial, now());
}

TEST_F(view_selected, unselected_events_are_erased_until_the_redraw) {
    brisolan_select(x, events[1]);
    kel_run_queue();
    const picture selected = now();
    brisolan_unselect(x, events[1]);
    EXPECT_EQ(events[1]->needsdraw, 1);
    EXPECT_EQ(events[1]->selected, 0);
    kel_run_queue();
    EXPECT_NE(now(), selected);
    EXPECT_EQ(events[1]->needsdraw, 0);
}

TEST_F(view_selected, the_anchor_moves_to_the_first_that_is_left) {
    brisolan_select(x, events[3]);
    brisolan_select(x, events[4]);
    brisolan_select(x, events[1]);
    brisolan_unselect(x, events[3]);
    EXPECT_EQ(x->firstsel, events[1]);
    brisolan_unselect(x, events[4]);
    EXPECT_EQ(x->firstsel, events[1]);
    brisolan_unselect(x, events[1]);
    EXPECT_EQ(x->firstsel, nullptr);
    EXPECT_EQ(x->nselected, 0);
}

TEST_F(view_selected, unselecting_everything_resets_the_counter) {
    brisolan_select(x, events[3]);
    brisolan_select(x, events[3]);
    brisolan_noselect(x);
    EXPECT_EQ(x->nselected, 0);
    EXPECT_EQ(x->firstsel, nullptr);
    EXPECT_EQ(events[3]->selected, 0);
    EXPECT_EQ(brisolan_firstselected(x), nullptr);
}

TEST_F(view_selected, revising_is_unselecting_each_hidden_one) {
    for (const std::vector<int>& order :
         {std::vector<int>{0, 1, 2, 3, 4}, {2, 0, 4, 1, 3}, {4, 3, 2, 1, 0}}) {
        for (unsigned hidden = 0; hidden < 32; ++hidden) {
            for (const std::int32_t over : {0, 3, -1}) {
                const auto prepare = [&] {
                    brisolan_noselect(x);
                    for (const int i : order) brisolan_select(x, events[static_cast<std::size_t>(i)]);
                    x->nselected += over;
                    for (unsigned t = 0; t < 5; ++t) x->trackshown[t] = hidden >> t & 1 ? 0 : 1;
                };
                prepare();
                for (event* e : events) {
                    if (e->selected && hidden >> (e->track - 1) & 1) brisolan_unselect(x, e);
                }
                event* const anchor = x->firstsel;
                const std::int32_t count = x->nselected;
                prepare();
                brisolan_reviseselect(x);
                ASSERT_EQ(x->firstsel, anchor);
                ASSERT_EQ(x->nselected, count);
            }
        }
    }
}

TEST_F(view_selected, thirds_of_a_bar) {
    // 20 pixels from 88: zones of 6.
    const event* e = events[1];
    EXPECT_EQ(brisolan_eventthird(x, e, 60), 0);
    EXPECT_EQ(brisolan_eventthird(x, e, 93), 0);
    EXPECT_EQ(brisolan_eventthird(x, e, 94), 1);
    EXPECT_EQ(brisolan_eventthird(x, e, 102), 1);
    EXPECT_EQ(brisolan_eventthird(x, e, 103), 2);
}

TEST_F(view_selected, thirds_of_a_short_bar) {
    events[1]->dur = 25; // 1 pixel
    EXPECT_EQ(brisolan_eventthird(x, events[1], 88), 0);
    EXPECT_EQ(brisolan_eventthird(x, events[1], 89), 1);
    EXPECT_EQ(brisolan_eventthird(x, events[1], 91), 1);
    EXPECT_EQ(brisolan_eventthird(x, events[1], 92), 2);
}

TEST_F(view_selected, a_length_keeps_sixteen_bits_in_the_thirds) {
    events[1]->dur = 65536 * 25 + 2500; // 65636 pixels: 100 of them count
    EXPECT_EQ(brisolan_eventthird(x, events[1], 88 + 32), 0);
    EXPECT_EQ(brisolan_eventthird(x, events[1], 88 + 50), 1);
    EXPECT_EQ(brisolan_eventthird(x, events[1], 88 + 68), 2);
}

} // namespace
