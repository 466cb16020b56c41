// tests/boxes/time_boxes_test.cpp: delay, tempo and timer in virtual time.
// Test layer.
#include "host/kernel/kernel.h"
#include "host/kernel/objects.h"
#include "tests/boxes/boxes_test.h"

namespace {

// A box of some kind whose outlet is printed.
class time_boxes_test : public boxes_test {
protected:
    void make(const std::string& what) {
        ASSERT_TRUE(load("#N " + what + "; #N print out; #P cord 0 0 1 0;"));
        ASSERT_EQ(taken(), texts{});
    }
};

class delay_test : public time_boxes_test {};
class tempo_test : public time_boxes_test {};
class timer_test : public time_boxes_test {};

TEST_F(delay_test, a_number_sets_the_time_and_starts) {
    make("delay");
    send(0, "500");
    wait(499);
    EXPECT_EQ(taken(), texts{});
    wait(1);
    EXPECT_EQ(taken(), texts{"post out: bang"});
    wait(5000);
    EXPECT_EQ(taken(), texts{});
}

TEST_F(delay_test, a_new_number_replaces_the_bang_to_come) {
    make("delay");
    send(0, "500");
    wait(400);
    send(0, "300");
    wait(299);
    EXPECT_EQ(taken(), texts{});
    wait(1);
    EXPECT_EQ(taken(), texts{"post out: bang"});
}

TEST_F(delay_test, a_bang_starts_with_the_time_set_last) {
    make("delay 250");
    send(0, "bang");
    wait(200);
    send(0, "bang");
    wait(249);
    EXPECT_EQ(taken(), texts{});
    wait(1);
    EXPECT_EQ(taken(), texts{"post out: bang"});
    to_inlet(0, 1, 40);
    wait(1000);
    EXPECT_EQ(taken(), texts{}) << "the right inlet starts nothing";
    send(0, "bang");
    wait(40);
    EXPECT_EQ(taken(), texts{"post out: bang"});
}

TEST_F(delay_test, stop_takes_back_the_bang_to_come) {
    make("delay");
    send(0, "100");
    send(0, "stop");
    wait(1000);
    EXPECT_EQ(taken(), texts{});
}

TEST_F(delay_test, a_time_below_0_neither_starts_nor_stops_nor_sets) {
    make("delay 70");
    send(0, "-1");
    wait(1000);
    EXPECT_EQ(taken(), texts{});
    send(0, "bang");
    send(0, "-1");
    to_inlet(0, 1, -5);
    wait(70);
    EXPECT_EQ(taken(), texts{"post out: bang"});
    send(0, "bang");
    wait(70);
    EXPECT_EQ(taken(), texts{"post out: bang"});
}

TEST_F(delay_test, zero_waits_for_the_scheduler_but_no_time) {
    make("delay");
    send(0, "0");
    EXPECT_EQ(taken(), texts{});
    wait(0);
    EXPECT_EQ(taken(), texts{"post out: bang"});
}

TEST_F(delay_test, a_chain_of_delays_does_not_drift) {
    // The delay starts itself again: its 1000th bang comes at exactly the 1000th interval.
    ASSERT_TRUE(
        load("#N delay 7; #N timer; #N print out; #P cord 0 0 0 0; #P cord 0 0 1 0; #P cord 1 0 2 0;"));
    send(0, "bang");
    wait(6999);
    EXPECT_EQ(taken().size(), 999U);
    wait(1);
    EXPECT_EQ(taken(), texts{"post out: 7"});
    send(0, "stop");
}

TEST_F(tempo_test, waits_are_divided_by_the_speed) {
    make("tempo");
    send(0, "500");
    send(0, "speed 2");
    send(0, "500");
    send(0, "speed 0.25");
    send(0, "500");
    EXPECT_EQ(taken(), (texts{"post out: 500", "post out: 250", "post out: 2000"}));
}

TEST_F(tempo_test, what_rounding_leaves_over_goes_into_the_next_wait) {
    make("tempo 3");
    for (int i = 0; i < 3; ++i) send(0, "100");
    EXPECT_EQ(taken(), (texts{"post out: 33", "post out: 34", "post out: 33"}));
    send(0, "0");
    EXPECT_EQ(taken(), (texts{"post out: 0"}));
}

TEST_F(tempo_test, a_wait_below_0_passes_and_begins_anew) {
    make("tempo 3");
    send(0, "100");
    send(0, "-1");
    send(0, "100");
    EXPECT_EQ(taken(), (texts{"post out: 33", "post out: -1", "post out: 33"}));
}

TEST_F(tempo_test, a_speed_that_is_none_changes_nothing) {
    make("tempo 2");
    send(0, "speed 0");
    send(0, "speed -1");
    send(0, "500");
    EXPECT_EQ(taken(), (texts{"error tempo: a speed is a number above 0",
                              "error tempo: a speed is a number above 0", "post out: 250"}));
}

TEST_F(tempo_test, waits_beyond_32_bits_are_held_at_the_longest) {
    make("tempo 0.25");
    send(0, "2147483647");
    send(0, "4");
    EXPECT_EQ(taken(), (texts{"post out: 2147483647", "post out: 16"}));
}

TEST_F(timer_test, a_bang_puts_out_the_milliseconds_since_the_one_before) {
    make("timer");
    wait(30);
    send(0, "bang");
    send(0, "bang");
    wait(125);
    send(0, "60");
    EXPECT_EQ(taken(), (texts{"post out: 30", "post out: 0", "post out: 125"}));
}

TEST_F(timer_test, start_measures_from_now_and_puts_out_nothing) {
    make("timer");
    wait(30);
    send(0, "start");
    EXPECT_EQ(taken(), texts{});
    wait(8);
    send(0, "bang");
    EXPECT_EQ(taken(), texts{"post out: 8"});
}

TEST_F(timer_test, intervals_between_whole_milliseconds_add_up_to_the_time_that_passed) {
    make("timer");
    int sum = 0;
    for (int i = 0; i < 1000; ++i) {
        kel_advance(kel_now() + 333'333);
        send(0, "bang");
    }
    for (const std::string& line : taken()) sum += std::stoi(line.substr(line.find(':') + 2));
    EXPECT_EQ(sum, 333);
}

} // namespace
