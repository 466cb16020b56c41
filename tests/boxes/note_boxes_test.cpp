// tests/boxes/note_boxes_test.cpp: notes in, notes out and the note-off maker, in virtual time.
// Test layer.
#include <algorithm>
#include <random>

#include "host/kernel/kernel.h"
#include "tests/boxes/boxes_test.h"

namespace {

class noteout_test : public boxes_test {};
class notein_test : public boxes_test {};

class makenote_test : public boxes_test {
protected:
    void SetUp() override {
        boxes_test::SetUp();
        ASSERT_TRUE(
            load("#N makenote 100 500; #N noteout; #P cord 0 0 1 0; #P cord 0 1 1 1; #P cord 0 2 1 2;"));
        ASSERT_EQ(taken(), texts{});
    }
};

TEST_F(noteout_test, a_pitch_leaves_with_the_velocity_and_channel_set_before) {
    load("#N noteout;");
    to_inlet(0, 2, 3);
    to_inlet(0, 1, 90);
    send(0, "60");
    send(0, "list 62 0 4");
    EXPECT_EQ(played(), (texts{"0 on 3 60 90", "0 off 4 62"}));
}

TEST_F(noteout_test, values_are_held_in_their_ranges_and_no_pitch_is_no_note) {
    load("#N noteout;");
    send(0, "list 60 1000 99");
    send(0, "list 128 64 1");
    send(0, "list -1 64 1");
    send(0, "list 127 -3 -7");
    EXPECT_EQ(played(), (texts{"0 on 16 60 127", "0 off 1 127"}));
}

TEST_F(notein_test, a_note_leaves_from_the_right_channel_velocity_pitch) {
    load("#N notein; #N print pitch; #N print vel; #N print chan; #P cord 0 0 1 0; #P cord 0 1 2 0; #P cord "
         "0 2 3 0;");
    note_in(5, 60, 64);
    EXPECT_EQ(taken(), (texts{"post chan: 5", "post vel: 64", "post pitch: 60"}));
}

TEST_F(notein_test, a_box_listens_to_its_port_and_channel_only) {
    load("#N notein 2 5; #N print pitch; #P cord 0 0 1 0;");
    note_in(5, 60, 64, 1);
    note_in(4, 61, 64, 2);
    note_in(5, 62, 64, 2);
    EXPECT_EQ(taken(), texts{"post pitch: 62"});
}

TEST_F(notein_test, what_is_no_note_is_dropped) {
    load("#N notein; #N print pitch; #P cord 0 0 1 0;");
    {
        const host_locked_out now;
        midi_receive(1, 0, 60, 64);
        midi_receive(1, 17, 60, 64);
        midi_receive(1, 1, 128, 64);
        midi_receive(1, 1, -1, 64);
        midi_receive(1, 1, 60, 128);
        midi_receive(1, 1, 60, -1);
        midi_receive(0, 1, 60, 64);
    }
    EXPECT_EQ(taken(), texts{});
}

TEST_F(notein_test, release_ends_the_keys_that_are_held_once) {
    load("#N notein; #N noteout; #P cord 0 0 1 0; #P cord 0 1 1 1; #P cord 0 2 1 2;");
    note_in(1, 60, 64);
    note_in(16, 127, 64);
    note_in(2, 62, 64);
    note_in(2, 62, 0);
    played();
    send(0, "release");
    EXPECT_EQ(played(), (texts{"0 off 1 60", "0 off 16 127"}));
    send(0, "release");
    EXPECT_EQ(played(), texts{});
}

TEST_F(notein_test, a_freed_box_hears_nothing) {
    load("#N notein; #N print gone; #N notein; #N print here; #P cord 0 0 1 0; #P cord 2 0 3 0;");
    kel_patcher_remove(patcher, box(0));
    note_in(1, 60, 64);
    EXPECT_EQ(taken(), texts{"post here: 60"});
}

TEST_F(makenote_test, a_note_is_ended_after_its_duration) {
    send(0, "60");
    wait(499);
    EXPECT_EQ(played(), (texts{"0 on 1 60 100"}));
    wait(1);
    EXPECT_EQ(played(), (texts{"500 off 1 60"}));
    wait(5000);
    EXPECT_EQ(played(), texts{});
}

TEST_F(makenote_test, velocity_duration_and_channel_come_from_the_right) {
    to_inlet(0, 3, 7);
    to_inlet(0, 2, 20);
    to_inlet(0, 1, 33);
    send(0, "60");
    send(0, "list 61 44 10 8");
    wait(100);
    EXPECT_EQ(played(), (texts{"0 on 7 60 33", "0 on 8 61 44", "10 off 8 61", "20 off 7 60"}));
}

TEST_F(makenote_test, a_key_struck_again_is_ended_and_begun_anew) {
    send(0, "60");
    wait(300);
    send(0, "60");
    wait(5000);
    EXPECT_EQ(played(), (texts{"0 on 1 60 100", "300 off 1 60", "300 on 1 60 100", "800 off 1 60"}));
}

TEST_F(makenote_test, a_key_struck_again_sounds_until_the_last_of_its_notes_has_ended) {
    send(0, "list 60 100 1000 1");
    wait(300);
    send(0, "list 60 80 100 1");
    wait(5000);
    EXPECT_EQ(played(), (texts{"0 on 1 60 100", "300 off 1 60", "300 on 1 60 80", "1000 off 1 60"}));
}

TEST_F(makenote_test, the_same_pitch_on_two_channels_is_two_keys) {
    send(0, "list 60 100 100 1");
    send(0, "list 60 100 50 2");
    wait(1000);
    EXPECT_EQ(played(), (texts{"0 on 1 60 100", "0 on 2 60 100", "50 off 2 60", "100 off 1 60"}));
}

TEST_F(makenote_test, a_note_that_follows_at_once_on_its_key_begins_after_the_end) {
    load("");
    send(0, "list 60 100 250 1");
    wait(250);
    send(0, "list 60 90 250 1");
    wait(250);
    EXPECT_EQ(played(), (texts{"0 on 1 60 100", "250 off 1 60", "250 on 1 60 90", "500 off 1 60"}));
}

TEST_F(makenote_test, velocity_0_ends_the_key_now_and_only_once) {
    send(0, "60");
    wait(100);
    to_inlet(0, 1, 0);
    send(0, "60");
    send(0, "60");
    wait(1000);
    EXPECT_EQ(played(), (texts{"0 on 1 60 100", "100 off 1 60"}));
}

TEST_F(makenote_test, a_duration_of_0_or_less_ends_at_once) {
    send(0, "list 60 100 0 1");
    send(0, "list 61 100 -50 1");
    wait(0);
    EXPECT_EQ(played(), (texts{"0 on 1 60 100", "0 on 1 61 100", "0 off 1 60", "0 off 1 61"}));
}

TEST_F(makenote_test, stop_ends_every_note_once) {
    send(0, "60");
    wait(10);
    send(0, "64");
    wait(10);
    send(0, "stop");
    send(0, "stop");
    wait(1000);
    EXPECT_EQ(played(), (texts{"0 on 1 60 100", "10 on 1 64 100", "20 off 1 60", "20 off 1 64"}));
}

TEST_F(makenote_test, durations_are_divided_by_the_speed) {
    send(0, "speed 2");
    send(0, "60");
    wait(1000);
    EXPECT_EQ(played(), (texts{"0 on 1 60 100", "250 off 1 60"}));
    send(0, "speed 0");
    EXPECT_EQ(taken(), (texts{"error makenote: a speed is a number above 0"}));
}

TEST_F(makenote_test, what_is_no_key_makes_no_note) {
    send(0, "list 128 100 100 1");
    send(0, "list -1 100 100 1");
    send(0, "list 60 100 100 17");
    send(0, "list 60 100 100 0");
    wait(1000);
    EXPECT_EQ(played(), texts{});
}

TEST_F(makenote_test, freed_with_a_note_sounding_nothing_comes_later) {
    send(0, "60");
    played();
    kel_patcher_remove(patcher, box(0));
    wait(1000);
    EXPECT_EQ(played(), texts{});
}

// Whatever is struck: on and off alternate on each key, and in the end every key is silent.
TEST_F(makenote_test, random_notes_leave_no_key_hanging) {
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto below = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    for (int i = 0; i < 5000; ++i) {
        send(0, "list " + std::to_string(40 + below(12)) + " " + std::to_string(below(4) * 40) + " " +
                    std::to_string(below(400) - 20) + " " + std::to_string(1 + below(3)));
        wait(below(30));
        if (below(500) == 0) send(0, "stop");
    }
    wait(1000);
    std::map<std::string, bool> sounding;
    for (const std::string& line : played()) {
        const std::size_t what = line.find(' ') + 1;
        const bool on = line[what + 1] == 'n';
        const std::string key =
            line.substr(line.find(' ', what),
                        line.find(' ', line.find(' ', line.find(' ', what) + 1) + 1) - line.find(' ', what));
        ASSERT_NE(sounding[key], on) << line;
        sounding[key] = on;
    }
    for (const auto& [key, on] : sounding) EXPECT_FALSE(on) << key;
}

} // namespace
