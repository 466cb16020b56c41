// tests/core/check_test.cpp: the checker of what always holds finds each thing that can be broken.
// Test layer.
#include "core/check.h"

#include "core/heldnotes.h"
#include "core/sequence.h"
#include "tests/support/host_test.h"

namespace {

// A sequence of three notes at 0, 100 and 200; whatever a test breaks is put right again by its end.
class check_test : public object_test {
protected:
    void SetUp() override {
        object_test::SetUp();
        send("record");
        send("0 60 64 50");
        send("100 62 64 50");
        send("100 64 64 50");
        send("stop");
        ASSERT_EQ(brisolan_brokeninvariant(x), nullptr);
    }
    event* at(std::int32_t n) { return brisolan_eventat(x, n); }
    std::string broken() const {
        const char* why = brisolan_brokeninvariant(x);
        return why ? why : "";
    }
};

TEST_F(check_test, finds_times_that_fall) {
    at(1)->time = 300;
    EXPECT_EQ(broken(), "times fall along the list");
    brisolan_timeschanged(x);
    EXPECT_EQ(broken(), "");
}

TEST_F(check_test, times_may_fall_until_the_list_is_empty) {
    at(1)->time = 300;
    brisolan_timeschanged(x);
    EXPECT_EQ(x->unordered, 1);
    send("clear");
    EXPECT_EQ(x->unordered, 0);
}

TEST_F(check_test, an_append_behind_a_delay_lets_times_fall) {
    send("record");
    send("10 60 64 50");
    send("delay 5000");
    EXPECT_EQ(broken(), "");
    send("10 62 64 50");
    EXPECT_LT(at(1)->time, at(0)->time);
    EXPECT_EQ(x->unordered, 1);
    EXPECT_EQ(broken(), "");
}

TEST_F(check_test, finds_a_wrong_count) {
    x->nevents = 2;
    EXPECT_EQ(broken(), "the list has more events than were counted, or runs in a circle");
    x->nevents = 4;
    EXPECT_EQ(broken(), "the list has fewer events than were counted");
    x->nevents = 3;
}

TEST_F(check_test, finds_a_circle) {
    event* last = at(2);
    last->next = last;
    EXPECT_EQ(broken(), "the list has more events than were counted, or runs in a circle");
    last->next = nullptr;
}

TEST_F(check_test, finds_references_to_events_outside_the_list) {
    event stray;
    const std::string why =
        "current, firstsel, drawn, the finger, held or pending names no event of the list";
    for (event_link brisolan::*link : {&brisolan::current, &brisolan::firstsel}) {
        event* before = x->*link;
        x->*link = &stray;
        EXPECT_EQ(broken(), why);
        x->*link = before;
    }
    brisolan_hold(x, &stray);
    EXPECT_EQ(broken(), why);
    brisolan_holdnothing(x);
    x->follow_pending = brisolan_newnode(&stray, nullptr);
    EXPECT_EQ(broken(), why);
    brisolan_freenode(x->follow_pending);
    x->follow_pending = nullptr;
    EXPECT_EQ(broken(), "");
}

TEST_F(check_test, finds_a_finger_that_stands_too_far_on) {
    x->finger = at(2);
    x->finger_time = 100;
    EXPECT_EQ(broken(), "the insertion finger stands too far on");
    x->finger = nullptr;
}

TEST_F(check_test, finds_more_selected_than_counted) {
    at(0)->selected = std::uint8_t{1};
    EXPECT_EQ(broken(), "more events are selected than were counted");
    x->nselected = 1;
    EXPECT_EQ(broken(), "");
    at(0)->selected = std::uint8_t{2};
    EXPECT_EQ(broken(), "a selected flag is neither 0 nor 1");
    at(0)->selected = std::uint8_t{0};
}

TEST_F(check_test, finds_a_held_list_out_of_shape) {
    event_node one{at(0), nullptr};
    event_node two{at(1), &one};
    event_node three{at(2), &two};
    x->held_tail = &one;
    EXPECT_EQ(broken(), "the held list is empty and has a tail");
    x->held = &three;
    EXPECT_EQ(broken(), "more than two notes are held");
    x->held = &two;
    EXPECT_EQ(broken(), "the held list's tail is not its first node");
    x->held_tail = &two;
    EXPECT_EQ(broken(), "");
    x->held = x->held_tail = nullptr;
}

TEST_F(check_test, finds_roles_given_twice) {
    x->params[PARAM_X1].mode = ROLE_VERTICAL;
    EXPECT_EQ(broken(), "two parameters are on the vertical axis");
    x->params[PARAM_X1].mode = ROLE_LENGTH;
    EXPECT_EQ(broken(), "two parameters are the bar length");
    x->params[PARAM_X1].mode = ROLE_LABEL;
    EXPECT_EQ(broken(), "two parameters are the label");
    x->params[PARAM_X1].mode = ROLE_NONE;
    x->yparam = -1;
    EXPECT_EQ(broken(), "an axis has no parameter");
    x->yparam = PARAM_PITCH;
    x->lenparam = NPARAMS;
    EXPECT_EQ(broken(), "an axis has no parameter");
    x->lenparam = PARAM_DUR;
    x->labelparam = NPARAMS;
    EXPECT_EQ(broken(), "the label is no parameter");
    x->labelparam = -1;
    x->params[PARAM_VEL].mode = ROLE_NONE;
    EXPECT_EQ(broken(), "");
}

TEST_F(check_test, stops_the_program_where_something_is_broken) {
    x->nevents = 2;
    EXPECT_DEATH(brisolan_checkinvariants(x), "broken: the list has more events than were counted");
    x->nevents = 3;
}

} // namespace
