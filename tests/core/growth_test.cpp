// tests/core/growth_test.cpp: work on ten times the events takes ten times the steps, and no more.
// Test layer.
#include "tests/support/growth.h"

#include "core/messages.h"

namespace {

class growth : public growth_test {};

// Whoever walks from the head for each event takes a hundred times the steps for ten times the events: this is what the
// other tests are there to notice.
TEST_F(growth, a_walk_for_each_event_is_noticed) {
    const auto walks = [this](int n) {
        fill(n);
        return count([this] {
            for (const event* e = x->events; e; e = e->next) {
                if (!in_sequence(x, e)) return;
            }
        });
    };
    EXPECT_GT(walks(FIRST_SIZE * 10).steps, walks(FIRST_SIZE).steps * 50);
}

TEST_F(growth, appending_also_in_order) {
    for (const auto ordered : {std::int16_t{0}, std::int16_t{1}}) {
        expect_growth(IN_PROPORTION, [this, ordered](int n) {
            fill(0);
            x->lasttime = 0;
            return count_messages([&] {
                for (int i = 0; i < n; ++i) brisolan_doappend(x, 10, 60, 64, 100, 1, 1, 0, 0, ordered);
            });
        });
    }
}

// One insertion may walk to its place.
TEST_F(growth, inserting_at_a_random_place) {
    expect_growth(IN_PROPORTION, [this](int n) {
        fill(n);
        return count([this, n] {
            for (const int tenth : {7, 2, 9, 4, 1, 8})
                brisolan_link(x, brisolan_newevent({n * 10 * tenth, 60, 64, 100, 1, 1, 0, 0}));
        });
    });
}

TEST_F(growth, merging_a_chain) {
    expect_growth(IN_PROPORTION, [this](int n) {
        fill(n);
        event head;
        event* last = &head;
        for (int i = 0; i < n; ++i) {
            event* e = brisolan_newevent({(i * 7919) % n * 100, 60, 64, 100, 1, 1, 0, 0});
            last->next = e;
            last = e;
        }
        return count([&] { brisolan_linkchain(x, head.next); });
    });
}

TEST_F(growth, the_nth) {
    expect_growth(IN_PROPORTION, [this](int n) {
        fill(n);
        return count_messages([this, n] { brisolan_nth(x, n / 2); });
    });
}

TEST_F(growth, clearing) {
    expect_growth(IN_PROPORTION, [this](int n) {
        fill(n);
        return count_messages([this] { brisolan_clear(x); });
    });
}

} // namespace
