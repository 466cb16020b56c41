// tests/core/sequence_test.cpp: the ordered list under any mix of operations, beside a plain model of its rules.
// Test layer.
#include "core/sequence.h"

#include <algorithm>
#include <array>
#include <random>

#include "core/check.h"
#include "core/heldnotes.h"
#include "core/messages.h"
#include "core/notechains.h"
#include "host/kernel/memory.h"
#include "tests/support/host_test.h"

namespace {

using lines_of = std::vector<std::string>;

class sequence : public object_test {
protected:
    event* make(std::int32_t time, std::int32_t id) {
        event* e = brisolan_newevent();
        e->time = time;
        e->x1 = id;
        return e;
    }
    void append(std::int32_t delta, std::int32_t id, bool ordered) {
        brisolan_doappend(x, delta, 60, 64, 200, 1, 1, id, 0, ordered);
    }
    // "time:id" of every event in order.
    std::string shown() const {
        std::string text;
        for (const event* e = x->events; e; e = e->next) {
            text += std::to_string(e->time) + ":" + std::to_string(e->x1) + " ";
        }
        return text;
    }
};

TEST_F(sequence, appends_at_the_running_time) {
    append(100, 1, false);
    append(-50, 2, false);
    append(20, 3, false);
    EXPECT_EQ(shown(), "100:1 100:2 120:3 ");
    EXPECT_EQ(x->lasttime, 120);
    EXPECT_EQ(x->current->x1, 3);
}

TEST_F(sequence, places_an_ordered_append_before_those_of_equal_time) {
    append(100, 1, false);
    append(0, 2, false);
    x->lasttime = 0;
    append(100, 3, true);
    EXPECT_EQ(shown(), "100:3 100:1 100:2 ");
    EXPECT_EQ(x->current->x1, 3);
}

TEST_F(sequence, refuses_an_append_while_the_cursor_is_not_on_the_last_event) {
    append(100, 1, false);
    append(100, 2, false);
    x->current = static_cast<event*>(x->events);
    append(100, 3, false);
    EXPECT_EQ(x->lasttime, 200);
    x->current = nullptr;
    append(100, 3, false);
    EXPECT_EQ(shown(), "100:1 200:2 ");
    kel_run_queue();
    EXPECT_EQ(taken(), (lines_of{"post oops! lost my marbles", "post oops! lost my marbles"}));
}

TEST_F(sequence, an_append_clears_the_mark_of_the_duration_alone) {
    for (param_record& p : x->params) p.isset = std::uint8_t{1};
    append(0, 1, false);
    for (int i = 0; i < NPARAMS; ++i)
        EXPECT_EQ(x->params[static_cast<std::size_t>(i)].isset, i != PARAM_DUR) << i;
}

TEST_F(sequence, clears_marks_of_one_of_all_and_of_none) {
    const auto marks = [this] {
        std::string text;
        for (param_record& p : x->params) text += p.isset ? '1' : '0';
        return text;
    };
    for (param_record& p : x->params) p.isset = std::uint8_t{1};
    brisolan_clearset(x, 8);
    brisolan_clearset(x, -2);
    EXPECT_EQ(marks(), "11111111");
    brisolan_clearset(x, 2);
    EXPECT_EQ(marks(), "11011111");
    brisolan_clearset(x, -1);
    EXPECT_EQ(marks(), "00000000");
}

TEST_F(sequence, running_over_the_end_of_time_stops_there) {
    append(INT32_MAX, 1, false);
    append(INT32_MAX, 2, false);
    EXPECT_EQ(shown(), "2147483647:1 2147483647:2 ");
    EXPECT_EQ(brisolan_brokeninvariant(x), nullptr);
}

TEST_F(sequence, stops_appending_at_the_memory_limit_and_loses_nothing) {
    append(10, 1, false);
    const std::int32_t before = x->lasttime;
    host_freebytes(host_getbytes(48), 48);
    std::vector<void*> blocks;
    kel_memory_limit(kel_memory_bytes());
    while (void* b = host_getbytes(sizeof(event))) blocks.push_back(b);
    append(10, 2, false);
    kel_memory_limit(0);
    for (void* b : blocks) host_freebytes(b, sizeof(event));
    EXPECT_EQ(shown(), "10:1 ");
    EXPECT_EQ(x->lasttime, before);
    append(10, 3, false);
    EXPECT_EQ(shown(), "10:1 20:3 ");
}

// The rules once more, on a plain vector, without any of the list's aids.
struct model {
    struct note {
        std::int32_t time;
        std::int32_t id;
        bool selected;
    };
    std::vector<note> notes;

