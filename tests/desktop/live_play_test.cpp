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
    std::size_t heard_notes() const { return only(0x90, peer->heard()).size(); }
};

TEST_F(live_play, ports_are_listed_with_number_system_and_name) {
    const jack_peer second("other");
    EXPECT_EQ(run({"ports"}), "in 0 JACK peer:midi out\nin 1 JACK other:midi out\n"
                              "out 0 JACK peer:midi in\nout 1 JACK other:midi in\n");
}

// How far notes are from where they should be, milliseconds.
struct timing {
    double half = 1e9; // of the notes are not further off than this
    double most = 1e9; // nine of ten are not
    double worst = 1e9;
    double drift = 1e9; // from the first third of the notes to the last
};

double middle_of(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

timing measure(const std::vector<timed_message>& on, int apart) {
    std::vector<double> place; // of each note, as if all were due at once
    for (std::size_t i = 0; i < on.size(); ++i)
        place.push_back(static_cast<double>(on[i].at) / 1000 - static_cast<double>(i) * apart);
    const double middle = middle_of(place);
    std::vector<double> off;
    for (const double p : place) off.push_back(std::abs(p - middle));
    std::sort(off.begin(), off.end());
    const auto third = static_cast<std::ptrdiff_t>(place.size() / 3);
    return {off[off.size() / 2], off[off.size() * 9 / 10], off.back(),
            std::abs(middle_of({place.begin(), place.begin() + third}) -
                     middle_of({place.end() - third, place.end()}))};
}

// A machine that stands still for a moment makes single notes late, and a busy one without real-time priorities many: so
// the usual note is judged, in the best of some tries, and nothing where the server itself was on time in none of them.
TEST_F(live_play, notes_arrive_within_milliseconds_of_their_times) {
    constexpr int NOTES = 60;
    constexpr int APART = 50;
    timing best;
    bool on_time = false; // was the server in one of the tries
    for (int tries = 0; tries < 4 && !(best.half < 2 && best.most < 4 && best.drift < 2); ++tries) {
        const std::size_t before = peer->heard().size();
        peer->server_late();
        run({"play", scale(NOTES, APART), "--port", "peer", "--quiet"});
        const jack_peer::lateness server_late = peer->server_late();
        std::vector<timed_message> all = peer->heard();
        all.erase(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(before));
        const std::vector<timed_message> on = only(0x90, all);
        ASSERT_EQ(on.size(), static_cast<std::size_t>(NOTES));
        for (std::size_t i = 0; i < on.size(); ++i)
            EXPECT_EQ(on[i].bytes, (bytes{0x90, 40 + (static_cast<int>(i) + 1) % 40, 100}));
        const timing now = measure(on, APART);
        std::printf(
            "half of the notes are off by %.2f ms at most, nine of ten by %.2f ms, the worst by %.2f ms; "
            "the server was late by %.2f ms at worst, in %.1f %% of its cycles\n",
            now.half, now.most, now.worst, server_late.worst, server_late.share * 100);
        on_time |= server_late.on_time();
        if (now.most < best.most) best = now;
    }
    if (on_time) {
        EXPECT_LT(best.half, 2);
        EXPECT_LT(best.most, 4);
        EXPECT_LT(best.drift, 2);
    } else {
        std::printf("the server was never on time, so the notes were not judged\n");
    }
}

TEST_F(live_play, every_note_ends_after_its_duration_and_the_channels_are_reset) {
    run({"play", score("two.mid", {{100, 60, 200, 1}, {150, 64, 100, 3}}), "--port", "peer", "--quiet"});
    const std::vector<timed_message> all = peer->heard();
    std::vector<bytes> got;
    for (const timed_message& m : all) got.push_back(m.bytes);
    EXPECT_EQ(got, (std::vector<bytes>{{0x90, 60, 100},
                                       {0x92, 64, 100},
                                       {0x82, 64, 64},
                                       {0x80, 60, 64},
                                       {0xB0, 123, 0},
                                       {0xB0, 120, 0},
                                       {0xB2, 123, 0},
                                       {0xB2, 120, 0}}));
    ASSERT_GE(all.size(), 4U);
    EXPECT_NEAR(static_cast<double>(all[3].at - all[0].at) / 1000, 200, 100);
}

TEST_F(live_play, a_virtual_port_is_there_for_others_to_connect_to) {
    const std::unique_ptr<process> p =
        brisolan({"play", scale(24, 50), "--virtual", "from the score", "--quiet"});
    ASSERT_TRUE(peer->hear_midi_from("brisolan:from the score"));
    EXPECT_EQ(p->wait(PATIENCE_MS), 0) << p->err();
    EXPECT_GT(heard_notes(), 10U);
}

TEST_F(live_play, two_programs_at_once_are_two_clients) {
    const std::unique_ptr<process> a = brisolan({"play", scale(24, 50), "--virtual", "a", "--quiet"});
    ASSERT_TRUE(peer->hear_midi_from("brisolan:a"));
    const std::unique_ptr<process> b = brisolan({"play", scale(24, 50), "--virtual", "b", "--quiet"});
    ASSERT_TRUE(peer->hear_midi_from("brisolan-01:b"));
    EXPECT_EQ(a->wait(PATIENCE_MS), 0) << a->err();
    EXPECT_EQ(b->wait(PATIENCE_MS), 0) << b->err();
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
    const std::unique_ptr<process> p = brisolan({"play", scale(70, 100), "--port", "peer"});
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&] { return heard_notes() > 2; }));
    peer.reset();
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&] {
        return count("brisolan: MIDI output \"peer:midi in\" has gone; going on without it\n", p->err()) == 1;
    })) << p->err();
    peer = std::make_unique<jack_peer>("peer");
    ASSERT_TRUE(peer->connected());
    EXPECT_TRUE(holds_within(PATIENCE_MS, [&] { return heard_notes() > 2; })) << p->err();
    EXPECT_EQ(p->wait(PATIENCE_MS), 0) << p->err();
    EXPECT_EQ(count("has gone", p->err()), 1) << p->err();
    EXPECT_EQ(count("is back", p->err()), 1) << p->err();
    EXPECT_EQ(count("0:07.000", p->err()), 1) << "it did not play on to the end:\n" << p->err();
}

