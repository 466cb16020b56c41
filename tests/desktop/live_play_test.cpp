// tests/desktop/live_play_test.cpp: notes that the program plays to MIDI ports and through the synth, as another program
// receives them.
// Test layer.
#include <algorithm>
#include <csignal>
#include <cstdio>

#include "tests/desktop/live_test.h"

namespace {

using bytes = std::array<int, 3>;

class live_play : public live_test {
protected:
    // A scale of so many notes, `apart` milliseconds from one another, the first after as many.
    std::string scale(int notes, int apart) const {
        std::vector<score_note> all;
        for (int i = 1; i <= notes; ++i) all.push_back({i * apart, 40 + i % 40, apart / 2});
        return score("scale.mid", all);
    }
    // One that no test waits for the end of.
    std::string endless() const { return scale(3000, 100); }
    static void interrupt(process& p) {
        p.send(SIGINT);
        EXPECT_EQ(p.wait(PATIENCE_MS), 128 + SIGINT) << p.err();
    }
    std::size_t heard_notes() const { return only(0x90, peer->heard()).size(); }
};

TEST_F(live_play, ports_are_listed_with_number_system_and_name) {
    const jack_peer second("other");
    EXPECT_EQ(run({"ports"}), "in 0 JACK peer:midi out\nin 1 JACK other:midi out\n"
                              "out 0 JACK peer:midi in\nout 1 JACK other:midi in\n");
}

double middle_of(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// How far notes are from where they should be, as a multiple of what is allowed.
double how_far_off(const std::vector<timed_message>& on, int apart) {
    std::vector<double> place; // of each note, as if all were due at once
    for (std::size_t i = 0; i < on.size(); ++i)
        place.push_back(static_cast<double>(on[i].at) / 1000 - static_cast<double>(i) * apart);
    const double middle = middle_of(place);
    std::vector<double> off;
    for (const double p : place) off.push_back(std::abs(p - middle));
    std::sort(off.begin(), off.end());
    const auto third = static_cast<std::ptrdiff_t>(place.size() / 3);
    const double half = off[off.size() / 2]; // of the notes are not further off than this
    const double most = off[off.size() * 9 / 10];
    const double drift = std::abs(middle_of({place.begin(), place.begin() + third}) -
                                  middle_of({place.end() - third, place.end()}));
    std::printf(
        "half of the notes are off by %.2f ms at most, nine of ten by %.2f ms, the worst by %.2f ms\n", half,
        most, off.back());
    return std::max({half / 2, most / 4, drift / 2});
}

TEST_F(live_play, notes_arrive_and_end_within_milliseconds_of_their_times) {
    constexpr int NOTES = 60;
    constexpr int APART = 50;
    timing_tries tries(peer);
    while (tries.more()) {
        const std::size_t before = peer->heard().size();
        run({"play", scale(NOTES, APART), "--port", "peer", "--quiet"});
        std::vector<timed_message> all = peer->heard();
        all.erase(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(before));
        const std::vector<timed_message> on = only(0x90, all);
        const std::vector<timed_message> off = only(0x80, all);
        ASSERT_EQ(on.size(), static_cast<std::size_t>(NOTES));
        ASSERT_EQ(off.size(), on.size());
        std::vector<double> lasted;
        for (std::size_t i = 0; i < on.size(); ++i) {
            const int pitch = 40 + (static_cast<int>(i) + 1) % 40;
            EXPECT_EQ(on[i].bytes, (bytes{0x90, pitch, 100}));
            EXPECT_EQ(off[i].bytes, (bytes{0x80, pitch, 64}));
            lasted.push_back(static_cast<double>(off[i].at - on[i].at) / 1000);
        }
        tries.take(std::max(how_far_off(on, APART), std::abs(middle_of(lasted) - APART / 2) / 2));
    }
    tries.judge();
}

TEST_F(live_play, every_note_ends_after_its_duration_and_the_channels_are_reset) {
    run({"play", score("two.mid", {{100, 60, 3000, 1}, {150, 64, 100, 3}}), "--port", "peer", "--quiet"});
    std::vector<bytes> got;
    for (const timed_message& m : peer->heard()) got.push_back(m.bytes);
    EXPECT_EQ(got, (std::vector<bytes>{{0x90, 60, 100},
                                       {0x92, 64, 100},
                                       {0x82, 64, 64},
                                       {0x80, 60, 64},
                                       {0xB0, 123, 0},
                                       {0xB0, 120, 0},
                                       {0xB2, 123, 0},
                                       {0xB2, 120, 0}}));
}

TEST_F(live_play, a_virtual_port_is_there_for_others_to_connect_to) {
    const std::unique_ptr<process> p =
        brisolan({"play", endless(), "--virtual", "from the score", "--quiet"});
    ASSERT_TRUE(peer->hear_midi_from("brisolan:from the score"));
    EXPECT_TRUE(holds_within(PATIENCE_MS, [&] { return heard_notes() > 2; })) << p->err();
    interrupt(*p);
}

TEST_F(live_play, two_programs_at_once_are_two_clients) {
    const std::unique_ptr<process> a = brisolan({"play", endless(), "--virtual", "a", "--quiet"});
    ASSERT_TRUE(peer->hear_midi_from("brisolan:a"));
    const std::unique_ptr<process> b = brisolan({"play", endless(), "--virtual", "b", "--quiet"});
    ASSERT_TRUE(peer->hear_midi_from("brisolan-01:b"));
    interrupt(*a);
    interrupt(*b);
}

TEST_F(live_play, several_ports_that_fit_or_none_are_an_error_that_names_them) {
    const jack_peer second("peer2");
    const std::string file = scale(1, 10);
    const std::unique_ptr<process> several = brisolan({"play", file, "--port", "pe"});
    EXPECT_EQ(several->wait(PATIENCE_MS), 1);
    EXPECT_EQ(several->err(), "brisolan: several MIDI outputs fit \"pe\": 0 \"peer:midi in\" (JACK), "
                              "1 \"peer2:midi in\" (JACK)\n");
    const std::unique_ptr<process> none = brisolan({"play", file, "--port", "flute"});
    EXPECT_EQ(none->wait(PATIENCE_MS), 1);
    EXPECT_EQ(none->err(), "brisolan: no MIDI output fits \"flute\"; there are 0 \"peer:midi in\" (JACK), "
                           "1 \"peer2:midi in\" (JACK)\n");
}

TEST_F(live_play, an_interrupt_ends_what_sounds) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const std::size_t before = peer->heard().size();
        const std::unique_ptr<process> p =
            brisolan({"play", score("long.mid", {{10, 60, 20'000, 2}}), "--port", "peer", "--quiet"});
        ASSERT_TRUE(holds_within(PATIENCE_MS, [&] { return peer->heard().size() > before; }));
        p->send(signal);
        EXPECT_EQ(p->wait(PATIENCE_MS), 128 + signal) << p->err();
        std::vector<bytes> got;
        for (const timed_message& m : peer->heard()) got.push_back(m.bytes);
        got.erase(got.begin(), got.begin() + static_cast<std::ptrdiff_t>(before));
        EXPECT_EQ(got, (std::vector<bytes>{{0x91, 60, 100}, {0x81, 60, 64}, {0xB1, 123, 0}, {0xB1, 120, 0}}));
    }
}

TEST_F(live_play, a_port_that_disappears_is_told_once_and_comes_back) {
    const std::unique_ptr<process> p = brisolan({"play", endless(), "--port", "peer"});
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&] { return heard_notes() > 2; }));
    peer.reset();
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&] {
        return count("brisolan: MIDI output \"peer:midi in\" has gone; going on without it\n", p->err()) == 1;
    })) << p->err();
    peer = std::make_unique<jack_peer>("peer");
    ASSERT_TRUE(peer->connected());
    EXPECT_TRUE(holds_within(PATIENCE_MS, [&] { return heard_notes() > 2; })) << p->err();
    interrupt(*p);
    EXPECT_EQ(count("has gone", p->err()), 1) << p->err();
    EXPECT_EQ(count("is back", p->err()), 1) << p->err();
}