    void link(note n) {
        auto at = notes.begin();
        while (at != notes.end() && at->time < n.time) ++at;
        notes.insert(at, n);
    }
    void remove_selected() {
        std::erase_if(notes, [](const note& n) { return n.selected; });
    }
    void resort() {
        std::vector<note> rest;
        std::vector<note> moved;
        for (const note& n : notes) (n.selected ? moved : rest).push_back(n);
        notes.clear();
        std::merge(rest.begin(), rest.end(), moved.begin(), moved.end(), std::back_inserter(notes),
                   [](const note& a, const note& b) { return a.time < b.time; });
    }
    std::string shown() const {
        std::string text;
        for (const note& n : notes) text += std::to_string(n.time) + ":" + std::to_string(n.id) + " ";
        return text;
    }
};

class random_sequence : public sequence, public testing::WithParamInterface<unsigned> {
protected:
    std::int32_t below(int n) { return static_cast<std::int32_t>(random() % static_cast<unsigned>(n)); }

    void link_one() {
        const std::int32_t time = below(40);
        brisolan_link(x, make(time, ++ids));
        plain.link({time, ids, false});
    }
    void link_chain() {
        event* head = nullptr;
        event_link* end = nullptr;
        for (int i = below(6); i >= 0; --i) {
            event* e = make(below(40), ++ids);
            if (end)
                *end = e;
            else
                head = e;
            end = &e->next;
            plain.link({e->time, ids, false});
        }
        brisolan_linkchain(x, head);
    }
    void select_some() {
        std::size_t i = 0;
        for (event* e = x->events; e; e = e->next, ++i) {
            e->selected = static_cast<std::uint8_t>(below(3) == 0);
            plain.notes[i].selected = e->selected != 0;
        }
    }
    void remove() {
        select_some();
        x->current = brisolan_eventat(x, below(10));
        x->firstsel = brisolan_eventat(x, below(10));
        brisolan_removeselected(x);
        plain.remove_selected();
    }
    void move_selected() {
        select_some();
        const std::int32_t by = below(21) - 10;
        for (event* e = x->events; e; e = e->next) {
            if (e->selected) e->time = std::max(e->time + by, 0);
        }
        for (model::note& n : plain.notes) {
            if (n.selected) n.time = std::max(n.time + by, 0);
        }
        brisolan_resort(x);
        plain.resort();
    }
    void append_ordered() {
        const std::int32_t time = below(40);
        x->lasttime = 0;
        append(time, ++ids, true);
        plain.link({time, ids, false});
    }
    void step() {
        switch (below(8)) {
        case 0: remove(); break;
        case 1: move_selected(); break;
        case 2: link_chain(); break;
        case 3:
        case 4: append_ordered(); break;
        default: link_one(); break;
        }
    }