TEST_F(live_play, a_server_that_dies_is_told_once_and_playing_goes_on) {
    const std::unique_ptr<process> p = brisolan({"play", scale(40, 100), "--port", "peer"});
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&] { return heard_notes() > 2; }));
    server->kill();
    peer.reset();
    EXPECT_EQ(p->wait(PATIENCE_MS), 0) << p->err();
    EXPECT_EQ(count("has gone; going on without it", p->err()), 1) << p->err();
    EXPECT_EQ(count("0:04.000", p->err()), 1) << p->err();
}

TEST_F(live_play, a_server_that_is_started_again_is_played_to_again) {
    const std::unique_ptr<process> p = brisolan({"play", scale(150, 100), "--port", "peer", "--quiet"});
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
    const std::unique_ptr<process> p = brisolan({"play", scale(8, 100), "--quiet"});
    ASSERT_TRUE(peer->hear_sound_from("brisolan-synth:left")) << p->err();
    EXPECT_EQ(p->wait(PATIENCE_MS), 0) << p->err();
    EXPECT_EQ(p->err(), "");
    EXPECT_GT(peer->loudest(), 0.01F);
}

TEST_F(live_play, the_synth_outlives_its_server) {
    const std::unique_ptr<process> p = brisolan({"play", scale(40, 100), "--synth", "--quiet"});
    ASSERT_TRUE(peer->hear_sound_from("brisolan-synth:left")) << p->err();
    ASSERT_TRUE(holds_within(PATIENCE_MS, [&] { return peer->loudest() > 0; })) << p->err();
    server->kill();
    peer.reset();
    EXPECT_EQ(p->wait(PATIENCE_MS), 0) << p->err();
    EXPECT_EQ(count("the sound output has gone; going on without it\n", p->err()), 1) << p->err();
}

} // namespace