TEST_F(live_play, a_server_that_dies_is_told_once_and_playing_goes_on) {
    const std::unique_ptr<process> p = brisolan({"play", endless(), "--port", "peer"});
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&] { return heard_notes() > 2; }));
    server->kill();
    peer.reset();
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&] { return count("has gone", p->err()) == 1; })) << p->err();
    const int shown = count("\n", p->err());
    constexpr int MORE = 15; // a second and a half of notes: time enough to tell it twice
    EXPECT_TRUE(holds_within(PATIENCE_MS, [&] { return count("\n", p->err()) >= shown + MORE; })) << p->err();
    interrupt(*p);
    EXPECT_EQ(count("has gone; going on without it", p->err()), 1) << p->err();
}

TEST_F(live_play, a_server_that_is_started_again_is_played_to_again) {
    const std::unique_ptr<process> p = brisolan({"play", endless(), "--port", "peer", "--quiet"});
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&] { return heard_notes() > 2; }));
    server->kill();
    peer.reset();
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&] { return count("has gone", p->err()) == 1; })) << p->err();
    ASSERT_TRUE(server->start());
    peer = std::make_unique<jack_peer>("peer");
    ASSERT_TRUE(peer->connected());
    EXPECT_TRUE(holds_within(PATIENCE_MS, [&] { return heard_notes() > 2; })) << p->err();
    EXPECT_EQ(count("is back", p->err()), 1) << p->err();
}

TEST_F(live_play, without_a_port_the_synth_plays) {
    const std::unique_ptr<process> p = brisolan({"play", endless(), "--quiet"});
    ASSERT_TRUE(peer->hear_sound_from("brisolan-synth:left")) << p->err();
    EXPECT_TRUE(holds_within(PATIENCE_MS, [&] { return peer->loudest() > 0.01F; })) << p->err();
    interrupt(*p);
    EXPECT_EQ(p->err(), "");
}

TEST_F(live_play, the_synth_outlives_its_server) {
    const std::unique_ptr<process> p = brisolan({"play", endless(), "--synth", "--quiet"});
    ASSERT_TRUE(peer->hear_sound_from("brisolan-synth:left")) << p->err();
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&] { return peer->loudest() > 0; })) << p->err();
    server->kill();
    peer.reset();
    EXPECT_TRUE(holds_within(PATIENCE_MS, [&] { return !p->err().empty(); }));
    sleep_ms(1000);
    interrupt(*p);
    EXPECT_EQ(p->err(), "brisolan: the sound output has gone; going on without it\n");
}

} // namespace