    model plain;
    std::mt19937 random{GetParam()};
    std::int32_t ids = 0;
};

TEST_P(random_sequence, keeps_the_order_of_the_plain_rules_and_no_reference_to_what_is_gone) {
    SCOPED_TRACE("seed " + std::to_string(GetParam()));
    x->nselected = 1'000'000; // never fewer than are selected, which is set here without counting
    for (int i = 0; i < 400; ++i) {
        step();
        ASSERT_EQ(shown(), plain.shown()) << "after step " << i;
        ASSERT_EQ(brisolan_brokeninvariant(x), nullptr) << "after step " << i;
        ASSERT_EQ(static_cast<std::size_t>(x->nevents), plain.notes.size());
        ASSERT_TRUE(!x->current || in_sequence(x, x->current));
        ASSERT_TRUE(!x->firstsel || in_sequence(x, x->firstsel));
    }
}

INSTANTIATE_TEST_SUITE_P(seeds, random_sequence, testing::Range(1U, 25U));

TEST_F(sequence, a_delete_moves_the_cursor_to_the_first_event_behind_that_stays) {
    for (std::int32_t i = 1; i <= 5; ++i) append(10, i, false);
    for (event* e = x->events; e; e = e->next)
        e->selected = static_cast<std::uint8_t>(e->x1 == 2 || e->x1 == 3 || e->x1 == 5);
    x->current = brisolan_eventat(x, 1);
    x->firstsel = brisolan_eventat(x, 4);
    brisolan_removeselected(x);
    EXPECT_EQ(x->current->x1, 4);
    EXPECT_EQ(static_cast<event*>(x->firstsel), nullptr);
}

TEST_F(sequence, a_delete_takes_held_and_pending_nodes_of_its_events_along) {
    for (std::int32_t i = 1; i <= 4; ++i) append(10, i, false);
    {
        const host_locked_out now;
        brisolan_hold(x, brisolan_eventat(x, 0));
        brisolan_hold(x, brisolan_eventat(x, 1));
        brisolan_pushpending(x, brisolan_eventat(x, 2));
        brisolan_pushpending(x, brisolan_eventat(x, 3));
    }
    brisolan_eventat(x, 0)->selected = std::uint8_t{1};
    brisolan_eventat(x, 2)->selected = std::uint8_t{1};
    brisolan_removeselected(x);
    ASSERT_NE(x->held, nullptr);
    EXPECT_EQ(x->held->note->x1, 2);
    EXPECT_EQ(x->held->next, nullptr);
    EXPECT_EQ(x->held_tail, nullptr);
    ASSERT_NE(x->follow_pending, nullptr);
    EXPECT_EQ(x->follow_pending->note->x1, 4);
    EXPECT_EQ(x->follow_pending->next, nullptr);
}

TEST_F(sequence, clear_forgets_everything_that_names_an_event_and_leaves_the_count_of_selected) {
    for (std::int32_t i = 1; i <= 4; ++i) append(10, i, false);
    x->firstsel = static_cast<event*>(x->events);
    x->nselected = 3;
    x->window->hscroll_value = std::int16_t{5};
    x->window->vscroll_value = std::int16_t{7};
    brisolan_clear(x);
    EXPECT_EQ(static_cast<event*>(x->events), nullptr);
    EXPECT_EQ(static_cast<event*>(x->current), nullptr);
    EXPECT_EQ(static_cast<event*>(x->firstsel), nullptr);
    EXPECT_EQ(x->window->hscroll_value, 0);
    EXPECT_EQ(x->window->vscroll_value, 0);
    EXPECT_EQ(x->nselected, 3);
    EXPECT_EQ(x->lasttime, 40);
    append(5, 5, false);
    EXPECT_EQ(shown(), "45:5 ") << "the running time goes on";
}

TEST_F(sequence, what_was_recorded_while_a_file_was_read_stays_among_its_notes) {
    append(100, 1, false);
    append(100, 2, false);
    note_chains read;
    for (const auto& [time, id] : {std::pair{50, 3}, {100, 4}, {150, 5}, {300, 6}})
        ASSERT_TRUE(read.append(make(time, id), false));
    brisolan_adopt(x, &read);
    EXPECT_EQ(shown(), "50:3 100:4 100:1 150:5 200:2 300:6 ");
    EXPECT_EQ(x->nevents, 6);
    EXPECT_EQ(x->current->x1, 6);
    EXPECT_EQ(brisolan_brokeninvariant(x), nullptr);
}

TEST_F(sequence, at_sets_the_cursor_to_the_first_such_note_or_to_none) {
    append(0, 1, false);
    append(10, 2, false);
    brisolan_at(x, 60, 64, 1);
    EXPECT_EQ(x->current->x1, 1);
    brisolan_at(x, 60, 64, 2);
    EXPECT_EQ(x->current, nullptr);
    kel_run_queue();
    EXPECT_EQ(taken(), lines_of{"post brisolan: note not found"});
}

} // namespace
